//
// ConfigFactory.cpp
//

#include "zuno-keymapmanager/model/ConfigFactory.h"

#include <array>
#include <memory>

#include <Poco/Exception.h>

#include "model/ItemRegistry.h"
#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

namespace {

// Constant-initialised, so registration from any translation unit's static
// initialiser finds it ready.
std::array<ItemMaker, kItemTypeNames.size()> gMakers{};

}  // namespace

bool RegisterItemMakers(std::initializer_list<std::pair<ItemType, ItemMaker>> makers) {
    for (const auto& [type, maker] : makers) {
        gMakers[static_cast<std::size_t>(type)] = maker;
    }
    return true;
}

ItemMaker FindItemMaker(ItemType type) {
    return gMakers[static_cast<std::size_t>(type)];
}

ConfigItem* ConfigFactory::ProduceConfigItem(const std::string& type) {
    const int index = IndexOfName(kItemTypeNames, type);
    if (index <= 0) {
        return nullptr;
    }
    ItemMaker maker = FindItemMaker(static_cast<ItemType>(index));
    return maker != nullptr ? maker() : nullptr;
}

ConfigItem* ConfigFactory::ProduceConfigItem(const Poco::JSON::Object::Ptr& object) {
    if (object.isNull()) {
        throw Poco::NullPointerException();
    }
    std::string type;
    json::read(object, kFieldType, type);
    std::unique_ptr<ConfigItem> item(ProduceConfigItem(type));
    if (item) {
        item->FillFromJsonObject(object);
    }
    return item.release();
}

}  // namespace zunokeymapmanager
