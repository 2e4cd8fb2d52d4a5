//
// ImageHeader.h
//
// What the renderer needs to know of a background image: its kind and its
// size in pixels, read from the file's own header without decoding it.
//

#ifndef ZUNO_KEYMAP_RENDER_IMAGEHEADER_H
#define ZUNO_KEYMAP_RENDER_IMAGEHEADER_H

#include <cstddef>
#include <string>

#include "SvgRenderer.h"

namespace zunokeymap {
namespace render {

/// Fills `out` from the image file `bytes`: a PNG (size from its IHDR chunk)
/// or a JPEG (size from its first SOFn frame header). Returns an empty string
/// on success, else why the bytes are not an image the picture can embed.
/// `bytes` of type `mime` as a data: URI.
std::string DataUri(const std::string& mime, const std::string& bytes);

/// The largest background image taken, in bytes: a screenshot is a few.
constexpr std::size_t kMaxBackgroundBytes = 32U * 1024U * 1024U;

std::string ReadBackground(std::string bytes, Background& out);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_IMAGEHEADER_H
