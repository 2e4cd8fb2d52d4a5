//
// EditorModule.cpp
//
// The module holds one editing session at a time, on a file in its own
// in-memory file system: the session reads, saves and compares that file as
// it does a file on disk, and the page moves the bytes between it and the
// user's real file.
//

#include "EditorModule.h"

#include <unistd.h>

#include <memory>
#include <string>

#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/Path.h>
#include <emscripten/emscripten.h>
#include <zuno-keymapmanager/api/TextFile.h>

#include "CheckReport.h"
#include "EditorApi.h"
#include "EditorSession.h"
#include "SvgRenderer.h"

namespace km = zunokeymapmanager;
using zunokeymap::editor::EditorApi;
using zunokeymap::editor::EditorSession;
using zunokeymap::editor::HttpRequest;
using zunokeymap::editor::HttpResponse;

struct ZunoAnswer {
    HttpResponse response;
    std::string headers;
};

namespace {

// Each opened file gets a folder of its own under this one, which is then
// the working folder: the file's name alone names it in reports, as it does
// for the tool run beside the file.
const char* const kRoot = "/keymaps";

struct Editing {
    std::unique_ptr<EditorSession> session;
    std::unique_ptr<EditorApi> api;
    std::string folder;
    int opened = 0;
};

Editing& editing() {
    static Editing held;
    return held;
}

ZunoAnswer* answer(int status, const std::string& type, std::string body) {
    auto* result = new ZunoAnswer();
    result->response.status = status;
    result->response.set("Content-Type", type);
    result->response.body = std::move(body);
    return result;
}

ZunoAnswer* failure(int status, const std::string& message) {
    auto* result = new ZunoAnswer();
    result->response = EditorApi::ErrorResponse(status, message);
    return result;
}

// Anything thrown becomes a 500, as the server answers it.
template <typename Work>
ZunoAnswer* guarded(Work work) {
    try {
        return work();
    } catch (const std::exception& e) {
        return failure(500, std::string("internal error: ") + e.what());
    } catch (...) {
        return failure(500, "internal error");
    }
}

std::string text(const char* bytes, std::size_t size) {
    return bytes == nullptr ? std::string() : std::string(bytes, size);
}

std::string fileName(const char* name) {
    const std::string base = Poco::Path(name == nullptr ? "" : name).getFileName();
    return base.empty() || base == "." || base == ".." ? std::string("keymap.json") : base;
}

void removeFolder(const std::string& folder) {
    try {
        Poco::File(folder).remove(true);
    } catch (const Poco::Exception&) {
        // Only memory is lost: the next open starts in another folder.
    }
}

// Opens `name` as a session in a folder of its own, the file holding `bytes`
// unless `blank`. The session then replaces the one held; when the file does
// not load, the held one stays, and `refusal` says why.
bool openSession(const std::string& name, const std::string& bytes, bool joystick, bool blank,
                 std::string& refusal) {
    Editing& held = editing();
    const std::string folder = std::string(kRoot) + "/" + std::to_string(++held.opened);
    Poco::File(folder).createDirectories();
    std::string error;
    if (chdir(folder.c_str()) != 0 ||
        (!blank && !km::WriteNewTextFile(name, bytes, std::string(), error))) {
        removeFolder(folder);
        if (!held.folder.empty()) {
            chdir(held.folder.c_str());
        }
        throw Poco::IOException("cannot place " + name + " in the module's file system: " + error);
    }
    zunokeymap::render::RenderOptions picture;
    picture.title = name;
    // The same picture as the served editor's: each control's description beside it.
    picture.labels = true;
    std::unique_ptr<EditorSession> session(new EditorSession(name, joystick, picture));
    if (session->opened() == EditorSession::Opened::Failed ||
        session->opened() == EditorSession::Opened::Unreadable) {
        refusal = session->openDiagnostic().message;
        removeFolder(folder);
        if (!held.folder.empty() && chdir(held.folder.c_str()) != 0) {
            throw Poco::IOException("cannot return to the open document's folder");
        }
        return false;
    }
    held.api.reset(new EditorApi(*session));
    held.session = std::move(session);
    if (!held.folder.empty()) {
        removeFolder(held.folder);
    }
    held.folder = folder;
    return true;
}

Editing& current() {
    Editing& held = editing();
    if (!held.api) {
        std::string ignored;
        openSession("keymap.json", std::string(), false, true, ignored);
    }
    return held;
}

ZunoAnswer* request(const std::string& method, const std::string& target, std::string body) {
    HttpRequest request;
    request.method = method;
    request.target = target;
    request.body = std::move(body);
    if (!request.body.empty() || method == "PUT" || method == "POST") {
        request.headers.emplace_back("Content-Type", "application/json");
    }
    auto* result = new ZunoAnswer();
    result->response = current().api->handle(request);
    return result;
}

}  // namespace

