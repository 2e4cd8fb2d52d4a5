// The editor's server on the loopback: the door as a browser meets it, clients
// that send slowly or not at all, fifty clients at once, and the tool's
// recovery file when it is stopped.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <iostream>
#include <thread>
#include <vector>

#include <Poco/File.h>
#include <Poco/Net/HTTPClientSession.h>
#include <Poco/Net/HTTPRequest.h>
#include <Poco/Net/HTTPResponse.h>
#include <Poco/Net/SocketAddress.h>
#include <Poco/Net/StreamSocket.h>
#include <Poco/Pipe.h>
#include <Poco/PipeStream.h>
#include <Poco/Process.h>
#include <Poco/StreamCopier.h>

#include "EditorServer.h"
#include "SocketPoll.h"
#include "tests/EditorTestSupport.h"
#include "tests/ProcessSupport.h"

#if !defined(_WIN32)
#include <signal.h>
#include <sys/wait.h>
#endif

namespace {

using namespace editortest;
using Poco::Net::HTTPClientSession;
using Poco::Net::HTTPRequest;
using Poco::Net::HTTPResponse;

struct Answer {
    int status = 0;
    std::string body;
};

Answer send(HTTPClientSession& session, const HttpRequest& r) {
    HTTPRequest out(r.method, r.target, HTTPRequest::HTTP_1_1);
    for (const auto& header : r.headers) {
        out.set(header.first, header.second);
    }
    if (!r.body.empty() || r.method != "GET") {
        out.setContentLength64(static_cast<Poco::Int64>(r.body.size()));
    }
    session.sendRequest(out) << r.body;
    HTTPResponse in;
    Answer answer;
    std::istream& body = session.receiveResponse(in);
    Poco::StreamCopier::copyToString(body, answer.body);
    answer.status = in.getStatus();
    return answer;
}

// Sends `bytes` on a connection of its own, half-closes it, and returns all
// the server answers.
std::string raw(int port, const std::string& bytes) {
    Poco::Net::StreamSocket socket(
        Poco::Net::SocketAddress("127.0.0.1", static_cast<Poco::UInt16>(port)));
    socket.setReceiveTimeout(Poco::Timespan(20, 0));
    socket.sendBytes(bytes.data(), static_cast<int>(bytes.size()));
    socket.shutdownSend();
    std::string answer;
    char chunk[4096];
    try {
        for (int got = 0; (got = socket.receiveBytes(chunk, sizeof(chunk))) > 0;) {
            answer.append(chunk, static_cast<std::size_t>(got));
        }
    } catch (const Poco::Exception&) {
        // a reset after the answer
    }
    return answer;
}

struct Served {
    TempDir dir;
    std::unique_ptr<EditorSession> session;
    std::unique_ptr<EditorApi> api;
    std::unique_ptr<EditorServer> server;

    Served() {
        dir.write("doc.json", twoItems());
        session.reset(new EditorSession(dir.path("doc.json"), false, {}));
        api.reset(new EditorApi(*session, EditorApi::MakeToken(), 0));
        server.reset(new EditorServer(*api, 0));
        server->start();
    }
    HttpRequest request(const std::string& method, const std::string& target,
                        const std::string& body = "") const {
        return editortest::request(method, target, api->token(), server->port(), body);
    }
};

TEST(EditorServer, DoorOnTheWire) {
    Served s;
    EXPECT_NE(s.server->port(), 0);
    HTTPClientSession client("127.0.0.1", static_cast<Poco::UInt16>(s.server->port()));
    HttpRequest noToken = s.request("GET", "/api/document");
    noToken.headers.pop_back();
    EXPECT_EQ(send(client, noToken).status, 401);
    HttpRequest rebound = s.request("GET", "/api/document");
    rebound.headers[0].second = "attacker.example:" + std::to_string(s.server->port());
    EXPECT_EQ(send(client, rebound).status, 403);
    EXPECT_EQ(send(client, s.request("DELETE", "/api/document")).status, 405);
    EXPECT_EQ(send(client, s.request("PUT", "/api/document", "{,")).status, 400);
    EXPECT_EQ(send(client, s.request("GET", "/api/document")).status, 200) << "keep-alive works";

    // A body past the limit is refused before it is read at all.
    const std::string huge =
        "PUT /api/document HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(s.server->port()) +
        "\r\nAuthorization: Bearer " + s.api->token() +
        "\r\nContent-Type: application/json\r\nContent-Length: 17825792\r\n\r\n";
    EXPECT_EQ(raw(s.server->port(), huge).substr(0, 12), "HTTP/1.1 413");
    EXPECT_EQ(s.dir.read("doc.json"), twoItems());
}

// The status lines of the answers in `bytes`, one after another, joined by " | ".
std::string statusLines(const std::string& bytes) {
    std::string lines;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = bytes.find("\r\n\r\n", at);
        if (end == std::string::npos) {
            return lines + " | (cut short)";
        }
        lines += (lines.empty() ? "" : " | ") + bytes.substr(at, bytes.find("\r\n", at) - at);
        const std::size_t length = bytes.find("Content-Length: ", at);
        at = end + 4 + (length < end ? std::stoul(bytes.substr(length + 16)) : 0);
    }
    return lines;
}

