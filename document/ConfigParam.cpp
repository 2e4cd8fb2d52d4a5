//
// ConfigParam.cpp
//

#include "zuno-keymapmanager/document/ConfigParam.h"

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

void ConfigParam::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    json::ObjectPtr wheel = json::optionalObject(object, kFieldWheelPolicy);
    if (!wheel.isNull()) {
        json::read(wheel, kFieldZoomFirstPointInterval, zoom_first_interval);
        json::read(wheel, kFieldZoomLastPointIdle, zoom_last_idle);
        json::read(wheel, kFieldZoomPeriod, zoom_period);
        json::read(wheel, kFieldZoomSteps, zoom_steps);
        json::read(wheel, kFieldZoomMargin, zoom_margin);
        json::read(wheel, kFieldZoomStepDistance, zoom_step_distance);
        json::read(wheel, kFieldWheelStepDistance, wheel_step_distance);
    }
    json::ObjectPtr transparent = json::optionalObject(object, kFieldTransparentWheelPolicy);
    if (!transparent.isNull()) {
        json::readOptional(transparent, kFieldSensitivity, sensitivity);
        json::readOptional(transparent, kFieldProtocolVersion, protocol_version);
    }
}

Poco::JSON::Object ConfigParam::ConvertToJsonObject(bool isJoystick) const {
    Poco::JSON::Object result;
    if (isJoystick) {
        return result;
    }
    json::ObjectPtr wheel = json::newObject();
    wheel->set(kFieldZoomFirstPointInterval, zoom_first_interval);
    wheel->set(kFieldZoomLastPointIdle, zoom_last_idle);
    wheel->set(kFieldZoomPeriod, zoom_period);
    wheel->set(kFieldZoomSteps, zoom_steps);
    wheel->set(kFieldZoomMargin, zoom_margin);
    wheel->set(kFieldZoomStepDistance, zoom_step_distance);
    wheel->set(kFieldWheelStepDistance, wheel_step_distance);
    result.set(kFieldWheelPolicy, wheel);

    json::ObjectPtr transparent = json::newObject();
    transparent->set(kFieldSensitivity, sensitivity);
    transparent->set(kFieldProtocolVersion, protocol_version);
    result.set(kFieldTransparentWheelPolicy, transparent);
    return result;
}

}  // namespace zunokeymapmanager
