//
// KeymapConfig.cpp
//

#include "zuno-keymapmanager/document/KeymapConfig.h"

#include "zuno-keymapmanager/items/ComposableItems.h"

namespace zunokeymapmanager {

KeymapConfig::~KeymapConfig() {
    delete info;
    delete param;
    for (ConfigItem* item : items) {
        delete item;
    }
}

bool KeymapConfig::isConfigKeyMatch(ConfigKey* first, ConfigKey* second) {
    if (first == nullptr) {
        return false;
    }
    const ConfigKey noKey;
    const ConfigKey& secondKey = second != nullptr ? *second : noKey;
    bool matched = false;
    for (ConfigItem* item : items) {
        if (item == nullptr) {
            continue;
        }
        if (auto* composable = dynamic_cast<ComposableConfigItem*>(item)) {
            if (composable->MatchComposableConfigKey(*first, secondKey)) {
                matched = true;
            }
            continue;
        }
        matched = item->MatchConfigKey(*first) || matched;
    }
    return matched;
}

}  // namespace zunokeymapmanager
