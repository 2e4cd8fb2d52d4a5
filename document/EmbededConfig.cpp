//
// EmbededConfig.cpp
//
// The built-in documents. Their texts are kept byte for byte as hosts have
// always received them, odd indentation included.
//

#include "zuno-keymapmanager/document/EmbededConfig.h"

namespace {

const char* const kBlankKeymap = R"json({
                "info": {
                    "background_color": "000000FF",
                    "is_joystick": false,
                    "transparent_ESC": false,
                    "transparent_mouse": "Mouse_No_Transparent",
                    "transparent_mouse_windows_raw_move_period": 0,
                    "transparent_wheel": false,
                    "transparent_keyboard": false,
                    "visibility": true
                },
                "keymaps": [
                ]
            })json";

const char* const kSystemKeymap = R"json({
                "info": {
                    "background_color": "000000FF",
                    "is_joystick": false,
                    "transparent_ESC": false,
                    "transparent_mouse": "Mouse_OtherButton_Transparent",
                    "transparent_wheel": true,
                    "visibility": true
                },
                "keymaps":[]
                })json";

const char* const kBlankJoystick = R"json({
                "info": {
                    "background_color": "000000FF",
                    "is_joystick": true,
                    "transparent_ESC": false,
                    "transparent_mouse": "Mouse_No_Transparent",
                    "transparent_mouse_windows_raw_move_period": 0,
                    "transparent_wheel": false,
                    "transparent_joystick": false,
                    "visibility": true
                },
                "keymaps": [
                ]
            })json";

}  // namespace

const std::map<std::string, std::string>& EmbededConfig::keymapConfigs() {
    static const std::map<std::string, std::string> configs{
        {"sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", kBlankKeymap},
        {"system-9252A9CA-0C32-4FFD-8BF6-82653751D068", kSystemKeymap},
    };
    return configs;
}

const std::map<std::string, std::string>& EmbededConfig::joystickConfigs() {
    static const std::map<std::string, std::string> configs{
        {"sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", kBlankJoystick},
    };
    return configs;
}
