//
// KeyCommand.cpp
//
// zuno-keymap key: what the library makes of a key.
//

#include <iostream>
#include <string>
#include <vector>

#include "Common.h"

namespace zunokeymap {

const char* const kKeyUsage =
    "usage: zuno-keymap key DEVICE SCANCODE [VIRTUALKEY]\n\n"
    "Builds a key as the library does and prints its caption and its scan code\n"
    "after right-hand modifiers are folded onto left-hand ones (right Alt 312\n"
    "becomes 56). DEVICE is keyboard, mouse or joystick; codes are decimal or 0x\n"
    "hexadecimal. Gamepad keys get their caption from the host, so theirs is empty.\n";

int KeyCommand(const std::vector<std::string>& args) {
    if (args.size() < 2 || args.size() > 3) {
        return UsageError("key", "expected DEVICE SCANCODE [VIRTUALKEY]");
    }
    int scanCode = 0;
    int virtualKey = km::kUnsetKeyCode;
    if (!ParseInt(args[1], scanCode)) {
        return UsageError("key", "SCANCODE '" + args[1] + "' is not a number");
    }
    if (args.size() == 3 && !ParseInt(args[2], virtualKey)) {
        return UsageError("key", "VIRTUALKEY '" + args[2] + "' is not a number");
    }
    const km::ConfigKey key = km::CreateConfigKey(args[0], virtualKey, scanCode);
    std::cout << "device: " << key.device << "\n"
              << "caption: \"" << key.text << "\"\n"
              << "scan_code: " << key.scan_code << "\n"
              << "virtual_key: " << key.virtual_key << "\n";
    return kClean;
}

}  // namespace zunokeymap