extern "C" {

EMSCRIPTEN_KEEPALIVE ZunoAnswer* zuno_editor_open(const char* name, const char* bytes,
                                                  std::size_t size, int joystick, int blank) {
    return guarded([&] {
        const std::string file = fileName(name);
        std::string refusal;
        if (!openSession(file, text(bytes, size), joystick != 0, blank != 0, refusal)) {
            return failure(422, file + " does not load: " + refusal);
        }
        return request("GET", "/api/state", std::string());
    });
}

EMSCRIPTEN_KEEPALIVE ZunoAnswer* zuno_editor_request(const char* method, const char* target,
                                                     const char* body, std::size_t size) {
    return guarded([&] {
        const auto string = [](const char* value) {
            return value == nullptr ? std::string() : std::string(value);
        };
        return request(string(method), string(target), text(body, size));
    });
}

EMSCRIPTEN_KEEPALIVE ZunoAnswer* zuno_keymap_check(const char* name, const char* bytes,
                                                   std::size_t size, int joystick) {
    return guarded([&] {
        const std::string source = name == nullptr ? std::string() : std::string(name);
        const km::CheckReport report =
            km::CheckKeymapDocument(text(bytes, size), joystick != 0, source);
        zunokeymap::CheckSummary summary;
        summary.files = 1;
        summary.add(report);
        return answer(200, "application/json",
                      zunokeymap::CheckJsonText({{source, &report}}, summary));
    });
}

EMSCRIPTEN_KEEPALIVE ZunoAnswer* zuno_keymap_render(const char* name, const char* bytes,
                                                    std::size_t size, int joystick) {
    return guarded([&] {
        const std::string source = name == nullptr ? std::string() : std::string(name);
        const std::string document = text(bytes, size);
        km::LoadDiagnostic diagnostic;
        std::unique_ptr<km::KeymapConfig> doc(km::ReadKeymapDocument(
            km::DocumentOrigin::Text, source, document, joystick != 0, diagnostic));
        if (diagnostic.failed) {
            return failure(422, diagnostic.message);
        }
        return answer(
            200, "image/svg+xml",
            zunokeymap::render::RenderDocumentSvg(*doc, document, joystick != 0, source, {}));
    });
}

EMSCRIPTEN_KEEPALIVE int zuno_answer_status(const ZunoAnswer* answer) {
    return answer->response.status;
}

EMSCRIPTEN_KEEPALIVE const char* zuno_answer_headers(ZunoAnswer* answer) {
    answer->headers.clear();
    for (const auto& header : answer->response.headers) {
        answer->headers += header.first + ": " + header.second + "\n";
    }
    return answer->headers.c_str();
}

EMSCRIPTEN_KEEPALIVE const char* zuno_answer_body(const ZunoAnswer* answer) {
    return answer->response.body.data();
}

EMSCRIPTEN_KEEPALIVE std::size_t zuno_answer_size(const ZunoAnswer* answer) {
    return answer->response.body.size();
}

EMSCRIPTEN_KEEPALIVE void zuno_answer_free(ZunoAnswer* answer) {
    delete answer;
}
}
