//
// SpellItems.cpp
//

#include "zuno-keymapmanager/items/SpellItems.h"

#include <memory>

#include "model/MemberIO.h"
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

// A drag item carrying `drag`, centred on its position as stored.
std::unique_ptr<SwipeholdConfigItem> swipeholdOf(const SpellSwipeholdInfo& drag) {
    std::unique_ptr<SwipeholdConfigItem> item = produceSwipehold();
    if (item) {
        item->first_point_policy = drag.first_point_policy;
        item->subsequent_point_policy = drag.subsequent_point_policy;
        item->hold_center_interval_after_release = drag.hold_center_interval_after_release;
        item->in_line_policy = drag.in_line_policy;
        item->target_point_input_compensatory_policy = drag.target_point_input_compensatory_policy;
        item->rel_radius = drag.rel_radius;
        item->rel_work_position = drag.rel_position;
    }
    return item;
}

// The drag settings are read and written by a drag item, so they follow its
// rules; direction keys in here are read and dropped.
void readDragSettings(void* owner, const Poco::JSON::Object::Ptr& object) {
    auto& drag = *static_cast<SpellSwipeholdInfo*>(owner);
    if (std::unique_ptr<SwipeholdConfigItem> reader = produceSwipehold()) {
        reader->FillFromJsonObjectExtendInfo(object);
        drag.first_point_policy = reader->first_point_policy;
        drag.subsequent_point_policy = reader->subsequent_point_policy;
        drag.hold_center_interval_after_release = reader->hold_center_interval_after_release;
        drag.in_line_policy = reader->in_line_policy;
        drag.target_point_input_compensatory_policy =
            reader->target_point_input_compensatory_policy;
    }
}

void writeDragSettings(const void* owner, Poco::JSON::Object& object) {
    static const std::string* const kCopied[] = {
        &kFieldFirstPointPolicy, &kFieldSubsequentPointPolicy,
        &kFieldRelRadius,        &kFieldHoldCenterIntervalAfterRelease,
        &kFieldInLinePolicy,     &kFieldTargetPointInputCompensatoryPolicy,
    };
    if (std::unique_ptr<SwipeholdConfigItem> writer =
            swipeholdOf(*static_cast<const SpellSwipeholdInfo*>(owner))) {
        const Poco::JSON::Object written = writer->ConvertToJsonObject();
        for (const std::string* field : kCopied) {
            object.set(*field, written.get(*field));
        }
    }
}

const MemberRoute kDragSettings{&readDragSettings, &writeDragSettings,
                                &SwipeholdConfigItem::Members};

bool tapIsWhole(const void* owner) {
    // An incomplete tap sequence is not worth keeping.
    const TapInfo& tap = static_cast<const SpellConfigItem*>(owner)->tap_info;
    return !tap.rel_center_pos.isNull() && tap.factor != 0.0 && tap.distance_ratio != 0.0 &&
           !tap.seq.empty();
}

}  // namespace

// --- SpellConfigItem ---------------------------------------------------------

SpellConfigItem::SpellConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<SpellConfigItem>())) {}

SpellConfigItem::~SpellConfigItem() = default;

SwipeholdConfigItem* SpellConfigItem::getRawSwipeholdConfigItem() const {
    return swipeholdOf(swipehold_info).release();
}

SwipeholdConfigItem* SpellConfigItem::getValidSwipeholdConfigItem() const {
    SwipeholdConfigItem* item = getRawSwipeholdConfigItem();
    if (item != nullptr && swipehold_info.rel_position.isNull()) {
        item->rel_work_position = rel_work_position;
    }
    return item;
}

ZUNO_KM_ITEM_JSON(SpellConfigItem)

