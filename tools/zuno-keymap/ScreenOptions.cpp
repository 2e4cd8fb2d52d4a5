//
// ScreenOptions.cpp
//

#include "ScreenOptions.h"

#include <utility>

#include <ImageHeader.h>

#include "Common.h"

namespace zunokeymap {

namespace {

// "1920x1080": two positive integers of a sensible size.
bool parseSize(const std::string& text, int& width, int& height) {
    constexpr int kMaxSide = 32767;
    const std::size_t x = text.find('x');
    if (x == std::string::npos) {
        return false;
    }
    const std::string w = text.substr(0, x);
    const std::string h = text.substr(x + 1);
    const auto digits = [](const std::string& s) {
        return !s.empty() && s.size() <= 5 &&
               s.find_first_not_of("0123456789") == std::string::npos;
    };
    if (!digits(w) || !digits(h)) {
        return false;
    }
    width = std::stoi(w);
    height = std::stoi(h);
    return width > 0 && height > 0 && width <= kMaxSide && height <= kMaxSide;
}

}  // namespace

std::string ReadScreenOptions(const std::string& size, const std::string& background,
                              render::RenderOptions& out) {
    if (!size.empty() && !parseSize(size, out.width, out.height)) {
        return "--size wants WIDTHxHEIGHT, such as 1920x1080, not '" + size + "'";
    }
    if (background.empty()) {
        return std::string();
    }
    std::string bytes;
    if (background == "-" || !ReadInput(background, bytes)) {
        return "cannot read the background '" + background + "'";
    }
    const std::string error = render::ReadBackground(std::move(bytes), out.background);
    if (!error.empty()) {
        return "background '" + background + "': " + error;
    }
    if (size.empty()) {
        out.width = out.background.width;
        out.height = out.background.height;
    }
    return std::string();
}

}  // namespace zunokeymap
