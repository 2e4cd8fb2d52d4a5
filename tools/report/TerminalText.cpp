//
// TerminalText.cpp
//

#include "TerminalText.h"

namespace zunokeymap {

std::size_t Utf8SequenceAt(std::string_view text, std::size_t at) {
    const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) {
        return 1;
    }
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;   // no overlong forms
        high = lead == 0xED ? 0x9F : 0xBF;  // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (at + length > text.size() || byte(at + 1) < low || byte(at + 1) > high) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (byte(at + i) < 0x80 || byte(at + i) > 0xBF) {
            return 0;
        }
    }
    return length;
}

std::string ForTerminal(std::string_view text) {
    static const char kHex[] = "0123456789abcdef";
    std::string out;
    out.reserve(text.size());
    const auto escape = [&out](const char* prefix, unsigned value) {
        out += prefix;
        out += kHex[(value >> 4) & 15];
        out += kHex[value & 15];
    };
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = Utf8SequenceAt(text, at);
        const auto c = static_cast<unsigned char>(text[at]);
        const bool control = length == 1 && (c < 0x20 || c == 0x7F);
        if (length == 0 || control) {
            escape("\\x", c);
            ++at;
        } else if (length == 2 && c == 0xC2 && static_cast<unsigned char>(text[at + 1]) < 0xA0) {
            escape("\\u00", static_cast<unsigned char>(text[at + 1]));  // U+0080..U+009F
            at += 2;
        } else {
            out.append(text, at, length);
            at += length;
        }
    }
    return out;
}

}  // namespace zunokeymap
