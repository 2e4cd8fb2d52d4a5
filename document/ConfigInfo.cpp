//
// ConfigInfo.cpp
//

#include "zuno-keymapmanager/document/ConfigInfo.h"

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

void ConfigInfo::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    json::readOptional(object, kFieldTransparentMouse, transparent_mouse);
    json::read(object, kFieldBackgroundColor, background_color);
    json::read(object, kFieldVisibility, visibility);
    json::readOptional(object, kFieldTransparentESC, transparent_ESC);
    json::readOptional(object, kFieldTransparentWheel, transparent_wheel);
    json::readOptional(object, kFieldIsJoystick, is_joystick);
    json::readOptional(object, kFieldTransparentMouseWindowsRawMovePeriod,
                       transparent_mouse_windows_raw_move_period);
    json::readOptional(object, kFieldTransparentMouseWindowsRawMoveSensitivity,
                       transparent_mouse_windows_raw_move_sensitivity);
    json::readOptional(object, kFieldTransparentKeyboard, transparent_keyboard);
    json::readOptional(object, kFieldTransparentJoystick, transparent_joystick);
}

Poco::JSON::Object ConfigInfo::ConvertToJsonObject() const {
    Poco::JSON::Object result;
    result.set(kFieldBackgroundColor, background_color);
    result.set(kFieldVisibility, visibility);
    result.set(kFieldIsJoystick, is_joystick);
    if (is_joystick) {
        result.set(kFieldTransparentJoystick, transparent_joystick);
        return result;
    }
    result.set(kFieldTransparentMouse, transparent_mouse);
    result.set(kFieldTransparentESC, transparent_ESC);
    result.set(kFieldTransparentWheel, transparent_wheel);
    result.set(kFieldTransparentMouseWindowsRawMovePeriod,
               transparent_mouse_windows_raw_move_period);
    result.set(kFieldTransparentMouseWindowsRawMoveSensitivity,
               transparent_mouse_windows_raw_move_sensitivity);
    result.set(kFieldTransparentKeyboard, transparent_keyboard);
    return result;
}

}  // namespace zunokeymapmanager
