//
// EditorServer.h
//
// The editor's HTTP server: Poco's HTTPServer on 127.0.0.1, handing every
// request to EditorApi. It reads at most EditorApi::kMaxBody bytes of a body
// and only after EditorApi::screen let the request through.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITORSERVER_H
#define ZUNO_KEYMAP_EDITOR_EDITORSERVER_H

#include <memory>

#include "EditorApi.h"

namespace Poco {
namespace Net {
class HTTPServer;
}
}  // namespace Poco

namespace zunokeymap {
namespace editor {

class EditorServer {
public:
    /// Binds 127.0.0.1:`port` (0 for any free port) and tells `api` the port
    /// bound. Throws Poco::Exception when the port cannot be bound.
    EditorServer(EditorApi& api, int port);
    ~EditorServer();

    EditorServer(const EditorServer&) = delete;
    EditorServer& operator=(const EditorServer&) = delete;

    int port() const { return port_; }

    /// Serves on threads of its own until stop() or destruction.
    void start();
    /// Stops accepting and waits for the requests under way.
    void stop();

private:
    std::unique_ptr<Poco::Net::HTTPServer> server_;
    int port_ = 0;
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITORSERVER_H
