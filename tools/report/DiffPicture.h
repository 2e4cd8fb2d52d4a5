//
// DiffPicture.h
//
// What changed between two keymaps, drawn: the new keymap as `render` draws
// it, with the changes marked over it by the renderer's overlay.
//

#ifndef ZUNO_KEYMAP_TOOL_DIFFPICTURE_H
#define ZUNO_KEYMAP_TOOL_DIFFPICTURE_H

#include <string>
#include <vector>

#include <SvgRenderer.h>

#include "KeymapDiff.h"

namespace zunokeymap {

/// The overlay that marks `changes` (DiffKeymaps of `before` and `after`) on
/// the picture of `after`: removed items of `before` ghosted in red (class
/// removed, data-old-index), added items ringed in green (added), moved items
/// with an arrow from where they were (moved), rebound items with the old
/// caption beside the new (rebound), other changed members (changed).
/// `before` must outlive the overlay.
render::Overlay DiffOverlay(const zunokeymapmanager::KeymapConfig& before,
                            const zunokeymapmanager::KeymapConfig& after,
                            const std::vector<KeymapChange>& changes);

/// "2 added, 1 moved": the changes counted by kind, for the title line;
/// "no changes" when there are none.
std::string DiffSummary(const std::vector<KeymapChange>& changes);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_DIFFPICTURE_H
