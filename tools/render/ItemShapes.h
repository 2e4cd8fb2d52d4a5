//
// ItemShapes.h
//
// How each item type is drawn: one row per type, with its colour, its name in
// the legend and the function that draws its own geometry. The drawing rules
// shared by every type (marker, touch point, captions, problem marks) are in
// SvgRenderer.cpp; a type's row only adds what that type has of its own.
//

#ifndef ZUNO_KEYMAP_RENDER_ITEMSHAPES_H
#define ZUNO_KEYMAP_RENDER_ITEMSHAPES_H

#include <string>
#include <vector>

#include <zuno-keymapmanager/keymapmanager.h>

#include "SvgWriter.h"

namespace zunokeymap {
namespace render {

/// The screen in SVG user units. Positions in documents are fractions of
/// the screen's width and height; radii are fractions of its shorter side,
/// so a circle stays round on any screen.
struct Canvas {
    double width = 1920;
    double height = 1080;

    double x(double rel) const { return rel * width; }
    double y(double rel) const { return rel * height; }
    double side() const { return width < height ? width : height; }
    double length(double rel) const;
    /// The radius of `item`'s marker: a base size times the item's
    /// editor_icon_scale and its icon's radius_correction (each kept sane).
    double markerRadius(const zunokeymapmanager::ConfigItem& item) const;
};

/// The caption of a key as written on the picture: its text, else its code
/// for a key that is set but has no caption; empty for an unset key.
std::string KeyCaption(const zunokeymapmanager::ConfigKey& key);

/// The caption written on an item's marker: its key, and for an item bound to
/// a combination both keys ("Ctrl+G").
std::string ItemCaption(const zunokeymapmanager::ConfigItem& item);

/// A font size at which `text` fits inside a circle of `radius`.
double FittedTextSize(const std::string& text, double radius);

using DrawGeometry = void (*)(SvgWriter& svg, const Canvas& canvas,
                              const zunokeymapmanager::ConfigItem& item);

struct TypeShape {
    const char* type;    ///< the type name, as in documents
    const char* colour;  ///< the type's own colour, for its geometry and legend
    const char* legend;  ///< what the legend says of it
    DrawGeometry draw;   ///< the type's own geometry, or null for none
};

/// Every item type, in the order of the library's type list.
const std::vector<TypeShape>& TypeShapes();

/// The row of `type`, or null for a type the renderer does not know.
const TypeShape* FindTypeShape(const std::string& type);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_ITEMSHAPES_H
