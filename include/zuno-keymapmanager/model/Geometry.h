//
// Geometry.h
//
// Small value types for screen positions. Relative positions are fractions of
// the screen's width and height, so one keymap fits every window size.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_GEOMETRY_H
#define ZUNO_KEYMAPMANAGER_MODEL_GEOMETRY_H

#include <cstdint>

namespace zunokeymapmanager {

/// A point with coordinates of type T.
template <typename T>
struct BasicPoint {
    T x{};  ///< horizontal coordinate
    T y{};  ///< vertical coordinate

    /// The origin.
    constexpr BasicPoint() = default;
    /// The point (px, py).
    constexpr BasicPoint(T px, T py) : x(px), y(py) {}

    /// True when both coordinates are zero.
    constexpr bool isNull() const { return x == T{} && y == T{}; }

    /// Coordinate-wise arithmetic and comparison.
    ///@{
    constexpr BasicPoint operator+(const BasicPoint& o) const { return {x + o.x, y + o.y}; }
    constexpr BasicPoint operator-(const BasicPoint& o) const { return {x - o.x, y - o.y}; }
    BasicPoint& operator+=(const BasicPoint& o) {
        x += o.x;
        y += o.y;
        return *this;
    }
    BasicPoint& operator-=(const BasicPoint& o) {
        x -= o.x;
        y -= o.y;
        return *this;
    }
    constexpr bool operator==(const BasicPoint& o) const { return x == o.x && y == o.y; }
    constexpr bool operator!=(const BasicPoint& o) const { return !(*this == o); }
    ///@}
};

/// A point in pixels.
using Point = BasicPoint<std::int32_t>;

/// A point in relative screen coordinates, written to JSON as {"rel_x", "rel_y"}.
using PointF = BasicPoint<double>;

/// A rectangle given by two corners (x1, y1) and (x2, y2).
struct Rect {
    std::int32_t x1 = 0;  ///< first corner, horizontal
    std::int32_t y1 = 0;  ///< first corner, vertical
    std::int32_t x2 = 0;  ///< second corner, horizontal
    std::int32_t y2 = 0;  ///< second corner, vertical

    /// The null rectangle at the origin.
    constexpr Rect() = default;
    /// The rectangle from (a, b) to (c, d).
    constexpr Rect(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d)
        : x1(a), y1(b), x2(c), y2(d) {}

    /// True when the second corner equals the first.
    constexpr bool isNull() const { return x2 == x1 && y2 == y1; }
};

/// A size in relative screen units.
struct SizeF {
    double width = 0.0;   ///< horizontal extent
    double height = 0.0;  ///< vertical extent

    /// The empty size.
    constexpr SizeF() = default;
    /// A size of w by h.
    constexpr SizeF(double w, double h) : width(w), height(h) {}
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_GEOMETRY_H
