//
// Keys.h
//
// Keys by name: the library's captions read backwards.
//

#ifndef ZUNO_KEYMAP_TOOL_KEYS_H
#define ZUNO_KEYMAP_TOOL_KEYS_H

#include <string>
#include <utility>
#include <vector>

#include "Common.h"

namespace zunokeymap {

/// "keyboard", "mouse", "joystick".
bool IsDevice(const std::string& device);

/// The key named `name` on `device`. A number is a scan code (button code
/// on the mouse); otherwise the name is a caption of the library ("Q",
/// "Ctrl", "left_mouse"), in any case, with "_mouse" and "Direction_" left
/// off where the caption has them ("left", "up"). Gamepad controls are named
/// by the host, so any name is taken there. The key gets its virtual key
/// and its caption from the library. False, with `error` set, when there is
/// no such key: a keyboard or mouse code is a key only where the library's
/// key table gives it a virtual key.
bool KeyNamed(const std::string& device, const std::string& name, km::ConfigKey& key,
              std::string& error);

/// A key written the short way: "Q", "mouse:left", "joystick:A". Without a
/// device it is a gamepad control in a gamepad document, else a keyboard key.
bool KeyFromText(const std::string& text, bool joystick, km::ConfigKey& key, std::string& error);

/// The names and codes of the keys of `device` (keyboard and mouse), by code.
std::vector<std::pair<std::string, int>> KeyNames(const std::string& device);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_KEYS_H
