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

/// Writes `text` to `path` the way SaveKeymapConfigAndInfo writes a document:
/// into a new file beside the target, which then replaces it in one step, so
/// a crash or a full disk midway leaves the old file whole. Unlike the save,
/// returns false when the file could not be written.
ZUNO_KM_API bool WriteTextFile(const std::string& path, const std::string& text);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_TEXTFILE_H
