//
// SvgRenderer.h
//
// Draws a loaded keymap as one self-contained SVG picture of the screen: the
// one renderer behind `zuno-keymap render` and the editor's picture.
//

#ifndef ZUNO_KEYMAP_RENDER_SVGRENDERER_H
#define ZUNO_KEYMAP_RENDER_SVGRENDERER_H

#include <functional>
#include <string>
#include <vector>

#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {
namespace render {

/// A picture to draw under the items, as the image file's own bytes.
struct Background {
    std::string bytes;  ///< empty for none
    std::string mime;   ///< "image/png" or "image/jpeg"
    int width = 0;      ///< in pixels, read from the image
    int height = 0;
    /// The image as a data: URI, made once by ReadBackground so that every
    /// picture of an editing session embeds it without encoding it again.
    std::string uri;
};

class SvgWriter;
struct Canvas;

/// An item as the renderer drew it, for what an Overlay adds to it.
struct DrawnItem {
    const zunokeymapmanager::ConfigItem* item = nullptr;
    int index = -1;      ///< in the document drawn, or in Overlay::extras' document
    bool extra = false;  ///< one of Overlay::extras
    double x = 0;        ///< the marker's centre and radius, in SVG units
    double y = 0;
    double radius = 0;
};

/// What a caller layers over the one picture (the drawn diff does). Left
/// empty, it changes nothing.
struct Overlay {
    /// Classes added to the group of the document's item i (may be shorter
    /// than the document).
    std::vector<std::string> classes;
    /// Items of another document drawn under the document's own, each with
    /// its index there (written as data-old-index, not data-item-index)
    /// and its classes.
    struct Extra {
        const zunokeymapmanager::ConfigItem* item = nullptr;
        int index = -1;
        std::string classes;
    };
    std::vector<Extra> extras;
    /// Rules added to the picture's style sheet.
    std::string style;
    /// Draws the caller's own shapes last in each item's group, extras
    /// included.
    std::function<void(SvgWriter&, const Canvas&, const DrawnItem&)> draw;
};

struct RenderOptions {
    int width = 1920;  ///< the screen, in SVG user units
    int height = 1080;
    std::string title;  ///< shown on the title line, usually the file name
    Background background;
    /// The band above the screen with the title line and the legend.
    bool legend = true;
    /// Each item's description printed beside its marker.
    bool labels = false;
    Overlay overlay;
};

/// The picture of `doc`. `report` is the document's check (CheckKeymapDocument):
/// its invalid items and key collisions are marked on the items, with the
/// reason as each item's tooltip. The same arguments give the same bytes.
std::string RenderSvg(const zunokeymapmanager::KeymapConfig& doc,
                      const zunokeymapmanager::CheckReport& report, const RenderOptions& options);

/// The picture `zuno-keymap render` draws of `doc`, loaded from `text`: the
/// library checks the text (as a gamepad document with `joystick`), and the
/// title, unless `options` has one, is the last component of `source`, the
/// name the user gave it.
std::string RenderDocumentSvg(const zunokeymapmanager::KeymapConfig& doc, const std::string& text,
                              bool joystick, const std::string& source, RenderOptions options);

/// The last component of a path as the user wrote it, with either separator.
std::string LastPathComponent(const std::string& path);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_SVGRENDERER_H
