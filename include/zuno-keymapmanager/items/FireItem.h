//
// FireItem.h
//
// The fire button: a touch that may be dragged within a range to aim.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_FIREITEM_H
#define ZUNO_KEYMAPMANAGER_ITEMS_FIREITEM_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/items/ItemParts.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

struct FireSwipeholdInfo
/// The area the fire touch may be dragged in ("swipehold_info").
{
    /// Kept in the JSON members of the same names.
    ///@{
    PointF rel_position;
    double rel_radius = 0.1;
    std::int32_t steps = 6;
    InvalidZoneInfo invalid_zone_info;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

struct FireOption
/// Where the fire touch may go ("fire_option"). The policy is kept as
/// written, known name or not.
{
    /// Kept in the JSON member of the same name.
    ///@{
    std::string fire_range_policy = "Fire_range_unlimited";
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

class ZUNO_KM_API FireConfigItem : public ConfigItem
/// Fires with a mouse button (the left one by default), optionally dragging
/// the touch to aim when `need_fire_and_drag` is set.
///
/// "need_fire_and_drag" is required on reading; "swipehold_info" and
/// "fire_option" are read only when present, and their members are then
/// required (the invalid zone again only when present).
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    bool need_fire_and_drag = false;
    FireSwipeholdInfo swipehold_info;
    FireOption fire_option;
    ///@}

    FireConfigItem();
    ~FireConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_FIREITEM_H
