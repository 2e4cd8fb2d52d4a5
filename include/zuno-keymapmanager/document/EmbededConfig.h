//
// EmbededConfig.h
//
// Complete keymap documents compiled into the library, addressed by name.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_EMBEDEDCONFIG_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_EMBEDEDCONFIG_H

#include <map>
#include <string>

#include "zuno-keymapmanager/Export.h"

class ZUNO_KM_API EmbededConfig
/// A load whose path is one of these names (exact, case-sensitive) reads
/// the built-in text instead of a file. Both tables are built on first use
/// and never change afterwards.
{
public:
    /// The blank keymap "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300" and
    /// the "system-9252A9CA-0C32-4FFD-8BF6-82653751D068" keymap, which passes
    /// the wheel and all mouse buttons but the left one through.
    static const std::map<std::string, std::string>& keymapConfigs();

    /// The blank gamepad keymap, under the same name as the blank keymap.
    static const std::map<std::string, std::string>& joystickConfigs();
};

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_EMBEDEDCONFIG_H
