//
// TextMetrics.h
//
// How wide a line of text is drawn, without a font at hand: the advance
// widths of the picture's own font for printable ASCII, and a generous width
// for everything else. Layout decisions (does a caption fit its marker, where
// may a label go) are made with these widths; they err on the wide side, so a
// label placed clear of its neighbours stays clear in any common sans-serif.
//

#ifndef ZUNO_KEYMAP_RENDER_TEXTMETRICS_H
#define ZUNO_KEYMAP_RENDER_TEXTMETRICS_H

#include <string>
#include <string_view>

namespace zunokeymap {
namespace render {

enum class Weight { Regular, Bold };

/// The width of `text` (UTF-8) at font size `size`.
double TextWidth(std::string_view text, double size, Weight weight);

/// `text` cut to at most `glyphs` code points, ending in "…" when cut.
std::string Truncated(std::string_view text, std::size_t glyphs);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_TEXTMETRICS_H
