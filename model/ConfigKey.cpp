//
// ConfigKey.cpp
//

#include "zuno-keymapmanager/model/ConfigKey.h"

#include <utility>

#include "labels/KeyLabels.h"
#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {

namespace {

bool isJoystick(const std::string& device) {
    return device == NameOf(DeviceType::Joystick);
}

}  // namespace

ConfigKey::ConfigKey(std::string keyDevice, std::string keyText, std::int32_t virtualKey,
                     std::int32_t scanCode)
    : device(std::move(keyDevice)),
      text(std::move(keyText)),
      virtual_key(virtualKey),
      scan_code(scanCode) {}

void ConfigKey::modifySpecialKey() {
    switch (scan_code) {
        case 312:  // right Alt
            scan_code = 56;
            break;
        case 285:  // right Ctrl
            scan_code = 29;
            break;
        case 54:  // right Shift
            scan_code = 42;
            break;
        default:
            break;
    }
}

void ConfigKey::setText() {
    setText(device, scan_code);
}

// The device is taken by value: that is the signature hosts compile against.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void ConfigKey::setText(std::string keyDevice, int code) {
    // Gamepad captions are the control names the caller supplies.
    if (isJoystick(keyDevice)) {
        return;
    }
    text = labels::Caption(keyDevice, code);
}

bool ConfigKey::Match(const ConfigKey& other) const {
    if (isJoystick(device)) {
        return other.device == device && other.text == text;
    }
    return other.device == device && other.scan_code == scan_code;
}

bool ConfigKey::isSet() const {
    if (device.empty()) {
        return false;
    }
    if (isJoystick(device)) {
        return !text.empty();
    }
    return virtual_key != kUnsetKeyCode && scan_code != kUnsetKeyCode;
}

ComposableKey::ComposableKey(ConfigKey first, ConfigKey second)
    : key(std::move(first)), second_key(std::move(second)) {}

bool ComposableKey::Match(const ConfigKey& a, const ConfigKey& b) const {
    return key.Match(a) && second_key.Match(b);
}

}  // namespace zunokeymapmanager
