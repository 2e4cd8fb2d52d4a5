//
// Markers.cpp
//
// The shapes are sized so that each covers about the area of a circle of the
// marker's radius: no family looks more important than another.
//

#include "Markers.h"

#include <cmath>
#include <string>

namespace zunokeymap {
namespace render {

namespace {

struct Row {
    const char* name;
    double halfWidth;   // times r
    double halfHeight;  // times r
    double textWidth;   // times r
};

constexpr Row kRows[] = {
    {"circle", 1, 1, 1.8},       {"bubble", 0.92, 1.1, 1.65},  {"hexagon", 1.1, 0.95, 1.75},
    {"diamond", 1.3, 1.3, 1.7},  {"pentagon", 1.1, 1.08, 1.6}, {"square", 0.9, 0.9, 1.75},
    {"capsule", 1.45, 0.8, 2.5},
};

const Row& row(MarkerShape shape) {
    return kRows[static_cast<int>(shape)];
}

constexpr double kPi = 3.14159265358979323846;

// A regular polygon of `corners` around (x, y), the first corner at `start`
// radians, as a closed path.
std::string polygon(double x, double y, double radius, int corners, double start) {
    std::string d;
    for (int k = 0; k < corners; ++k) {
        const double angle = start + 2 * kPi * k / corners;
        AppendPathPoint(d, k == 0 ? 'M' : 'L', x + radius * std::cos(angle),
                        y + radius * std::sin(angle));
    }
    return d + 'Z';
}

}  // namespace

const char* MarkerShapeName(MarkerShape shape) {
    return row(shape).name;
}

double MarkerHalfWidth(MarkerShape shape, double r) {
    return row(shape).halfWidth * r;
}

double MarkerHalfHeight(MarkerShape shape, double r) {
    return row(shape).halfHeight * r;
}

double MarkerTextWidth(MarkerShape shape, double r) {
    return row(shape).textWidth * r;
}

void OpenMarker(SvgWriter& svg, MarkerShape shape, double x, double y, double r) {
    const Row& size = row(shape);
    const double w = size.halfWidth * r;
    const double h = size.halfHeight * r;
    switch (shape) {
        case MarkerShape::Circle:
            svg.open("circle").attr("cx", x).attr("cy", y).attr("r", r);
            return;
        case MarkerShape::Square:
        case MarkerShape::Capsule:
            svg.open("rect").attr("x", x - w).attr("y", y - h).attr("width", 2 * w);
            svg.attr("height", 2 * h).attr("rx", shape == MarkerShape::Capsule ? h : r * 0.22);
            return;
        case MarkerShape::Bubble: {
            // A rounded square over the point, its tail towards the lower left.
            const double top = y - h;
            const double bottom = y + h - r * 0.3;
            const double c = r * 0.25;
            std::string d;
            AppendPathPoint(d, 'M', x - w + c, top);
            AppendPathPoint(d, 'L', x + w - c, top);
            AppendPathPoint(d, 'Q', x + w, top);
            AppendPathPoint(d, ' ', x + w, top + c);
            AppendPathPoint(d, 'L', x + w, bottom - c);
            AppendPathPoint(d, 'Q', x + w, bottom);
            AppendPathPoint(d, ' ', x + w - c, bottom);
            AppendPathPoint(d, 'L', x - w * 0.2, bottom);
            AppendPathPoint(d, 'L', x - w * 0.7, y + h);
            AppendPathPoint(d, 'L', x - w * 0.55, bottom);
            AppendPathPoint(d, 'Q', x - w, bottom);
            AppendPathPoint(d, ' ', x - w, bottom - c);
            AppendPathPoint(d, 'L', x - w, top + c);
            AppendPathPoint(d, 'Q', x - w, top);
            AppendPathPoint(d, ' ', x - w + c, top);
            svg.open("path").attr("d", d + 'Z');
            return;
        }
        case MarkerShape::Hexagon:
            svg.open("path").attr("d", polygon(x, y, w, 6, 0));
            return;
        case MarkerShape::Diamond:
            svg.open("path").attr("d", polygon(x, y, w, 4, -kPi / 2));
            return;
        case MarkerShape::Pentagon:
            // Point up, flat base; lowered so that the body centres on (x, y).
            svg.open("path").attr("d", polygon(x, y + r * 0.1, w, 5, -kPi / 2));
            return;
    }
}

}  // namespace render
}  // namespace zunokeymap
