// Unix-domain stream sockets that no child process inherits and whose broken pipe is an error code, never
// the signal that ends the program. Each system has its own way to ask for that.
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace tarnwick {

// A descriptor that the caller closes; -1 on failure.
int openQuietSocket();

// As send(2) without flags.
ssize_t sendQuietly(int socket, const void* bytes, std::size_t count);

}  // namespace tarnwick
