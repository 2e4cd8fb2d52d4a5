//
// TextFile.h
//
// The library's safe file write, for hosts and tools that write files of
// their own beside keymaps (pictures, reports) and want the same guarantees.
//

#ifndef ZUNO_KEYMAPMANAGER_API_TEXTFILE_H
#define ZUNO_KEYMAPMANAGER_API_TEXTFILE_H

#include <string>

#include "zuno-keymapmanager/Export.h"

namespace zunokeymapmanager {

/// Writes `text` to `path` in one step: into a new file beside the target,
/// flushed to disk, which then replaces the target, so the target holds its
/// old bytes or the whole new text whatever happens midway. Unlike the save,
/// it never writes into the target itself: where no new file can be made
/// beside it (a folder the user may not write, no free inodes) or the target
/// is not a regular file, nothing is written. Returns false when the file
/// was not replaced.
ZUNO_KM_API bool WriteTextFile(const std::string& path, const std::string& text);

/// WriteTextFile that also says why it failed: `error` gets the cause
/// ("not a regular file", "cannot create a temporary file beside it:
/// Permission denied", ...).
ZUNO_KM_API bool WriteTextFile(const std::string& path, const std::string& text,
                               std::string& error);

/// Writes `text` to a new file `path` that must not exist yet, not even as a
/// symbolic link (so a link planted in a shared folder cannot send the text
/// elsewhere). On POSIX systems the file gets the permission bits of the
/// file `like`, when that exists, and its group where the process may set
/// it, so a copy of a private file stays private.
/// False, with the cause in `error`, when the name is taken or the file
/// cannot be written; nothing is left behind then.
ZUNO_KM_API bool WriteNewTextFile(const std::string& path, const std::string& text,
                                  const std::string& like, std::string& error);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_TEXTFILE_H
