//
// ApiMessages.cpp
//

#include "ApiMessages.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <utility>

#include <Poco/Exception.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>

namespace zunokeymap {
namespace editor {

namespace km = zunokeymapmanager;

using Poco::JSON::Array;
using Poco::JSON::Object;

const char* const kJsonType = "application/json";

Object::Ptr NewObject() {
    return new Object(Poco::JSON_PRESERVE_KEY_ORDER);
}

HttpResponse Respond(int status, const std::string& type, std::string body) {
    HttpResponse response;
    response.status = status;
    response.set("Content-Type", type);
    response.body = std::move(body);
    return response;
}

HttpResponse RespondJson(int status, const Poco::Dynamic::Var& value) {
    std::ostringstream text;
    Poco::JSON::Stringifier::stringify(value, text, 0, -1, Poco::JSON_WRAP_STRINGS);
    return Respond(status, kJsonType, text.str());
}

HttpResponse RespondError(int status, const std::string& message, const Object::Ptr& extra) {
    Object::Ptr body = extra.isNull() ? NewObject() : extra;
    body->set("status", status);
    body->set("error", message);
    return RespondJson(status, body);
}

Object::Ptr DiagnosticJson(const km::LoadDiagnostic& diagnostic) {
    Object::Ptr result = NewObject();
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

bool ParseBody(const std::string& body, Poco::Dynamic::Var& value, HttpResponse& error) {
    try {
        Poco::JSON::Parser parser;
        value = parser.parse(body);
        return true;
    } catch (const Poco::Exception& e) {
        // The parser names no position; the library's load finds it.
        km::LoadDiagnostic diagnostic;
        std::unique_ptr<km::KeymapConfig> ignored(km::ReadKeymapDocument(
            km::DocumentOrigin::Text, std::string(), body, false, diagnostic));
        Object::Ptr extra = NewObject();
        const bool located = diagnostic.problem == km::LoadDiagnostic::Problem::Malformed;
        extra->set("line", located ? diagnostic.line : 0);
        extra->set("column", located ? diagnostic.column : 0);
        error = RespondError(400, located ? diagnostic.message : "malformed JSON: " + e.message(),
                             extra);
        return false;
    }
}

bool ReadBodyArray(const std::string& text, const char* name, Object::Ptr& object,
                   Array::Ptr& array, HttpResponse& error) {
    Poco::Dynamic::Var body;
    if (!ParseBody(text, body, error)) {
        return false;
    }
    object = body.type() == typeid(Object::Ptr) ? body.extract<Object::Ptr>() : Object::Ptr();
    array = object.isNull() ? Array::Ptr() : object->getArray(name);
    return true;
}

bool ReadLines(const Array::Ptr& array, std::vector<std::string>& lines) {
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

bool ReadMacroLines(const std::string& text, std::vector<std::string>& lines, HttpResponse& error) {
    Object::Ptr body;
    Array::Ptr array;
    if (!ReadBodyArray(text, "lines", body, array, error)) {
        return false;
    }
    if (!ReadLines(array, lines)) {
        error = RespondError(422, "the body must be {\"lines\": [strings]}");
        return false;
    }
    return true;
}

bool ReadWhole(const Poco::Dynamic::Var& value, long long least, long long& whole) {
    constexpr double kLimit = 9007199254740992.0;  // 2^53
    if (value.isEmpty() || value.isString() || value.isBoolean() || !value.isNumeric()) {
        return false;
    }
    const double number = value.convert<double>();
    if (!(number >= static_cast<double>(least) && number < kLimit) ||
        std::floor(number) != number) {
        return false;
    }
    whole = static_cast<long long>(number);
    return true;
}

bool ReadInt(const std::string& text, int& value) {
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

bool ReadRecoveryNumber(const std::string& text, bool all, int& n, HttpResponse& error) {
    Poco::Dynamic::Var body;
    if (!ParseBody(text.empty() ? "{}" : text, body, error)) {
        return false;
    }
    const Object::Ptr object =
        body.type() == typeid(Object::Ptr) ? body.extract<Object::Ptr>() : Object::Ptr();
    if (!object.isNull() && all && !object->has("n")) {
        n = -1;
        return true;
    }
    long long number = 0;
    if (object.isNull() || !ReadWhole(object->get("n"), 0, number) || number > INT32_MAX) {
        error = RespondError(422, all ? "the body must be {\"n\": N}, or {} for all"
                                      : "the body must be {\"n\": N}");
        return false;
    }
    n = static_cast<int>(number);
    return true;
}

Array::Ptr RecoveryJson(const std::vector<EditorSession::Recovery>& files) {
    Array::Ptr list = new Array();
    for (const EditorSession::Recovery& file : files) {
        Object::Ptr entry = NewObject();
        entry->set("n", file.n);
        entry->set("path", file.path);
        entry->set("time", file.time);
        entry->set("bytes", file.bytes);
        list->add(entry);
    }
    return list;
}

}  // namespace editor
}  // namespace zunokeymap
