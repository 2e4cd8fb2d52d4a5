//
// SpellItems.cpp
//

#include "zuno-keymapmanager/items/SpellItems.h"

#include <memory>

#include "items/ItemPartsIO.h"
#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/ConfigFactory.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

namespace {

const std::string kSwipeholdTypeName{"Swipehold"};

/// A fresh drag item from the factory, or null when the factory makes none.
std::unique_ptr<SwipeholdConfigItem> produceSwipehold() {
    std::unique_ptr<ConfigItem> item(ConfigFactory::ProduceConfigItem(kSwipeholdTypeName));
    auto* swipehold = dynamic_cast<SwipeholdConfigItem*>(item.get());
    if (swipehold == nullptr) {
        return nullptr;
    }
    return std::unique_ptr<SwipeholdConfigItem>(static_cast<SwipeholdConfigItem*>(item.release()));
}

// The drag settings written by the drag item itself, so that both item types
// write them the same way.
const std::string* const kCopiedSwipeholdFields[] = {
    &kFieldFirstPointPolicy, &kFieldSubsequentPointPolicy,
    &kFieldRelRadius,        &kFieldHoldCenterIntervalAfterRelease,
    &kFieldInLinePolicy,     &kFieldTargetPointInputCompensatoryPolicy,
};

}  // namespace

// --- SpellConfigItem ---------------------------------------------------------

SpellConfigItem::SpellConfigItem() : ComposableConfigItem("Spell") {}

SpellConfigItem::~SpellConfigItem() = default;

SwipeholdConfigItem* SpellConfigItem::getRawSwipeholdConfigItem() const {
    std::unique_ptr<SwipeholdConfigItem> item = produceSwipehold();
    if (!item) {
        return nullptr;
    }
    item->first_point_policy = swipehold_info.first_point_policy;
    item->subsequent_point_policy = swipehold_info.subsequent_point_policy;
    item->hold_center_interval_after_release = swipehold_info.hold_center_interval_after_release;
    item->in_line_policy = swipehold_info.in_line_policy;
    item->target_point_input_compensatory_policy =
        swipehold_info.target_point_input_compensatory_policy;
    item->rel_radius = swipehold_info.rel_radius;
    item->rel_work_position = swipehold_info.rel_position;
    return item.release();
}

SwipeholdConfigItem* SpellConfigItem::getValidSwipeholdConfigItem() const {
    SwipeholdConfigItem* item = getRawSwipeholdConfigItem();
    if (item != nullptr && swipehold_info.rel_position.isNull()) {
        item->rel_work_position = rel_work_position;
    }
    return item;
}

Poco::JSON::Object SpellConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();

    json::ObjectPtr spell = json::newObject();
    spell->set(kFieldRelPosition, json::pointObject(spell_info.rel_position));
    spell->set(kFieldRelRadius, spell_info.rel_radius);
    spell->set(kFieldRange, spell_info.range);

    // This class's own drag item, whatever a subclass hands out.
    json::ObjectPtr drag = json::newObject();
    std::unique_ptr<SwipeholdConfigItem> swipehold(SpellConfigItem::getRawSwipeholdConfigItem());
    if (swipehold) {
        const Poco::JSON::Object written = swipehold->ConvertToJsonObject();
        for (const std::string* field : kCopiedSwipeholdFields) {
            drag->set(*field, written.get(*field));
        }
    }
    drag->set(kFieldRelPosition, json::pointObject(swipehold_info.rel_position));
    drag->set(kFieldRelRadius, swipehold_info.rel_radius);
    drag->set(kFieldInterval, swipehold_info.interval);
    drag->set(kFieldPeriod, swipehold_info.period);
    drag->set(kFieldSteps, swipehold_info.steps);
    drag->set(kFieldSpeed, swipehold_info.speed);
    drag->set(kFieldInvalidZoneInfo, parts::invalidZoneObject(swipehold_info.invalid_zone_info));

    json::ObjectPtr option = json::newObject();
    option->set(kFieldStopWalkAfterSpell, spell_option.stop_walk_after_spell);
    option->set(kFieldNeedSpellDirection, spell_option.need_spell_direction);
    option->set(kFieldWalkWithSpell, spell_option.walk_with_spell);
    option->set(kFieldSpellTriggerPolicy, spell_option.spell_trigger_policy);
    option->set(kFieldSpellTouchLocationPolicy, spell_option.spell_touch_location_policy);
    option->set(kFieldIsOccupySwipeholdInput, spell_option.is_occupy_swipehold_input);

    // An incomplete tap sequence is not worth keeping.
    if (!tap_info.rel_center_pos.isNull() && tap_info.factor != 0.0 &&
        tap_info.distance_ratio != 0.0 && !tap_info.seq.empty()) {
        json::ObjectPtr tap = json::newObject();
        tap->set(kFieldSeq, tap_info.seq);
        tap->set(kFieldFactor, tap_info.factor);
        tap->set(kFieldDistanceRatio, tap_info.distance_ratio);
        tap->set(kFieldRelCenterPos, json::pointObject(tap_info.rel_center_pos));
        result.set(kFieldVpInfo, tap);
    }

    result.set(kFieldSpellInfo, spell);
    result.set(kFieldSwipeholdInfo, drag);
    result.set(kFieldSpellOption, option);
    return result;
}

void SpellConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);

    json::ObjectPtr spell = json::object(object, kFieldSpellInfo);
    json::read(spell, kFieldRelRadius, spell_info.rel_radius);
    json::read(spell, kFieldRange, spell_info.range);
    json::readPoint(spell, kFieldRelPosition, spell_info.rel_position);

    json::ObjectPtr drag = json::object(object, kFieldSwipeholdInfo);
    json::read(drag, kFieldRelRadius, swipehold_info.rel_radius);
    json::readPoint(drag, kFieldRelPosition, swipehold_info.rel_position);
    json::read(drag, kFieldInterval, swipehold_info.interval);
    json::read(drag, kFieldPeriod, swipehold_info.period);
    json::read(drag, kFieldSteps, swipehold_info.steps);
    json::read(drag, kFieldSpeed, swipehold_info.speed);
    // The drag settings are read by a drag item, so they follow its rules;
    // direction keys in here are read and dropped.
    if (std::unique_ptr<SwipeholdConfigItem> reader = produceSwipehold()) {
        reader->FillFromJsonObjectExtendInfo(drag);
        swipehold_info.first_point_policy = reader->first_point_policy;
        swipehold_info.subsequent_point_policy = reader->subsequent_point_policy;
        swipehold_info.hold_center_interval_after_release =
            reader->hold_center_interval_after_release;
        swipehold_info.in_line_policy = reader->in_line_policy;
        swipehold_info.target_point_input_compensatory_policy =
            reader->target_point_input_compensatory_policy;
    }
    parts::readInvalidZone(drag, swipehold_info.invalid_zone_info);

    json::ObjectPtr option = json::object(object, kFieldSpellOption);
    json::read(option, kFieldNeedSpellDirection, spell_option.need_spell_direction);
    json::read(option, kFieldStopWalkAfterSpell, spell_option.stop_walk_after_spell);
    json::read(option, kFieldWalkWithSpell, spell_option.walk_with_spell);
    json::read(option, kFieldSpellTriggerPolicy, spell_option.spell_trigger_policy);
    json::readOptional(option, kFieldSpellTouchLocationPolicy,
                       spell_option.spell_touch_location_policy);
    json::readOptional(option, kFieldIsOccupySwipeholdInput,
                       spell_option.is_occupy_swipehold_input);

    json::ObjectPtr tap = json::optionalObject(object, kFieldVpInfo);
    if (!tap.isNull()) {
        json::read(tap, kFieldSeq, tap_info.seq);
        json::read(tap, kFieldFactor, tap_info.factor);
        json::read(tap, kFieldDistanceRatio, tap_info.distance_ratio);
        json::readPoint(tap, kFieldRelCenterPos, tap_info.rel_center_pos);
    }
}

// --- SpellCancelConfigItem -----------------------------------------------------

SpellCancelConfigItem::SpellCancelConfigItem() : ComposableConfigItem("SpellCancel") {}

SpellCancelConfigItem::~SpellCancelConfigItem() = default;

Poco::JSON::Object SpellCancelConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();
    result.set(kFieldIsInUse, is_in_use);
    json::ObjectPtr delay = json::newObject();
    delay->set(kFieldDelayTime, delay_time);
    result.set(kFieldSpellCancelDelayInfo, delay);
    return result;
}

void SpellCancelConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
    json::read(object, kFieldIsInUse, is_in_use);
    json::ObjectPtr delay = json::optionalObject(object, kFieldSpellCancelDelayInfo);
    if (!delay.isNull()) {
        json::readOptional(delay, kFieldDelayTime, delay_time);
    }
}

}  // namespace zunokeymapmanager
