//
// EditorApi.cpp
//

#include "EditorApi.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <vector>

#include <Poco/Exception.h>
#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>
#include <Poco/Path.h>
#include <Poco/RandomStream.h>
#include <Poco/String.h>

#include "CheckReport.h"
#include "PageAssets.h"

namespace zunokeymap {
namespace editor {

using Poco::JSON::Array;
using Poco::JSON::Object;

namespace {

const char* const kJson = "application/json";

Object::Ptr newObject() {
    return new Object(Poco::JSON_PRESERVE_KEY_ORDER);
}

HttpResponse respond(int status, const std::string& type, std::string body) {
    HttpResponse response;
    response.status = status;
    response.set("Content-Type", type);
    response.body = std::move(body);
    return response;
}

HttpResponse respondJson(int status, const Poco::Dynamic::Var& value) {
    std::ostringstream text;
    Poco::JSON::Stringifier::stringify(value, text, 0, -1, Poco::JSON_WRAP_STRINGS);
    return respond(status, kJson, text.str());
}

HttpResponse respondError(int status, const std::string& message,
                          const Object::Ptr& extra = nullptr) {
    Object::Ptr body = extra.isNull() ? newObject() : extra;
    body->set("status", status);
    body->set("error", message);
    return respondJson(status, body);
}

Object::Ptr diagnosticJson(const km::LoadDiagnostic& diagnostic) {
    Object::Ptr result = newObject();
    result->set("problem", std::string(km::ProblemName(diagnostic.problem)));
    result->set("path", diagnostic.path);
    result->set("item_index", diagnostic.item_index);
    result->set("item_type", diagnostic.item_type);
    result->set("expected", diagnostic.expected);
    result->set("line", diagnostic.line);
    result->set("column", diagnostic.column);
    result->set("message", diagnostic.message);
    return result;
}

// A JSON body, or the 400 that says where it stops being JSON.
bool parseBody(const std::string& body, Poco::Dynamic::Var& value, HttpResponse& error) {
    try {
        Poco::JSON::Parser parser;
        value = parser.parse(body);
        return true;
    } catch (const Poco::Exception& e) {
        // The parser names no position; the library's load finds it.
        km::LoadDiagnostic diagnostic;
        std::unique_ptr<km::KeymapConfig> ignored(km::ReadKeymapDocument(
            km::DocumentOrigin::Text, std::string(), body, false, diagnostic));
        Object::Ptr extra = newObject();
        const bool located = diagnostic.problem == km::LoadDiagnostic::Problem::Malformed;
        extra->set("line", located ? diagnostic.line : 0);
        extra->set("column", located ? diagnostic.column : 0);
        error = respondError(400, located ? diagnostic.message : "malformed JSON: " + e.message(),
                             extra);
        return false;
    }
}

bool readLines(const Poco::Dynamic::Var& body, std::vector<std::string>& lines) {
    if (body.type() != typeid(Object::Ptr)) {
        return false;
    }
    const Array::Ptr array = body.extract<Object::Ptr>()->getArray("lines");
    if (array.isNull()) {
        return false;
    }
    for (std::size_t i = 0; i < array->size(); ++i) {
        const Poco::Dynamic::Var line = array->get(i);
        if (!line.isString()) {
            return false;
        }
        lines.push_back(line.extract<std::string>());
    }
    return true;
}

// The body of a macro request, {"lines": [strings]}; false with the answer to give.
bool readMacroLines(const std::string& text, std::vector<std::string>& lines, HttpResponse& error) {
    Poco::Dynamic::Var body;
    if (!parseBody(text, body, error)) {
        return false;
    }
    if (!readLines(body, lines)) {
        error = respondError(422, "the body must be {\"lines\": [strings]}");
        return false;
    }
    return true;
}

bool readInt(const std::string& text, int& value) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    const long long parsed = std::strtoll(text.c_str(), &end, 0);
    if (*end != '\0' || parsed < INT32_MIN || parsed > INT32_MAX) {
        return false;
    }
    value = static_cast<int>(parsed);
    return true;
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
    HttpResponse (EditorApi::*run)(const HttpRequest&);
};

EditorApi::EditorApi(EditorSession& session, std::string token, int port)
    : session_(session), token_(std::move(token)), port_(port), door_(true) {}

EditorApi::EditorApi(EditorSession& session) : session_(session), port_(0), door_(false) {}

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
        {"/api/recovery", "GET", false, &EditorApi::getRecovery},
        {"/api/schema", "GET", false, &EditorApi::getSchema},
        {"/api/types", "GET", false, &EditorApi::getTypes},
        {"/api/item", "GET", false, &EditorApi::getItem},
        {"/api/key", "GET", false, &EditorApi::getKey},
        {"/api/macro/check", "POST", true, &EditorApi::postMacroCheck},
        {"/api/macro/running", "POST", true, &EditorApi::postMacroRunning},
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
    return respondError(status, message);
}

HttpResponse EditorApi::screen(const HttpRequest& request) const {
    HttpResponse pass;
    pass.status = 0;

    // A page of another site that a DNS name points here still sends its own Host.
    const std::string host = Poco::toLower(request.header("Host"));
    const std::string port = ":" + std::to_string(port_);
    if (door_ && host != "127.0.0.1" + port && host != "localhost" + port) {
        return respondError(403,
                            "the Host header must be 127.0.0.1" + port + " or localhost" + port);
    }

    const std::string path = request.path();
    if (path.empty() || path[0] != '/') {
        return respondError(400, "the request target must be a path");
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
            HttpResponse denied = respondError(401, "a valid token is required");
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
            return respondError(404, "no such endpoint: " + path);
        }
        if (match == nullptr) {
            HttpResponse wrong = respondError(405, "use " + allowed + " on " + path);
            wrong.set("Allow", allowed);
            return wrong;
        }
        jsonBody = match->jsonBody;
    } else if (request.method != "GET") {
        HttpResponse wrong = respondError(405, "the page is read with GET");
        wrong.set("Allow", "GET");
        return wrong;
    }

