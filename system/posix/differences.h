// Where two POSIX systems differ in what the room needs: the clock that stands still while the machine
// sleeps, sockets that no child process inherits and whose broken pipe is an error code, never the signal
// that ends the program, and what a child process does first. Each system has its own way to ask for that.
#pragma once

#include <sys/types.h>
#include <time.h>

#include <cstddef>
#include <utility>

#include "system/posix/descriptor.h"

namespace tarnwick {

// The clock that only goes forward, but not during sleep.
clockid_t awakeClock();

// A Unix-domain stream socket; not open on failure.
Descriptor openQuietSocket();

// Two such sockets that are connected; not open on failure.
std::pair<Descriptor, Descriptor> openQuietPair();

// What send(2) needs for such a socket beside the caller's own flags.
int quietFlag();

// As send(2) without flags.
ssize_t sendQuietly(int socket, const void* bytes, std::size_t count);

// Closes every descriptor from that number on.
void closeAllFrom(int first);

// Has the system end this process with the one that started it, where it can, or no longer.
void endWithParent(bool wanted);

}  // namespace tarnwick