// Requests a browser would not send are refused, each with its own status
// and reason, always as HTTP/1.1; a body that ends early is no body. Requests
// sent at once are answered in turn, a refusal with its body whole included.
TEST(EditorServer, StrictOnTheWire) {
    Served s;
    const std::string host = "Host: 127.0.0.1:" + std::to_string(s.server->port()) + "\r\n";
    const std::string auth = "Authorization: Bearer " + s.api->token() + "\r\n";
    const std::string json = "Content-Type: application/json\r\n";
    struct Row {
        const char* what;
        std::string request;
        std::string status;  // the answers' first lines
    };
    const std::string state = "GET /api/state HTTP/1.1\r\n" + host + auth + "\r\n";
    const std::string tokenless =
        "PUT /api/document HTTP/1.1\r\n" + host + json + "Content-Length: 2\r\n\r\n{}";
    const std::vector<Row> rows = {
        {"plain", "GET /api/state HTTP/1.1\r\n" + host + auth + "\r\n", "HTTP/1.1 200 OK"},
        {"wrong host", "GET /api/state HTTP/1.1\r\nHost: x:1\r\n" + auth + "\r\n",
         "HTTP/1.1 403 Forbidden"},
        {"two hosts", "GET /api/state HTTP/1.1\r\n" + host + "Host: evil:1\r\n" + auth + "\r\n",
         "HTTP/1.1 400 Bad Request"},
        {"two lengths",
         "PUT /api/document HTTP/1.1\r\n" + host + auth + json +
             "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}",
         "HTTP/1.1 400 Bad Request"},
        {"length and chunks",
         "PUT /api/document HTTP/1.1\r\n" + host + auth + json +
             "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n{}",
         "HTTP/1.1 501 Not Implemented"},
        {"no length", "POST /api/save HTTP/1.1\r\n" + host + auth + json + "\r\n",
         "HTTP/1.1 411 Length Required"},
        {"another version", "GET /api/state HTTP/9\r\n" + host + auth + "\r\n",
         "HTTP/1.1 505 HTTP Version Not Supported"},
        {"a body cut short",
         "PUT /api/document HTTP/1.1\r\n" + host + auth + json + "Content-Length: 100\r\n\r\n{}",
         "HTTP/1.1 400 Bad Request"},
        {"a head too large",
         "GET /api/state HTTP/1.1\r\n" + host + "X: " + std::string(70000, 'x') + "\r\n\r\n",
         "HTTP/1.1 431 Request Header Fields Too Large"},
        {"two at once", state + state, "HTTP/1.1 200 OK | HTTP/1.1 200 OK"},
        {"refused, then served", tokenless + state, "HTTP/1.1 401 Unauthorized | HTTP/1.1 200 OK"},
        {"HTTP/1.0 closes", "GET /api/state HTTP/1.0\r\n" + host + auth + "\r\n" + state,
         "HTTP/1.1 200 OK"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(statusLines(raw(s.server->port(), row.request)), row.status);
    }
    EXPECT_EQ(s.dir.read("doc.json"), twoItems());
}

// Connections that each send a byte now and then and never a whole head,
// each opened again the moment the server closes it; all on one thread.
class Drip {
public:
    Drip(int port, int count)
        : address_("127.0.0.1", static_cast<Poco::UInt16>(port)),
          clients_(static_cast<std::size_t>(count)),
          thread_([this] { run(); }) {}
    ~Drip() {
        stop_ = true;
        thread_.join();
    }

    int opened() const { return opened_; }

private:
    struct Client {
        std::unique_ptr<Poco::Net::StreamSocket> socket;
        bool connected = false;
    };

    void run() {
        using namespace std::chrono;
        const auto end = steady_clock::now() + seconds(120);  // should the test never stop it
        auto drip = steady_clock::now();
        std::vector<SocketWait> waits;
        std::vector<Client*> of;
        while (!stop_ && steady_clock::now() < end) {
            waits.clear();
            of.clear();
            for (Client& client : clients_) {
                if (!client.socket) {
                    try {
                        client.socket.reset(new Poco::Net::StreamSocket());
                        client.connected = false;
                        client.socket->connectNB(address_);
                        ++opened_;
                    } catch (const Poco::Exception&) {
                        client.socket.reset();  // out of descriptors: the next pass tries again
                        continue;
                    }
                }
                waits.push_back(
                    {*client.socket, client.connected ? SocketWait::kRead : SocketWait::kWrite, 0});
                of.push_back(&client);
            }
            try {
                WaitForSockets(waits, 10);
            } catch (const Poco::Exception&) {
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
            const bool due = steady_clock::now() >= drip;
            if (due) {
                drip = steady_clock::now() + milliseconds(100);
            }
            for (std::size_t i = 0; i < waits.size(); ++i) {
                Client& client = *of[i];
                char answer[512];
                try {
                    if (!client.connected) {
                        if (waits[i].ready != 0) {
                            client.connected = true;
                            client.socket->sendBytes("G", 1);
                        }
                    } else if (waits[i].ready != 0) {
                        if (client.socket->receiveBytes(answer, sizeof(answer)) == 0) {
                            client.socket.reset();
                        }
                    } else if (due) {
                        client.socket->sendBytes("E", 1);
                    }
                } catch (const Poco::Exception&) {
                    client.socket.reset();
                }
            }
        }
    }

    const Poco::Net::SocketAddress address_;
    std::vector<Client> clients_;
    std::atomic<bool> stop_{false};
    std::atomic<int> opened_{0};
    std::thread thread_;
};

// Connections that send slowly or not at all hold nothing a real request
// needs: while they drip, or churn by the hundred, a request on a fresh
// connection is answered at once.
TEST(EditorServer, SlowClientsCannotLockThePageOut) {
    using namespace std::chrono;
    struct Row {
        int dripping;
        milliseconds median;  // bounds for a loaded machine
        milliseconds worst;
    };
    const std::vector<Row> rows = {{16, seconds(2), seconds(2)}, {300, seconds(2), seconds(5)}};
    const std::size_t samples = 20;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.dripping);
        Served s;
        Drip drip(s.server->port(), row.dripping);
        const auto ready = steady_clock::now() + seconds(10);
        while (drip.opened() < row.dripping && steady_clock::now() < ready) {
            std::this_thread::sleep_for(milliseconds(10));
        }
        std::this_thread::sleep_for(milliseconds(300));
        std::vector<milliseconds> times;
        const auto end = steady_clock::now() + seconds(30);
        while (times.size() < samples && steady_clock::now() < end) {
            const auto start = steady_clock::now();
            HTTPClientSession client("127.0.0.1", static_cast<Poco::UInt16>(s.server->port()));
            client.setTimeout(Poco::Timespan(6, 0));
            int status = 0;
            try {
                status = send(client, s.request("GET", "/api/state")).status;
            } catch (const Poco::Exception&) {
                // counted as not answered
            }
            times.push_back(status == 200 ? duration_cast<milliseconds>(steady_clock::now() - start)
                                          : milliseconds::max());
            std::this_thread::sleep_for(milliseconds(50));
        }
        times.resize(samples, milliseconds::max());  // those not even sent in time
        std::sort(times.begin(), times.end());
        const milliseconds median = times[times.size() / 2];
        const milliseconds worst = times.back();
        const auto unanswered = std::count(times.begin(), times.end(), milliseconds::max());
        std::cout << "[ measure  ] " << row.dripping << " dripping connections: answered in "
                  << median.count() << " ms (median), " << worst.count() << " ms (worst) of "
                  << samples << ", " << unanswered << " not answered; " << drip.opened()
                  << " connections opened" << std::endl;
        EXPECT_EQ(unanswered, 0);
        EXPECT_LE(median.count(), row.median.count());
        EXPECT_LE(worst.count(), row.worst.count());
    }
}

