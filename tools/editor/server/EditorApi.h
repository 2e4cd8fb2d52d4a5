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
#include <vector>

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

    /// Serves the files of a scheme, each its own session, on
    /// 127.0.0.1:`port`. A request names its file in the `file` query
    /// parameter, by its index in `sessions` or its name; without it, the
    /// first is meant. `sessions` must not be empty.
    EditorApi(std::vector<EditorSession*> sessions, std::string token, int port);

    /// Serves `session` to a page in this very process (the editor built for
    /// the browser): no socket, so no Host or token to check.
    explicit EditorApi(EditorSession& session);

    /// Serves the files of a scheme to a page in this very process.
    explicit EditorApi(std::vector<EditorSession*> sessions);

    /// Answers what can be decided from the method, the target and the
    /// headers alone: a response with status 0 lets the request through, to
    /// have its body read (at most kMaxBody bytes) and be handled.
    HttpResponse screen(const HttpRequest& request) const;

    /// The answer to `request`, its body read whole. Never throws.
    HttpResponse handle(const HttpRequest& request);

    /// The session the request's `file` names; null for none.
    EditorSession* sessionOf(const HttpRequest& request) const;

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

    HttpResponse getDocument(EditorSession& session, const HttpRequest& request);
    HttpResponse putDocument(EditorSession& session, const HttpRequest& request);
    HttpResponse getCheck(EditorSession& session, const HttpRequest& request);
    HttpResponse getRender(EditorSession& session, const HttpRequest& request);
    HttpResponse postSave(EditorSession& session, const HttpRequest& request);
    HttpResponse getState(EditorSession& session, const HttpRequest& request);
    HttpResponse getFiles(EditorSession& session, const HttpRequest& request);
    HttpResponse getRecovery(EditorSession& session, const HttpRequest& request);
    HttpResponse postRecoveryOpen(EditorSession& session, const HttpRequest& request);
    HttpResponse postRecoveryDismiss(EditorSession& session, const HttpRequest& request);
    HttpResponse getSchema(EditorSession& session, const HttpRequest& request);
    HttpResponse getTypes(EditorSession& session, const HttpRequest& request);
    HttpResponse getTemplates(EditorSession& session, const HttpRequest& request);
    HttpResponse getTemplate(EditorSession& session, const HttpRequest& request);
    HttpResponse getItem(EditorSession& session, const HttpRequest& request);
    HttpResponse getKey(EditorSession& session, const HttpRequest& request);
    HttpResponse postMacroCheck(EditorSession& session, const HttpRequest& request);
    HttpResponse postMacroRunning(EditorSession& session, const HttpRequest& request);
    HttpResponse getSnapshot(EditorSession& session, const HttpRequest& request);
    /// The answer to an edit of `session`: the snapshot, or, when the page
    /// shows the version `since` of the last answer, only what changed since.
    std::string editAnswer(EditorSession& session, const std::vector<EditResult>& results,
                           long long since);
    HttpResponse postEdit(EditorSession& session, const HttpRequest& request);
    HttpResponse getShapes(EditorSession& session, const HttpRequest& request);
    HttpResponse postTrigger(EditorSession& session, const HttpRequest& request);
    HttpResponse getBackground(EditorSession& session, const HttpRequest& request);
    HttpResponse postReload(EditorSession& session, const HttpRequest& request);
    HttpResponse getVersion(EditorSession& session, const HttpRequest& request);
    HttpResponse postScreenTurn(EditorSession& session, const HttpRequest& request);
    HttpResponse getPage(const HttpRequest& request) const;

    const std::vector<EditorSession*> sessions_;
    AnswerBasis basis_;  ///< what the last edit's answer showed
    const std::string token_;
    int port_;
    const bool door_;  ///< whether requests come over a socket, through the door
    int testDelay_ = 0;
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITORAPI_H
