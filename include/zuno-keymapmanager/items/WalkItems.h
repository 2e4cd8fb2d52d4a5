//
// WalkItems.h
//
// Items bound to continuous directional input: the gamepad's sticks and a
// held mouse button.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_WALKITEMS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_WALKITEMS_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

class ZUNO_KM_API JoystickLeftWalkConfigItem : public ConfigItem
/// Walks with the gamepad's left stick within `rel_radius` around the work
/// position. Bound to "Left_Stick" by default.
{
public:
    /// Kept in the JSON member of the same name.
    ///@{
    double rel_radius = 0.0;
    ///@}

    JoystickLeftWalkConfigItem();
    ~JoystickLeftWalkConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API JoystickRightEyeConfigItem : public ConfigItem
/// Looks around with the gamepad's right stick within `staring_range`, and is
/// brought back according to the reset policy ("reset_policy" in JSON).
/// Bound to "Right_Stick" by default. `reset_type` is kept as written.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::int32_t sensitivity = 100;
    SizeF staring_range{0.5, 0.5};
    std::string reset_type = "Range_Window";
    std::int32_t reset_wait_interval = 8;
    std::int32_t auto_reset_period = -1;
    bool need_reset = true;
    ///@}

    JoystickRightEyeConfigItem();
    ~JoystickRightEyeConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

struct FirstMovePolicy
/// How the first touch of a mouse walk moves out from the centre
/// ("first_move_policy").
{
    /// Kept in the JSON members of the same names.
    ///@{
    std::int32_t interval = 32;
    std::int32_t steps = 6;
    std::int32_t period = 16;
    std::int32_t speed = 100;
    double rel_radius = 0.0;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

class ZUNO_KM_API MouseRightWalkConfigItem : public ConfigItem
/// A walk steered with the mouse, bound to the right mouse button by default.
/// The measurement position, duration factor and first-move settings are
/// kept for the host, which performs the gesture.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    PointF rel_measurement_pos{0.5, 0.5};
    double duration_factor = 0.5;
    FirstMovePolicy first_move_policy;
    ///@}

    MouseRightWalkConfigItem();
    ~MouseRightWalkConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_WALKITEMS_H
