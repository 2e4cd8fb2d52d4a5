// Editor requests: the input is one HTTP request as the handler sees it. The
// first byte picks the method and whether the request shows the right Host
// and token (so that most inputs reach the routes), then come the target up
// to a newline, header lines up to an empty line, and the body. Every answer
// must be one the contract names; a 500 is a fault.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <Poco/File.h>
#include <Poco/TemporaryFile.h>

#include "EditorApi.h"
#include "HttpWire.h"

using namespace zunokeymap::editor;

namespace {

const char* const kToken = "00112233445566778899aabbccddeeff";
const int kPort = 8123;

struct Editor {
    std::string dir;
    std::unique_ptr<EditorSession> session;
    std::unique_ptr<EditorApi> api;

    Editor() {
        // In memory where the system offers it: saves are part of the surface.
        dir = Poco::File("/dev/shm").exists() ? Poco::TemporaryFile::tempName("/dev/shm")
                                              : Poco::TemporaryFile::tempName();
        Poco::File(dir).createDirectories();
        session.reset(new EditorSession(dir + "/doc.json", false, {}));
        api.reset(new EditorApi(*session, kToken, kPort));
    }
    ~Editor() { Poco::File(dir).remove(true); }
};

std::string takeLine(const std::string& data, std::size_t& at) {
    const std::size_t end = data.find('\n', at);
    const std::string line = data.substr(at, end == std::string::npos ? end : end - at);
    at = end == std::string::npos ? data.size() : end + 1;
    return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static Editor editor;
    if (size == 0) {
        return 0;
    }
    static const char* const kMethods[] = {"GET", "PUT", "POST", "DELETE", "HEAD", "OPTIONS"};
    const std::string data(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    HttpRequest request;
    request.method = kMethods[bytes[0] % 6];
    if ((bytes[0] & 0x40) == 0) {
        request.headers.emplace_back("Host", "127.0.0.1:" + std::to_string(kPort));
        request.headers.emplace_back("Authorization", std::string("Bearer ") + kToken);
        request.headers.emplace_back("Content-Type", "application/json");
    }
    std::size_t at = 0;
    request.target = takeLine(data, at);
    for (std::string line = takeLine(data, at); !line.empty() && at < data.size();
         line = takeLine(data, at)) {
        const std::size_t colon = line.find(':');
        request.headers.emplace_back(line.substr(0, colon),
                                     colon == std::string::npos ? "" : line.substr(colon + 1));
    }
    request.body = data.substr(at);

    // The same bytes as a head on the wire: parsed strictly or refused.
    const RequestHead head = ParseRequestHead(data.substr(0, data.find("\n\n")));
    if (head.status != 0 && head.status != 400 && head.status != 411 && head.status != 501 &&
        head.status != 505) {
        std::abort();
    }

    const HttpResponse response = editor.api->handle(request);
    if (FormatResponse(response, true).compare(0, 9, "HTTP/1.1 ") != 0) {
        std::abort();
    }
    switch (response.status) {
        case 200:
        case 400:
        case 401:
        case 403:
        case 404:
        case 405:
        case 409:
        case 413:
        case 415:
        case 422:
            break;
        default:
            std::fprintf(stderr, "unexpected status %d: %s\n", response.status,
                         response.body.c_str());
            std::abort();
    }
    return 0;
}
