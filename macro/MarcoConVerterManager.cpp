//
// MarcoConVerterManager.cpp
//

#include "zuno-keymapmanager/macro/MarcoConVerterManager.h"

#include "zuno-keymapmanager/macro/MarcoConVerterFactory.h"

namespace zunokeymapmanager {

std::vector<std::uint32_t> MarcoConVerterManager::MacroKeyEditingTextGrammarCheck(
    const std::vector<std::string>& lines) {
    return MarcoConVerterFactory::MacroKeyEditingTextGrammarCheck(lines);
}

std::vector<std::string> MarcoConVerterManager::MacroKeyEditingTextChangeToRunningText(
    const std::vector<std::string>& lines, Rect rect) {
    return MarcoConVerterFactory::MacroKeyEditingTextChangeToRunningText(lines, rect);
}

std::vector<std::string> MarcoConVerterManager::MacroKeyRunningTextChangeToEditingText(
    const std::vector<std::string>& lines, Rect rect) {
    return MarcoConVerterFactory::MacroKeyRunningTextChangeToEditingText(lines, rect);
}

}  // namespace zunokeymapmanager
