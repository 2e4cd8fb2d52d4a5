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

struct CodeToVirtualKey {
    int code;
    int virtualKey;
};

// Keyboard scan codes (set 1, extended keys + 256) and the Windows virtual-key
// codes that go with them on a US layout, as the host records them: letters
// and digits are their upper-case ASCII codes, Ctrl 0x11, Shift 0x10, Alt
// 0x12 (left and right alike), the arrows 0x25 to 0x28.
constexpr CodeToVirtualKey kKeyboard[] = {
    {1, 0x1B},   {2, 0x31},   {3, 0x32},   {4, 0x33},   {5, 0x34},   {6, 0x35},   {7, 0x36},
    {8, 0x37},   {9, 0x38},   {10, 0x39},  {11, 0x30},  {12, 0xBD},  {13, 0xBB},  {14, 0x08},
    {15, 0x09},  {16, 0x51},  {17, 0x57},  {18, 0x45},  {19, 0x52},  {20, 0x54},  {21, 0x59},
    {22, 0x55},  {23, 0x49},  {24, 0x4F},  {25, 0x50},  {26, 0xDB},  {27, 0xDD},  {28, 0x0D},
    {29, 0x11},  {30, 0x41},  {31, 0x53},  {32, 0x44},  {33, 0x46},  {34, 0x47},  {35, 0x48},
    {36, 0x4A},  {37, 0x4B},  {38, 0x4C},  {39, 0xBA},  {40, 0xDE},  {41, 0xC0},  {42, 0x10},
    {43, 0xDC},  {44, 0x5A},  {45, 0x58},  {46, 0x43},  {47, 0x56},  {48, 0x42},  {49, 0x4E},
    {50, 0x4D},  {51, 0xBC},  {52, 0xBE},  {53, 0xBF},  {54, 0x10},  {55, 0x6A},  {56, 0x12},
    {57, 0x20},  {58, 0x14},  {59, 0x70},  {60, 0x71},  {61, 0x72},  {62, 0x73},  {63, 0x74},
    {64, 0x75},  {65, 0x76},  {66, 0x77},  {67, 0x78},  {68, 0x79},  {69, 0x90},  {70, 0x91},
    {71, 0x67},  {72, 0x68},  {73, 0x69},  {74, 0x6D},  {75, 0x64},  {76, 0x65},  {77, 0x66},
    {78, 0x6B},  {79, 0x61},  {80, 0x62},  {81, 0x63},  {82, 0x60},  {83, 0x6E},  {87, 0x7A},
    {88, 0x7B},  {284, 0x0D}, {285, 0x11}, {309, 0x6F}, {312, 0x12}, {327, 0x24}, {328, 0x26},
    {329, 0x21}, {331, 0x25}, {333, 0x27}, {335, 0x23}, {336, 0x28}, {337, 0x22}, {338, 0x2D},
    {339, 0x2E}, {347, 0x5B}, {348, 0x5C}, {349, 0x5D},
};

// Mouse buttons (single-bit codes) and their virtual keys: left 1, right 2,
// middle 4, back and forward the two extra buttons 5 and 6.
constexpr CodeToVirtualKey kMouse[] = {{1, 0x01}, {2, 0x02}, {4, 0x04}, {8, 0x05}, {16, 0x06}};

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

// The code whose caption is `name`: exactly, then in any case, then with the
// affix left off. A key the virtual-key table knows wins over one it does
// not ("Left" is both a named code of the general table and, as
// "Direction_left", the left arrow), then the closer match, then the lower code.
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
        const int rank = closeness + (VirtualKeyOf(device, code) == km::kUnsetKeyCode ? 3 : 0);
        if (best < 0 || rank < bestRank) {
            best = code;
            bestRank = rank;
        }
    }
    return best;
}

}  // namespace

bool IsDevice(const std::string& device) {
    return device == "keyboard" || device == "mouse" || device == "joystick";
}

int VirtualKeyOf(const std::string& device, int code) {
    const auto find = [code](const auto& table) {
        for (const CodeToVirtualKey& row : table) {
            if (row.code == code) {
                return row.virtualKey;
            }
        }
        return km::kUnsetKeyCode;
    };
    return device == "keyboard" ? find(kKeyboard)
           : device == "mouse"  ? find(kMouse)
                                : km::kUnsetKeyCode;
}

std::vector<std::pair<std::string, int>> KeyNames(const std::string& device) {
    std::vector<std::pair<std::string, int>> names;
    for (int code = 0; code < kCodeLimit; ++code) {
        std::string caption = km::MarcoConVerter::scancodeToText(device, code);
        if (!caption.empty()) {
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
    key = km::CreateConfigKey(device, VirtualKeyOf(device, code), code);
    return true;
}

bool KeyFromText(const std::string& text, bool joystick, km::ConfigKey& key, std::string& error) {
    const std::size_t colon = text.find(':');
    if (colon != std::string::npos && colon > 0 && IsDevice(text.substr(0, colon))) {
        return KeyNamed(text.substr(0, colon), text.substr(colon + 1), key, error);
    }
    return KeyNamed(joystick ? "joystick" : "keyboard", text, key, error);
}

Poco::JSON::Object::Ptr KeyToJson(const km::ConfigKey& key) {
    Poco::JSON::Object::Ptr object = new Poco::JSON::Object();
    object->set("device", key.device);
    object->set("scan_code", key.scan_code);
    object->set("text", key.text);
    object->set("virtual_key", key.virtual_key);
    return object;
}

}  // namespace zunokeymap
