//
// FmtCommand.cpp
//
// zuno-keymap fmt: a document in the form the library saves it.
//

#include <iostream>
#include <string>
#include <vector>

#include "Common.h"

namespace zunokeymap {

const char* const kFmtUsage =
    "usage: zuno-keymap fmt [--joystick] [-o OUT | --in-place | --check] FILE\n\n"
    "Loads the document through the library and writes it as the library saves it:\n"
    "keys sorted, indented by 4, every member written. A document that fails to load\n"
    "is reported and never written.\n\n"
    "Options:\n"
    "  -o OUT       write to OUT instead of standard output\n"
    "  --in-place   rewrite FILE itself (not for '-' or a built-in name)\n"
    "  --check      write nothing; exit 1 when FILE is not already in that form\n"
    "  --joystick   load FILE as a gamepad document\n";

int FmtCommand(const std::vector<std::string>& args) {
    Options options;
    if (const int status = ParseOptions("fmt", args, {"--joystick", "--in-place", "--check"},
                                        {{"-o", "--output"}}, options)) {
        return status;
    }
    const bool joystick = options.has("--joystick");
    const bool inPlace = options.has("--in-place");
    const bool check = options.has("--check");
    const std::string out = options.values.count("-o") != 0 ? options.values.at("-o") : "";
    const std::vector<std::string>& files = options.operands;
    if (files.size() != 1) {
        return UsageError("fmt", files.empty() ? "no FILE given" : "fmt takes one FILE");
    }
    if ((inPlace ? 1 : 0) + (check ? 1 : 0) + (out.empty() ? 0 : 1) > 1) {
        return UsageError("fmt", "-o, --in-place and --check exclude each other");
    }
    const std::string& file = files.front();
    if (inPlace && (file == "-" || IsBuiltIn(file, joystick))) {
        return UsageError("fmt", "--in-place needs a file, not '" + file + "'");
    }

    Loaded loaded = Load(file, joystick);
    if (loaded.diagnostic.failed) {
        std::cerr << loaded.source << ": error: " << loaded.diagnostic.message << "\n";
        return loaded.unreadable ? kUsage : kProblems;
    }
    const std::string saved = SavedText(loaded.doc.get());
    if (check) {
        if (saved == loaded.text) {
            return kClean;
        }
        std::cout << loaded.source << ": not in the saved form\n";
        return kProblems;
    }
    const std::string target = inPlace ? file : out;
    if (target.empty()) {
        std::cout << saved;
        return kClean;
    }
    km::SaveKeymapConfigAndInfo(target, loaded.doc.get());
    // The library never reports a failed save: look at what landed.
    std::string written;
    if (!ReadInput(target, written) || written != saved) {
        std::cerr << "zuno-keymap fmt: cannot write '" << target << "'\n";
        return kUsage;
    }
    return kClean;
}

}  // namespace zunokeymap
