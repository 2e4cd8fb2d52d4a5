//
// EditorServer.cpp
//
// The door thread owns the listening socket and every connection; workers
// only turn requests into answers. They meet at two queues under one mutex,
// and a worker that leaves an answer wakes the door thread with a datagram
// from one of its sockets to the other, which the door thread waits for
// together with the clients.
//

#include "EditorServer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <Poco/Exception.h>
#include <Poco/Net/DatagramSocket.h>
#include <Poco/Net/ServerSocket.h>
#include <Poco/Net/SocketAddress.h>
#include <Poco/Net/StreamSocket.h>

#include "HttpConnection.h"
#include "HttpWire.h"
#include "SocketPoll.h"

namespace zunokeymap {
namespace editor {

namespace {

using Clock = HttpConnection::Clock;
using Phase = HttpConnection::Phase;

// Connections the door has not taken yet wait in the kernel's queue; a full
// queue drops new ones, which clients try again only a second or more later.
constexpr int kBacklog = 1024;
// Connections without a screened request (waiting for a head, or being
// refused), and all connections. Beyond the first cap the oldest waiting one
// is dropped for a new one, but only once it had some time to send its head.
constexpr std::size_t kMaxWaiting = 256;
constexpr std::size_t kMaxConnections = 512;
constexpr auto kTimeToSendHead = std::chrono::milliseconds(200);
constexpr int kAcceptsPerTurn = 64;
constexpr auto kAcceptPause = std::chrono::milliseconds(100);  // after accept failed
constexpr int kWorkers = 16;
constexpr auto kLongestTurn = std::chrono::seconds(1);
constexpr auto kHandlingTime = std::chrono::seconds(10);  // what closeDoor waits for the API
constexpr auto kDrainTime = std::chrono::seconds(2);

std::string stoppingAnswer() {
    return FormatResponse(EditorApi::ErrorResponse(503, "the editor is stopping"), false);
}

}  // namespace

class EditorServer::Door {
public:
    Door(EditorApi& api, const Poco::Net::ServerSocket& listener)
        : api_(api),
          listener_(listener),
          wakeIn_(Poco::Net::SocketAddress("127.0.0.1", 0)),
          wakeOut_(Poco::Net::SocketAddress("127.0.0.1", 0)) {
        // Each takes datagrams from the other only.
        wakeIn_.connect(wakeOut_.address());
        wakeOut_.connect(wakeIn_.address());
        wakeIn_.setBlocking(false);
        wakeOut_.setBlocking(false);
        listener_.setBlocking(false);
    }

    ~Door() { stop(); }

    void start() {
        if (thread_.joinable()) {
            return;
        }
        workers_.reserve(kWorkers);
        for (int i = 0; i < kWorkers; ++i) {
            try {
                workers_.emplace_back([this] { work(); });
            } catch (const std::system_error&) {
                break;  // fewer workers; with none, the door thread answers itself
            }
        }
        thread_ = std::thread([this] { run(); });
    }

    void closeDoor() {
        std::unique_lock<std::mutex> lock(mutex_);
        closing_ = true;
        lock.unlock();
        wake();
        lock.lock();
        handled_.wait_for(lock, kHandlingTime, [this] { return handling_ == 0; });
    }

    void stop() {
        closeDoor();
        stopping_ = true;
        wake();
        if (thread_.joinable()) {
            thread_.join();
        }
        {
            std::lock_guard<std::mutex> lock(mutex_);
            quit_ = true;
        }
        jobsReady_.notify_all();
        for (std::thread& worker : workers_) {
            worker.join();
        }
        workers_.clear();
        connections_.clear();
        listener_.close();
    }

private:
    struct Job {
        std::uint64_t id;
        HttpRequest request;
        bool keepAlive;
    };
    struct Done {
        std::uint64_t id;
        std::string bytes;
        bool keepAlive;
    };

