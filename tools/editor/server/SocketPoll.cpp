//
// SocketPoll.cpp
//

#include "SocketPoll.h"

#include <Poco/Net/SocketDefs.h>
#include <Poco/Net/SocketImpl.h>

#if !defined(_WIN32)
#include <poll.h>

#include <cerrno>
#endif

namespace zunokeymap {
namespace editor {

void WaitForSockets(std::vector<SocketWait>& waits, int milliseconds) {
    std::vector<pollfd> fds(waits.size());
    for (std::size_t i = 0; i < waits.size(); ++i) {
        fds[i].fd = waits[i].socket.impl()->sockfd();
        fds[i].events = static_cast<short>(((waits[i].want & SocketWait::kRead) ? POLLIN : 0) |
                                           ((waits[i].want & SocketWait::kWrite) ? POLLOUT : 0));
        fds[i].revents = 0;
        waits[i].ready = 0;
    }
    if (fds.empty()) {
        return;
    }
#if defined(_WIN32)
    const int count = ::WSAPoll(fds.data(), static_cast<ULONG>(fds.size()), milliseconds);
    if (count == SOCKET_ERROR) {
        throw Poco::IOException("cannot wait for sockets", ::WSAGetLastError());
    }
#else
    const int count = ::poll(fds.data(), static_cast<nfds_t>(fds.size()), milliseconds);
    if (count < 0) {
        if (errno == EINTR) {
            return;
        }
        throw Poco::IOException("cannot wait for sockets", errno);
    }
#endif
    for (std::size_t i = 0; i < waits.size() && count > 0; ++i) {
        const short got = fds[i].revents;
        // An error or a hang-up is found by the next read or write, so it
        // wakes whichever the socket waits for.
        const bool broken = (got & (POLLERR | POLLHUP | POLLNVAL)) != 0;
        if ((got & POLLIN) != 0 || broken) {
            waits[i].ready |= SocketWait::kRead;
        }
        if ((got & POLLOUT) != 0 || broken) {
            waits[i].ready |= SocketWait::kWrite;
        }
        waits[i].ready &= waits[i].want;
    }
}

bool WouldBlock(const Poco::Exception& error) {
    return error.code() == POCO_EWOULDBLOCK || error.code() == POCO_EAGAIN;
}

}  // namespace editor
}  // namespace zunokeymap