const MemberTable& SpellConfigItem::Members() {
    using M = MembersOf<SpellConfigItem>;
    static const MemberTable table = M::table(
        "A skill button, optionally dragged within a range to aim, with drag settings of its "
        "own.",
        {
            M::block<&SpellConfigItem::spell_info>(kFieldSpellInfo, &SpellInfo::Members)
                .require()
                .show("Skill button", kGroupPosition, "the skill button"),
            M::block<&SpellConfigItem::swipehold_info>(kFieldSwipeholdInfo,
                                                       &SpellSwipeholdInfo::Members)
                .require()
                .show("Aiming drag", kGroupPosition,
                      "the aiming drag; rel_radius here defaults to 0.1"),
            M::block<&SpellConfigItem::spell_option>(kFieldSpellOption, &SpellOption::Members)
                .require()
                .show("Casting", kGroupBehaviour, "how the skill is cast"),
            M::block<&SpellConfigItem::tap_info>(kFieldVpInfo, &TapInfo::Members)
                .when(&tapIsWhole)
                .show("Taps", kGroupAdvanced,
                      "taps around a centre while the skill is held; written only when complete "
                      "(centre set, factor and ratio non-zero, sequence not empty)"),
        },
        &ComposableConfigItem::Members());
    return table;
}

const MemberTable& SpellInfo::Members() {
    using M = MembersOf<SpellInfo>;
    static const MemberTable table =
        M::table("the skill button",
                 {
                     M::field<&SpellInfo::rel_radius>(kFieldRelRadius)
                         .size("range", kRadius)
                         .require()
                         .in("screen")
                         .range(0, 1)
                         .show("Button radius", kGroupPosition,
                               "the skill button's radius, as a fraction of the screen"),
                     M::field<&SpellInfo::range>(kFieldRange)
                         .require()
                         .show("Range", kGroupBehaviour,
                               "how far the skill can be aimed, in the host's range units (60: the "
                               "default reach)"),
                     M::field<&SpellInfo::rel_position>(kFieldRelPosition)
                         .require()
                         .point("cast point", kMoves)
                         .show("Cast point", kGroupPosition, "the skill button's centre"),
                 });
    return table;
}

const MemberTable& SpellSwipeholdInfo::Members() {
    using M = MembersOf<SpellSwipeholdInfo>;
    static const MemberTable table = M::table(
        "the aiming drag",
        {
            M::field<&SpellSwipeholdInfo::rel_radius>(kFieldRelRadius)
                .size("drag radius", kRadius)
                .require()
                .in("screen")
                .show("Drag radius", kGroupPosition,
                      "how far the aiming drag reaches, as a fraction of the screen; 0 leaves no "
                      "room to drag"),
            M::field<&SpellSwipeholdInfo::rel_position>(kFieldRelPosition)
                .require()
                .point("drag centre", kMoves | kNullIsUnset)
                .show("Drag centre", kGroupPosition,
                      "the drag centre; (0, 0) means the item's own position"),
            M::field<&SpellSwipeholdInfo::interval>(kFieldInterval)
                .require()
                .in("ms")
                .show("Delay", kGroupAdvanced,
                      "time between pressing the key and the first touch, in milliseconds"),
            M::field<&SpellSwipeholdInfo::period>(kFieldPeriod)
                .require()
                .in("ms")
                .show("Step time", kGroupAdvanced,
                      "time between two steps of a move, in milliseconds"),
            M::field<&SpellSwipeholdInfo::steps>(kFieldSteps)
                .require()
                .show("Steps", kGroupAdvanced, "number of steps a move is made of"),
            M::field<&SpellSwipeholdInfo::speed>(kFieldSpeed)
                .require()
                .in("%")
                .show("Speed", kGroupAdvanced, "speed of the move, in percent of the normal speed"),
            M::routed(kDragSettings),
            M::block<&SpellSwipeholdInfo::invalid_zone_info>(kFieldInvalidZoneInfo,
                                                             &InvalidZoneInfo::Members)
                .show("Dead zone", kGroupAdvanced,
                      "a ring around the centre where small moves are ignored"),
        });
    return table;
}