    bool hasLength = false;
    const std::string length = request.header("Content-Length", &hasLength);
    if (hasLength) {
        char* end = nullptr;
        const unsigned long long size = std::strtoull(length.c_str(), &end, 10);
        if (length.empty() || *end != '\0' || length[0] == '-') {
            return respondError(400, "bad Content-Length");
        }
        if (size > kMaxBody) {
            return respondError(413, "bodies are limited to 16 MiB");
        }
    }
    if (jsonBody) {
        std::string type = Poco::toLower(request.header("Content-Type"));
        type = Poco::trim(type.substr(0, type.find(';')));
        if (type != kJson) {
            return respondError(415, "the body must be application/json");
        }
    }
    return pass;
}

HttpResponse EditorApi::handle(const HttpRequest& request) {
    HttpResponse response;
    try {
        response = screen(request);
        if (response.status == 0) {
            response = request.body.size() > kMaxBody
                           ? respondError(413, "bodies are limited to 16 MiB")
                           : dispatch(request);
        }
    } catch (const std::exception& e) {
        response = respondError(500, std::string("internal error: ") + e.what());
    } catch (...) {
        response = respondError(500, "internal error");
    }
    secure(response);
    return response;
}

HttpResponse EditorApi::dispatch(const HttpRequest& request) {
    const std::string path = request.path();
    if (!Poco::startsWith(path, std::string("/api/"))) {
        return getPage(request);
    }
    for (const Route* route = findRoute(path);
         route != nullptr && route->path != nullptr && path == route->path; ++route) {
        if (request.method == route->method) {
            return (this->*route->run)(request);
        }
    }
    return respondError(405, "wrong method");  // screen() answered this already
}

HttpResponse EditorApi::getDocument(const HttpRequest&) {
    HttpResponse response = respond(200, kJson, session_.documentText());
    response.set("X-Keymap-Unsaved", session_.unsaved() ? "true" : "false");
    return response;
}

HttpResponse EditorApi::putDocument(const HttpRequest& request) {
    km::LoadDiagnostic diagnostic;
    if (!session_.replace(request.body, diagnostic)) {
        Object::Ptr extra = newObject();
        extra->set("diagnostic", diagnosticJson(diagnostic));
        const bool malformed = diagnostic.problem == km::LoadDiagnostic::Problem::Malformed;
        if (malformed) {
            extra->set("line", diagnostic.line);
            extra->set("column", diagnostic.column);
        }
        return respondError(malformed ? 400 : 422, diagnostic.message, extra);
    }
    HttpResponse response = getCheck(request);
    response.set("X-Keymap-Unsaved", session_.unsaved() ? "true" : "false");
    return response;
}

HttpResponse EditorApi::getCheck(const HttpRequest&) {
    std::string body;
    JsonWriter writer(body);
    WriteCheckReportJson(writer, session_.file(), *session_.check());
    return respond(200, kJson, std::move(body));
}

HttpResponse EditorApi::getRender(const HttpRequest&) {
    return respond(200, "image/svg+xml", session_.renderSvg());
}

HttpResponse EditorApi::postSave(const HttpRequest& request) {
    if (!request.body.empty()) {
        Poco::Dynamic::Var ignored;
        HttpResponse error;
        if (!parseBody(request.body, ignored, error)) {
            return error;
        }
    }
    const auto flag = [&request](const char* name) {
        const std::string value = request.query(name);
        return value == "1" || value == "true";
    };
    std::string message;
    switch (session_.save(flag("force"), flag("drop"), message)) {
        case EditorSession::SaveResult::Saved: {
            Object::Ptr body = newObject();
            body->set("saved", true);
            body->set("file", session_.file());
            return respondJson(200, body);
        }
        case EditorSession::SaveResult::Conflict: {
            Object::Ptr extra = newObject();
            extra->set("conflict", true);
            return respondError(409, message, extra);
        }
        case EditorSession::SaveResult::WouldLose: {
            Object::Ptr extra = newObject();
            Array::Ptr lost = new Array();
            for (const std::string& path : session_.lost()) {
                lost->add(path);
            }
            extra->set("lost", lost);
            return respondError(409, message, extra);
        }
        case EditorSession::SaveResult::Failed:
            break;
    }
    return respondError(500, message);
}

