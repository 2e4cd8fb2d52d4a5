//
// EditorApi.cpp
//

#include "EditorApi.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include <Poco/Exception.h>
#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <Poco/Path.h>
#include <Poco/RandomStream.h>
#include <Poco/String.h>

#include "ApiMessages.h"
#include "Captions.h"
#include "CheckReport.h"
#include "ItemGeometry.h"
#include "PageAssets.h"

namespace zunokeymap {
namespace editor {

using Poco::JSON::Array;
using Poco::JSON::Object;

namespace {

// The key that `get` ("device", "scan_code" or "text") names,
// built by the library; false with the reason when it names none.
template <typename Get>
bool keyOf(Get get, km::ConfigKey& key, std::string& error, bool noneAllowed) {
    const std::string device = get("device");
    if (device == "joystick") {
        const std::string text = get("text");
        if (text.empty() || text.find_first_of(" \t\r\n") != std::string::npos) {
            error = "a gamepad key needs the control's name in 'text'";
            return false;
        }
        key = km::ConfigKey(device, text, km::kUnsetKeyCode, km::kUnsetKeyCode);
        return true;
    }
    if (device == "keyboard" || device == "mouse") {
        // The virtual key comes from the library's table, as in the tool.
        int scanCode = 0;
        if (!ReadInt(get("scan_code"), scanCode)) {
            error = "a keyboard or mouse key needs scan_code";
            return false;
        }
        key = km::KeyOfCode(device, scanCode);
        return true;
    }
    if (device.empty() && noneAllowed) {
        key = km::ConfigKey();
        return true;
    }
    error = noneAllowed ? "device must be keyboard, mouse or joystick, or empty for no key"
                        : "device must be keyboard, mouse or joystick";
    return false;
}

std::string mimeOf(const std::string& name) {
    static const std::pair<const char*, const char*> kTypes[] = {
        {"html", "text/html; charset=utf-8"},
        {"css", "text/css; charset=utf-8"},
        {"js", "text/javascript; charset=utf-8"},
        {"mjs", "text/javascript; charset=utf-8"},
        {"json", "application/json"},
        {"svg", "image/svg+xml"},
        {"png", "image/png"},
    };
    const std::string extension = Poco::Path(name).getExtension();
    for (const auto& type : kTypes) {
        if (extension == type.first) {
            return type.second;
        }
    }
    return "application/octet-stream";
}

// Headers every answer carries: nothing is cached, sniffed, framed or referred
// (the page's address holds the token).
void secure(HttpResponse& response) {
    response.set("Cache-Control", "no-store");
    response.set("X-Content-Type-Options", "nosniff");
    response.set("Referrer-Policy", "no-referrer");
    response.set("X-Frame-Options", "DENY");
    if (Poco::startsWith(response.header("Content-Type"), std::string("text/html"))) {
        response.set("Content-Security-Policy",
                     "default-src 'none'; script-src 'self'; style-src 'self' 'unsafe-inline'; "
                     "img-src 'self' data: blob:; connect-src 'self'; base-uri 'none'; "
                     "form-action 'none'; frame-ancestors 'none'");
    }
}

}  // namespace

struct EditorApi::Route {
    const char* path;
    const char* method;
    bool jsonBody;  ///< changes state: takes a JSON body
    HttpResponse (EditorApi::*run)(EditorSession&, const HttpRequest&);
};

EditorApi::EditorApi(EditorSession& session, std::string token, int port)
    : EditorApi(std::vector<EditorSession*>{&session}, std::move(token), port) {}

EditorApi::EditorApi(std::vector<EditorSession*> sessions, std::string token, int port)
    : sessions_(std::move(sessions)), token_(std::move(token)), port_(port), door_(true) {}

EditorApi::EditorApi(EditorSession& session) : EditorApi(std::vector<EditorSession*>{&session}) {}

EditorApi::EditorApi(std::vector<EditorSession*> sessions)
    : sessions_(std::move(sessions)), port_(0), door_(false) {}

EditorSession* EditorApi::sessionOf(const HttpRequest& request) const {
    bool named = false;
    const std::string file = request.query("file", &named);
    if (!named) {
        return sessions_.empty() ? nullptr : sessions_.front();
    }
    // By its place in the scheme, or by its name: keymap names end in .json,
    // so no name is taken for a number.
    if (!file.empty() && file.size() < 6 &&
        file.find_first_not_of("0123456789") == std::string::npos) {
        const std::size_t index = std::stoul(file);
        return index < sessions_.size() ? sessions_[index] : nullptr;
    }
    for (EditorSession* session : sessions_) {
        if (Poco::Path(session->file()).getFileName() == file) {
            return session;
        }
    }
    return nullptr;
}

std::string EditorApi::MakeToken() {
    Poco::RandomInputStream random;
    unsigned char bytes[32] = {};
    random.read(reinterpret_cast<char*>(bytes), sizeof(bytes));
    if (random.gcount() != static_cast<std::streamsize>(sizeof(bytes))) {
        // A guessable token would open the door to every local process.
        throw Poco::IOException("cannot read random bytes for the editor's token");
    }
    static const char kHex[] = "0123456789abcdef";
    std::string token;
    for (unsigned char byte : bytes) {
        token += kHex[byte >> 4];
        token += kHex[byte & 15];
    }
    return token;
}

const EditorApi::Route* EditorApi::findRoute(const std::string& path) {
    static const Route kRoutes[] = {
        {"/api/document", "GET", false, &EditorApi::getDocument},
        {"/api/document", "PUT", true, &EditorApi::putDocument},
        {"/api/check", "GET", false, &EditorApi::getCheck},
        {"/api/render.svg", "GET", false, &EditorApi::getRender},
        {"/api/save", "POST", true, &EditorApi::postSave},
        {"/api/state", "GET", false, &EditorApi::getState},
        {"/api/files", "GET", false, &EditorApi::getFiles},
        {"/api/recovery", "GET", false, &EditorApi::getRecovery},
        {"/api/recovery/open", "POST", true, &EditorApi::postRecoveryOpen},
        {"/api/recovery/dismiss", "POST", true, &EditorApi::postRecoveryDismiss},
        {"/api/schema", "GET", false, &EditorApi::getSchema},
        {"/api/types", "GET", false, &EditorApi::getTypes},
        {"/api/templates", "GET", false, &EditorApi::getTemplates},
        {"/api/template", "GET", false, &EditorApi::getTemplate},
        {"/api/item", "GET", false, &EditorApi::getItem},
        {"/api/key", "GET", false, &EditorApi::getKey},
        {"/api/macro/check", "POST", true, &EditorApi::postMacroCheck},
        {"/api/macro/running", "POST", true, &EditorApi::postMacroRunning},
        {"/api/snapshot", "GET", false, &EditorApi::getSnapshot},
        {"/api/edit", "POST", true, &EditorApi::postEdit},
        {"/api/shapes", "GET", false, &EditorApi::getShapes},
        {"/api/trigger", "POST", true, &EditorApi::postTrigger},
        {"/api/background", "GET", false, &EditorApi::getBackground},
        {"/api/reload", "POST", true, &EditorApi::postReload},
        {"/api/version", "GET", false, &EditorApi::getVersion},
        {"/api/screen/turn", "POST", true, &EditorApi::postScreenTurn},
        {nullptr, nullptr, false, nullptr},  // the end; routes of one path stand together
    };
    for (const Route* route = kRoutes; route->path != nullptr; ++route) {
        if (path == route->path) {
            return route;
        }
    }
    return nullptr;
}

HttpResponse EditorApi::ErrorResponse(int status, const std::string& message) {
    return RespondError(status, message);
}

HttpResponse EditorApi::screen(const HttpRequest& request) const {
    HttpResponse pass;
    pass.status = 0;

    // A page of another site that a DNS name points here still sends its own Host.
    const std::string host = Poco::toLower(request.header("Host"));
    const std::string port = ":" + std::to_string(port_);
    if (door_ && host != "127.0.0.1" + port && host != "localhost" + port) {
        return RespondError(403,
                            "the Host header must be 127.0.0.1" + port + " or localhost" + port);
    }

    const std::string path = request.path();
    if (path.empty() || path[0] != '/') {
        return RespondError(400, "the request target must be a path");
    }
    const bool api = Poco::startsWith(path, std::string("/api/"));
    if (api && door_) {
        std::string shown = request.query("token");
        const std::string authorization = request.header("Authorization");
        if (authorization.size() > 7 &&
            Poco::icompare(authorization.substr(0, 7), "Bearer ") == 0) {
            shown = Poco::trim(authorization.substr(7));
        }
        if (!EqualInConstantTime(shown, token_)) {
            HttpResponse denied = RespondError(401, "a valid token is required");
            denied.set("WWW-Authenticate", "Bearer");
            return denied;
        }
    }

    std::string allowed;
    bool jsonBody = false;
    if (api) {
        const Route* match = nullptr;
        for (const Route* route = findRoute(path);
             route != nullptr && route->path != nullptr && path == route->path; ++route) {
            allowed += allowed.empty() ? route->method : std::string(", ") + route->method;
            if (request.method == route->method) {
                match = route;
            }
        }
        if (allowed.empty()) {
            return RespondError(404, "no such endpoint: " + path);
        }
        if (match == nullptr) {
            HttpResponse wrong = RespondError(405, "use " + allowed + " on " + path);
            wrong.set("Allow", allowed);
            return wrong;
        }
        jsonBody = match->jsonBody;
    } else if (request.method != "GET") {
        HttpResponse wrong = RespondError(405, "the page is read with GET");
        wrong.set("Allow", "GET");
        return wrong;
    }

    bool hasLength = false;
    const std::string length = request.header("Content-Length", &hasLength);
    if (hasLength) {
        char* end = nullptr;
        const unsigned long long size = std::strtoull(length.c_str(), &end, 10);
        if (length.empty() || *end != '\0' || length[0] == '-') {
            return RespondError(400, "bad Content-Length");
        }
        if (size > kMaxBody) {
            return RespondError(413, "bodies are limited to 16 MiB");
        }
    }
    if (jsonBody) {
        std::string type = Poco::toLower(request.header("Content-Type"));
        type = Poco::trim(type.substr(0, type.find(';')));
        if (type != kJsonType) {
            return RespondError(415, "the body must be application/json");
        }
    }
    return pass;
}

void EditorApi::setTestDelay(int milliseconds) {
    testDelay_ = std::min(std::max(milliseconds, 0), 5000);
}

HttpResponse EditorApi::handle(const HttpRequest& request) {
    HttpResponse response;
    if (testDelay_ > 0 && Poco::startsWith(request.path(), std::string("/api/"))) {
        // Random, so that answers to requests sent together come back out of order.
        thread_local std::minstd_rand random(std::random_device{}());
        std::this_thread::sleep_for(
            std::chrono::milliseconds(std::uniform_int_distribution<int>(0, testDelay_)(random)));
    }
    try {
        response = screen(request);
        if (response.status == 0) {
            response = request.body.size() > kMaxBody
                           ? RespondError(413, "bodies are limited to 16 MiB")
                           : dispatch(request);
        }
    } catch (const std::exception& e) {
        response = RespondError(500, std::string("internal error: ") + e.what());
    } catch (...) {
        response = RespondError(500, "internal error");
    }
    secure(response);
    return response;
}

HttpResponse EditorApi::dispatch(const HttpRequest& request) {
    const std::string path = request.path();
    if (!Poco::startsWith(path, std::string("/api/"))) {
        return getPage(request);
    }
    EditorSession* session = sessionOf(request);
    if (session == nullptr) {
        return RespondError(404, "no such file in the scheme: " + request.query("file"));
    }
    for (const Route* route = findRoute(path);
         route != nullptr && route->path != nullptr && path == route->path; ++route) {
        if (request.method == route->method) {
            return (this->*route->run)(*session, request);
        }
    }
    return RespondError(405, "wrong method");  // screen() answered this already
}

HttpResponse EditorApi::getDocument(EditorSession& session, const HttpRequest&) {
    HttpResponse response = Respond(200, kJsonType, session.documentText());
    response.set("X-Keymap-Unsaved", session.unsaved() ? "true" : "false");
    return response;
}

HttpResponse EditorApi::putDocument(EditorSession& session, const HttpRequest& request) {
    km::LoadDiagnostic diagnostic;
    if (!session.replace(request.body, diagnostic)) {
        Object::Ptr extra = NewObject();
        extra->set("diagnostic", DiagnosticJson(diagnostic));
        const bool malformed = diagnostic.problem == km::LoadDiagnostic::Problem::Malformed;
        if (malformed) {
            extra->set("line", diagnostic.line);
            extra->set("column", diagnostic.column);
        }
        return RespondError(malformed ? 400 : 422, diagnostic.message, extra);
    }
    HttpResponse response = getCheck(session, request);
    response.set("X-Keymap-Unsaved", session.unsaved() ? "true" : "false");
    return response;
}

HttpResponse EditorApi::getCheck(EditorSession& session, const HttpRequest&) {
    std::string body;
    JsonWriter writer(body);
    WriteCheckReportJson(writer, session.file(), *session.check());
    return Respond(200, kJsonType, std::move(body));
}

HttpResponse EditorApi::getRender(EditorSession& session, const HttpRequest&) {
    return Respond(200, "image/svg+xml", session.renderSvg());
}

HttpResponse EditorApi::postSave(EditorSession& session, const HttpRequest& request) {
    long long version = 0;
    if (!request.body.empty()) {
        Poco::Dynamic::Var body;
        HttpResponse error;
        if (!ParseBody(request.body, body, error)) {
            return error;
        }
        const Object::Ptr object =
            body.type() == typeid(Object::Ptr) ? body.extract<Object::Ptr>() : Object::Ptr();
        if (!object.isNull() && object->has("version") &&
            !ReadWhole(object->get("version"), 1, version)) {
            return RespondError(422, "\"version\" must be a version the snapshot gave");
        }
    }
    const auto flag = [&request](const char* name) {
        const std::string value = request.query(name);
        return value == "1" || value == "true";
    };
    std::string message;
    long long held = 0;
    switch (session.save(flag("force"), flag("drop"), version, held, message)) {
        case EditorSession::SaveResult::Saved: {
            Object::Ptr body = NewObject();
            body->set("saved", true);
            body->set("file", session.file());
            body->set("version", held);
            return RespondJson(200, body);
        }
        case EditorSession::SaveResult::Stale: {
            Object::Ptr extra = NewObject();
            extra->set("stale", true);
            extra->set("version", held);
            return RespondError(409, message, extra);
        }
        case EditorSession::SaveResult::Conflict: {
            Object::Ptr extra = NewObject();
            extra->set("conflict", true);
            return RespondError(409, message, extra);
        }
        case EditorSession::SaveResult::WouldLose: {
            Object::Ptr extra = NewObject();
            Array::Ptr lost = new Array();
            for (const std::string& path : session.lost()) {
                lost->add(path);
            }
            extra->set("lost", lost);
            return RespondError(409, message, extra);
        }
        case EditorSession::SaveResult::Failed:
            break;
    }
    return RespondError(500, message);
}

HttpResponse EditorApi::getState(EditorSession& session, const HttpRequest&) {
    const std::pair<int, int> screen = session.screenSize();
    Object::Ptr body = NewObject();
    body->set("file", session.file());
    body->set("name", Poco::Path(session.file()).getFileName());
    body->set("new", session.opened() == EditorSession::Opened::Missing);
    body->set("joystick", session.joystick());
    body->set("unsaved", session.unsaved());
    body->set("width", screen.first);
    body->set("height", screen.second);
    body->set("background", !session.renderOptions().background.bytes.empty());
    // The frame of a macro script's points, whatever the screen.
    body->set("macro_width", km::kMacroScreenWidth);
    body->set("macro_height", km::kMacroScreenHeight);
    body->set("recovery", RecoveryJson(session.recoveries()));
    Array::Ptr lost = new Array();
    for (const std::string& path : session.lost()) {
        lost->add(path);
    }
    body->set("lost", lost);
    return RespondJson(200, body);
}

HttpResponse EditorApi::getFiles(EditorSession&, const HttpRequest&) {
    Array::Ptr files = new Array();
    for (std::size_t i = 0; i < sessions_.size(); ++i) {
        const EditorSession& session = *sessions_[i];
        const std::shared_ptr<const km::CheckReport> report = session.check();
        Object::Ptr entry = NewObject();
        entry->set("index", static_cast<int>(i));
        entry->set("name", Poco::Path(session.file()).getFileName());
        // The page's count of a file's problems is every finding, as the
        // shown file's own count is.
        entry->set("problems", static_cast<int>(report->findings.size()));
        entry->set("errors", static_cast<int>(report->errors()));
        entry->set("warnings", static_cast<int>(report->warnings()));
        entry->set("unsaved", session.unsaved());
        entry->set("version", session.version());
        files->add(entry);
    }
    Object::Ptr body = NewObject();
    body->set("files", files);
    return RespondJson(200, body);
}

HttpResponse EditorApi::getRecovery(EditorSession& session, const HttpRequest& request) {
    // Only the recovery files the session found can be read, by number.
    int n = 0;
    std::string text;
    if (!ReadInt(request.query("n").empty() ? "0" : request.query("n"), n) ||
        !session.recoveryText(n, text)) {
        return RespondError(404, "no such recovery file");
    }
    return Respond(200, kJsonType, text);
}

HttpResponse EditorApi::postRecoveryOpen(EditorSession& session, const HttpRequest& request) {
    int n = -1;
    HttpResponse error;
    if (!ReadRecoveryNumber(request.body, false, n, error)) {
        return error;
    }
    km::LoadDiagnostic diagnostic;
    if (!session.openRecovery(n, diagnostic)) {
        if (!diagnostic.failed) {
            return RespondError(404, "no such recovery file");
        }
        Object::Ptr extra = NewObject();
        extra->set("diagnostic", DiagnosticJson(diagnostic));
        return RespondError(422, diagnostic.message, extra);
    }
    return getSnapshot(session, request);
}

HttpResponse EditorApi::postRecoveryDismiss(EditorSession& session, const HttpRequest& request) {
    int n = -1;
    HttpResponse error;
    if (!ReadRecoveryNumber(request.body, true, n, error)) {
        return error;
    }
    if (!session.dismissRecovery(n)) {
        return RespondError(404, "no such recovery file");
    }
    Object::Ptr body = NewObject();
    body->set("recovery", RecoveryJson(session.recoveries()));
    return RespondJson(200, body);
}

HttpResponse EditorApi::getSchema(EditorSession&, const HttpRequest&) {
    const PageAsset* schema = FindPageAsset("keymap.schema.json");
    if (schema == nullptr) {
        return RespondError(404, "no schema was built in");
    }
    return Respond(200, kJsonType, std::string(schema->data, schema->size));
}

HttpResponse EditorApi::getTypes(EditorSession&, const HttpRequest&) {
    Array::Ptr types = new Array();
    for (const std::string_view type : km::kDocumentItemTypeNames) {
        types->add(std::string(type));
    }
    Object::Ptr body = NewObject();
    body->set("types", types);
    return RespondJson(200, body);
}

namespace {

// The starting layouts "New from template" offers, in the order shown.
const char* const kTemplates[][2] = {
    {"shooter", "Shooter: walk, fire, aim, skills"},
    {"moba", "MOBA: move, skills, items"},
    {"racing", "Racing: steer, throttle, brake"},
    {"gamepad", "Gamepad: sticks, triggers, buttons"},
};

}  // namespace

HttpResponse EditorApi::getTemplates(EditorSession&, const HttpRequest&) {
    Array::Ptr list = new Array();
    for (const auto& entry : kTemplates) {
        Object::Ptr one = NewObject();
        one->set("name", std::string(entry[0]));
        one->set("title", std::string(entry[1]));
        list->add(one);
    }
    Object::Ptr body = NewObject();
    body->set("templates", list);
    return RespondJson(200, body);
}

HttpResponse EditorApi::getTemplate(EditorSession&, const HttpRequest& request) {
    const std::string name = request.query("name");
    for (const auto& entry : kTemplates) {
        const PageAsset* asset =
            name == entry[0] ? FindPageAsset("templates/" + name + ".json") : nullptr;
        if (asset != nullptr) {
            return Respond(200, kJsonType, std::string(asset->data, asset->size));
        }
    }
    return RespondError(404, "no template '" + name + "'");
}

HttpResponse EditorApi::getItem(EditorSession&, const HttpRequest& request) {
    const std::string type = request.query("type");
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
    if (!item) {
        return RespondError(404, "no item type '" + type + "'");
    }
    return RespondJson(200, item->ConvertToJsonObject());
}

HttpResponse EditorApi::getKey(EditorSession&, const HttpRequest& request) {
    km::ConfigKey key;
    std::string error;
    if (!keyOf([&request](const char* name) { return request.query(name); }, key, error, true)) {
        return RespondError(422, error);
    }
    Object::Ptr body = km::KeyToJson(key);
    body->set("caption", render::KeyCaption(key));
    return RespondJson(200, body);
}

HttpResponse EditorApi::postMacroCheck(EditorSession&, const HttpRequest& request) {
    std::vector<std::string> lines;
    HttpResponse error;
    if (!ReadMacroLines(request.body, lines, error)) {
        return error;
    }
    Array::Ptr bad = new Array();
    for (std::uint32_t line : km::MacroKeyEditingTextGrammarCheck(lines)) {
        bad->add(static_cast<int>(line));
    }
    Object::Ptr result = NewObject();
    result->set("bad", bad);
    return RespondJson(200, result);
}

HttpResponse EditorApi::postMacroRunning(EditorSession&, const HttpRequest& request) {
    std::vector<std::string> lines;
    HttpResponse error;
    if (!ReadMacroLines(request.body, lines, error)) {
        return error;
    }
    Array::Ptr running = new Array();
    for (const std::string& line : km::MacroKeyEditingTextChangeToRunningText(lines, km::Rect())) {
        running->add(line);
    }
    Object::Ptr result = NewObject();
    result->set("lines", running);
    return RespondJson(200, result);
}

HttpResponse EditorApi::getPage(const HttpRequest& request) const {
    std::string name = request.path().substr(1);
    if (name.empty()) {
        name = "index.html";
    }
    const PageAsset* asset = name.find('/') == std::string::npos ? FindPageAsset(name) : nullptr;
    if (asset == nullptr) {
        return RespondError(404, "no such page: /" + name);
    }
    return Respond(200, mimeOf(name), std::string(asset->data, asset->size));
}

HttpResponse EditorApi::getSnapshot(EditorSession& session, const HttpRequest&) {
    return Respond(200, kJsonType, SnapshotJson(session.snapshot(true), session.file(), nullptr));
}

std::string EditorApi::editAnswer(EditorSession& session, const std::vector<EditResult>& results,
                                  long long since) {
    EditorSession::Snapshot shot = session.snapshot(true);
    AnswerBasis::Shown now;
    now.session = &session;
    now.version = shot.version;
    now.ids = shot.ids;
    now.document = shot.text;
    now.svg = shot.svg;
    now.captions = shot.captions;
    JsonWriter reportWriter(now.report);
    WriteCheckReportJson(reportWriter, session.file(), *shot.report);
    AnswerBasis::Shown was = now;
    basis_.swap(was);
    // The page names the version it shows; when that is the last answer's,
    // of the same items, the answer carries only the items that changed.
    AnswerDelta delta;
    delta.since = static_cast<long>(since);
    delta.document = KeymapItemParts(now.document);
    delta.svg = PictureParts(now.svg);
    delta.captions = ArrayParts(now.captions);
    if (since == 0 || was.session != now.session || was.version != since || was.ids != now.ids ||
        !ChangedItems(was.document, KeymapItemParts(was.document), now.document, delta.document,
                      delta.documentChanged) ||
        !ChangedItems(was.svg, PictureParts(was.svg), now.svg, delta.svg, delta.svgChanged) ||
        !ChangedItems(was.captions, ArrayParts(was.captions), now.captions, delta.captions,
                      delta.captionsChanged)) {
        return SnapshotJson(shot, session.file(), &results, nullptr, &now.report);
    }
    delta.sameReport = was.report == now.report;
    return SnapshotJson(shot, session.file(), &results, &delta, &now.report);
}

HttpResponse EditorApi::postEdit(EditorSession& session, const HttpRequest& request) {
    Object::Ptr edit;
    Array::Ptr ops;
    HttpResponse error;
    if (!ReadBodyArray(request.body, "ops", edit, ops, error)) {
        return error;
    }
    if (ops.isNull()) {
        return RespondError(422, "the body must be {\"client\", \"seq\", \"ops\": [edits]}");
    }
    if (ops->size() > kMaxEdits) {
        Object::Ptr extra = NewObject();
        extra->set("max_ops", static_cast<int>(kMaxEdits));
        return RespondError(413,
                            "at most " + std::to_string(kMaxEdits) +
                                " edits are taken in one request: send the rest in the next",
                            extra);
    }
    for (std::size_t i = 0; i < ops->size(); ++i) {
        if (ops->getObject(static_cast<unsigned>(i)).isNull()) {
            return RespondError(422, "every edit is an object with an \"op\"");
        }
    }
    const Poco::Dynamic::Var client = edit->get("client");
    if (!client.isEmpty() && (!client.isString() || client.extract<std::string>().size() > 128)) {
        return RespondError(422, "\"client\" must be a string of at most 128 characters");
    }
    long long seq = 0;
    if (!ReadWhole(edit->get("seq"), 1, seq)) {
        return RespondError(422, "\"seq\" must be an integer from 1 below 2^53");
    }
    const EditorSession::EditAnswer answer =
        session.edit(ops, client.isEmpty() ? std::string() : client.extract<std::string>(), seq);
    if (answer.stale) {
        Object::Ptr extra = NewObject();
        extra->set("seq", answer.lastSeq);
        return RespondError(409,
                            "request " + std::to_string(seq) + " comes after request " +
                                std::to_string(answer.lastSeq) + ": not applied",
                            extra);
    }
    long long since = 0;
    const bool hasSince = ReadWhole(edit->get("since"), 1, since);
    return Respond(200, kJsonType, editAnswer(session, answer.results, hasSince ? since : 0));
}

HttpResponse EditorApi::getVersion(EditorSession& session, const HttpRequest&) {
    Object::Ptr body = NewObject();
    body->set("version", session.version());
    // A turn is no change of the document, but every page shows it.
    const std::pair<int, int> screen = session.screenSize();
    body->set("width", screen.first);
    body->set("height", screen.second);
    return RespondJson(200, body);
}

HttpResponse EditorApi::getShapes(EditorSession&, const HttpRequest&) {
    return RespondJson(200, ShapesJson());
}

HttpResponse EditorApi::postTrigger(EditorSession& session, const HttpRequest& request) {
    Object::Ptr object;
    Array::Ptr keys;
    HttpResponse error;
    if (!ReadBodyArray(request.body, "keys", object, keys, error)) {
        return error;
    }
    if (keys.isNull() || keys->size() < 1 || keys->size() > 2) {
        return RespondError(422, "the body must be {\"keys\": [key, optional second key]}");
    }
    km::KeyTrigger trigger;
    for (std::size_t k = 0; k < keys->size(); ++k) {
        const Object::Ptr params = keys->getObject(static_cast<unsigned>(k));
        std::string why;
        km::ConfigKey& key = k == 0 ? trigger.first : trigger.second;
        const auto get = [&params](const char* name) {
            return params.isNull() || !params->has(name) ? std::string()
                                                         : params->get(name).toString();
        };
        if (!keyOf(get, key, why, false)) {
            return RespondError(422, why);
        }
    }
    trigger.combination = keys->size() == 2;
    Object::Ptr result = NewObject();
    result->set("items", session.triggered(trigger));
    return RespondJson(200, result);
}

HttpResponse EditorApi::postReload(EditorSession& session, const HttpRequest&) {
    km::LoadDiagnostic diagnostic;
    if (!session.reload(diagnostic)) {
        Object::Ptr extra = NewObject();
        extra->set("diagnostic", DiagnosticJson(diagnostic));
        return RespondError(422, diagnostic.message, extra);
    }
    return getSnapshot(session, HttpRequest());
}

HttpResponse EditorApi::postScreenTurn(EditorSession& session, const HttpRequest&) {
    session.turnScreen();
    return getSnapshot(session, HttpRequest());
}

HttpResponse EditorApi::getBackground(EditorSession& session, const HttpRequest&) {
    const render::Background& background = session.renderOptions().background;
    if (background.bytes.empty()) {
        return RespondError(404, "no background was given");
    }
    return Respond(200, background.mime, background.bytes);
}

}  // namespace editor
}  // namespace zunokeymap
