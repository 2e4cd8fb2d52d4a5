//
// Legend.h
//
// The band above the screen: the title line, then one entry for each type
// the document uses (its marker and name) and for each mark the picture may
// carry, wrapped to the screen's width. The band is drawn outside the screen
// so that it never hides a pixel of it.
//

#ifndef ZUNO_KEYMAP_RENDER_LEGEND_H
#define ZUNO_KEYMAP_RENDER_LEGEND_H

#include <string>
#include <vector>

#include "ItemShapes.h"
#include "SvgWriter.h"

namespace zunokeymap {
namespace render {

class Legend {
public:
    /// `used[k]` tells whether the document has an item of TypeShapes()[k];
    /// `fanned` and `macroPoints` whether the picture shows those marks.
    Legend(const Canvas& canvas, const std::vector<bool>& used, bool fanned, bool macroPoints);

    /// The band's height in user units.
    double height() const { return height_; }

    /// Draws the band from y = -height() to 0, `heading` on its first line.
    void draw(SvgWriter& svg, const std::string& heading) const;

private:
    struct Entry {
        const TypeShape* type;  // null for a mark
        const char* name;
        const char* tooltip;
        const char* mark;  // the class of a mark's sample
        double x = 0;
        double y = 0;
    };
    void drawSample(SvgWriter& svg, const Entry& entry, double x, double y) const;

    Canvas canvas_;
    double line_;
    double size_;
    double height_;
    std::vector<Entry> entries_;
};

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_LEGEND_H
