//
// ItemShapes.h
//
// How each item type is drawn: one row per type, made from the library's type
// list (its marker shape, its colour, its name in the legend), with the
// function that draws its class's own geometry. The drawing rules shared by every type (marker,
// touch point, captions, labels, problem marks) are in SvgRenderer.cpp; a type's row only adds what
// that type has of its own.
//

#ifndef ZUNO_KEYMAP_RENDER_ITEMSHAPES_H
#define ZUNO_KEYMAP_RENDER_ITEMSHAPES_H

#include <string>
#include <vector>

#include <zuno-keymapmanager/keymapmanager.h>

#include "Layout.h"
#include "Markers.h"
#include "SvgWriter.h"

namespace zunokeymap {
namespace render {

/// The screen in SVG user units. Positions in documents are fractions of
/// the screen's width and height; radii are fractions of its shorter side,
/// so a circle stays round on any screen.
struct Canvas {
    double width = 1920;
    double height = 1080;
    /// Where drawing code files the boxes of what labels must not cover
    /// (key plates, macro points); null when nobody asks.
    std::vector<Box>* taken = nullptr;

    double x(double rel) const { return rel * width; }
    double y(double rel) const { return rel * height; }
    double side() const { return width < height ? width : height; }
    double length(double rel) const;
    /// The radius of `item`'s marker: a base size times the item's
    /// editor_icon_scale and its icon's radius_correction (each kept sane).
    double markerRadius(const zunokeymapmanager::ConfigItem& item) const;
    /// A font size of `fraction` of the shorter side, but never less than
    /// 11.5 px when the picture is shown 1920 px wide.
    double textSize(double fraction) const;
    double minTextSize() const;
    void take(const Box& box) const {
        if (taken != nullptr) {
            taken->push_back(box);
        }
    }
};

using DrawGeometry = void (*)(SvgWriter& svg, const Canvas& canvas,
                              const zunokeymapmanager::ConfigItem& item);

struct TypeShape {
    const char* type;    ///< the type name, as in documents
    MarkerShape marker;  ///< the shape of its family
    const char* colour;  ///< the type's own colour: marker outline, geometry, legend
    const char* legend;  ///< what the legend says of it
    DrawGeometry draw;   ///< the type's own geometry, or null for none
};

/// Every item type, in the order of the library's type list.
const std::vector<TypeShape>& TypeShapes();

/// The row of `type`, or null for a type the renderer does not know.
const TypeShape* FindTypeShape(const std::string& type);

/// How the points of a macro script are drawn: the script's pixels on the
/// macro screen scaled to the canvas.
double MacroX(const Canvas& canvas, int x);
double MacroY(const Canvas& canvas, int y);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_ITEMSHAPES_H
