//
// LostElements.h
//
// What a save through the library would leave out of a document or change
// in it: the item types it does not know, the members it does not keep, the
// values it reads as others and members written twice. A tool that
// writes a user's file compares what the user gave with what the library
// would write, and refuses when something would be lost.
//

#ifndef ZUNO_KEYMAP_TOOL_LOSTELEMENTS_H
#define ZUNO_KEYMAP_TOOL_LOSTELEMENTS_H

#include <string>
#include <vector>

namespace zunokeymapmanager {
class KeymapConfig;
}

namespace zunokeymap {

/// The JSON paths of everything in `given` that `saved` (the library's saved
/// form of it) does not hold as written, nor `alsoKept` when given (the same
/// document saved as the other kind: a gamepad document leaves out the
/// keyboard-only settings, which are known, not lost): "keymaps[2] (type
/// \"Swipehlod\")" for a dropped item, "keymaps[0].colour" for a dropped
/// member, "$schema" at the top, and "info.visibility (\"no\" would be
/// written as true)" for a value the library reads as another. Numbers are
/// compared by value. Elements of "keymaps" whose type the library does not
/// know are dropped on load, so the others are paired in order. Empty when
/// nothing is lost or when either text is not a JSON object (a failed load is
/// reported apart).
std::vector<std::string> LostElements(const std::string& given, const std::string& saved,
                                      const std::string& alsoKept = std::string());

/// LostElements of `given` against what the library saves for `doc`, the
/// document loaded from it, as either kind of document, and every member
/// `given` names twice in one object ("info.visibility (written twice: only
/// the last is kept)"), which the parser drops in silence.
std::vector<std::string> LostOnSave(const std::string& given, zunokeymapmanager::KeymapConfig& doc);

/// One message naming every lost element, for `command` writing `file`, with
/// the hint to use `--force`; made safe to print.
std::string LostElementsMessage(const std::string& command, const std::string& file,
                                const std::vector<std::string>& lost);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_LOSTELEMENTS_H
