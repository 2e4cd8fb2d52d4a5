//
// ConfigInfo.cpp
//

#include "zuno-keymapmanager/document/ConfigInfo.h"

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"
#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {

namespace {

// A gamepad document keeps only what a gamepad needs.
bool forGamepads(const void* owner) {
    return static_cast<const ConfigInfo*>(owner)->is_joystick;
}

bool forKeymaps(const void* owner) {
    return !forGamepads(owner);
}

}  // namespace

void ConfigInfo::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ReadMembers(Members(), this, object);
}

Poco::JSON::Object ConfigInfo::ConvertToJsonObject() const {
    Poco::JSON::Object result;
    WriteMembers(Members(), this, result);
    return result;
}

const MemberTable& ConfigInfo::Members() {
    using M = MembersOf<ConfigInfo>;
    static const MemberTable table = M::part(
        "info", "document-wide switches",
        {
            M::field<&ConfigInfo::transparent_mouse>(kFieldTransparentMouse)
                .oneOf(kTransparentMouseNames)
                .when(&forKeymaps)
                .show("Mouse pass-through", kGroupBehaviour,
                      "which mouse buttons pass through to the application instead of being "
                      "mapped"),
            M::field<&ConfigInfo::background_color>(kFieldBackgroundColor)
                .require()
                .matching(kColourPattern)
                .show("Background", kGroupAdvanced,
                      "the colour behind the emulated screen, RRGGBBAA (eight hexadecimal "
                      "digits, alpha last)"),
            M::field<&ConfigInfo::visibility>(kFieldVisibility)
                .require()
                .show("Show markers", kGroupBehaviour,
                      "whether the host shows the keymap's markers over the screen"),
            M::field<&ConfigInfo::transparent_ESC>(kFieldTransparentESC)
                .when(&forKeymaps)
                .show("Esc passes through", kGroupBehaviour,
                      "whether the Esc key passes through to the application"),
            M::field<&ConfigInfo::transparent_wheel>(kFieldTransparentWheel)
                .when(&forKeymaps)
                .show("Wheel passes through", kGroupBehaviour,
                      "whether the mouse wheel passes through to the application"),
            M::field<&ConfigInfo::is_joystick>(kFieldIsJoystick)
                .show("Gamepad document", kGroupAdvanced,
                      "true for a gamepad document; a gamepad load sets it whatever the text "
                      "says"),
            M::field<&ConfigInfo::transparent_mouse_windows_raw_move_period>(
                kFieldTransparentMouseWindowsRawMovePeriod)
                .when(&forKeymaps)
                .in("ms")
                .show("Raw move period", kGroupAdvanced,
                      "how often passed-through raw mouse moves are sent, in milliseconds (0: as "
                      "they come)"),
            M::field<&ConfigInfo::transparent_mouse_windows_raw_move_sensitivity>(
                kFieldTransparentMouseWindowsRawMoveSensitivity)
                .when(&forKeymaps)
                .show("Raw move factor", kGroupAdvanced,
                      "factor applied to passed-through raw mouse moves (1.0: unchanged)"),
            M::field<&ConfigInfo::transparent_keyboard>(kFieldTransparentKeyboard)
                .when(&forKeymaps)
                .show("Keys pass through", kGroupBehaviour,
                      "whether unmapped keyboard keys pass through; written for keymaps only"),
            M::field<&ConfigInfo::transparent_joystick>(kFieldTransparentJoystick)
                .when(&forGamepads)
                .show("Controls pass through", kGroupBehaviour,
                      "whether unmapped gamepad controls pass through; written for gamepad "
                      "documents only"),
        });
    return table;
}

}  // namespace zunokeymapmanager
