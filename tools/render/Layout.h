//
// Layout.h
//
// Where things go when the document's own positions would hide them:
// markers at (nearly) the same spot are fanned out around it, and captions
// and labels are put beside their markers where nothing else is. Both run in
// time linear in the items: boxes are found through a grid, and every search
// is bounded.
//

#ifndef ZUNO_KEYMAP_RENDER_LAYOUT_H
#define ZUNO_KEYMAP_RENDER_LAYOUT_H

#include <cstdint>
#include <vector>

namespace zunokeymap {
namespace render {

struct Box {
    double x0 = 0;
    double y0 = 0;
    double x1 = 0;
    double y1 = 0;

    static Box around(double x, double y, double halfWidth, double halfHeight) {
        return {x - halfWidth, y - halfHeight, x + halfWidth, y + halfHeight};
    }
    bool overlaps(const Box& o) const { return x0 < o.x1 && o.x0 < x1 && y0 < o.y1 && o.y0 < y1; }
    bool inside(const Box& o) const { return x0 >= o.x0 && y0 >= o.y0 && x1 <= o.x1 && y1 <= o.y1; }
};

/// The boxes taken so far on a screen, filed by the grid cells they touch.
class BoxIndex {
public:
    /// A grid of `cell`-sized cells over `screen`; boxes beyond it are filed
    /// in its edge cells.
    BoxIndex(const Box& screen, double cell);

    void add(const Box& box);
    /// True when `box` overlaps no box added and touches no cell that 32
    /// boxes touch already (a crowd has no room worth finding).
    bool isFree(const Box& box) const;

private:
    void cellsOf(const Box& box, int& c0, int& r0, int& c1, int& r1) const;

    Box screen_;
    double cell_;
    int columns_;
    int rows_;
    std::vector<Box> boxes_;
    std::vector<std::vector<std::uint32_t>> cells_;
};

/// A marker before layout: where the document puts it and how far it reaches
/// from there.
struct Spot {
    double x = 0;
    double y = 0;
    double halfWidth = 0;
    double halfHeight = 0;
};

/// Where each marker is drawn. Markers that overlap the first marker of a
/// group (at most `kFanGroup` to a group) are set out on a ring around the
/// group's centre, each on the side of the centre where the document has it
/// (markers at the very same spot in document order, clockwise from the
/// left), so that every one is seen whole. A marker on its own stays where it
/// is. Drawn positions are kept on `screen`.
struct Fanned {
    double x = 0;
    double y = 0;
    bool moved = false;
};
inline constexpr std::size_t kFanGroup = 12;
std::vector<Fanned> FanOut(const std::vector<Spot>& spots, const Box& screen);

/// Finds room for a `width` x `height` box beside a marker at (x, y) of the
/// given half extents: right, left, above, below and the four corners at
/// the marker's edge, then the same `rings` - 1 more times, each `step`
/// further out. The first free box on `screen` wins; `ring` says how far out
/// it is (0 at the edge). False when there is no room.
struct Beside {
    Box box;
    int ring = 0;
};
bool FindRoomBeside(const BoxIndex& taken, const Box& screen, const Spot& marker, double width,
                    double height, double step, int rings, Beside& out);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_LAYOUT_H
