//
// EditorServer.h
//
// The editor's HTTP server on 127.0.0.1: Poco's TCPServer, with each
// connection reading HTTP/1.1 itself against deadlines and handing every
// request to EditorApi. It reads at most EditorApi::kMaxBody bytes of a body
// and only after EditorApi::screen let the request through.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITORSERVER_H
#define ZUNO_KEYMAP_EDITOR_EDITORSERVER_H

#include <memory>

#include "EditorApi.h"

namespace Poco {
namespace Net {
class TCPServer;
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
    /// Stops accepting and waits (bounded by the request deadlines) for the
    /// requests under way, so that nothing they use is torn down under them.
    void stop();

private:
    std::unique_ptr<Poco::Net::TCPServer> server_;
    int port_ = 0;
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITORSERVER_H
