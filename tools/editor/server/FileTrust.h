//
// FileTrust.h
//
// What the editor asks of a path before it writes through it or offers what
// it holds: who made a link, and whose a file is. Where the platform has no
// such owners (Windows), every path is trusted, as its own file functions do.
//

#ifndef ZUNO_KEYMAP_EDITOR_FILETRUST_H
#define ZUNO_KEYMAP_EDITOR_FILETRUST_H

#include <string>

namespace zunokeymap {
namespace editor {

/// Whether `path` is a symbolic link.
bool IsLink(const std::string& path);

/// Whether `path` is a symbolic link that must not be followed: one owned by
/// neither the user nor root, in a folder that is sticky or that anyone may
/// write. Such a link may have been planted by someone else to send the
/// user's writes elsewhere (the rule the kernel applies with
/// protected_symlinks, applied here whatever the system's setting).
bool IsUntrustedLink(const std::string& path);

/// Whether the file at `path` (not following a link) belongs to the user.
bool OwnedByUser(const std::string& path);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_FILETRUST_H
