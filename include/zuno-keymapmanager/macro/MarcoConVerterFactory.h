//
// MarcoConVerterFactory.h
//
// Picks the command of a macro line and converts whole scripts.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTERFACTORY_H
#define ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTERFACTORY_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/macro/MarcoConVerter.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

class ZUNO_KM_API MarcoConVerterFactory
/// Tries the commands on a line in one fixed order (that in which
/// MarcoCommandConVerters.h declares them) and makes a converter of the first
/// that accepts it. Lines are taken as they are: no trimming, no case folding.
///
/// In scripts, empty lines and the line "release_actions" (the separator
/// between the press and the release actions) are skipped; they are neither
/// checked nor converted. The factory holds no state.
{
public:
    MarcoConVerterFactory() = default;
    ~MarcoConVerterFactory() = default;

    /// A converter of the first command whose editing form accepts `line`, or
    /// an empty pointer.
    static std::shared_ptr<MarcoConVerter> ProduceMarcoConVerterByEditingText(
        const std::string& line);

    /// A converter of the first command whose running form accepts `line`, or
    /// an empty pointer.
    static std::shared_ptr<MarcoConVerter> ProduceMarcoConVerterByRunningText(
        const std::string& line);

    /// True when some command accepts `line` in editing form.
    static bool isMacroKeyEditingTextGrammarRight(const std::string& line);

    /// The one-based numbers, ascending, of the editing lines that no command
    /// accepts. Skipped lines count in the numbering.
    static std::vector<std::uint32_t> MacroKeyEditingTextGrammarCheck(
        const std::vector<std::string>& lines);

    /// The running script of an editing script: one line per accepted line, in
    /// order; unaccepted lines are dropped.
    static std::vector<std::string> MacroKeyEditingTextChangeToRunningText(
        const std::vector<std::string>& lines, Rect rect);

    /// The editing script of a running script, likewise.
    static std::vector<std::string> MacroKeyRunningTextChangeToEditingText(
        const std::vector<std::string>& lines, Rect rect);
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTERFACTORY_H