    void run() {
        auto drainEnd = Clock::time_point::max();
        std::vector<SocketWait> waits;
        std::vector<std::uint64_t> ids;
        for (;;) {
            try {
                auto now = Clock::now();
                if (stopping_ && drainEnd == Clock::time_point::max()) {
                    drainEnd = now + kDrainTime;
                }
                auto next = std::min(expire(now), now + kLongestTurn);
                if (stopping_ && (connections_.empty() || now >= drainEnd)) {
                    break;
                }
                if (listening_ && closing()) {
                    listener_.close();  // new clients are refused at once, not left waiting
                    listening_ = false;
                }
                waits.clear();
                ids.clear();
                waits.push_back({wakeIn_, SocketWait::kRead, 0});
                const bool accepting = listening_ && now >= acceptAt_;
                if (accepting) {
                    waits.push_back({listener_, SocketWait::kRead, 0});
                } else if (listening_) {
                    next = std::min(next, acceptAt_);
                }
                for (const auto& entry : connections_) {
                    if (const int want = entry.second.wants()) {
                        waits.push_back({entry.second.socket(), want, 0});
                        ids.push_back(entry.first);
                    }
                }
                next = std::min(next, drainEnd);
                const auto wait = std::chrono::ceil<std::chrono::milliseconds>(next - now);
                WaitForSockets(waits, static_cast<int>(std::max<std::int64_t>(wait.count(), 0)));

                now = Clock::now();
                if (waits[0].ready != 0) {
                    drainWakes();
                }
                takeAnswers(now);
                const std::size_t first = accepting ? 2 : 1;
                if (accepting && waits[1].ready != 0) {
                    accept(now);
                }
                for (std::size_t i = first; i < waits.size(); ++i) {
                    const auto found = connections_.find(ids[i - first]);
                    if (waits[i].ready == 0 || found == connections_.end()) {
                        continue;
                    }
                    if ((waits[i].ready & SocketWait::kRead) != 0) {
                        found->second.read();
                    }
                    serve(found->first, found->second, now);
                }
            } catch (const std::exception&) {
                // Out of memory or descriptors for a moment: the next turn tries again.
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
        }
        connections_.clear();
        listener_.close();
    }

    bool closing() {
        std::lock_guard<std::mutex> lock(mutex_);
        return closing_;
    }

    // Closes what is done or past its deadline, and when stopping what waits
    // for a request; returns the next deadline.
    Clock::time_point expire(Clock::time_point now) {
        auto next = Clock::time_point::max();
        for (auto it = connections_.begin(); it != connections_.end();) {
            HttpConnection& connection = it->second;
            if (stopping_ &&
                (connection.phase() == Phase::Head || connection.phase() == Phase::Body)) {
                connection.close();
            }
            if (connection.deadline() <= now) {
                connection.expire(now);
                serve(it->first, connection, now);
            }
            if (connection.phase() == Phase::Closed) {
                it = connections_.erase(it);
                continue;
            }
            next = std::min(next, connection.deadline());
            ++it;
        }
        return next;
    }

    void accept(Clock::time_point now) {
        for (int i = 0; i < kAcceptsPerTurn && makeRoom(now); ++i) {
            Poco::Net::StreamSocket socket;
            try {
                socket = listener_.acceptConnection();
            } catch (const Poco::Exception& error) {
                if (!WouldBlock(error)) {
                    acceptAt_ = now + kAcceptPause;  // out of descriptors, say
                }
                return;
            }
            const std::uint64_t id = nextId_++;
            try {
                auto& connection = connections_
                                       .emplace(std::piecewise_construct, std::forward_as_tuple(id),
                                                std::forward_as_tuple(socket, now))
                                       .first->second;
                // A browser sends its head with the connection: it is often here already.
                connection.read();
                serve(id, connection, now);
            } catch (const Poco::Exception&) {
                // gone before it was taken
            }
        }
    }

    // Whether a new connection may come in; at a cap, drops the oldest
    // connection without a screened request if it had its time.
    bool makeRoom(Clock::time_point now) {
        std::size_t live = 0;
        std::size_t waiting = 0;
        auto oldest = connections_.end();
        for (auto it = connections_.begin(); it != connections_.end(); ++it) {
            if (it->second.phase() == Phase::Closed) {
                continue;
            }
            ++live;
            if (!it->second.screened()) {
                ++waiting;
                if (oldest == connections_.end() || it->second.since() < oldest->second.since()) {
                    oldest = it;
                }
            }
        }
        if (waiting < kMaxWaiting && live < kMaxConnections) {
            return true;
        }
        if (oldest != connections_.end() && now - oldest->second.since() >= kTimeToSendHead) {
            oldest->second.close();
            return true;
        }
        acceptAt_ = oldest != connections_.end() ? oldest->second.since() + kTimeToSendHead
                                                 : now + kAcceptPause;
        return false;
    }

    // Moves `connection` on as far as it goes now: writes, frames requests,
    // and hands those screened to a worker.
    void serve(std::uint64_t id, HttpConnection& connection, Clock::time_point now) {
        for (;;) {
            if (connection.phase() == Phase::Answer) {
                connection.write(now);
            }
            if (connection.phase() != Phase::Head && connection.phase() != Phase::Body) {
                return;
            }
            if (!connection.frame(api_, now)) {
                if (connection.phase() == Phase::Answer) {
                    continue;  // refused: the refusal goes out
                }
                return;
            }
            HttpRequest request = connection.takeRequest();
            const bool keepAlive = connection.keepAlive();
            bool closed = false;
            {
                std::lock_guard<std::mutex> lock(mutex_);
                closed = closing_;
                if (!closed && !workers_.empty()) {
                    jobs_.push_back({id, std::move(request), keepAlive});
                    jobsReady_.notify_one();
                    return;
                }
            }
            connection.answer(closed ? stoppingAnswer() : answerTo(request, keepAlive),
                              keepAlive && !closed, now);
        }
    }

    void takeAnswers(Clock::time_point now) {
        std::vector<Done> done;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            done.swap(done_);
        }
        for (Done& answer : done) {
            const auto found = connections_.find(answer.id);
            if (found != connections_.end()) {
                found->second.answer(std::move(answer.bytes), answer.keepAlive, now);
                serve(found->first, found->second, now);
            }
        }
    }

