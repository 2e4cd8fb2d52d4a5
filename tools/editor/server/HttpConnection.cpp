//
// HttpConnection.cpp
//

#include "HttpConnection.h"

#include <Poco/Exception.h>
#include <Poco/Net/SocketDefs.h>

#include "HttpWire.h"
#include "SocketPoll.h"

namespace zunokeymap {
namespace editor {

namespace {

// What a client may take: a head in a few seconds, a body and an answer at
// no less than a megabyte a second, an idle kept-alive connection a few
// seconds.
constexpr auto kHeadTime = std::chrono::seconds(5);
constexpr auto kBodyTime = std::chrono::seconds(10);
constexpr auto kSendTime = std::chrono::seconds(10);
// Only an answer lost for want of memory takes this long.
constexpr auto kWorkTime = std::chrono::minutes(2);
constexpr std::size_t kBytesPerSecond = 1U << 20;
constexpr std::size_t kMaxHead = std::size_t{64} * 1024;
constexpr int kMaxRequestsPerConnection = 1000;
// One connection's share of a turn of the door thread, so that a fast upload
// does not starve the others.
constexpr std::size_t kReadShare = std::size_t{256} * 1024;

#if defined(MSG_NOSIGNAL)
constexpr int kSendFlags = MSG_NOSIGNAL;  // a client gone is an error, not a signal
#else
constexpr int kSendFlags = 0;
#endif

HttpConnection::Clock::duration timeFor(std::size_t bytes) {
    return std::chrono::seconds(bytes / kBytesPerSecond);
}

}  // namespace

HttpConnection::HttpConnection(const Poco::Net::StreamSocket& socket, Clock::time_point now)
    : socket_(socket) {
    socket_.setBlocking(false);
    socket_.setNoDelay(true);
    waitForHead(now);
}

int HttpConnection::wants() const {
    switch (phase_) {
        case Phase::Head:
        case Phase::Body:
            return ended_ ? 0 : SocketWait::kRead;
        case Phase::Answer:
            return SocketWait::kWrite;
        default:
            return 0;
    }
}

void HttpConnection::read() {
    char chunk[16384];
    std::size_t taken = 0;
    while (!ended_ && taken < kReadShare && (phase_ == Phase::Head || phase_ == Phase::Body) &&
           (phase_ == Phase::Body || in_.size() <= kMaxHead)) {
        int got = 0;
        try {
            got = socket_.receiveBytes(chunk, sizeof(chunk));
        } catch (const Poco::Exception&) {
            close();  // reset by the client
            return;
        }
        if (got < 0) {
            return;  // nothing more for now
        }
        if (got == 0) {
            ended_ = true;
            return;
        }
        in_.append(chunk, static_cast<std::size_t>(got));
        taken += static_cast<std::size_t>(got);
    }
}

void HttpConnection::write(Clock::time_point now) {
    while (phase_ == Phase::Answer && sent_ < out_.size()) {
        int n = 0;
        try {
            n = socket_.sendBytes(out_.data() + sent_, static_cast<int>(out_.size() - sent_),
                                  kSendFlags);
        } catch (const Poco::Exception& error) {
            if (!WouldBlock(error)) {
                close();
            }
            return;
        }
        if (n <= 0) {
            return;
        }
        sent_ += static_cast<std::size_t>(n);
    }
    if (phase_ == Phase::Answer) {
        if (closeAfter_) {
            close();
        } else {
            waitForHead(now);
        }
    }
}

bool HttpConnection::frame(const EditorApi& api, Clock::time_point now) {
    if (phase_ == Phase::Head) {
        std::size_t end = in_.find("\r\n\r\n");
        std::size_t skip = 4;
        if (end == std::string::npos) {
            end = in_.find("\n\n");
            skip = 2;
        }
        if (end == std::string::npos && in_.size() <= kMaxHead) {
            if (ended_) {
                close();  // the client stopped between requests, or in a head
            }
            return false;
        }
        if (end > kMaxHead) {  // or none (npos) within it
            refuse(EditorApi::ErrorResponse(431, "the request head is too large"), false, now);
            return false;
        }
        RequestHead head = ParseRequestHead(in_.substr(0, end));
        in_.erase(0, end + skip);
        if (head.status != 0) {
            refuse(EditorApi::ErrorResponse(head.status, head.error), false, now);
            return false;
        }
        const bool last = ++served_ >= kMaxRequestsPerConnection;
        const HttpResponse screened = api.screen(head.request);
        if (screened.status != 0) {
            // The body, if any, is not read: unless it came whole already,
            // the connection cannot go on.
            const bool whole = in_.size() >= head.contentLength;
            if (whole) {
                in_.erase(0, head.contentLength);
            }
            refuse(screened, whole && head.keepAlive && !last, now);
            return false;
        }
        request_ = std::move(head.request);
        length_ = head.contentLength;
        keepAlive_ = head.keepAlive && !last;
        screened_ = true;
        phase_ = Phase::Body;
        deadline_ = now + kBodyTime + timeFor(length_);
    }
    if (phase_ != Phase::Body) {
        return false;
    }
    if (in_.size() < length_) {
        if (ended_) {
            refuse(EditorApi::ErrorResponse(400, "the body ended before its Content-Length"), false,
                   now);
        }
        return false;
    }
    request_.body = in_.substr(0, length_);
    in_.erase(0, length_);
    if (in_.capacity() > 2 * kMaxHead) {
        in_.shrink_to_fit();  // an idle connection keeps no large body's room
    }
    phase_ = Phase::Working;
    deadline_ = now + kWorkTime;
    return true;
}

HttpRequest HttpConnection::takeRequest() {
    HttpRequest request = std::move(request_);
    request_ = HttpRequest();
    return request;
}

void HttpConnection::answer(std::string bytes, bool keepAlive, Clock::time_point now) {
    if (phase_ == Phase::Closed) {
        return;
    }
    out_ = std::move(bytes);
    sent_ = 0;
    closeAfter_ = !keepAlive;
    phase_ = Phase::Answer;
    deadline_ = now + kSendTime + timeFor(out_.size());
}

void HttpConnection::expire(Clock::time_point now) {
    if (phase_ == Phase::Closed || now < deadline_) {
        return;
    }
    if (phase_ == Phase::Head && !in_.empty()) {
        refuse(EditorApi::ErrorResponse(408, "the request head took too long"), false, now);
    } else if (phase_ == Phase::Body) {
        refuse(EditorApi::ErrorResponse(408, "the body took too long"), false, now);
    } else {
        close();
    }
}

void HttpConnection::close() {
    if (phase_ != Phase::Closed) {
        phase_ = Phase::Closed;
        std::string().swap(in_);
        std::string().swap(out_);
        try {
            socket_.close();
        } catch (const Poco::Exception&) {
            // closed either way
        }
    }
}

void HttpConnection::waitForHead(Clock::time_point now) {
    phase_ = Phase::Head;
    screened_ = false;
    since_ = now;
    deadline_ = now + kHeadTime;
    std::string().swap(out_);
    sent_ = 0;
}

void HttpConnection::refuse(const HttpResponse& response, bool keepAlive, Clock::time_point now) {
    screened_ = false;
    answer(FormatResponse(response, keepAlive), keepAlive, now);
}

}  // namespace editor
}  // namespace zunokeymap
