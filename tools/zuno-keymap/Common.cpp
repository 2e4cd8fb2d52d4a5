//
// Common.cpp
//

#include "Common.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

namespace zunokeymap {

int UsageError(const std::string& command, const std::string& message) {
    std::cerr << "zuno-keymap " << command << ": " << message << "\n"
              << "Try 'zuno-keymap " << command << " --help'.\n";
    return kUsage;
}

int ParseOptions(const std::string& command, const std::vector<std::string>& args,
                 std::initializer_list<const char*> flags,
                 std::initializer_list<std::pair<const char*, const char*>> valued, Options& out) {
    bool options = true;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (!options || arg.size() < 2 || arg[0] != '-') {
            out.operands.push_back(arg);
            continue;
        }
        if (arg == "--") {
            options = false;
            continue;
        }
        if (std::find(flags.begin(), flags.end(), arg) != flags.end()) {
            out.flags.insert(arg);
            continue;
        }
        const auto option = std::find_if(valued.begin(), valued.end(), [&arg](const auto& names) {
            return arg == names.first || arg == names.second;
        });
        if (option == valued.end()) {
            return UsageError(command, "unknown option '" + arg + "'");
        }
        if (i + 1 == args.size()) {
            return UsageError(command, std::string(option->first) + " needs a file name");
        }
        out.values[option->first] = args[++i];
    }
    return 0;
}

bool WantsHelp(const std::vector<std::string>& args, const char* usage) {
    for (const std::string& arg : args) {
        if (arg == "--") {
            break;
        }
        if (arg == "-h" || arg == "--help") {
            std::cout << usage;
            return true;
        }
    }
    return false;
}

bool ReadInput(const std::string& path, std::string& text) {
    if (path == "-") {
        text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        return !std::cin.bad();
    }
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return false;
    }
    std::ostringstream content;
    content << in.rdbuf();
    text = content.str();
    return !in.bad();
}

bool IsBuiltIn(const std::string& name, bool joystick) {
    const auto& table =
        joystick ? EmbededConfig::joystickConfigs() : EmbededConfig::keymapConfigs();
    return table.count(name) != 0;
}

Loaded Load(const std::string& source, bool joystick) {
    Loaded result;
    result.source = source == "-" ? "<stdin>" : source;
    std::string data;
    if (source == "-") {
        if (!ReadInput("-", data)) {
            result.unreadable = true;
        }
        result.text = data;
        if (data.empty()) {
            // Empty text would send the library to a file of that name.
            result.doc.reset(new km::KeymapConfig());
            result.doc->info = new km::ConfigInfo();
            result.doc->param = new km::ConfigParam();
            result.doc->info->is_joystick = joystick;
            result.diagnostic.failed = true;
            result.diagnostic.source = result.source;
            result.diagnostic.problem = km::LoadDiagnostic::Problem::Malformed;
            result.diagnostic.line = 1;
            result.diagnostic.column = 1;
            result.diagnostic.message = "malformed JSON at line 1, column 1: the document is empty";
            return result;
        }
    }
    const std::string path = source == "-" ? result.source : source;
    result.doc.reset(joystick ? km::LoadJoystickConfigAndInfo(path, data, &result.diagnostic)
                              : km::LoadKeymapConfigAndInfo(path, data, &result.diagnostic));
    if (source != "-") {
        if (IsBuiltIn(source, joystick)) {
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

std::string SavedText(km::KeymapConfig* doc) {
    char pattern[] = "/tmp/zuno-keymap-XXXXXX";
    const int fd = ::mkstemp(pattern);
    if (fd < 0) {
        return std::string();
    }
    ::close(fd);
    km::SaveKeymapConfigAndInfo(pattern, doc);
    std::string text;
    ReadInput(pattern, text);
    std::remove(pattern);
    return text;
}

std::vector<std::string> ItemTypes() {
    std::vector<std::string> types;
    for (std::size_t i = 1; i < km::kItemTypeNames.size(); ++i) {
        types.emplace_back(km::kItemTypeNames[i]);
    }
    return types;
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
