//
// RenderCommand.cpp
//
// zuno-keymap render: a keymap as a picture of the screen, in SVG.
//

#include <iostream>
#include <string>
#include <vector>

#include <ImageHeader.h>
#include <SvgRenderer.h>

#include "Common.h"

namespace zunokeymap {

const char* const kRenderUsage =
    "usage: zuno-keymap render [--joystick] [-o OUT.svg] [--size WxH] [--background IMAGE]\n"
    "                          FILE\n\n"
    "Draws the document as one self-contained SVG picture of the screen: every item\n"
    "at its marker with its key caption, its touch point and the geometry of its type,\n"
    "invalid items and key collisions marked (the reason in each item's tooltip), a\n"
    "legend and a title line. docs/render.md describes the picture.\n\n"
    "Options:\n"
    "  -o OUT            write to OUT instead of standard output\n"
    "  --size WxH        the screen in pixels (default 1920x1080, or the size of the\n"
    "                    background image)\n"
    "  --background IMG  draw a PNG or JPEG image (a screenshot) under the items; it\n"
    "                    is embedded in the picture\n"
    "  --joystick        load FILE as a gamepad document\n\n"
    "Exit status: 0 when drawn (problems are drawn, not errors), 1 when FILE does not\n"
    "load, 2 on a usage error or when a file cannot be read or written.\n";

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

std::string baseName(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

int RenderCommand(const std::vector<std::string>& args) {
    Options options;
    if (const int status = ParseOptions(
            "render", args, {"--joystick"},
            {{"-o", "--output"}, {"--size", "--size"}, {"--background", "--background"}},
            options)) {
        return status;
    }
    const bool joystick = options.has("--joystick");
    const auto value = [&options](const char* name) {
        const auto found = options.values.find(name);
        return found == options.values.end() ? std::string() : found->second;
    };
    const std::vector<std::string>& files = options.operands;
    if (files.size() != 1) {
        return UsageError("render", files.empty() ? "no FILE given" : "render takes one FILE");
    }

    render::RenderOptions picture;
    const std::string size = value("--size");
    if (!size.empty() && !parseSize(size, picture.width, picture.height)) {
        return UsageError("render",
                          "--size wants WIDTHxHEIGHT, such as 1920x1080, not '" + size + "'");
    }
    const std::string backgroundPath = value("--background");
    if (!backgroundPath.empty()) {
        std::string bytes;
        if (!ReadInput(backgroundPath, bytes) || backgroundPath == "-") {
            return UsageError("render", "cannot read the background '" + backgroundPath + "'");
        }
        const std::string error = render::ReadBackground(std::move(bytes), picture.background);
        if (!error.empty()) {
            return UsageError("render", "background '" + backgroundPath + "': " + error);
        }
        if (size.empty()) {
            picture.width = picture.background.width;
            picture.height = picture.background.height;
        }
    }

    const Loaded loaded = Load(files.front(), joystick);
    if (loaded.diagnostic.failed) {
        std::cerr << loaded.source << ": error: " << loaded.diagnostic.message << "\n";
        return loaded.unreadable ? kUsage : kProblems;
    }
    const km::CheckReport report = km::CheckKeymapDocument(loaded.text, joystick, loaded.source);
    picture.title = baseName(loaded.source);
    const std::string svg = render::RenderSvg(*loaded.doc, report, picture);

    const std::string out = value("-o");
    if (out.empty()) {
        std::cout << svg;
        return kClean;
    }
    if (!km::WriteTextFile(out, svg)) {
        std::cerr << "zuno-keymap render: cannot write '" << out << "'\n";
        return kUsage;
    }
    return kClean;
}

}  // namespace zunokeymap
