//
// HttpWire.cpp
//

#include "HttpWire.h"

#include <Poco/String.h>

namespace zunokeymap {
namespace editor {

namespace {

RequestHead refuse(RequestHead head, int status, const std::string& error) {
    head.status = status;
    head.error = error;
    head.keepAlive = false;
    return head;
}

bool isToken(const std::string& text) {
    if (text.empty()) {
        return false;
    }
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (u <= 32 || u >= 127 ||
            std::string("()<>@,;:\\\"/[]?={}").find(c) != std::string::npos) {
            return false;
        }
    }
    return true;
}

}  // namespace

RequestHead ParseRequestHead(const std::string& text) {
    RequestHead head;
    std::size_t at = 0;
    bool first = true;
    int hosts = 0;
    int lengths = 0;
    bool http10 = false;
    std::string connection;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) {
            end = text.size();
        }
        std::string line = text.substr(at, end - at);
        at = end + 1;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.find_first_of(std::string("\r\0", 2)) != std::string::npos) {
            return refuse(head, 400, "a control character in the head");
        }
        if (first) {
            first = false;
            const std::size_t space1 = line.find(' ');
            const std::size_t space2 =
                space1 == std::string::npos ? space1 : line.find(' ', space1 + 1);
            if (space2 == std::string::npos || line.find(' ', space2 + 1) != std::string::npos) {
                return refuse(head, 400, "a malformed request line");
            }
            head.request.method = line.substr(0, space1);
            head.request.target = line.substr(space1 + 1, space2 - space1 - 1);
            const std::string version = line.substr(space2 + 1);
            if (!isToken(head.request.method) || head.request.target.empty()) {
                return refuse(head, 400, "a malformed request line");
            }
            if (version != "HTTP/1.1" && version != "HTTP/1.0") {
                return refuse(head, version.compare(0, 5, "HTTP/") == 0 ? 505 : 400,
                              "only HTTP/1.1 is spoken here");
            }
            http10 = version == "HTTP/1.0";
            continue;
        }
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos || !isToken(line.substr(0, colon))) {
            return refuse(head, 400, "a malformed header line");
        }
        const std::string name = line.substr(0, colon);
        const std::string value = Poco::trim(line.substr(colon + 1));
        if (Poco::icompare(name, "Host") == 0) {
            ++hosts;
        } else if (Poco::icompare(name, "Content-Length") == 0) {
            ++lengths;
            if (value.empty() || value.size() > 18 ||
                value.find_first_not_of("0123456789") != std::string::npos) {
                return refuse(head, 400, "a Content-Length that is not a number");
            }
            head.contentLength = static_cast<std::size_t>(std::stoull(value));
        } else if (Poco::icompare(name, "Transfer-Encoding") == 0) {
            return refuse(head, 501, "no Transfer-Encoding is taken here: send a Content-Length");
        } else if (Poco::icompare(name, "Connection") == 0) {
            connection = Poco::toLower(value);
        }
        head.request.headers.emplace_back(name, value);
    }
    if (first) {
        return refuse(head, 400, "no request line");
    }
    if (hosts != 1) {
        return refuse(head, 400, "a request names exactly one Host");
    }
    if (lengths > 1) {
        return refuse(head, 400, "a request has at most one Content-Length");
    }
    if (lengths == 0 && (head.request.method == "POST" || head.request.method == "PUT")) {
        return refuse(head, 411, "a body needs a Content-Length");
    }
    head.keepAlive = http10 ? connection == "keep-alive" : connection != "close";
    return head;
}

const char* ReasonPhrase(int status) {
    switch (status) {
        case 200:
            return "OK";
        case 204:
            return "No Content";
        case 304:
            return "Not Modified";
        case 400:
            return "Bad Request";
        case 401:
            return "Unauthorized";
        case 403:
            return "Forbidden";
        case 404:
            return "Not Found";
        case 405:
            return "Method Not Allowed";
        case 408:
            return "Request Timeout";
        case 409:
            return "Conflict";
        case 411:
            return "Length Required";
        case 413:
            return "Content Too Large";
        case 415:
            return "Unsupported Media Type";
        case 422:
            return "Unprocessable Content";
        case 431:
            return "Request Header Fields Too Large";
        case 500:
            return "Internal Server Error";
        case 501:
            return "Not Implemented";
        case 503:
            return "Service Unavailable";
        case 505:
            return "HTTP Version Not Supported";
        default:
            return status < 400 ? "OK" : status < 500 ? "Bad Request" : "Internal Server Error";
    }
}

std::string FormatResponse(const HttpResponse& response, bool keepAlive) {
    std::string out = "HTTP/1.1 " + std::to_string(response.status) + " " +
                      ReasonPhrase(response.status) + "\r\n";
    for (const auto& header : response.headers) {
        // A header of the answer never carries a line end into the head.
        if (header.first.find_first_of("\r\n:") == std::string::npos &&
            header.second.find_first_of("\r\n") == std::string::npos) {
            out += header.first + ": " + header.second + "\r\n";
        }
    }
    out += "Content-Length: " + std::to_string(response.body.size()) + "\r\n";
    out += keepAlive ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n";
    return out + response.body;
}

}  // namespace editor
}  // namespace zunokeymap
