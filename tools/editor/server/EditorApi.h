//
// EditorApi.h
//
// The editor's HTTP contract as one function of a request: the door (Host,
// token, method, size and type of the body) and every route behind it. The
// server only moves bytes between sockets and this class; see docs/editor.md.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITORAPI_H
#define ZUNO_KEYMAP_EDITOR_EDITORAPI_H

#include <cstddef>
#include <string>

#include "AnswerParts.h"
#include "EditorSession.h"
#include "HttpMessage.h"

namespace zunokeymap {
namespace editor {

class EditorApi {
public:
    /// The most edits one request may carry; more are answered 413.
    static constexpr std::size_t kMaxEdits = 1000;

    /// The largest body read; a larger one is answered 413.
    static constexpr std::size_t kMaxBody = 16U * 1024U * 1024U;

    /// Serves `session` on 127.0.0.1:`port` to clients that show `token`.
    EditorApi(EditorSession& session, std::string token, int port);

    /// Serves `session` to a page in this very process (the editor built for
    /// the browser): no socket, so no Host or token to check.
    explicit EditorApi(EditorSession& session);

    /// Answers what can be decided from the method, the target and the
    /// headers alone: a response with status 0 lets the request through, to
    /// have its body read (at most kMaxBody bytes) and be handled.
    HttpResponse screen(const HttpRequest& request) const;

    /// The answer to `request`, its body read whole. Never throws.
    HttpResponse handle(const HttpRequest& request);

    const std::string& token() const { return token_; }
    int port() const { return port_; }
    void setPort(int port) { port_ = port; }

    /// For tests of the page against a slow server: every /api/ answer waits
    /// a random time up to `milliseconds` (at most 5000) before it is given.
    void setTestDelay(int milliseconds);

    /// A fresh token: 256 random bits from the system, as hexadecimal.
    static std::string MakeToken();

    /// The answer the API gives for an error: `{"status": N, "error": message}`.
    static HttpResponse ErrorResponse(int status, const std::string& message);

private:
    struct Route;
    static const Route* findRoute(const std::string& path);
    HttpResponse dispatch(const HttpRequest& request);

    HttpResponse getDocument(const HttpRequest& request);
    HttpResponse putDocument(const HttpRequest& request);
    HttpResponse getCheck(const HttpRequest& request);
    HttpResponse getRender(const HttpRequest& request);
    HttpResponse postSave(const HttpRequest& request);
    HttpResponse getState(const HttpRequest& request);
    HttpResponse getRecovery(const HttpRequest& request);
    HttpResponse postRecoveryOpen(const HttpRequest& request);
    HttpResponse postRecoveryDismiss(const HttpRequest& request);
    HttpResponse getSchema(const HttpRequest& request);
    HttpResponse getTypes(const HttpRequest& request);
    HttpResponse getTemplates(const HttpRequest& request);
    HttpResponse getTemplate(const HttpRequest& request);
    HttpResponse getItem(const HttpRequest& request);
    HttpResponse getKey(const HttpRequest& request);
    HttpResponse postMacroCheck(const HttpRequest& request);
    HttpResponse postMacroRunning(const HttpRequest& request);
    HttpResponse getSnapshot(const HttpRequest& request);
    /// The answer to an edit: the snapshot, or, when the page shows the
    /// version `since` of the last answer, only what changed since.
    std::string editAnswer(EditorSession::Snapshot shot, const std::vector<EditResult>& results,
                           long long since);
    HttpResponse postEdit(const HttpRequest& request);
    HttpResponse getShapes(const HttpRequest& request);
    HttpResponse postTrigger(const HttpRequest& request);
    HttpResponse getBackground(const HttpRequest& request);
    HttpResponse postReload(const HttpRequest& request);
    HttpResponse getVersion(const HttpRequest& request);
    HttpResponse postScreenTurn(const HttpRequest& request);
    HttpResponse getPage(const HttpRequest& request) const;

    EditorSession& session_;
    AnswerBasis basis_;  ///< what the last edit's answer showed
    const std::string token_;
    int port_;
    const bool door_;  ///< whether requests come over a socket, through the door
    int testDelay_ = 0;
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITORAPI_H
