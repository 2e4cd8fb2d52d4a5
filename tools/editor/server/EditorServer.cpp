//
// EditorServer.cpp
//
// Each connection reads its requests itself, against deadlines: Poco's
// HTTPServer waits on every read with a fresh timeout, so a client that
// sends one byte every few seconds would hold a worker for as long as it
// liked, and a handful of them every worker.
//

#include "EditorServer.h"

#include <chrono>

#include <Poco/Exception.h>
#include <Poco/Net/NetException.h>
#include <Poco/Net/ServerSocket.h>
#include <Poco/Net/SocketAddress.h>
#include <Poco/Net/StreamSocket.h>
#include <Poco/Net/TCPServer.h>
#include <Poco/Net/TCPServerConnection.h>
#include <Poco/Net/TCPServerConnectionFactory.h>
#include <Poco/Net/TCPServerParams.h>

#include "HttpWire.h"

namespace zunokeymap {
namespace editor {

namespace {

using Clock = std::chrono::steady_clock;

// What a client may take: a head in a few seconds, a body at no less than
// a megabyte a second, an idle kept-alive connection a few seconds.
constexpr auto kHeadTime = std::chrono::seconds(5);
constexpr auto kBodyTime = std::chrono::seconds(10);
constexpr std::size_t kBodyBytesPerSecond = 1U << 20;
constexpr std::size_t kMaxHead = std::size_t{64} * 1024;
constexpr int kMaxRequestsPerConnection = 1000;
const Poco::Timespan kSendTime(10, 0);

class Connection : public Poco::Net::TCPServerConnection {
public:
    Connection(const Poco::Net::StreamSocket& socket, EditorApi& api)
        : Poco::Net::TCPServerConnection(socket), api_(api) {}

    void run() override {
        try {
            socket().setNoDelay(true);
            socket().setSendTimeout(kSendTime);
            for (int served = 0; served < kMaxRequestsPerConnection; ++served) {
                if (!serveOne()) {
                    break;
                }
            }
        } catch (const Poco::Exception&) {
            // A client that went away or broke the rules: the connection ends.
        } catch (const std::exception&) {
            // Out of memory for one request: the server goes on.
        }
    }

private:
    // Reads more bytes until `deadline`; false on end of stream or timeout.
    bool fill(Clock::time_point deadline, bool& timedOut) {
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            timedOut = true;
            return false;
        }
        socket().setReceiveTimeout(
            Poco::Timespan(static_cast<Poco::Timespan::TimeDiff>(left.count())));
        char chunk[16384];
        try {
            const int got = socket().receiveBytes(chunk, sizeof(chunk));
            if (got <= 0) {
                return false;
            }
            buffer_.append(chunk, static_cast<std::size_t>(got));
            return true;
        } catch (const Poco::TimeoutException&) {
            timedOut = true;
            return false;
        }
    }

    void answer(const HttpResponse& response, bool keepAlive) {
        const std::string bytes = FormatResponse(response, keepAlive);
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const int n =
                socket().sendBytes(bytes.data() + sent, static_cast<int>(bytes.size() - sent));
            if (n <= 0) {
                throw Poco::Net::NetException("the client stopped reading");
            }
            sent += static_cast<std::size_t>(n);
        }
    }

    // Serves one request; false when the connection is to close.
    bool serveOne() {
        const Clock::time_point headDeadline = Clock::now() + kHeadTime;
        std::size_t end = std::string::npos;
        std::size_t skip = 0;
        bool timedOut = false;
        for (;;) {
            end = buffer_.find("\r\n\r\n");
            skip = 4;
            if (end == std::string::npos) {
                end = buffer_.find("\n\n");
                skip = 2;
            }
            if (end != std::string::npos || buffer_.size() > kMaxHead) {
                break;
            }
            if (!fill(headDeadline, timedOut)) {
                if (timedOut && !buffer_.empty()) {
                    answer(EditorApi::ErrorResponse(408, "the request head took too long"), false);
                }
                return false;  // an idle connection simply closes
            }
        }
        if (end > kMaxHead) {  // not found (npos) or found too late
            answer(EditorApi::ErrorResponse(431, "the request head is too large"), false);
            return false;
        }
        RequestHead head = ParseRequestHead(buffer_.substr(0, end));
        buffer_.erase(0, end + skip);
        if (head.status != 0) {
            answer(EditorApi::ErrorResponse(head.status, head.error), false);
            return false;
        }
        const HttpResponse screened = api_.screen(head.request);
        if (screened.status != 0) {
            // The body, if any, is not read: the connection cannot go on.
            const bool whole = buffer_.size() >= head.contentLength;
            if (whole) {
                buffer_.erase(0, head.contentLength);
            }
            answer(screened, whole && head.keepAlive);
            return whole && head.keepAlive;
        }
        const Clock::time_point bodyDeadline =
            Clock::now() + kBodyTime +
            std::chrono::seconds(head.contentLength / kBodyBytesPerSecond);
        while (buffer_.size() < head.contentLength) {
            if (!fill(bodyDeadline, timedOut)) {
                answer(
                    EditorApi::ErrorResponse(timedOut ? 408 : 400,
                                             timedOut ? "the body took too long"
                                                      : "the body ended before its Content-Length"),
                    false);
                return false;
            }
        }
        head.request.body = buffer_.substr(0, head.contentLength);
        buffer_.erase(0, head.contentLength);
        HttpResponse response;
        try {
            response = api_.handle(head.request);
        } catch (const std::exception& error) {
            // Out of memory or threads for this request: it fails, the server stays.
            response =
                EditorApi::ErrorResponse(500, std::string("the editor ran out: ") + error.what());
        }
        answer(response, head.keepAlive);
        return head.keepAlive;
    }

    EditorApi& api_;
    std::string buffer_;  ///< bytes read and not yet used
};

class ConnectionFactory : public Poco::Net::TCPServerConnectionFactory {
public:
    explicit ConnectionFactory(EditorApi& api) : api_(api) {}

    Poco::Net::TCPServerConnection* createConnection(
        const Poco::Net::StreamSocket& socket) override {
        return new Connection(socket, api_);
    }

private:
    EditorApi& api_;
};

}  // namespace

EditorServer::EditorServer(EditorApi& api, int port) {
    Poco::Net::ServerSocket socket;
    socket.bind(Poco::Net::SocketAddress("127.0.0.1", static_cast<Poco::UInt16>(port)), false);
    socket.listen(64);
    port_ = socket.address().port();
    api.setPort(port_);

    Poco::Net::TCPServerParams::Ptr params = new Poco::Net::TCPServerParams();
    params->setMaxThreads(16);
    params->setMaxQueued(256);
    server_.reset(new Poco::Net::TCPServer(new ConnectionFactory(api), socket, params));
}

EditorServer::~EditorServer() {
    stop();
}

void EditorServer::start() {
    server_->start();
}

void EditorServer::stop() {
    if (server_) {
        server_->stop();
        // Requests under way finish (each within its deadlines) before the
        // session and the API they use are torn down.
        const auto deadline = Clock::now() + kHeadTime + kBodyTime + std::chrono::seconds(5);
        while (server_->currentConnections() > 0 && Clock::now() < deadline) {
            Poco::Thread::sleep(20);
        }
    }
}

}  // namespace editor
}  // namespace zunokeymap
