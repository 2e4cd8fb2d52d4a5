//
// DocumentEdit.h
//
// Editing a document file through its JSON: the edit is made on the saved
// form, the result must load through the library, and only then is the file
// replaced.
//

#ifndef ZUNO_KEYMAP_TOOL_DOCUMENTEDIT_H
#define ZUNO_KEYMAP_TOOL_DOCUMENTEDIT_H

#include <functional>
#include <string>
#include <vector>

#include <Poco/JSON/Object.h>

#include "Common.h"
#include "Platform.h"

namespace zunokeymap {

/// Loads `file`, hands its saved form to `edit` (which returns an exit
/// status and reports its own errors), loads the edited JSON through the
/// library and saves it over `file`. With `mayCreate`, a file that does not
/// exist starts as the blank document. When the edited document does not
/// load, the load's diagnostic is reported, nothing is written and the
/// status is 1; when a member path of `kept` is missing from what the
/// library saves (a member it does not know), nothing is written either.
/// Unless `force`, neither is anything when the library would leave out
/// an element of the file or of the edit (an unknown item type or member):
/// each is named and the status is 1. The file is locked for the whole edit,
/// and the check's findings for what was written are printed.
int EditDocument(const std::string& command, const std::string& file, bool joystick, bool mayCreate,
                 bool force, const std::function<int(const Poco::JSON::Object::Ptr& root)>& edit,
                 const std::vector<std::string>& kept = {});

/// Readies `file` for a read-modify-write by `command`: a file of the user's
/// (not "-", a built-in or an open descriptor such as /dev/stdout, none of
/// which can be replaced), locked in `lock` against other tools editing it.
/// Returns 0, or an exit status after saying what is wrong.
int LockForRewrite(const std::string& command, const std::string& file, bool joystick,
                   FileLock& lock);

/// Sets the member at `path` ("keymaps[0].spell_info.rel_radius") below
/// `root` to `value`: JSON when it parses as JSON, else a string; where the
/// member holds a key, a key as KeyFromText reads it ("Q", "mouse:left"),
/// and an empty VALUE unsets it.
/// Every step but the last must exist; a missing last member is added (a
/// member whose name ends in "key" takes keys). Returns an exit status,
/// reporting errors.
int SetMember(const std::string& command, const Poco::JSON::Object::Ptr& root,
              const std::string& path, const std::string& value, bool joystick);

/// Reads "X,Y", each a fraction of the screen from 0 to 1.
bool ParseScreenPoint(const std::string& text, km::PointF& at);

/// Puts the item at `path` ("keymaps[2]") below `root` at `at`, with every
/// point that goes with it (zunokeymapmanager::PlaceItem). Returns an exit
/// status, reporting errors.
int PlaceMember(const std::string& command, const Poco::JSON::Object::Ptr& root,
                const std::string& path, const km::PointF& at);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_DOCUMENTEDIT_H
