//
// MovedCheck.h
//
// The check of a document after a move, without checking the whole document
// again: a move changes the numbers of one item and nothing else, so the
// findings of the other items, and every key collision, stay as they were.
//

#ifndef ZUNO_KEYMAP_EDITOR_MOVEDCHECK_H
#define ZUNO_KEYMAP_EDITOR_MOVEDCHECK_H

#include <memory>
#include <string>

#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {
namespace editor {

/// The check of `text` (the library's saved form) that CheckKeymapDocument
/// gives, made from `before`, the check of the text before item `index` was
/// moved: the item is checked alone, within the document's frame, and its
/// findings take the place of its old ones. The saved form writes one member
/// a line, so a move shifts no other finding's line or column. Null where
/// that does not hold (the text has no such item, or the item alone does not
/// load): the whole document must then be checked.
std::shared_ptr<const zunokeymapmanager::CheckReport> CheckAfterMove(
    const zunokeymapmanager::CheckReport& before, const std::string& text, int index, bool joystick,
    const std::string& source);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_MOVEDCHECK_H
