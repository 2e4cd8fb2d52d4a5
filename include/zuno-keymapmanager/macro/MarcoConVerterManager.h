//
// MarcoConVerterManager.h
//
// The macro language's entry points.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTERMANAGER_H
#define ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTERMANAGER_H

#include <cstdint>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

class ZUNO_KM_API MarcoConVerterManager
/// The entry points the library's public functions use; each forwards to
/// MarcoConVerterFactory unchanged.
{
public:
    /// The one-based numbers of the editing lines that no command accepts.
    static std::vector<std::uint32_t> MacroKeyEditingTextGrammarCheck(
        const std::vector<std::string>& lines);

    /// The running script of an editing script.
    static std::vector<std::string> MacroKeyEditingTextChangeToRunningText(
        const std::vector<std::string>& lines, Rect rect);

    /// The editing script of a running script.
    static std::vector<std::string> MacroKeyRunningTextChangeToEditingText(
        const std::vector<std::string>& lines, Rect rect);
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTERMANAGER_H
