//
// KeyTriggers.cpp
//

#include "zuno-keymapmanager/api/KeyTriggers.h"

#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/DiamondConfigItem.h"

namespace zunokeymapmanager {

namespace {

void add(std::vector<KeyTrigger>& out, const ConfigKey& first, const ConfigKey& second,
         const char* role) {
    if (!first.isSet()) {
        return;
    }
    KeyTrigger trigger;
    trigger.first = first;
    trigger.second = second;
    trigger.combination = second.isSet();
    trigger.role = role;
    out.push_back(std::move(trigger));
}

}  // namespace

std::vector<KeyTrigger> KeyTriggersOf(const ConfigItem& item) {
    std::vector<KeyTrigger> out;
    const ConfigKey none;
    if (const auto* pair = dynamic_cast<const PairConfigItem*>(&item)) {
        add(out, pair->positive_key.key, pair->positive_key.second_key, "positive");
        add(out, pair->negative_key.key, pair->negative_key.second_key, "negative");
    } else if (const auto* composable = dynamic_cast<const ComposableConfigItem*>(&item)) {
        add(out, composable->key, composable->second_key, "key");
    } else if (const auto* diamond = dynamic_cast<const DiamondConfigItem*>(&item)) {
        add(out, diamond->top, none, "top");
        add(out, diamond->right, none, "right");
        add(out, diamond->bottom, none, "bottom");
        add(out, diamond->left, none, "left");
    } else {
        add(out, item.key, none, "key");
    }
    return out;
}

bool TriggerFires(ConfigItem& item, const KeyTrigger& trigger) {
    if (auto* composable = dynamic_cast<ComposableConfigItem*>(&item)) {
        return trigger.combination
                   ? composable->MatchComposableConfigKey(trigger.first, trigger.second)
                   : composable->MatchConfigKey(trigger.first);
    }
    return item.MatchConfigKey(trigger.first);
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

std::string DescribeKeyTrigger(const KeyTrigger& trigger) {
    return trigger.combination
               ? DescribeConfigKey(trigger.first) + "+" + DescribeConfigKey(trigger.second)
               : DescribeConfigKey(trigger.first);
}

std::string WhyItemInvalid(const ConfigItem& item) {
    if (!item.IsInvalid()) {
        return std::string();
    }
    if (dynamic_cast<const DiamondConfigItem*>(&item) != nullptr) {
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
