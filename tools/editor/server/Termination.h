//
// Termination.h
//
// Waiting for the user to stop a foreground server (Ctrl-C, SIGTERM, or the
// console closing on Windows) in one portable place.
//

#ifndef ZUNO_KEYMAP_EDITOR_TERMINATION_H
#define ZUNO_KEYMAP_EDITOR_TERMINATION_H

namespace zunokeymap {
namespace editor {

/// Routes termination requests to WaitForTermination. Call it before any
/// thread is started, so that every thread inherits it.
void PrepareForTermination();

/// Returns once a termination request arrived.
void WaitForTermination();

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_TERMINATION_H
