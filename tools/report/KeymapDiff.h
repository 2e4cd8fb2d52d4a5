//
// KeymapDiff.h
//
// What changed between two keymaps, in the keymap's own terms: items added,
// removed, reordered, moved, rebound, and members changed. Formatting,
// member order and defaults written out or left to the library do not count:
// both documents are compared in the form the library saves them.
//

#ifndef ZUNO_KEYMAP_TOOL_KEYMAPDIFF_H
#define ZUNO_KEYMAP_TOOL_KEYMAPDIFF_H

#include <string>
#include <vector>

#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {

/// One change from the old document to the new one.
struct KeymapChange {
    enum class Kind { Added, Removed, Reordered, Moved, Rebound, Changed };
    Kind kind = Kind::Changed;
    int oldIndex = -1;  ///< the item in the old document, -1 for none
    int newIndex = -1;  ///< the item in the new document, -1 for none
    std::string type;   ///< the item's type; empty for info and param
    std::string label;  ///< its description, when it has one
    /// Moved: the marker's place before and after, and how far, in
    /// fractions of the screen.
    zunokeymapmanager::PointF from;
    zunokeymapmanager::PointF to;
    double distance = 0;
    /// Rebound and Changed: the member's JSON path (in the new document)
    /// and its value before and after (as JSON; key captions when rebound).
    std::string path;
    std::string before;
    std::string after;
};

/// "added", "removed", "reordered", "moved", "rebound", "changed".
const char* ChangeKindName(KeymapChange::Kind kind);

/// The changes from `before` to `after`, items first (in the new document's
/// order, removed items after them), then info and param.
///
/// Items are paired first where they are identical (at the same index when
/// there is one), then by index where the type is the same, then each left
/// over new item with the left over old item of its type that has the same
/// keys or, failing that, is nearest on the screen. What stays unpaired was
/// added or removed.
std::vector<KeymapChange> DiffKeymaps(const zunokeymapmanager::KeymapConfig& before,
                                      const zunokeymapmanager::KeymapConfig& after);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_KEYMAPDIFF_H
