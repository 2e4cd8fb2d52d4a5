//
// KeyTriggers.cpp
//

#include "zuno-keymapmanager/api/KeyTriggers.h"

#include <algorithm>
#include <iterator>

#include "check/TriggerRules.h"
#include "zuno-keymapmanager/items/ComposableItems.h"

namespace zunokeymapmanager {

namespace check {

bool Fires(ConfigItem& item, const ConfigKey& first, const ConfigKey& second) {
    if (auto* composable = dynamic_cast<ComposableConfigItem*>(&item)) {
        return second.isSet() ? composable->MatchComposableConfigKey(first, second)
                              : composable->MatchConfigKey(first);
    }
    return item.MatchConfigKey(first);
}

}  // namespace check

std::vector<KeyTrigger> KeyTriggersOf(const ConfigItem& item) {
    std::vector<KeyTrigger> out;
    check::ForEachTrigger(
        item, [&out](const ConfigKey& first, const ConfigKey& second, const char* role) {
            KeyTrigger trigger;
            trigger.first = first;
            trigger.second = second;
            trigger.combination = second.isSet();
            trigger.role = role;
            out.push_back(std::move(trigger));
        });
    return out;
}

bool TriggerFires(ConfigItem& item, const KeyTrigger& trigger) {
    return check::Fires(item, trigger.first, trigger.combination ? trigger.second : ConfigKey());
}

std::string DescribeConfigKey(const ConfigKey& key) {
    if (key.device.empty()) {
        return "-";
    }
    if (!key.text.empty()) {
        return key.text;
    }
    if (key.scan_code != kUnsetKeyCode) {
        return key.device + ":" + std::to_string(key.scan_code);
    }
    return key.device + ":?";
}

bool IsModifierKey(const ConfigKey& key) {
    // Left and right Ctrl, Shift, Alt and Windows keys.
    constexpr int kModifiers[] = {29, 285, 42, 54, 56, 312, 347, 348};
    return key.device == "keyboard" && std::find(std::begin(kModifiers), std::end(kModifiers),
                                                 key.scan_code) != std::end(kModifiers);
}

std::vector<const ConfigKey*> KeysInReadingOrder(const ConfigKey& first, const ConfigKey& second) {
    if (!second.isSet()) {
        return {&first};
    }
    if (IsModifierKey(second) && !IsModifierKey(first)) {
        return {&second, &first};
    }
    return {&first, &second};
}

std::string DescribeKeyTrigger(const KeyTrigger& trigger) {
    if (!trigger.combination) {
        return DescribeConfigKey(trigger.first);
    }
    std::string out;
    for (const ConfigKey* key : KeysInReadingOrder(trigger.first, trigger.second)) {
        out += out.empty() ? "" : "+";
        out += DescribeConfigKey(*key);
    }
    return out;
}

std::string WhyItemInvalid(const ConfigItem& item) {
    if (!item.IsInvalid()) {
        return std::string();
    }
    const std::vector<KeySlot>& slots = KeySlotsOf(item);
    const auto direction = [](const KeySlot& slot) { return slot.role == KeyRole::Direction; };
    if (std::any_of(slots.begin(), slots.end(), direction)) {
        return "none of its four direction keys is set";
    }
    const ConfigKey& key = item.key;
    if (key.device.empty()) {
        return "no key is assigned";
    }
    if (key.device == "joystick") {
        return "its gamepad key has no control name";
    }
    if (key.virtual_key == kUnsetKeyCode && key.scan_code == kUnsetKeyCode) {
        return "its key has neither a virtual key nor a scan code";
    }
    return key.scan_code == kUnsetKeyCode ? "its key has no scan code"
                                          : "its key has no virtual key";
}

}  // namespace zunokeymapmanager
