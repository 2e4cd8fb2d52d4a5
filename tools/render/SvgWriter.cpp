//
// SvgWriter.cpp
//

#include "SvgWriter.h"

#include <cmath>
#include <cstdint>

namespace zunokeymap {
namespace render {

namespace {

const char* const kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Length of the valid UTF-8 sequence at `s[i]` and its code point; 0 when the
// bytes there are not one (overlong forms and surrogates included).
std::size_t decodeUtf8(std::string_view s, std::size_t i, std::uint32_t& cp) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(s[k]); };
    const unsigned char b0 = byte(i);
    std::size_t length = 0;
    std::uint32_t min = 0;
    if (b0 < 0x80) {
        cp = b0;
        return 1;
    } else if ((b0 & 0xE0) == 0xC0) {
        length = 2, cp = b0 & 0x1F, min = 0x80;
    } else if ((b0 & 0xF0) == 0xE0) {
        length = 3, cp = b0 & 0x0F, min = 0x800;
    } else if ((b0 & 0xF8) == 0xF0) {
        length = 4, cp = b0 & 0x07, min = 0x10000;
    } else {
        return 0;
    }
    if (i + length > s.size()) {
        return 0;
    }
    for (std::size_t k = 1; k < length; ++k) {
        if ((byte(i + k) & 0xC0) != 0x80) {
            return 0;
        }
        cp = (cp << 6) | (byte(i + k) & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
        return 0;
    }
    return length;
}

bool allowedInXml(std::uint32_t cp) {
    return cp == 0x9 || cp == 0xA || cp == 0xD || (cp >= 0x20 && cp != 0xFFFE && cp != 0xFFFF);
}

}  // namespace

void AppendEscaped(std::string& out, std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        std::uint32_t cp = 0;
        const std::size_t length = decodeUtf8(text, i, cp);
        if (length == 0) {
            out += kReplacement;
            ++i;
            continue;
        }
        switch (cp) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&apos;";
                break;
            default:
                if (allowedInXml(cp)) {
                    out.append(text.data() + i, length);
                }
        }
        i += length;
    }
}

void AppendNumber(std::string& out, double value) {
    constexpr double kLimit = 1e9;
    if (!(value > -kLimit)) {  // also NaN
        value = std::isnan(value) ? 0.0 : -kLimit;
    } else if (value > kLimit) {
        value = kLimit;
    }
    // Hundredths as an integer: the digits never depend on the locale.
    long long hundredths = std::llround(value * 100.0);
    if (hundredths < 0) {
        out += '-';
        hundredths = -hundredths;
    }
    out += std::to_string(hundredths / 100);
    const int fraction = static_cast<int>(hundredths % 100);
    if (fraction != 0) {
        out += '.';
        out += static_cast<char>('0' + fraction / 10);
        if (fraction % 10 != 0) {
            out += static_cast<char>('0' + fraction % 10);
        }
    }
}

void AppendPathPoint(std::string& out, char command, double x, double y) {
    out += command;
    AppendNumber(out, x);
    out += ' ';
    AppendNumber(out, y);
}

SvgWriter::SvgWriter(std::size_t reserve) {
    out_.reserve(reserve);
}

SvgWriter& SvgWriter::open(std::string_view name) {
    out_ += '<';
    out_ += name;
    openName_ = name;
    return *this;
}

SvgWriter& SvgWriter::attr(std::string_view name, std::string_view value) {
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    AppendEscaped(out_, value);
    out_ += '"';
    return *this;
}

SvgWriter& SvgWriter::attr(std::string_view name, double value) {
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    AppendNumber(out_, value);
    out_ += '"';
    return *this;
}

void SvgWriter::close() {
    out_ += "/>\n";
}

void SvgWriter::text(std::string_view text) {
    const std::string_view name = openName_;
    out_ += '>';
    AppendEscaped(out_, text);
    end(name);
}

void SvgWriter::content() {
    out_ += ">\n";
}

void SvgWriter::end(std::string_view name) {
    out_ += "</";
    out_ += name;
    out_ += ">\n";
}

void SvgWriter::raw(std::string_view markup) {
    out_ += markup;
}

}  // namespace render
}  // namespace zunokeymap
