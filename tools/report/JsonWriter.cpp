//
// JsonWriter.cpp
//

#include "JsonWriter.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "TerminalText.h"

namespace zunokeymap {

namespace {

// Escaped as Poco's stringifier escapes: control characters as \uXXXX,
// everything else, UTF-8 included, as it stands. A byte that is not UTF-8
// (a file name from a system that allows them) becomes U+FFFD, so the
// output is always valid JSON.
void appendString(std::string_view text, std::string& out) {
    static const char kHex[] = "0123456789ABCDEF";
    out += '"';
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        const std::size_t length = Utf8SequenceAt(text, at);
        if (length != 1) {
            if (length == 0) {
                out += "\xEF\xBF\xBD";  // U+FFFD
            } else {
                out.append(text, at, length);
                at += length - 1;
            }
            continue;
        }
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

JsonWriter::JsonWriter(std::string& out, bool indented) : _out(out), _indented(indented) {}

void JsonWriter::newline() {
    if (_indented) {
        _out += '\n';
        _out.append(2 * _empty.size(), ' ');
    }
}

// Before a member's name or an element: the comma and the line break.
void JsonWriter::place() {
    if (_afterKey) {
        _afterKey = false;
        return;
    }
    if (!_empty.empty()) {
        if (!_empty.back()) {
            _out += ',';
        }
        _empty.back() = false;
        newline();
    }
}

void JsonWriter::open(char bracket) {
    place();
    _out += bracket;
    _empty.push_back(true);
}

void JsonWriter::close(char bracket) {
    const bool empty = _empty.back();
    _empty.pop_back();
    if (!empty) {
        newline();
    }
    _out += bracket;
}

JsonWriter& JsonWriter::beginObject() {
    open('{');
    return *this;
}

JsonWriter& JsonWriter::endObject() {
    close('}');
    return *this;
}

JsonWriter& JsonWriter::beginArray() {
    open('[');
    return *this;
}

JsonWriter& JsonWriter::endArray() {
    close(']');
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
    place();
    appendString(name, _out);
    _out += _indented ? ": " : ":";
    _afterKey = true;
    return *this;
}

JsonWriter& JsonWriter::value(std::string_view text) {
    place();
    appendString(text, _out);
    return *this;
}

JsonWriter& JsonWriter::value(const char* text) {
    return value(std::string_view(text));
}

JsonWriter& JsonWriter::value(const std::string& text) {
    return value(std::string_view(text));
}

JsonWriter& JsonWriter::integer(long long number) {
    place();
    _out += std::to_string(number);
    return *this;
}

JsonWriter& JsonWriter::value(double number) {
    place();
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", std::isfinite(number) ? number : 0.0);
    _out += text;
    return *this;
}

JsonWriter& JsonWriter::value(bool flag) {
    place();
    _out += flag ? "true" : "false";
    return *this;
}

}  // namespace zunokeymap