const MemberTable& SpellOption::Members() {
    using M = MembersOf<SpellOption>;
    static const MemberTable table = M::table(
        "how the skill is cast",
        {
            M::field<&SpellOption::need_spell_direction>(kFieldNeedSpellDirection)
                .require()
                .show("Aim", kGroupBehaviour, "whether the skill is aimed before it is cast"),
            M::field<&SpellOption::stop_walk_after_spell>(kFieldStopWalkAfterSpell)
                .require()
                .show("Stop walking", kGroupBehaviour,
                      "whether walking stops once the skill is cast"),
            M::field<&SpellOption::walk_with_spell>(kFieldWalkWithSpell)
                .require()
                .show("Walk while aiming", kGroupBehaviour,
                      "whether walking goes on while the skill is aimed"),
            M::field<&SpellOption::spell_trigger_policy>(kFieldSpellTriggerPolicy)
                .require()
                .oneOf(kSpellTriggerPolicyNames)
                .show("Cast when", kGroupBehaviour,
                      "when the skill is cast: on key release, on key press, on the next key, or "
                      "at once"),
            M::field<&SpellOption::spell_touch_location_policy>(kFieldSpellTouchLocationPolicy)
                .oneOf(kSpellTouchLocationPolicyNames)
                .show("Aim follows", kGroupBehaviour,
                      "where the aiming touch follows: the mouse, the Swipehold drag, or the "
                      "inside of the drag"),
            M::field<&SpellOption::is_occupy_swipehold_input>(kFieldIsOccupySwipeholdInput)
                .show("Take drag keys", kGroupAdvanced,
                      "whether aiming takes over the Swipehold keys"),
        });
    return table;
}

const MemberTable& TapInfo::Members() {
    using M = MembersOf<TapInfo>;
    static const MemberTable table =
        M::table("taps around a centre while the skill is held",
                 {
                     M::field<&TapInfo::seq>(kFieldSeq).require().show(
                         "Tap sequence", kGroupAdvanced,
                         "the tap sequence, comma-separated positions (\"1,2\")"),
                     M::field<&TapInfo::factor>(kFieldFactor)
                         .require()
                         .show("Tap scale", kGroupAdvanced, "scale of the tap pattern (0: none)"),
                     M::field<&TapInfo::distance_ratio>(kFieldDistanceRatio)
                         .require()
                         .in("screen")
                         .show("Tap distance", kGroupAdvanced,
                               "distance of the taps from the centre, as a fraction of the screen"),
                     M::field<&TapInfo::rel_center_pos>(kFieldRelCenterPos)
                         .require()
                         .point("tap centre", kMoves | kNullIsUnset)
                         .show("Tap centre", kGroupAdvanced, "the centre of the taps"),
                 });
    return table;
}

// --- SpellCancelConfigItem -----------------------------------------------------

SpellCancelConfigItem::SpellCancelConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<SpellCancelConfigItem>())) {}

SpellCancelConfigItem::~SpellCancelConfigItem() = default;

ZUNO_KM_ITEM_JSON(SpellCancelConfigItem)

namespace {

const MemberTable& cancelDelayMembers() {
    using M = MembersOf<SpellCancelConfigItem>;
    static const MemberTable table = M::table(
        "when the cancel takes effect",
        {
            M::field<&SpellCancelConfigItem::delay_time>(kFieldDelayTime)
                .in("ms")
                .show("Delay", kGroupBehaviour, "delay before the cancel, in milliseconds"),
        });
    return table;
}

}  // namespace

const MemberTable& SpellCancelConfigItem::Members() {
    using M = MembersOf<SpellCancelConfigItem>;
    static const MemberTable table =
        M::table("Cancels a skill being aimed.",
                 {
                     M::field<&SpellCancelConfigItem::is_in_use>(kFieldIsInUse)
                         .require()
                         .show("In use", kGroupBehaviour, "whether the item is active"),
                     M::group(kFieldSpellCancelDelayInfo, &cancelDelayMembers)
                         .show("Cancel delay", kGroupBehaviour, "when the cancel takes effect"),
                 },
                 &ComposableConfigItem::Members());
    return table;
}

}  // namespace zunokeymapmanager
