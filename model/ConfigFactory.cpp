//
// ConfigFactory.cpp
//

#include "zuno-keymapmanager/model/ConfigFactory.h"

#include <memory>

#include <Poco/Exception.h>

#include "model/ItemTable.h"
#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

ConfigItem* ConfigFactory::ProduceConfigItem(const std::string& type) {
    const int index = IndexOfName(kItemTypeNames, type);
    if (index <= 0) {
        return nullptr;
    }
    return MakeItemOfType(static_cast<ItemType>(index));
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
