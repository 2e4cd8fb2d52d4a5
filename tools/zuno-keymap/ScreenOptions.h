//
// ScreenOptions.h
//
// The picture settings that render and edit share: the screen's size and a
// background image.
//

#ifndef ZUNO_KEYMAP_TOOL_SCREENOPTIONS_H
#define ZUNO_KEYMAP_TOOL_SCREENOPTIONS_H

#include <string>

#include <SvgRenderer.h>

namespace zunokeymap {

/// Fills `out` from `--size WxH` and `--background IMAGE` (each empty when not
/// given). The screen takes the image's size unless a size is given. Returns
/// an empty string, or what was wrong, for a usage error.
std::string ReadScreenOptions(const std::string& size, const std::string& background,
                              render::RenderOptions& out);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_SCREENOPTIONS_H
