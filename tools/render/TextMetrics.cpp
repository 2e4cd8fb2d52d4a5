//
// TextMetrics.cpp
//

#include "TextMetrics.h"

#include <cstdint>

namespace zunokeymap {
namespace render {

namespace {

// Advance widths in hundredths of an em of ' ' to '~' in DejaVu Sans, the
// first font the style sheet asks for.
constexpr std::uint8_t kRegular[95] = {
    32, 40, 46, 84, 64, 95, 78, 27, 39,  39, 50, 84, 32, 36, 32, 34, 64, 64, 64, 64, 64, 64, 64, 64,
    64, 64, 34, 34, 84, 84, 84, 53, 100, 68, 69, 70, 77, 63, 58, 77, 75, 29, 29, 66, 56, 86, 75, 79,
    60, 79, 69, 63, 61, 73, 68, 99, 69,  61, 69, 39, 34, 39, 84, 50, 50, 61, 63, 55, 63, 62, 35, 63,
    63, 28, 28, 58, 28, 97, 63, 61, 63,  63, 41, 52, 39, 63, 59, 82, 59, 59, 52, 64, 34, 64, 84};
constexpr std::uint8_t kBold[95] = {
    35, 46,  52, 84, 70, 100, 87, 31,  46, 46, 52, 84, 38, 42,  38, 37, 70, 70,  70,
    70, 70,  70, 70, 70, 70,  70, 40,  40, 84, 84, 84, 58, 100, 77, 76, 73, 83,  68,
    68, 82,  84, 37, 37, 77,  64, 100, 84, 85, 73, 85, 77, 72,  68, 81, 77, 110, 77,
    72, 73,  46, 37, 46, 84,  50, 50,  67, 72, 59, 72, 68, 44,  72, 71, 34, 34,  67,
    34, 104, 71, 69, 72, 72,  49, 60,  48, 71, 65, 92, 65, 65,  58, 71, 37, 71,  84};

// Other fonts run a little wider than these tables.
constexpr double kMargin = 1.06;

bool continuation(char ch) {
    return (static_cast<unsigned char>(ch) & 0xC0) == 0x80;
}

}  // namespace

double TextWidth(std::string_view text, double size, Weight weight) {
    const std::uint8_t* table = weight == Weight::Bold ? kBold : kRegular;
    double hundredths = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x20 && byte < 0x7F) {
            hundredths += table[byte - 0x20];
        } else if (byte >= 0xE3 && byte < 0xF0) {
            hundredths += 100;  // CJK and other full-width scripts
        } else if (!continuation(text[i])) {
            hundredths += 90;
        }
    }
    return hundredths / 100.0 * size * kMargin;
}

std::string Truncated(std::string_view text, std::size_t glyphs) {
    std::size_t seen = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (continuation(text[i])) {
            continue;
        }
        if (seen == glyphs) {
            return std::string(text.substr(0, i)) + "\xE2\x80\xA6";
        }
        ++seen;
    }
    return std::string(text);
}

}  // namespace render
}  // namespace zunokeymap
