//
// Markers.h
//
// The outline of an item's marker. Each family of item types has a shape of
// its own, so that the family shows without colour (in print, in greyscale,
// to any eye); the type's colour tells the members of a family apart.
//

#ifndef ZUNO_KEYMAP_RENDER_MARKERS_H
#define ZUNO_KEYMAP_RENDER_MARKERS_H

#include "SvgWriter.h"

namespace zunokeymap {
namespace render {

enum class MarkerShape {
    Circle,    ///< taps
    Bubble,    ///< notes: a rounded square with a tail
    Hexagon,   ///< movement
    Diamond,   ///< camera and look
    Pentagon,  ///< skills and fire
    Square,    ///< scripts and strokes
    Capsule,   ///< two-way controls
};

/// The shape's name, as data-marker-shape writes it ("circle", ...).
const char* MarkerShapeName(MarkerShape shape);

/// Opens the element that draws `shape` centred on (x, y) for a marker of
/// radius `r`, with its geometry attributes; the caller adds class and paint
/// and closes it.
void OpenMarker(SvgWriter& svg, MarkerShape shape, double x, double y, double r);

/// Half the width and half the height of the shape's box for radius `r`.
double MarkerHalfWidth(MarkerShape shape, double r);
double MarkerHalfHeight(MarkerShape shape, double r);

/// The width a caption may take across the shape's middle.
double MarkerTextWidth(MarkerShape shape, double r);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_MARKERS_H
