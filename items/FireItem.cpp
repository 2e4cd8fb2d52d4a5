//
// FireItem.cpp
//

#include "zuno-keymapmanager/items/FireItem.h"

#include "items/ItemPartsIO.h"
#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

FireConfigItem::FireConfigItem() : ConfigItem("Fire") {
    key = ConfigKey("mouse", "left_mouse", 1, 1);
}

FireConfigItem::~FireConfigItem() = default;

Poco::JSON::Object FireConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ConfigItem::ConvertToJsonObject();

    json::ObjectPtr drag = json::newObject();
    drag->set(kFieldRelPosition, json::pointObject(swipehold_info.rel_position));
    drag->set(kFieldRelRadius, swipehold_info.rel_radius);
    drag->set(kFieldSteps, swipehold_info.steps);
    drag->set(kFieldInvalidZoneInfo, parts::invalidZoneObject(swipehold_info.invalid_zone_info));

    json::ObjectPtr option = json::newObject();
    option->set(kFieldFireRangePolicy, fire_option.fire_range_policy);

    result.set(kFieldFireOption, option);
    result.set(kFieldSwipeholdInfo, drag);
    result.set(kFieldNeedFireAndDrag, need_fire_and_drag);
    return result;
}

void FireConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ConfigItem::FillFromJsonObject(object);

    const json::ObjectPtr drag = json::optionalObject(object, kFieldSwipeholdInfo);
    if (!drag.isNull()) {
        json::read(drag, kFieldRelRadius, swipehold_info.rel_radius);
        json::readPoint(drag, kFieldRelPosition, swipehold_info.rel_position);
        json::read(drag, kFieldSteps, swipehold_info.steps);
        parts::readInvalidZone(drag, swipehold_info.invalid_zone_info);
    }

    const json::ObjectPtr option = json::optionalObject(object, kFieldFireOption);
    if (!option.isNull()) {
        json::read(option, kFieldFireRangePolicy, fire_option.fire_range_policy);
    }

    json::read(object, kFieldNeedFireAndDrag, need_fire_and_drag);
}

}  // namespace zunokeymapmanager
