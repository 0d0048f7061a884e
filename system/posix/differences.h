// Where two POSIX systems differ in what the room needs: the clock that stands still while the machine
// sleeps, and sockets that no child process inherits and whose broken pipe is an error code, never the signal
// that ends the program. Each system has its own way to ask for that.
#pragma once

#include <sys/types.h>
#include <time.h>

#include <cstddef>

#include "system/posix/descriptor.h"

namespace tarnwick {

// The clock that only goes forward, but not during sleep.
clockid_t awakeClock();

// A Unix-domain stream socket; not open on failure.
Descriptor openQuietSocket();

// As send(2) without flags.
ssize_t sendQuietly(int socket, const void* bytes, std::size_t count);

}  // namespace tarnwick
