//
// ConfigParam.h
//
// The gesture tuning stored under "param".
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_CONFIGPARAM_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_CONFIGPARAM_H

#include <cstdint>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/Members.h"

namespace zunokeymapmanager {

class ZUNO_KM_API ConfigParam
/// The synthetic gestures for mouse-wheel zoom ("wheel_policy", all seven
/// members required when the object is present) and for pass-through
/// wheel events ("transparent_wheel_policy", both members optional).
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::int32_t zoom_first_interval = 16;
    std::int32_t zoom_steps = 8;
    std::int32_t zoom_period = 16;
    std::int32_t zoom_margin = 20;
    std::int32_t zoom_last_idle = 0;
    double wheel_step_distance = 0.01;
    double zoom_step_distance = 0.00625;
    double sensitivity = 1.0;
    std::int32_t protocol_version = 0;
    ///@}

    ConfigParam() = default;

    /// Raises the JSON library's exceptions; members read before keep their values.
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object);

    /// An empty object for a gamepad document, else both policy objects.
    Poco::JSON::Object ConvertToJsonObject(bool isJoystick) const;

    /// Its members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_CONFIGPARAM_H
