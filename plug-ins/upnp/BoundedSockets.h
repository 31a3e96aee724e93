#pragma once

// The socket functions that miniupnpc is compiled with, in the place of Windows' own. miniupnpc waits for a
// connection as long as Windows pleases (half a minute and more), and reads an answer to its end, if it has
// one. Here every call has a time, a size, and can be called off: see CallBounds.h. This file is included
// before each of its sources.

#include <winsock2.h>
#include <ws2tcpip.h>

#ifdef __cplusplus
extern "C" {
#endif

int BoundedConnect(SOCKET socket, const struct sockaddr* address, int length);
int BoundedReceive(SOCKET socket, char* data, int length, int flags);
/* Waits to the end of the call's time, whatever `timeout` says. */
int BoundedSelect(int count, fd_set* readable, fd_set* writable, fd_set* failed,
                  const struct timeval* timeout);
/* Knows addresses only: a name would be asked of the Internet. */
int NumericGetAddrInfo(const char* host, const char* port, const struct addrinfo* hints,
                       struct addrinfo** found);

#ifdef __cplusplus
}
#else
/* ws2tcpip.h may have names of its own for these. */
#undef getaddrinfo
#define connect BoundedConnect
#define recv BoundedReceive
#define select BoundedSelect
#define getaddrinfo NumericGetAddrInfo
#endif
