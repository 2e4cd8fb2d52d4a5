//
// HttpMessage.h
//
// A request and a response as plain values, so that the editor's request
// handling is a function of them: the HTTP server wraps it, and tests and the
// fuzzer call it without sockets.
//

#ifndef ZUNO_KEYMAP_EDITOR_HTTPMESSAGE_H
#define ZUNO_KEYMAP_EDITOR_HTTPMESSAGE_H

#include <string>
#include <utility>
#include <vector>

namespace zunokeymap {
namespace editor {

using HeaderList = std::vector<std::pair<std::string, std::string>>;

struct HttpRequest {
    std::string method;  ///< "GET", "PUT", ...
    std::string target;  ///< path and query, as on the request line
    HeaderList headers;
    std::string body;

    /// The first header named `name` (case-insensitive); `found` says whether
    /// there was one.
    std::string header(const std::string& name, bool* found = nullptr) const;
    /// The target's path, without the query.
    std::string path() const;
    /// The value of the query parameter `name`, percent-decoded; empty when absent.
    std::string query(const std::string& name, bool* found = nullptr) const;
};

struct HttpResponse {
    int status = 200;
    HeaderList headers;
    std::string body;

    void set(const std::string& name, const std::string& value);
    std::string header(const std::string& name) const;
};

/// Whether `a` and `b` are equal, in a time that depends only on their lengths.
bool EqualInConstantTime(const std::string& a, const std::string& b);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_HTTPMESSAGE_H
