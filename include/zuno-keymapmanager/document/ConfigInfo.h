//
// ConfigInfo.h
//
// The document-wide switches stored under "info".
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_CONFIGINFO_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_CONFIGINFO_H

#include <cstdint>
#include <string>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/Members.h"

namespace zunokeymapmanager {

class ZUNO_KM_API ConfigInfo
/// How the mapping layer is shown and which raw input passes through to the
/// emulated device untranslated. Texts are kept as given: an unknown
/// "transparent_mouse" value survives a read and a write.
///
/// Reading requires "background_color" and "visibility"; every other member
/// is optional and keeps its value when absent.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::string transparent_mouse = "Mouse_No_Transparent";
    std::string background_color = "000000FF";
    bool visibility = true;
    bool transparent_ESC = false;
    bool transparent_wheel = false;
    bool is_joystick = false;
    std::int32_t transparent_mouse_windows_raw_move_period = 0;
    double transparent_mouse_windows_raw_move_sensitivity = 1.0;
    bool transparent_keyboard = true;
    bool transparent_joystick = true;
    ///@}

    ConfigInfo() = default;

    /// Raises the JSON library's exceptions; members read before keep their values.
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object);

    /// A gamepad document writes only "background_color", "visibility",
    /// "is_joystick" and "transparent_joystick"; a keyboard document writes
    /// everything but "transparent_joystick".
    Poco::JSON::Object ConvertToJsonObject() const;

    /// Its members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_CONFIGINFO_H
