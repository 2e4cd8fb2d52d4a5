//
// ItemChecks.h
//
// Findings about one item the document loads to.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_ITEMCHECKS_H
#define ZUNO_KEYMAPMANAGER_CHECK_ITEMCHECKS_H

#include <vector>

#include "zuno-keymapmanager/api/KeymapCheck.h"
#include "zuno-keymapmanager/model/ConfigItem.h"

namespace zunokeymapmanager {
namespace check {

/// Invalid items, Macro lines that fail the grammar check, key texts that
/// are not their code's caption, (0, 0) work positions and zero drag radii.
/// `element` is the index in "keymaps" that `item` was read from.
void CheckItem(const ConfigItem& item, int element, std::vector<Finding>& out);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_ITEMCHECKS_H
