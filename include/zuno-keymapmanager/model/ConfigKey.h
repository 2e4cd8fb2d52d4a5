//
// ConfigKey.h
//
// One input: a keyboard key, a mouse button or a gamepad control.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_CONFIGKEY_H
#define ZUNO_KEYMAPMANAGER_MODEL_CONFIGKEY_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"

namespace zunokeymapmanager {

/// The code value that means "no code assigned".
constexpr std::int32_t kUnsetKeyCode = 2147483647;

class ZUNO_KM_API ConfigKey
/// A key is identified by its device ("keyboard", "mouse" or "joystick";
/// empty means no key is assigned) and, depending on the device, by its
/// scan code (keyboard, mouse) or by its control name in `text` (gamepad).
///
/// Keyboard scan codes are PC set-1 scan codes with 256 added for extended
/// keys (right Ctrl is 285, right Alt 312). For keyboard and mouse keys,
/// `text` holds the caption computed by setText().
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::string device;
    std::string text;
    std::int32_t virtual_key = kUnsetKeyCode;
    std::int32_t scan_code = kUnsetKeyCode;
    ///@}
    /// Reserved; always zero, never written to JSON and never compared.
    std::int32_t reserved0 = 0;
    /// Kept in the JSON members of the same names.
    ///@{
    std::int32_t reserved1 = 0;
    std::int32_t reserved2 = 0;
    ///@}

    /// An unset key.
    ConfigKey() = default;
    /// A key with the given device, caption and codes, taken as they are.
    ConfigKey(std::string keyDevice, std::string keyText, std::int32_t virtualKey,
              std::int32_t scanCode);

    /// Folds the right-hand modifiers onto their left-hand twins:
    /// scan code 312 becomes 56, 285 becomes 29, 54 becomes 42.
    void modifySpecialKey();

    /// Recomputes the caption from the key's own device and scan code.
    void setText();

    /// Stores the caption of `code` on `keyDevice` in `text`. Gamepad keys keep
    /// their text; unknown codes give an empty caption.
    void setText(std::string keyDevice, int code);

    /// Whether `other` triggers this key: gamepad keys compare device and
    /// text, all others device and scan code.
    bool Match(const ConfigKey& other) const;

    /// Whether the key is assigned: a device is given, and a gamepad key has a
    /// name while any other key has both codes.
    bool isSet() const;
};

class ZUNO_KM_API ComposableKey
/// A combination of two keys, pressed together. With an unset second key it
/// is a single key, and its second place then matches only a key that has
/// neither a device nor a scan code.
{
public:
    ConfigKey key;         ///< the first key
    ConfigKey second_key;  ///< the second key, unset for a single key

    /// A single unset key.
    ComposableKey() = default;
    /// The combination of `first` and `second`.
    ComposableKey(ConfigKey first, ConfigKey second);

    /// True when `a` matches the first key and `b` the second.
    bool Match(const ConfigKey& a, const ConfigKey& b) const;
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_CONFIGKEY_H
