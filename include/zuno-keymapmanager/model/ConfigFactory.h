//
// ConfigFactory.h
//
// Makes mapping items by type name.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_CONFIGFACTORY_H
#define ZUNO_KEYMAPMANAGER_MODEL_CONFIGFACTORY_H

#include <string>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/Export.h"

namespace zunokeymapmanager {

class ConfigItem;

class ZUNO_KM_API ConfigFactory
/// Makes the item class named by a type string ("Click", "Swipehold", ...).
/// The caller owns every item it returns.
{
public:
    ConfigFactory() = default;
    ~ConfigFactory() = default;

    /// A new item with all defaults, or null for "Unknown" and any string that
    /// is not a type name (the comparison is exact and case-sensitive).
    static ConfigItem* ProduceConfigItem(const std::string& type);

    /// A new item filled from `object`, or null when its "type" names no item
    /// class. Raises Poco::NullPointerException for a null object, and the
    /// JSON library's exceptions when "type" is missing or the item's own
    /// reading fails (the half-built item is released first).
    static ConfigItem* ProduceConfigItem(const Poco::JSON::Object::Ptr& object);
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_CONFIGFACTORY_H
