//
// Common.cpp
//

#include "Common.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "Platform.h"

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
    std::ifstream in;
    if (!OpenRegularFile(path, in)) {
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
    return km::SaveKeymapConfigAndInfoToText(doc);
}

std::vector<std::string> ItemTypes() {
    std::vector<std::string> types;
    for (std::size_t i = 1; i < km::kItemTypeNames.size(); ++i) {
        types.emplace_back(km::kItemTypeNames[i]);
    }
    return types;
}

std::string DescribeKey(const km::ConfigKey& key) {
    if (key.device.empty()) {
        return "-";
    }
    if (!key.text.empty()) {
        return key.text;
    }
    if (key.scan_code != km::kUnsetKeyCode) {
        return key.device + ":" + std::to_string(key.scan_code);
    }
    return key.device + ":?";
}

std::string DescribeTrigger(const Trigger& trigger) {
    return trigger.combination ? DescribeKey(trigger.first) + "+" + DescribeKey(trigger.second)
                               : DescribeKey(trigger.first);
}

namespace {

void add(std::vector<Trigger>& out, const km::ConfigKey& first, const km::ConfigKey& second,
         const char* role) {
    if (!first.isSet()) {
        return;
    }
    Trigger trigger;
    trigger.first = first;
    trigger.second = second;
    trigger.combination = second.isSet();
    trigger.role = role;
    out.push_back(trigger);
}

}  // namespace

std::vector<Trigger> TriggersOf(km::ConfigItem& item) {
    std::vector<Trigger> out;
    const km::ConfigKey none;
    if (auto* pair = dynamic_cast<km::PairConfigItem*>(&item)) {
        add(out, pair->positive_key.key, pair->positive_key.second_key, "positive");
        add(out, pair->negative_key.key, pair->negative_key.second_key, "negative");
    } else if (auto* composable = dynamic_cast<km::ComposableConfigItem*>(&item)) {
        add(out, composable->key, composable->second_key, "key");
    } else if (auto* diamond = dynamic_cast<km::DiamondConfigItem*>(&item)) {
        add(out, diamond->top, none, "top");
        add(out, diamond->right, none, "right");
        add(out, diamond->bottom, none, "bottom");
        add(out, diamond->left, none, "left");
    } else {
        add(out, item.key, none, "key");
    }
    return out;
}

bool Fires(km::ConfigItem& item, const Trigger& trigger) {
    if (auto* composable = dynamic_cast<km::ComposableConfigItem*>(&item)) {
        return trigger.combination
                   ? composable->MatchComposableConfigKey(trigger.first, trigger.second)
                   : composable->MatchConfigKey(trigger.first);
    }
    return item.MatchConfigKey(trigger.first);
}

std::string WhyInvalid(const km::ConfigItem& item) {
    if (!item.IsInvalid()) {
        return std::string();
    }
    if (dynamic_cast<const km::DiamondConfigItem*>(&item) != nullptr) {
        return "none of its four direction keys is set";
    }
    const km::ConfigKey& key = item.key;
    if (key.device.empty()) {
        return "no key is assigned";
    }
    if (key.device == "joystick") {
        return "its gamepad key has no control name";
    }
    if (key.virtual_key == km::kUnsetKeyCode && key.scan_code == km::kUnsetKeyCode) {
        return "its key has neither a virtual key nor a scan code";
    }
    return key.scan_code == km::kUnsetKeyCode ? "its key has no scan code"
                                              : "its key has no virtual key";
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
