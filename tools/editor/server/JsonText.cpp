//
// JsonText.cpp
//

#include "JsonText.h"

#include <sstream>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <Poco/JSON/Stringifier.h>

namespace zunokeymap {
namespace editor {

namespace {

void appendString(const std::string& text, std::string& out) {
    static const char kHex[] = "0123456789ABCDEF";
    out += '"';
    for (const char c : text) {
        switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\b':
                out += "\\b";
                break;
            case '\f':
                out += "\\f";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    out += "\\u00";
                    out += kHex[(c >> 4) & 15];
                    out += kHex[c & 15];
                } else {
                    out += c;
                }
        }
    }
    out += '"';
}

}  // namespace

void AppendJson(const Poco::Dynamic::Var& value, std::string& out) {
    if (value.isEmpty()) {
        out += "null";
    } else if (value.type() == typeid(Poco::JSON::Object::Ptr)) {
        const Poco::JSON::Object::Ptr& object = value.extract<Poco::JSON::Object::Ptr>();
        out += '{';
        bool first = true;
        for (const std::string& name : object->getNames()) {
            out += first ? "" : ",";
            first = false;
            appendString(name, out);
            out += ':';
            AppendJson(object->get(name), out);
        }
        out += '}';
    } else if (value.type() == typeid(Poco::JSON::Array::Ptr)) {
        const Poco::JSON::Array::Ptr& array = value.extract<Poco::JSON::Array::Ptr>();
        out += '[';
        for (std::size_t i = 0; i < array->size(); ++i) {
            out += i == 0 ? "" : ",";
            AppendJson(array->get(i), out);
        }
        out += ']';
    } else if (value.isString()) {
        appendString(value.extract<std::string>(), out);
    } else if (value.type() == typeid(bool)) {
        out += value.extract<bool>() ? "true" : "false";
    } else if (value.type() == typeid(int)) {
        out += std::to_string(value.extract<int>());
    } else {
        // Whatever else (floating point, other integer widths) as Poco writes it.
        std::ostringstream text;
        Poco::JSON::Stringifier::stringify(value, text, 0, -1, Poco::JSON_WRAP_STRINGS);
        out += text.str();
    }
}

}  // namespace editor
}  // namespace zunokeymap
