//
// SpellItems.h
//
// Skill items: casting a skill, optionally aimed by a drag, and cancelling a
// skill being aimed.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_SPELLITEMS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_SPELLITEMS_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/ItemParts.h"
#include "zuno-keymapmanager/items/SwipeholdItem.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

struct SpellInfo
/// The skill button on the screen and the range a cast may be aimed in
/// ("spell_info").
{
    /// Kept in the JSON members of the same names.
    ///@{
    PointF rel_position{0.5, 0.5};
    double rel_radius = 0.5;
    double range = 60.0;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

struct SpellSwipeholdInfo
/// The drag that aims a skill ("swipehold_info"). The block from
/// `first_point_policy` on mirrors the drag item's settings; only
/// `rel_radius` defaults differently. A null `rel_position` means the drag
/// is centred on the skill item's own work position.
{
    /// Kept in the JSON members of the same names.
    ///@{
    PointF rel_position;
    std::int32_t interval = 32;
    std::int32_t steps = 6;
    std::int32_t period = 16;
    std::int32_t speed = 100;
    InvalidZoneInfo invalid_zone_info;
    FirstPointPolicy first_point_policy;
    SubsequentPointPolicy subsequent_point_policy;
    double rel_radius = 0.1;
    std::int32_t hold_center_interval_after_release = 0;
    std::string in_line_policy = "Use_Both";
    TargetPointInputCompensatoryPolicy target_point_input_compensatory_policy;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

struct SpellOption
/// When a cast fires and how it gets along with walking ("spell_option").
/// The policy strings are kept as written, known names or not.
{
    /// Kept in the JSON members of the same names.
    ///@{
    bool need_spell_direction = true;
    bool stop_walk_after_spell = false;
    bool walk_with_spell = true;
    bool is_occupy_swipehold_input = false;
    std::string spell_trigger_policy = "Spell_Trigger_On_Release_Key";
    std::string spell_touch_location_policy = "Spell_touch_location_mouse_dependence";
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

struct TapInfo
/// An optional tap sequence played around `rel_center_pos` ("tap_info").
/// It is written only when complete: a centre, a non-zero factor and
/// distance ratio, and a sequence.
{
    /// Kept in the JSON members of the same names.
    ///@{
    PointF rel_center_pos;
    double factor = 0.0;
    double distance_ratio = 0.0;
    std::string seq;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

class ZUNO_KM_API SpellConfigItem : public ComposableConfigItem
/// Casts a skill from its key or key combination, optionally aimed by a
/// drag. The drag settings can be handed out as a real drag item.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    SpellInfo spell_info;
    SpellSwipeholdInfo swipehold_info;
    SpellOption spell_option;
    TapInfo tap_info;
    ///@}

    SpellConfigItem();
    ~SpellConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();

    /// A new drag item carrying the drag settings, centred on the drag
    /// position as stored (possibly null), with the default direction keys.
    /// The caller owns the result; null when no drag item can be made.
    virtual SwipeholdConfigItem* getRawSwipeholdConfigItem() const;

    /// As getRawSwipeholdConfigItem(), but a null drag position is replaced
    /// by this item's own work position. The caller owns the result.
    virtual SwipeholdConfigItem* getValidSwipeholdConfigItem() const;
};

class ZUNO_KM_API SpellCancelConfigItem : public ComposableConfigItem
/// Cancels a skill being aimed, after `delay_time`.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    bool is_in_use = true;
    std::int32_t delay_time = 20;
    ///@}

    SpellCancelConfigItem();
    ~SpellCancelConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_SPELLITEMS_H
