//
// Common.cpp
//

#include "Common.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "Platform.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

// Through istream::read, which turns a failed read into badbit: the stream
// buffer itself throws on one (a closed standard input, an I/O error), and
// an iterator over the buffer would let that escape.
bool readAll(std::istream& in, std::string& text) {
    text.clear();
    std::array<char, 65536> buffer{};
    do {
        in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        text.append(buffer.data(), static_cast<std::size_t>(in.gcount()));
    } while (in);
    return !in.bad();
}

}  // namespace

bool ReadInput(const std::string& path, std::string& text) {
    if (path == "-") {
        return readAll(std::cin, text);
    }
    std::ifstream in;
    return OpenRegularFile(path, in) && readAll(in, text);
}

const std::vector<BuiltIn>& BuiltIns() {
    static const std::vector<BuiltIn> builtIns = {
        {"blank", "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", false, "the blank keymap"},
        {"blank-gamepad", "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", true,
         "the blank gamepad keymap"},
        {"system", "system-9252A9CA-0C32-4FFD-8BF6-82653751D068", false,
         "passes the wheel and every mouse button but the left one through"},
    };
    return builtIns;
}

const char* BlankName(bool joystick) {
    return joystick ? "blank-gamepad" : "blank";
}

std::string BuiltInsHelp() {
    std::string text;
    for (const BuiltIn& builtIn : BuiltIns()) {
        text += "  " + std::string(builtIn.name) +
                std::string(15 - std::string(builtIn.name).size(), ' ') + builtIn.summary + "\n";
    }
    return text;
}

namespace {

// The built-in that `name` names, by short name or library name, or null.
const BuiltIn* findBuiltIn(const std::string& name, bool joystick) {
    for (const BuiltIn& builtIn : BuiltIns()) {
        if (name == builtIn.name || (name == builtIn.libraryName && joystick == builtIn.joystick)) {
            return &builtIn;
        }
    }
    return nullptr;
}

}  // namespace

bool IsBuiltIn(const std::string& name, bool joystick) {
    return findBuiltIn(name, joystick) != nullptr;
}

Loaded Load(const std::string& given, bool joystick) {
    const BuiltIn* builtIn = findBuiltIn(given, joystick);
    joystick = joystick || (builtIn != nullptr && builtIn->joystick);
    const std::string source = builtIn != nullptr ? builtIn->libraryName : given;
    Loaded result;
    result.source = given == "-" ? "<stdin>" : given;
    result.joystick = joystick;
    std::string data;
    if (source == "-") {
        result.unreadable = !ReadInput("-", data);
        result.text = data;
        if (data.empty()) {
            // Empty text would send the library to a file of that name.
            result.doc.reset(new km::KeymapConfig());
            result.doc->info = new km::ConfigInfo();
            result.doc->param = new km::ConfigParam();
            result.doc->info->is_joystick = joystick;
            result.diagnostic.failed = true;
            result.diagnostic.source = result.source;
            if (result.unreadable) {
                result.diagnostic.problem = km::LoadDiagnostic::Problem::Unreadable;
                result.diagnostic.message = "cannot read the standard input";
            } else {
                result.diagnostic.problem = km::LoadDiagnostic::Problem::Malformed;
                result.diagnostic.line = 1;
                result.diagnostic.column = 1;
                result.diagnostic.message =
                    "malformed JSON at line 1, column 1: the document is empty";
            }
            return result;
        }
    }
    // The tool reports a failed load itself: no callback, no thread to start.
    const std::string path = source == "-" ? result.source : source;
    const km::DocumentOrigin origin = source == "-"        ? km::DocumentOrigin::Text
                                      : builtIn != nullptr ? km::DocumentOrigin::BuiltIn
                                                           : km::DocumentOrigin::File;
    result.doc.reset(km::ReadKeymapDocument(origin, path, data, joystick, result.diagnostic));
    if (source != "-") {
        if (builtIn != nullptr) {
            const auto& table =
                joystick ? EmbededConfig::joystickConfigs() : EmbededConfig::keymapConfigs();
            result.text = table.at(source);
        } else if (!ReadInput(source, result.text)) {
            result.unreadable = true;
        }
    }
    if (result.diagnostic.problem == km::LoadDiagnostic::Problem::Unreadable) {
        result.unreadable = true;
    }
    return result;
}

int ReportLoadFailure(const Loaded& loaded) {
    std::cerr << ForTerminal(loaded.source) << ": error: " << ForTerminal(loaded.diagnostic.message)
              << "\n";
    return loaded.unreadable ? kUsage : kProblems;
}

std::string SavedText(const km::KeymapConfig* doc) {
    return km::SaveKeymapConfigAndInfoToText(doc);
}

bool WriteOutput(const std::string& command, const std::string& path, const std::string& text) {
    std::string error;
    if (path == "-") {
        std::cout << text;
        std::cout.flush();
        if (std::cout) {
            return true;
        }
        error = "cannot write the standard output";
    } else if (WriteToStream(path, text, error) ||
               (error.empty() && km::WriteTextFile(path, text, error))) {
        return true;
    }
    std::cerr << "zuno-keymap " << command << ": cannot write '"
              << (path == "-" ? "<stdout>" : ForTerminal(path)) << "': " << ForTerminal(error)
              << "\n";
    return false;
}

bool SaveTo(const std::string& command, const std::string& path, km::KeymapConfig* doc) {
    return WriteOutput(command, path, SavedText(doc));
}

std::vector<std::string> ItemTypes() {
    return {km::kDocumentItemTypeNames.begin(), km::kDocumentItemTypeNames.end()};
}

bool ParseInt(const std::string& text, int& value) {
    if (text.empty()) {
        return false;
    }
    errno = 0;
    char* end = nullptr;
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const long parsed = std::strtol(text.c_str(), &end, hex ? 16 : 10);
    if (errno != 0 || *end != '\0' || parsed < INT32_MIN || parsed > INT32_MAX) {
        return false;
    }
    value = static_cast<int>(parsed);
    return true;
}

}  // namespace zunokeymap
