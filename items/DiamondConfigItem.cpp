//
// DiamondConfigItem.cpp
//

#include "zuno-keymapmanager/items/DiamondConfigItem.h"

#include <utility>

namespace zunokeymapmanager {

DiamondConfigItem::DiamondConfigItem(std::string typeName) : ConfigItem(std::move(typeName)) {}

DiamondConfigItem::~DiamondConfigItem() = default;

bool DiamondConfigItem::HasUsableDirectionKey() const {
    return top.isSet() || bottom.isSet() || left.isSet() || right.isSet();
}

bool DiamondConfigItem::MatchDirectionKey(const ConfigKey& other) const {
    return top.Match(other) || bottom.Match(other) || left.Match(other) || right.Match(other);
}

}  // namespace zunokeymapmanager
