//
// HttpWire.h
//
// HTTP/1.1 as the editor's server reads and writes it: a request head parsed
// strictly (anything a browser would not send is refused, so that no two
// programs can read one request two ways), and an answer written whole. Pure
// functions, so that tests and the fuzzer reach them without sockets.
//

#ifndef ZUNO_KEYMAP_EDITOR_HTTPWIRE_H
#define ZUNO_KEYMAP_EDITOR_HTTPWIRE_H

#include <cstddef>
#include <string>

#include "HttpMessage.h"

namespace zunokeymap {
namespace editor {

/// A request head as read from the wire.
struct RequestHead {
    /// 0 when the head is a request the server takes; else the status to
    /// answer with (400, 411, 431, 501, 505), after which the connection
    /// closes.
    int status = 0;
    std::string error;  ///< why, when status is not 0
    HttpRequest request;
    std::size_t contentLength = 0;  ///< the body's length (0 without one)
    bool keepAlive = true;          ///< whether the client lets the connection stay
};

/// Parses the head `text` (the request line and header lines, CRLF or LF
/// ends, without the empty line that ends it). Refused: a malformed request
/// line or header, a version other than HTTP/1.0 and 1.1, more than one Host
/// or Content-Length, a Content-Length that is not a plain number, any
/// Transfer-Encoding (the page never sends one), and a POST or PUT without a
/// Content-Length.
RequestHead ParseRequestHead(const std::string& text);

/// The reason phrase of `status` ("Not Found").
const char* ReasonPhrase(int status);

/// `response` as bytes on the wire: always "HTTP/1.1", the status with its
/// own reason phrase, the headers, Content-Length and Connection.
std::string FormatResponse(const HttpResponse& response, bool keepAlive);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_HTTPWIRE_H
