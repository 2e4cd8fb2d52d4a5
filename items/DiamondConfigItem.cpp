//
// DiamondConfigItem.cpp
//

#include "zuno-keymapmanager/items/DiamondConfigItem.h"

#include <utility>

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

DiamondConfigItem::DiamondConfigItem(std::string typeName) : ConfigItem(std::move(typeName)) {}

DiamondConfigItem::~DiamondConfigItem() = default;

bool DiamondConfigItem::HasUsableDirectionKey() const {
    return top.isSet() || bottom.isSet() || left.isSet() || right.isSet();
}

bool DiamondConfigItem::MatchDirectionKey(const ConfigKey& other) const {
    return top.Match(other) || bottom.Match(other) || left.Match(other) || right.Match(other);
}

void DiamondConfigItem::ReadDirectionKeys(const Poco::JSON::Object::Ptr& object, bool required) {
    const std::pair<const std::string*, ConfigKey*> keys[] = {
        {&kFieldTopKey, &top},
        {&kFieldBottomKey, &bottom},
        {&kFieldLeftKey, &left},
        {&kFieldRightKey, &right},
    };
    for (const auto& [field, target] : keys) {
        if (required || json::has(object, *field)) {
            json::readKey(object, *field, *target);
        }
    }
}

void DiamondConfigItem::WriteDirectionKeys(Poco::JSON::Object& object) const {
    object.set(kFieldTopKey, json::keyObject(top));
    object.set(kFieldRightKey, json::keyObject(right));
    object.set(kFieldBottomKey, json::keyObject(bottom));
    object.set(kFieldLeftKey, json::keyObject(left));
}

}  // namespace zunokeymapmanager