    void work() {
        std::unique_lock<std::mutex> lock(mutex_);
        for (;;) {
            jobsReady_.wait(lock, [this] { return quit_ || !jobs_.empty(); });
            if (jobs_.empty()) {
                return;
            }
            Job job = std::move(jobs_.front());
            jobs_.pop_front();
            const bool refused = closing_;
            ++handling_;
            lock.unlock();
            Done done{job.id, std::string(), job.keepAlive && !refused};
            try {
                done.bytes = refused ? stoppingAnswer() : answerTo(job.request, job.keepAlive);
            } catch (const std::exception&) {
                done.keepAlive = false;  // no memory even for the refusal: the connection closes
            }
            lock.lock();
            --handling_;
            try {
                done_.push_back(std::move(done));
            } catch (const std::exception&) {
                // Out of memory: the connection ends at its deadline.
            }
            handled_.notify_all();
            lock.unlock();
            wake();
            lock.lock();
        }
    }

    // The answer's bytes; never throws.
    std::string answerTo(const HttpRequest& request, bool keepAlive) {
        try {
            return FormatResponse(api_.handle(request), keepAlive);
        } catch (const std::exception& error) {
            // Out of memory or threads for this request: it fails, the server stays.
            try {
                return FormatResponse(EditorApi::ErrorResponse(
                                          500, std::string("the editor ran out: ") + error.what()),
                                      false);
            } catch (const std::exception&) {
                return std::string();  // the connection just closes
            }
        }
    }

    void wake() {
        if (!wakeSent_.exchange(true)) {
            try {
                wakeOut_.sendBytes("!", 1);
            } catch (const Poco::Exception&) {
                wakeSent_ = false;  // the door thread looks again within a turn anyway
            }
        }
    }

    void drainWakes() {
        char sink[64];
        try {
            while (wakeIn_.receiveBytes(sink, sizeof(sink)) > 0) {
            }
        } catch (const Poco::Exception&) {
            // nothing more to drain
        }
        wakeSent_ = false;
    }

    EditorApi& api_;
    Poco::Net::ServerSocket listener_;
    bool listening_ = true;
    Clock::time_point acceptAt_;  ///< when the listener is worth waiting on again
    Poco::Net::DatagramSocket wakeIn_;
    Poco::Net::DatagramSocket wakeOut_;
    std::atomic<bool> wakeSent_{false};
    std::map<std::uint64_t, HttpConnection> connections_;  ///< the door thread's alone
    std::uint64_t nextId_ = 0;

    std::mutex mutex_;
    std::condition_variable jobsReady_;
    std::condition_variable handled_;
    std::deque<Job> jobs_;
    std::vector<Done> done_;
    int handling_ = 0;
    bool closing_ = false;
    bool quit_ = false;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
    std::vector<std::thread> workers_;
};

EditorServer::EditorServer(EditorApi& api, int port) {
    Poco::Net::ServerSocket socket;
    socket.bind(Poco::Net::SocketAddress("127.0.0.1", static_cast<Poco::UInt16>(port)), false);
    socket.listen(kBacklog);
    port_ = socket.address().port();
    api.setPort(port_);
    door_.reset(new Door(api, socket));
}

EditorServer::~EditorServer() = default;

void EditorServer::start() {
    door_->start();
}

void EditorServer::closeDoor() {
    door_->closeDoor();
}

void EditorServer::stop() {
    door_->stop();
}

}  // namespace editor
}  // namespace zunokeymap
