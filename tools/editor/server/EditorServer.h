//
// EditorServer.h
//
// The editor's HTTP server on 127.0.0.1. One door thread accepts every
// connection and reads every request head and body without blocking, against
// deadlines; only whole requests that EditorApi::screen let through reach the
// workers that call EditorApi::handle. Clients that send slowly, or connect
// and send nothing, hold no worker, and beyond a cap the oldest of those that
// have not yet sent a head are dropped to make room for new ones.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITORSERVER_H
#define ZUNO_KEYMAP_EDITOR_EDITORSERVER_H

#include <memory>

#include "EditorApi.h"

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

    /// Serves on threads of its own until stop() or destruction. Throws
    /// std::system_error when no thread can be started.
    void start();
    /// Stops accepting connections and passing requests to the API (later
    /// ones are answered 503), and waits a few seconds at most for those the
    /// API is handling: after it, no client changes the session.
    void closeDoor();
    /// closeDoor(), then gives the answers under way two seconds at most to
    /// be written, closes every connection and ends the server's threads.
    void stop();

private:
    class Door;
    std::unique_ptr<Door> door_;
    int port_ = 0;
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITORSERVER_H
