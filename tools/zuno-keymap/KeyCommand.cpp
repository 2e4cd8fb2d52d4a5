//
// KeyCommand.cpp
//
// zuno-keymap key: a key object ready to paste into a document.
//

#include <iostream>
#include <memory>
#include <string>

#include <Poco/JSON/Stringifier.h>

#include "CommandLine.h"
#include "Common.h"
#include "Keys.h"

namespace zunokeymap {

namespace {

struct KeyOptions {
    std::string device;
    std::string name;
    std::string virtualKey;
    bool list = false;
};

int runKey(const KeyOptions& options) {
    if (!IsDevice(options.device)) {
        return UsageError("key",
                          "no device '" + options.device + "' (keyboard, mouse or joystick)");
    }
    if (options.list) {
        if (!options.name.empty()) {
            return UsageError("key", "--list takes a DEVICE only");
        }
        if (options.device == "joystick") {
            std::cout << "Gamepad controls are named by the host (A, B, X, Y, LB, RB, LT, RT,\n"
                         "Left_Stick, Right_Stick, ...); any name is taken.\n";
        }
        for (const auto& [name, code] : KeyNames(options.device)) {
            std::cout << name << "\t" << code << "\n";
        }
        return kClean;
    }
    if (options.name.empty()) {
        return UsageError("key", "no NAME or CODE given");
    }
    km::ConfigKey key;
    std::string error;
    if (!KeyNamed(options.device, options.name, key, error)) {
        return UsageError("key", error);
    }
    if (!options.virtualKey.empty()) {
        int code = 0;
        if (!ParseInt(options.name, code) || !ParseInt(options.virtualKey, key.virtual_key)) {
            return UsageError("key", "VIRTUALKEY goes with a numeric CODE, and is a number itself");
        }
    }
    Poco::JSON::Stringifier::stringify(km::KeyToJson(key), std::cout);
    std::cout << "\n";
    return kClean;
}

}  // namespace

void AddKeyCommand(CLI::App& app) {
    auto options = std::make_shared<KeyOptions>();
    CLI::App& command = AddSubcommand(
        app, "key", "print a key as a document writes it",
        "Prints the key object (device, scan_code, text, virtual_key) that a document\n"
        "holds for the key, ready to paste:\n"
        "  zuno-keymap key keyboard Q      {\"device\":\"keyboard\",\"scan_code\":16,...}\n"
        "  zuno-keymap key mouse left      the left button\n"
        "  zuno-keymap key keyboard 312    right Alt: folded onto left Alt's 56\n"
        "NAME is a caption of the library (Q, Ctrl, Space, F1, left_mouse), in any\n"
        "case, with \"_mouse\" and \"Direction_\" left off where the caption has them\n"
        "(left, up); see --list. A number is a scan code: keyboard keys use PC scan\n"
        "codes (set 1, extended keys + 256, so the digit keys are 2 to 11), mouse\n"
        "buttons 1 left, 2 right, 4 middle, 8 back, 16 forward. Gamepad controls are\n"
        "named by the host; any name is taken and their codes stay unset.\n\n"
        "The caption comes from the library, and right-hand modifiers are folded onto\n"
        "left-hand ones (right Alt 312 becomes 56, keeping its own, empty caption).\n"
        "The virtual key is the Windows virtual-key code of a US layout that goes\n"
        "with the scan code (Q 81, Ctrl 17, Alt 18, Space 32, arrows 37 to 40, left\n"
        "mouse 1); a code without one gets 2147483647 (unset) unless VIRTUALKEY is\n"
        "given. An unknown device or name exits 2.\n");
    command.add_option("DEVICE", options->device, "keyboard, mouse or joystick")->required();
    command.add_option("NAME", options->name, "a key name, or a code");
    command.add_option("VIRTUALKEY", options->virtualKey, "the virtual key, with a numeric CODE");
    command.add_flag("--list", options->list, "list the names and codes of DEVICE");
    OnRun(command, [options] { return runKey(*options); });
}

}  // namespace zunokeymap
