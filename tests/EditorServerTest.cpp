// The editor's server on the loopback: the door as a browser meets it, fifty
// clients at once, and the tool's recovery file when it is stopped.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <Poco/Net/HTTPClientSession.h>
#include <Poco/Net/HTTPRequest.h>
#include <Poco/Net/HTTPResponse.h>
#include <Poco/Pipe.h>
#include <Poco/PipeStream.h>
#include <Poco/Process.h>
#include <Poco/StreamCopier.h>

#include "EditorServer.h"
#include "tests/EditorTestSupport.h"
#include "tests/ProcessSupport.h"

#if !defined(_WIN32)
#include <signal.h>
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

    // A body past the limit is refused before it is read whole.
    HTTPClientSession big("127.0.0.1", static_cast<Poco::UInt16>(s.server->port()));
    HTTPRequest huge(HTTPRequest::HTTP_PUT, "/api/document", HTTPRequest::HTTP_1_1);
    huge.set("Host", "127.0.0.1:" + std::to_string(s.server->port()));
    huge.set("Authorization", "Bearer " + s.api->token());
    huge.setContentType("application/json");
    huge.setChunkedTransferEncoding(true);
    std::ostream& body = big.sendRequest(huge);
    const std::string mib(1 << 20, ' ');
    for (int i = 0; i < 17 && body; ++i) {
        body << mib;
    }
    HTTPResponse response;
    big.receiveResponse(response);
    EXPECT_EQ(response.getStatus(), 413);
    EXPECT_EQ(s.dir.read("doc.json"), twoItems());
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
        {s.request("GET", "/api/key?device=keyboard&scan_code=16&virtual_key=81"), 200, ""},
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
// with unsaved changes leaves them in a recovery file beside the document.
TEST(EditorServer, ToolWritesRecoveryFileOnSigterm) {
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

    ::kill(tool.id(), SIGTERM);
    EXPECT_EQ(tool.wait(), 0);
    std::string messages;
    Poco::PipeInputStream errors(err);
    Poco::StreamCopier::copyToString(errors, messages);
    EXPECT_NE(messages.find(dir.path("doc.recovery.json")), std::string::npos) << messages;
    EXPECT_EQ(dir.read("doc.recovery.json"), held);
    EXPECT_EQ(dir.read("doc.json"), twoItems());
}
#endif

}  // namespace
