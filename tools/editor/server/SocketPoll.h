//
// SocketPoll.h
//
// Waiting on many sockets at once, in one portable place: poll() on POSIX,
// WSAPoll() on Windows. Poco 1.11's PollSet is not used: on Windows it asks
// every socket for POLLOUT and then spins until its timeout, and on every
// system it loses a mode change made before the socket was first polled.
//

#ifndef ZUNO_KEYMAP_EDITOR_SOCKETPOLL_H
#define ZUNO_KEYMAP_EDITOR_SOCKETPOLL_H

#include <vector>

#include <Poco/Exception.h>
#include <Poco/Net/Socket.h>

namespace zunokeymap {
namespace editor {

struct SocketWait {
    enum : int { kRead = 1, kWrite = 2 };

    Poco::Net::Socket socket;
    int want = 0;   ///< kRead, kWrite or both
    int ready = 0;  ///< what the socket is ready for (an error counts as both)
};

/// Waits at most `milliseconds` (0: not at all) until one of `waits` is
/// ready, and sets every `ready`. A signal ends the wait early with none
/// ready. Throws Poco::IOException when the system refuses to wait.
void WaitForSockets(std::vector<SocketWait>& waits, int milliseconds);

/// Whether `error`, thrown by a call on a non-blocking socket, only says that
/// the call would have had to wait.
bool WouldBlock(const Poco::Exception& error);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_SOCKETPOLL_H
