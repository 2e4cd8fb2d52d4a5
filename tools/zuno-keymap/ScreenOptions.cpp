//
// ScreenOptions.cpp
//

#include "ScreenOptions.h"

#include <cstdint>
#include <filesystem>
#include <system_error>
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
    // Looked at before it is read: a huge file would be read whole first.
    std::error_code code;
    std::filesystem::path native;
    try {
        native = std::filesystem::u8path(background);
    } catch (const std::exception&) {
        return "cannot read the background '" + background + "'";
    }
    const std::uintmax_t bytesOnDisk = std::filesystem::file_size(native, code);
    if (!code && bytesOnDisk > render::kMaxBackgroundBytes) {
        return "the background '" + background + "' is larger than 32 MiB";
    }
    std::string bytes;
    if (background == "-" || !ReadInput(background, bytes)) {
        return "cannot read the background '" + background + "'";
    }
    if (bytes.size() > render::kMaxBackgroundBytes) {
        return "the background '" + background + "' is larger than 32 MiB";
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
