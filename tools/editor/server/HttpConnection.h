//
// HttpConnection.h
//
// One client connection of the editor's server, driven by the server's door
// thread and never blocking it: bytes are taken as they come, framed into
// requests against deadlines, and only a request whose head EditorApi::screen
// let through has its body read and goes on to a worker. Answers are written
// as fast as the client takes them.
//

#ifndef ZUNO_KEYMAP_EDITOR_HTTPCONNECTION_H
#define ZUNO_KEYMAP_EDITOR_HTTPCONNECTION_H

#include <chrono>
#include <cstddef>
#include <string>

#include <Poco/Net/StreamSocket.h>

#include "EditorApi.h"
#include "HttpMessage.h"

namespace zunokeymap {
namespace editor {

class HttpConnection {
public:
    using Clock = std::chrono::steady_clock;

    enum class Phase {
        Head,     ///< waiting for a request head
        Body,     ///< reading the body of a request that passed the screen
        Working,  ///< the request is with the API
        Answer,   ///< writing an answer (or a refusal)
        Closed,
    };

    /// Takes `socket`, a connection just accepted, and makes it non-blocking.
    HttpConnection(const Poco::Net::StreamSocket& socket, Clock::time_point now);

    Phase phase() const { return phase_; }
    /// Whether the request under way passed EditorApi::screen; a connection
    /// that waits for a head or is being refused has not.
    bool screened() const { return screened_; }
    /// When the connection began to wait for its current request.
    Clock::time_point since() const { return since_; }
    /// When the current phase must end (see expire()).
    Clock::time_point deadline() const { return deadline_; }
    const Poco::Net::StreamSocket& socket() const { return socket_; }
    /// What to wait for on the socket: SocketWait::kRead, kWrite or nothing.
    int wants() const;

    /// Reads what the socket holds now, up to a share per call.
    void read();
    /// Writes what the socket takes now of the answer; once it is all
    /// written, waits for the next request or closes.
    void write(Clock::time_point now);
    /// Frames what was read. True when a whole request passed `api`'s screen:
    /// the connection is then Working, and takeRequest() gives the request.
    /// A request the screen or the parser refuses is answered here.
    bool frame(const EditorApi& api, Clock::time_point now);
    HttpRequest takeRequest();
    /// Whether the client lets the connection stay after this request.
    bool keepAlive() const { return keepAlive_; }
    /// Starts writing `bytes`, a whole answer; the connection closes after it
    /// unless `keepAlive`.
    void answer(std::string bytes, bool keepAlive, Clock::time_point now);
    /// Ends a phase past its deadline: a head or body that came too late is
    /// answered 408, an idle connection or a stalled answer is closed.
    void expire(Clock::time_point now);
    void close();

private:
    void waitForHead(Clock::time_point now);
    void refuse(const HttpResponse& response, bool keepAlive, Clock::time_point now);

    Poco::Net::StreamSocket socket_;
    Phase phase_ = Phase::Head;
    bool screened_ = false;
    Clock::time_point since_;
    Clock::time_point deadline_;
    std::string in_;      ///< bytes read and not yet used
    bool ended_ = false;  ///< the client sent all it will
    std::string out_;
    std::size_t sent_ = 0;
    bool closeAfter_ = false;
    HttpRequest request_;
    std::size_t length_ = 0;
    bool keepAlive_ = false;
    int served_ = 0;
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_HTTPCONNECTION_H
