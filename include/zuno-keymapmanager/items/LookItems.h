//
// LookItems.h
//
// Look items: a key-triggered look mode within a user range, and camera and
// tilt gestures steered by four direction keys.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_LOOKITEMS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_LOOKITEMS_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/DiamondConfigItem.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

class ZUNO_KM_API StaringConfigItem : public ComposableConfigItem
/// A look mode switched on by its key: the pointer looks around within
/// `staring_range` and is brought back according to the reset policy.
/// Every member is required on reading; `reset_type` is kept as written.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    SizeF staring_range{0.5, 0.5};
    std::int32_t sensitivity_x = 50;
    std::int32_t sensitivity_y = 50;
    std::string reset_type = "Range_Window";
    std::int32_t reset_wait_interval = 8;
    std::int32_t auto_reset_period = -1;
    bool need_reset = true;
    ///@}

    StaringConfigItem();
    ~StaringConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API DirectionalLookConfigItem : public DiamondConfigItem
/// What EyeConfigItem and GravityConfigItem are, apart from their type name
/// and default sensitivity: a look steered by four direction keys (the arrow
/// keys by default), valid when any direction key is set and fired by any of
/// them. All four keys and the sensitivity are required on reading.
{
public:
    /// Kept in the JSON member of the same name; the default is the type's.
    std::int32_t sensitivity;

    ~DirectionalLookConfigItem() override;

    bool IsInvalid() const override;
    bool MatchConfigKey(const ConfigKey& other) override;

protected:
    /// An item of type `typeName` with the arrow keys and `defaultSensitivity`.
    DirectionalLookConfigItem(std::string typeName, std::int32_t defaultSensitivity);

    /// The table of a directional look type: what it does, and what its
    /// sensitivity means.
    static MemberTable LookMembers(const char* description, const char* sensitivityLine);
};

class ZUNO_KM_API EyeConfigItem : public DirectionalLookConfigItem
/// A camera look steered by four direction keys; sensitivity 100 by default.
{
public:
    EyeConfigItem();
    ~EyeConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API GravityConfigItem : public DirectionalLookConfigItem
/// A tilt of the device steered by four direction keys; sensitivity 20 by
/// default.
{
public:
    GravityConfigItem();
    ~GravityConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_LOOKITEMS_H