// 50 clients make 10,000 requests between them, each checked; the server then
// still answers.
TEST(EditorServer, FiftyClientsTenThousandRequests) {
    Served s;
    const std::string doc = s.session->documentText();
    const std::string check = send(*std::make_unique<HTTPClientSession>(
                                       "127.0.0.1", static_cast<Poco::UInt16>(s.server->port())),
                                   s.request("GET", "/api/check"))
                                  .body;
    struct Kind {
        HttpRequest request;
        int status;
        std::string body;  // empty: not compared
    };
    std::vector<Kind> kinds = {
        {s.request("GET", "/api/document"), 200, doc},
        {s.request("GET", "/api/check"), 200, check},
        {s.request("PUT", "/api/document", doc), 200, check},
        {s.request("GET", "/api/key?device=keyboard&scan_code=16"), 200, ""},
        {s.request("GET", "/api/document?token=wrong"), 401, ""},
        {s.request("POST", "/api/macro/check", "{\"lines\":[\"nonsense\"]}"), 200, "{\"bad\":[1]}"},
    };
    kinds[4].request.headers.pop_back();
    const int clients = 50;
    const int perClient = 200;
    std::atomic<int> correct{0};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    for (int c = 0; c < clients; ++c) {
        threads.emplace_back([&, c] {
            HTTPClientSession client("127.0.0.1", static_cast<Poco::UInt16>(s.server->port()));
            client.setTimeout(Poco::Timespan(30, 0));
            for (int i = 0; i < perClient && std::chrono::steady_clock::now() < deadline; ++i) {
                const Kind& kind = kinds[static_cast<std::size_t>(c + i) % kinds.size()];
                try {
                    const Answer answer = send(client, kind.request);
                    const bool ok = answer.status == kind.status &&
                                    (kind.body.empty() || answer.body == kind.body);
                    (ok ? correct : wrong)++;
                } catch (const Poco::Exception&) {
                    wrong++;
                    client.reset();
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(correct.load(), clients * perClient);
    HTTPClientSession after("127.0.0.1", static_cast<Poco::UInt16>(s.server->port()));
    EXPECT_EQ(send(after, s.request("GET", "/api/document")).body, doc);
}

#if !defined(_WIN32) && defined(ZUNO_KEYMAP_TOOL)
// The tool as a user runs it: the address on a line of its own, then SIGTERM
// with unsaved changes leaves them in a recovery file beside the document at
// once, however many uploads are under way, and the tool ends soon after.
TEST(EditorServer, ToolWritesRecoveryFileOnSigterm) {
    using namespace std::chrono;
    TempDir dir;
    dir.write("doc.json", twoItems());
    zunokeymap::PrepareStandardStreams();  // see RunProgram
    Poco::Pipe out;
    Poco::Pipe err;
    Poco::ProcessHandle tool = Poco::Process::launch(
        ZUNO_KEYMAP_TOOL, {"edit", "--no-browser", dir.path("doc.json")}, nullptr, &out, &err);
    Poco::PipeInputStream lines(out);
    std::string url;
    std::getline(lines, url);
    const std::size_t colon = url.rfind(':');
    const std::size_t slash = url.find('/', colon);
    const std::size_t equals = url.find("?token=");
    ASSERT_EQ(url.rfind("http://127.0.0.1:", 0), 0U) << url;
    ASSERT_NE(equals, std::string::npos) << url;
    const int port = std::stoi(url.substr(colon + 1, slash - colon - 1));
    const std::string token = url.substr(equals + 7);

    HTTPClientSession client("127.0.0.1", static_cast<Poco::UInt16>(port));
    const std::string edited = testsupport::documentWith(testsupport::freshItemText("Tip"));
    ASSERT_EQ(send(client, request("PUT", "/api/document", token, port, edited)).status, 200);
    const std::string held = send(client, request("GET", "/api/document", token, port)).body;

    // Sixteen clients announce the largest body taken and send one byte of it.
    std::vector<std::unique_ptr<Poco::Net::StreamSocket>> uploads;
    const std::string announce =
        "PUT /api/document HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
        "\r\nAuthorization: Bearer " + token +
        "\r\nContent-Type: application/json\r\nContent-Length: " +
        std::to_string(EditorApi::kMaxBody) + "\r\n\r\n{";
    for (int i = 0; i < 16; ++i) {
        uploads.emplace_back(new Poco::Net::StreamSocket(
            Poco::Net::SocketAddress("127.0.0.1", static_cast<Poco::UInt16>(port))));
        uploads.back()->sendBytes(announce.data(), static_cast<int>(announce.size()));
    }
    std::this_thread::sleep_for(milliseconds(200));

    const auto start = steady_clock::now();
    ::kill(tool.id(), SIGTERM);
    const auto bound = start + seconds(60);
    auto recovered = bound;
    int status = -1;
    for (bool ended = false; !ended && steady_clock::now() < bound;) {
        ended = ::waitpid(tool.id(), &status, WNOHANG) != 0;
        if (recovered == bound && Poco::File(dir.path("doc.recovery.json")).exists()) {
            recovered = steady_clock::now();
        }
        std::this_thread::sleep_for(milliseconds(5));
    }
    const auto ms = [&](steady_clock::time_point at) {
        return static_cast<long long>(duration_cast<milliseconds>(at - start).count());
    };
    const long long ended = ms(steady_clock::now());
    if (ended >= 60000) {
        Poco::Process::kill(tool);
    }
    std::cout << "[ measure  ] SIGTERM with 16 uploads open: recovery file after " << ms(recovered)
              << " ms, exit after " << ended << " ms" << std::endl;
    EXPECT_LE(ms(recovered), 5000);
    EXPECT_LE(ended, 10000);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    std::string messages;
    Poco::PipeInputStream errors(err);
    Poco::StreamCopier::copyToString(errors, messages);
    EXPECT_NE(messages.find(dir.path("doc.recovery.json")), std::string::npos) << messages;
    EXPECT_EQ(dir.read("doc.recovery.json"), held);
    EXPECT_EQ(dir.read("doc.json"), twoItems());
}
#endif

}  // namespace
