//
// SwipeholdItem.h
//
// The drag item: four direction keys steer a touch point held around a
// centre, like a thumb on an on-screen joystick.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_SWIPEHOLDITEM_H
#define ZUNO_KEYMAPMANAGER_ITEMS_SWIPEHOLDITEM_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/items/DiamondConfigItem.h"

namespace zunokeymapmanager {

struct FirstPointPolicy
/// How the first touch of a drag is made ("first_point_policy").
/// The strings are kept as written, known names or not.
{
    /// Kept in the JSON members of the same names.
    ///@{
    std::string handle_type = "Move";
    std::string move_type = "Constant";
    std::int32_t interval = 32;
    std::int32_t steps = 6;
    std::int32_t period = 16;
    std::int32_t speed = 100;
    std::int32_t wait_for_second = 8;
    std::int32_t idle_before_first_press = 0;
    bool no_press_first_center_point = false;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

struct SubsequentPointPolicy
/// How the later touches of the same drag are made
/// ("subsequent_point_policy").
{
    /// Kept in the JSON members of the same names.
    ///@{
    std::string handle_type = "Click";
    std::int32_t steps = 6;
    std::int32_t period = 16;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

struct TargetPointInputCompensatoryPolicy
/// Correction applied to the target point of a drag, per axis: a policy
/// name and its two numbers (slope or period, intercept or phase shift).
{
    /// Kept in the JSON members of the same names.
    ///@{
    std::string x_policy = "Default";
    double x_policy_slope_period = 1.0;
    double x_policy_intercept_phaseshift = 0.0;
    std::string y_policy = "Default";
    double y_policy_slope_period = 1.0;
    double y_policy_intercept_phaseshift = 0.0;
    bool enable = false;
    double distance = 0.01;
    std::int32_t count = 3;
    std::int32_t steps = 3;
    std::int32_t period = 8;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

class ZUNO_KM_API SwipeholdConfigItem : public DiamondConfigItem
/// A drag steered by four direction keys (W, D, S, A by default).
///
/// Every setting is written on save. On reading, each settings object and
/// each direction key is optional, but once present its core members are
/// required. The item is valid when any direction key is set and fires
/// for any of them; its own base key plays no part.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    FirstPointPolicy first_point_policy;
    SubsequentPointPolicy subsequent_point_policy;
    double rel_radius = 0.0;
    std::int32_t hold_center_interval_after_release = 0;
    std::string in_line_policy = "Use_Both";
    TargetPointInputCompensatoryPolicy target_point_input_compensatory_policy;
    ///@}

    SwipeholdConfigItem();
    ~SwipeholdConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
    bool IsInvalid() const override;
    bool MatchConfigKey(const ConfigKey& other) override;

    /// Reads the drag settings and direction keys only, without the common
    /// item members. A skill item uses it to read the drag settings it embeds.
    virtual void FillFromJsonObjectExtendInfo(const Poco::JSON::Object::Ptr& object);
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_SWIPEHOLDITEM_H