HttpResponse EditorApi::getState(const HttpRequest&) {
    const render::RenderOptions& options = session_.renderOptions();
    Object::Ptr body = newObject();
    body->set("file", session_.file());
    body->set("name", Poco::Path(session_.file()).getFileName());
    body->set("new", session_.opened() == EditorSession::Opened::Missing);
    body->set("joystick", session_.joystick());
    body->set("unsaved", session_.unsaved());
    body->set("width", options.width);
    body->set("height", options.height);
    body->set("background", !options.background.bytes.empty());
    Array::Ptr recovery = new Array();
    for (const std::string& path : session_.recoveryFiles()) {
        recovery->add(path);
    }
    body->set("recovery", recovery);
    Array::Ptr lost = new Array();
    for (const std::string& path : session_.lost()) {
        lost->add(path);
    }
    body->set("lost", lost);
    return respondJson(200, body);
}

HttpResponse EditorApi::getRecovery(const HttpRequest& request) {
    // Only the recovery files the session found can be read, by number.
    const std::vector<std::string>& files = session_.recoveryFiles();
    int index = 0;
    std::string text;
    if (!readInt(request.query("n").empty() ? "0" : request.query("n"), index) || index < 0 ||
        static_cast<std::size_t>(index) >= files.size() ||
        !ReadWholeFile(files[static_cast<std::size_t>(index)], text)) {
        return respondError(404, "no such recovery file");
    }
    return respond(200, kJson, text);
}

HttpResponse EditorApi::getSchema(const HttpRequest&) {
    const PageAsset* schema = FindPageAsset("keymap.schema.json");
    if (schema == nullptr) {
        return respondError(404, "no schema was built in");
    }
    return respond(200, kJson, std::string(schema->data, schema->size));
}

HttpResponse EditorApi::getTypes(const HttpRequest&) {
    Array::Ptr types = new Array();
    for (const std::string_view type : km::kDocumentItemTypeNames) {
        types->add(std::string(type));
    }
    Object::Ptr body = newObject();
    body->set("types", types);
    return respondJson(200, body);
}

HttpResponse EditorApi::getItem(const HttpRequest& request) {
    const std::string type = request.query("type");
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
    if (!item) {
        return respondError(404, "no item type '" + type + "'");
    }
    return respondJson(200, item->ConvertToJsonObject());
}

HttpResponse EditorApi::getKey(const HttpRequest& request) {
    const std::string device = request.query("device");
    km::ConfigKey key;
    if (device == "joystick") {
        const std::string text = request.query("text");
        if (text.empty() || text.find_first_of(" \t\r\n") != std::string::npos) {
            return respondError(422, "a gamepad key needs the control's name in 'text'");
        }
        key = km::ConfigKey(device, text, km::kUnsetKeyCode, km::kUnsetKeyCode);
    } else if (device == "keyboard" || device == "mouse") {
        // The virtual key comes from the library's table, as in the tool.
        int scanCode = 0;
        if (!readInt(request.query("scan_code"), scanCode)) {
            return respondError(422, "a keyboard or mouse key needs scan_code");
        }
        key = km::KeyOfCode(device, scanCode);
    } else if (!device.empty()) {
        return respondError(422, "device must be keyboard, mouse or joystick, or empty for no key");
    }
    return respondJson(200, km::KeyToJson(key));
}

HttpResponse EditorApi::postMacroCheck(const HttpRequest& request) {
    std::vector<std::string> lines;
    HttpResponse error;
    if (!readMacroLines(request.body, lines, error)) {
        return error;
    }
    Array::Ptr bad = new Array();
    for (std::uint32_t line : km::MacroKeyEditingTextGrammarCheck(lines)) {
        bad->add(static_cast<int>(line));
    }
    Object::Ptr result = newObject();
    result->set("bad", bad);
    return respondJson(200, result);
}

HttpResponse EditorApi::postMacroRunning(const HttpRequest& request) {
    std::vector<std::string> lines;
    HttpResponse error;
    if (!readMacroLines(request.body, lines, error)) {
        return error;
    }
    Array::Ptr running = new Array();
    for (const std::string& line : km::MacroKeyEditingTextChangeToRunningText(lines, km::Rect())) {
        running->add(line);
    }
    Object::Ptr result = newObject();
    result->set("lines", running);
    return respondJson(200, result);
}

HttpResponse EditorApi::getPage(const HttpRequest& request) const {
    std::string name = request.path().substr(1);
    if (name.empty()) {
        name = "index.html";
    }
    const PageAsset* asset = name.find('/') == std::string::npos ? FindPageAsset(name) : nullptr;
    if (asset == nullptr) {
        return respondError(404, "no such page: /" + name);
    }
    return respond(200, mimeOf(name), std::string(asset->data, asset->size));
}

}  // namespace editor
}  // namespace zunokeymap
