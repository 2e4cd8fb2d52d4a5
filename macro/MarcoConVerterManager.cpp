//
// MarcoConVerterManager.cpp
//

#include "zuno-keymapmanager/macro/MarcoConVerterManager.h"

namespace zunokeymapmanager {

std::vector<std::uint32_t> MarcoConVerterManager::MacroKeyEditingTextGrammarCheck(
    const std::vector<std::string>& lines) {
    std::vector<std::uint32_t> failing;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!lines[i].empty() && lines[i] != "release_actions") {
            failing.push_back(static_cast<std::uint32_t>(i + 1));
        }
    }
    return failing;
}

std::vector<std::string> MarcoConVerterManager::MacroKeyEditingTextChangeToRunningText(
    const std::vector<std::string>& /*lines*/, Rect /*rect*/) {
    return {};
}

std::vector<std::string> MarcoConVerterManager::MacroKeyRunningTextChangeToEditingText(
    const std::vector<std::string>& /*lines*/, Rect /*rect*/) {
    return {};
}

}  // namespace zunokeymapmanager
