//
// Captions.cpp
//

#include "Captions.h"

namespace zunokeymap {
namespace render {

namespace km = zunokeymapmanager;

std::string KeyCaption(const km::ConfigKey& key) {
    static const struct {
        const char* text;
        const char* shown;
    } kShort[] = {
        {"Direction_up", "\xE2\x86\x91"},
        {"Direction_down", "\xE2\x86\x93"},
        {"Direction_left", "\xE2\x86\x90"},
        {"Direction_right", "\xE2\x86\x92"},
        {"left_mouse", "LMB"},
        {"right_mouse", "RMB"},
        {"middle_mouse", "MMB"},
        {"back_mouse", "Back"},
        {"forward_mouse", "Fwd"},
        {"wheel_up_mouse", "Wheel\xE2\x86\x91"},
        {"wheel_down_mouse", "Wheel\xE2\x86\x93"},
    };
    for (const auto& entry : kShort) {
        if (key.text == entry.text) {
            return entry.shown;
        }
    }
    if (!key.text.empty() || !key.isSet()) {
        return key.text;
    }
    return "#" + std::to_string(key.device == "joystick" ? key.virtual_key : key.scan_code);
}

std::string CombinationCaption(const km::ConfigKey& first, const km::ConfigKey& second) {
    std::string caption;
    for (const km::ConfigKey* key : km::KeysInReadingOrder(first, second)) {
        const std::string part = KeyCaption(*key);
        if (!caption.empty() && !part.empty()) {
            caption += '+';
        }
        caption += part;
    }
    return caption;
}

std::string ItemCaption(const km::ConfigItem& item) {
    // The item's own key and its second key; items fired by keys of their own
    // (pairs, direction keys) draw those beside their geometry instead.
    const std::vector<km::KeySlot>& slots = km::KeySlotsOf(item);
    for (const km::KeySlot& slot : slots) {
        if (slot.role != km::KeyRole::Key && slot.role != km::KeyRole::Carried) {
            continue;
        }
        return slot.second >= 0
                   ? CombinationCaption(slot.in(item),
                                        slots[static_cast<std::size_t>(slot.second)].in(item))
                   : KeyCaption(slot.in(item));
    }
    return std::string();
}

}  // namespace render
}  // namespace zunokeymap
