//
// ConfigItem.cpp
//

#include "zuno-keymapmanager/model/ConfigItem.h"

#include <utility>

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

ConfigItem::ConfigItem(std::string typeName) : type(std::move(typeName)) {}

ConfigItem::~ConfigItem() = default;

Poco::JSON::Object ConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result;
    result.set(kFieldType, type);
    result.set(kFieldRelWorkPosition, json::pointObject(rel_work_position));
    result.set(kFieldEditorIconScale, editor_icon_scale);
    result.set(kFieldKey, json::keyObject(key));

    json::ObjectPtr iconObject = json::newObject();
    iconObject->set(kFieldVisibility, icon.visibility);
    iconObject->set(kFieldRadiusCorrection, icon.radius_correction);
    iconObject->set(kFieldBackgroundColor, icon.background_color);
    iconObject->set(kFieldRelPosition, json::pointObject(icon.rel_position));
    iconObject->set(kFieldDescription, icon.description);
    result.set(kFieldIcon, iconObject);
    return result;
}

void ConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    json::read(object, kFieldType, type);
    json::readPoint(object, kFieldRelWorkPosition, rel_work_position);
    json::read(object, kFieldEditorIconScale, editor_icon_scale);
    json::readKey(object, kFieldKey, key);

    json::ObjectPtr iconObject = json::object(object, kFieldIcon);
    json::read(iconObject, kFieldVisibility, icon.visibility);
    json::read(iconObject, kFieldRadiusCorrection, icon.radius_correction);
    json::read(iconObject, kFieldBackgroundColor, icon.background_color);
    json::readPoint(iconObject, kFieldRelPosition, icon.rel_position);
    json::read(iconObject, kFieldDescription, icon.description);
}

bool ConfigItem::IsInvalid() const {
    return !key.isSet();
}

bool ConfigItem::MatchConfigKey(const ConfigKey& other) {
    return key.Match(other);
}

}  // namespace zunokeymapmanager
