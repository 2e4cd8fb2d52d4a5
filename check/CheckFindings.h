//
// CheckFindings.h
//
// What every part of the document check uses to make its findings.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_CHECKFINDINGS_H
#define ZUNO_KEYMAPMANAGER_CHECK_CHECKFINDINGS_H

#include <string>
#include <vector>

#include "zuno-keymapmanager/api/KeymapCheck.h"

namespace zunokeymapmanager {
namespace check {

/// A finding about the element `index` of "keymaps" (-1 for none).
Finding MakeFinding(FindingKind kind, FindingSeverity severity, std::string path, int index,
                    std::string type, std::string message, std::string suggestion = std::string());

/// Orders `findings` by item index, keeping the order of each item's own:
/// in time linear in their number however many there are.
void SortByItem(std::vector<Finding>& findings);

/// CheckKeymapDocument; with `located` false, every finding's line and
/// column stay 0 (the benchmarks weigh locating against this).
CheckReport CheckText(const std::string& text, bool joystick, const std::string& source,
                      bool located);

/// "keymaps[3]".
std::string ElementPath(int index);

/// The name in `names` closest to `word` by edit distance (case differences
/// count little), or empty when none is close enough to be a likely typo.
std::string NearestName(const std::string& word, const std::vector<std::string>& names);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_CHECKFINDINGS_H
