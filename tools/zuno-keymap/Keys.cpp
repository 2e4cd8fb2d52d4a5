//
// Keys.cpp
//

#include "Keys.h"

#include <algorithm>
#include <cctype>

namespace zunokeymap {

namespace {

// Above every code the caption tables name.
constexpr int kCodeLimit = 1024;

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string withoutAffix(const std::string& caption) {
    std::string folded = lower(caption);
    const std::string suffix = "_mouse";
    const std::string prefix = "direction_";
    if (folded.size() > suffix.size() &&
        folded.compare(folded.size() - suffix.size(), suffix.size(), suffix) == 0) {
        return folded.substr(0, folded.size() - suffix.size());
    }
    if (folded.size() > prefix.size() && folded.compare(0, prefix.size(), prefix) == 0) {
        return folded.substr(prefix.size());
    }
    return folded;
}

// Whether a key with `code` exists on `device`: the host records a virtual
// key with every key it sees, so a code without one is in no document it
// wrote, and the check calls an item bound to it invalid.
bool isKey(const std::string& device, int code) {
    return km::VirtualKeyOf(device, code) != km::kUnsetKeyCode;
}

// The code whose caption is `name`: exactly, then in any case, then with the
// affix left off; the closer match wins, then the lower code.
int codeNamed(const std::string& device, const std::string& name) {
    const std::string folded = lower(name);
    int best = -1;
    int bestRank = 0;
    for (const auto& [caption, code] : KeyNames(device)) {
        const int closeness = caption == name                   ? 0
                              : lower(caption) == folded        ? 1
                              : withoutAffix(caption) == folded ? 2
                                                                : -1;
        if (closeness < 0) {
            continue;
        }
        if (best < 0 || closeness < bestRank) {
            best = code;
            bestRank = closeness;
        }
    }
    return best;
}

}  // namespace

bool IsDevice(const std::string& device) {
    return device == "keyboard" || device == "mouse" || device == "joystick";
}

std::vector<std::pair<std::string, int>> KeyNames(const std::string& device) {
    std::vector<std::pair<std::string, int>> names;
    for (int code = 0; code < kCodeLimit; ++code) {
        std::string caption = km::MarcoConVerter::scancodeToText(device, code);
        if (!caption.empty() && isKey(device, code)) {
            names.emplace_back(std::move(caption), code);
        }
    }
    return names;
}

bool KeyNamed(const std::string& device, const std::string& name, km::ConfigKey& key,
              std::string& error) {
    if (!IsDevice(device)) {
        error = "no device '" + device + "' (keyboard, mouse or joystick)";
        return false;
    }
    if (name.find_first_of(" \t\r\n\v\f") != std::string::npos) {
        error = "a key name has no blanks: '" + name + "'";
        return false;
    }
    int code = 0;
    const bool numeric = ParseInt(name, code);
    // A code is a key's number on its device: never negative, and the
    // largest one means "no key".
    if (numeric && (code < 0 || code == km::kUnsetKeyCode)) {
        error = "no " + device + " key has the code " + name;
        return false;
    }
    if (device == "joystick") {
        if (name.empty()) {
            error = "a gamepad control needs a name";
            return false;
        }
        // Gamepad keys match by their name; the codes stay unset unless given.
        key = numeric ? km::CreateConfigKey(device, km::kUnsetKeyCode, code)
                      : km::ConfigKey(device, name, km::kUnsetKeyCode, km::kUnsetKeyCode);
        return true;
    }
    if (!numeric) {
        code = codeNamed(device, name);
        if (code < 0) {
            error = "no " + device + " key named '" + name + "' (see 'zuno-keymap key --list " +
                    device + "')";
            return false;
        }
    }
    if (!isKey(device, code)) {
        error = "no " + device + " key has the code " + name + " (see 'zuno-keymap key --list " +
                device + "')";
        return false;
    }
    key = km::KeyOfCode(device, code);
    return true;
}

bool KeyFromText(const std::string& text, bool joystick, km::ConfigKey& key, std::string& error) {
    const std::size_t colon = text.find(':');
    if (colon != std::string::npos && colon > 0 && IsDevice(text.substr(0, colon))) {
        return KeyNamed(text.substr(0, colon), text.substr(colon + 1), key, error);
    }
    return KeyNamed(joystick ? "joystick" : "keyboard", text, key, error);
}

}  // namespace zunokeymap
