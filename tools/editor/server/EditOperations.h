//
// EditOperations.h
//
// The edits the page sends, applied to the JSON of the held document: set or
// remove a member, move, add, duplicate, delete or reorder an item. Items are
// named by the session's identifiers, not by their index, so an edit made on
// an older picture still reaches the item it was made on. Whether the result
// is a document at all is the library's to say: the session loads it after
// each edit.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITOPERATIONS_H
#define ZUNO_KEYMAP_EDITOR_EDITOPERATIONS_H

#include <string>
#include <vector>

#include <Poco/JSON/Object.h>
#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {
namespace editor {

namespace km = zunokeymapmanager;

/// What the page is told about one edit.
struct EditResult {
    bool ok = false;
    std::string error;  ///< why it was refused
    std::string path;   ///< the JSON path it concerned ("keymaps[3].rel_radius"), if any
    int index = -1;     ///< the item it made or moved, by index, if any
    long item = -1;     ///< and by identifier
    std::vector<std::string> unbound;  ///< key members left unset for the user to bind
};

/// The document an edit changes: its JSON, the identifiers of its items (in
/// document order), and the document as the library loaded it.
struct EditTarget {
    Poco::JSON::Object::Ptr root;
    std::vector<long>* ids = nullptr;
    long* nextId = nullptr;
    const km::KeymapConfig* loaded = nullptr;
};

/// The operation's name ("set", "move", ...), empty when `op` has none.
std::string OperationName(const Poco::JSON::Object::Ptr& op);

/// Applies `op` to `target`. False, with `result.error`, when the operation
/// is malformed or names an item or member that is not there; `target` may
/// then be partly changed and is to be thrown away.
bool ApplyOperation(const Poco::JSON::Object::Ptr& op, EditTarget& target, EditResult& result);

/// `item` as the library writes it, as a JSON object whose nested objects are
/// handles like those of a parsed document.
Poco::JSON::Object::Ptr ItemJson(const km::ConfigItem& item);

/// "a.b" as its names; empty when a name is empty or the path holds
/// anything but names and dots.
std::vector<std::string> SplitMemberPath(const std::string& path);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_EDITOPERATIONS_H
