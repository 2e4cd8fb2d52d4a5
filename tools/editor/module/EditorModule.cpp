//
// EditorModule.cpp
//
// The module holds the editing sessions of the files open in the page (one,
// or the files of a scheme), each on a file in its own in-memory folder: a
// session reads, saves and compares that file as it does a file on disk, and
// the page moves the bytes between it and the user's real file.
//

#include "EditorModule.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

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

// One open file: its session, in a folder of its own.
struct Editing {
    std::unique_ptr<EditorSession> session;
    std::string folder;
};

// Every open file, in the scheme's order, and the API over all of them.
struct Held {
    std::vector<Editing> files;
    std::unique_ptr<EditorApi> api;
    int opened = 0;
};

Held& held() {
    static Held all;
    return all;
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

// Serves every open file: a request names its file as the server's do.
void serveAll() {
    Held& all = held();
    std::vector<EditorSession*> sessions;
    for (const Editing& file : all.files) {
        sessions.push_back(file.session.get());
    }
    all.api.reset(new EditorApi(sessions));
}

// Opens `name` as a session in a folder of its own, the file holding `bytes`
// unless `blank`, as file `slot` of the scheme: in place of the one there,
// after the last for the next slot, in place of them all for a negative one.
// When the file does not load, the files held stay, and `refusal` says why.
bool openSession(const std::string& name, const std::string& bytes, bool joystick, bool blank,
                 int slot, std::string& refusal) {
    Held& all = held();
    const std::string folder = std::string(kRoot) + "/" + std::to_string(++all.opened);
    Poco::File(folder).createDirectories();
    std::string error;
    if (chdir(folder.c_str()) != 0 ||
        (!blank && !km::WriteNewTextFile(name, bytes, std::string(), error))) {
        removeFolder(folder);
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
        return false;
    }
    const std::size_t at =
        slot < 0 ? 0 : std::min(static_cast<std::size_t>(slot), all.files.size());
    if (slot < 0) {
        for (std::size_t i = 1; i < all.files.size(); ++i) {
            removeFolder(all.files[i].folder);
        }
        all.files.resize(std::min<std::size_t>(all.files.size(), 1));
    }
    if (at == all.files.size()) {
        all.files.emplace_back();
    } else {
        removeFolder(all.files[at].folder);
    }
    all.files[at].session = std::move(session);
    all.files[at].folder = folder;
    serveAll();
    return true;
}

Held& current() {
    Held& all = held();
    if (!all.api) {
        std::string ignored;
        openSession("keymap.json", std::string(), false, true, -1, ignored);
    }
    return all;
}

ZunoAnswer* request(const std::string& method, const std::string& target, std::string body) {
    HttpRequest request;
    request.method = method;
    request.target = target;
    request.body = std::move(body);
    if (!request.body.empty() || method == "PUT" || method == "POST") {
        request.headers.emplace_back("Content-Type", "application/json");
    }
    Held& all = current();
    // A session names its file by the name alone: it works in the file's folder.
    const EditorSession* named = all.api->sessionOf(request);
    for (const Editing& file : all.files) {
        if (file.session.get() == named && chdir(file.folder.c_str()) != 0) {
            return failure(500, "cannot reach the folder of " + file.session->file());
        }
    }
    auto* result = new ZunoAnswer();
    result->response = all.api->handle(request);
    return result;
}

}  // namespace

extern "C" {

EMSCRIPTEN_KEEPALIVE ZunoAnswer* zuno_editor_open(const char* name, const char* bytes,
                                                  std::size_t size, int joystick, int blank,
                                                  int slot) {
    return guarded([&] {
        const std::string file = fileName(name);
        std::string refusal;
        if (!openSession(file, text(bytes, size), joystick != 0, blank != 0, slot, refusal)) {
            return failure(422, file + " does not load: " + refusal);
        }
        const std::size_t at = slot < 0 ? 0 : std::min<std::size_t>(slot, held().files.size() - 1);
        return request("GET", "/api/state?file=" + std::to_string(at), std::string());
    });
}

EMSCRIPTEN_KEEPALIVE ZunoAnswer* zuno_editor_close(int first, int count) {
    return guarded([&] {
        Held& all = current();
        const std::size_t size = all.files.size();
        if (first < 0 || count < 0 || static_cast<std::size_t>(count) >= size ||
            static_cast<std::size_t>(first) > size - count) {
            return failure(422, "no such files to close: one at least stays open");
        }
        const auto from = all.files.begin() + first;
        for (auto file = from; file != from + count; ++file) {
            removeFolder(file->folder);
        }
        all.files.erase(from, from + count);
        serveAll();
        return request("GET", "/api/files", std::string());
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
