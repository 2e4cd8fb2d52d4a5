//
// Layout.cpp
//

#include "Layout.h"

#include <algorithm>
#include <cmath>

namespace zunokeymap {
namespace render {

namespace {

constexpr double kPi = 3.14159265358979323846;
// The grid is at most this many cells a side, whatever the screen's size.
constexpr int kMaxCells = 512;
// A cell touched by this many boxes is taken as full without looking at
// them: in a crowd, asking stays as quick as in a sparse picture.
constexpr std::size_t kFullCell = 32;

int clampIndex(double value, int count) {
    if (!(value > 0)) {
        return 0;
    }
    return value >= count ? count - 1 : static_cast<int>(value);
}

// The index of a grid cell in a row-major list of cells.
std::size_t cellIndex(int row, int column, int columns) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
           static_cast<std::size_t>(column);
}

double extent(const Spot& spot) {
    return std::max(spot.halfWidth, spot.halfHeight);
}

// Two markers hide each other when their outlines overlap well into both.
bool hides(const Spot& a, const Spot& b) {
    constexpr double kOverlap = 0.85;
    return std::abs(a.x - b.x) < kOverlap * (a.halfWidth + b.halfWidth) &&
           std::abs(a.y - b.y) < kOverlap * (a.halfHeight + b.halfHeight);
}

// The markers of one group, on a ring around their centre.
void fan(const std::vector<Spot>& spots, const std::vector<std::size_t>& members, const Box& screen,
         std::vector<Fanned>& out) {
    const std::size_t m = members.size();
    double cx = 0;
    double cy = 0;
    double reach = 0;
    for (const std::size_t i : members) {
        cx += spots[i].x;
        cy += spots[i].y;
        reach = std::max(reach, extent(spots[i]));
    }
    cx /= static_cast<double>(m);
    cy /= static_cast<double>(m);
    // Each keeps its side of the centre; markers at the centre itself take
    // turns clockwise from the left, so that two stand side by side, clear
    // of the vertical arrows and spokes drawn around such a spot.
    std::vector<std::pair<double, std::size_t>> order;
    order.reserve(m);
    for (std::size_t k = 0; k < m; ++k) {
        const Spot& spot = spots[members[k]];
        const double dx = spot.x - cx;
        const double dy = spot.y - cy;
        const double angle = std::hypot(dx, dy) < 0.5
                                 ? -kPi + 2 * kPi * static_cast<double>(k) / static_cast<double>(m)
                                 : std::atan2(dy, dx);
        order.emplace_back(angle, members[k]);
    }
    std::sort(order.begin(), order.end());
    const double radius = reach * 1.15 / std::sin(kPi / static_cast<double>(m));
    // A ring near the screen's edge moves in whole, so that it stays a ring.
    const double margin = radius + reach;
    if (screen.x1 - screen.x0 > 2 * margin) {
        cx = std::clamp(cx, screen.x0 + margin, screen.x1 - margin);
    }
    if (screen.y1 - screen.y0 > 2 * margin) {
        cy = std::clamp(cy, screen.y0 + margin, screen.y1 - margin);
    }
    for (std::size_t k = 0; k < m; ++k) {
        const double angle =
            order[0].first + 2 * kPi * static_cast<double>(k) / static_cast<double>(m);
        const Spot& spot = spots[order[k].second];
        Fanned& place = out[order[k].second];
        place.x = cx + radius * std::cos(angle);
        place.y = cy + radius * std::sin(angle);
        if (screen.x1 - screen.x0 > 2 * spot.halfWidth) {
            place.x = std::clamp(place.x, screen.x0 + spot.halfWidth, screen.x1 - spot.halfWidth);
        }
        if (screen.y1 - screen.y0 > 2 * spot.halfHeight) {
            place.y = std::clamp(place.y, screen.y0 + spot.halfHeight, screen.y1 - spot.halfHeight);
        }
        place.moved = std::hypot(place.x - spot.x, place.y - spot.y) >= 0.5;
    }
}

}  // namespace

BoxIndex::BoxIndex(const Box& screen, double cell) : screen_(screen) {
    const double width = std::max(screen.x1 - screen.x0, 1.0);
    const double height = std::max(screen.y1 - screen.y0, 1.0);
    cell_ = std::max({cell, width / kMaxCells, height / kMaxCells, 1.0});
    columns_ = std::max(1, static_cast<int>(std::ceil(width / cell_)));
    rows_ = std::max(1, static_cast<int>(std::ceil(height / cell_)));
    cells_.resize(cellIndex(rows_, 0, columns_));
}

void BoxIndex::cellsOf(const Box& box, int& c0, int& r0, int& c1, int& r1) const {
    c0 = clampIndex((box.x0 - screen_.x0) / cell_, columns_);
    c1 = clampIndex((box.x1 - screen_.x0) / cell_, columns_);
    r0 = clampIndex((box.y0 - screen_.y0) / cell_, rows_);
    r1 = clampIndex((box.y1 - screen_.y0) / cell_, rows_);
}

void BoxIndex::add(const Box& box) {
    const auto id = static_cast<std::uint32_t>(boxes_.size());
    boxes_.push_back(box);
    int c0 = 0, r0 = 0, c1 = 0, r1 = 0;
    cellsOf(box, c0, r0, c1, r1);
    for (int r = r0; r <= r1; ++r) {
        for (int c = c0; c <= c1; ++c) {
            cells_[cellIndex(r, c, columns_)].push_back(id);
        }
    }
}

bool BoxIndex::isFree(const Box& box) const {
    int c0 = 0, r0 = 0, c1 = 0, r1 = 0;
    cellsOf(box, c0, r0, c1, r1);
    for (int r = r0; r <= r1; ++r) {
        for (int c = c0; c <= c1; ++c) {
            const std::vector<std::uint32_t>& cell = cells_[cellIndex(r, c, columns_)];
            if (cell.size() >= kFullCell) {
                return false;
            }
            for (const std::uint32_t id : cell) {
                if (boxes_[id].overlaps(box)) {
                    return false;
                }
            }
        }
    }
    return true;
}

std::vector<Fanned> FanOut(const std::vector<Spot>& spots, const Box& screen) {
    std::vector<Fanned> out(spots.size());
    for (std::size_t i = 0; i < spots.size(); ++i) {
        out[i] = {spots[i].x, spots[i].y, false};
    }
    if (spots.size() < 2) {
        return out;
    }
    // Groups are found from a grid of cells four typical markers wide: a
    // marker looks for a group to join in its own cell and the eight around.
    std::vector<double> extents;
    extents.reserve(spots.size());
    for (const Spot& spot : spots) {
        extents.push_back(extent(spot));
    }
    std::nth_element(extents.begin(),
                     extents.begin() + static_cast<std::ptrdiff_t>(extents.size() / 2),
                     extents.end());
    const double cell = std::max(4 * extents[extents.size() / 2], 1.0);
    const double width = std::max(screen.x1 - screen.x0, 1.0);
    const double height = std::max(screen.y1 - screen.y0, 1.0);
    const double size = std::max({cell, width / kMaxCells, height / kMaxCells});
    const int columns = std::max(1, static_cast<int>(std::ceil(width / size)));
    const int rows = std::max(1, static_cast<int>(std::ceil(height / size)));
    // Only groups that can still take a member stay filed, so that a crowded
    // cell is looked through quickly.
    std::vector<std::vector<std::size_t>> open(cellIndex(rows, 0, columns));
    std::vector<std::vector<std::size_t>> groups;  // members; the first is the seed
    std::vector<std::size_t> cellOfGroup;
    for (std::size_t i = 0; i < spots.size(); ++i) {
        const Spot& spot = spots[i];
        const int column = clampIndex((spot.x - screen.x0) / size, columns);
        const int row = clampIndex((spot.y - screen.y0) / size, rows);
        std::size_t best = groups.size();
        double nearest = 0;
        for (int r = std::max(row - 1, 0); r <= std::min(row + 1, rows - 1); ++r) {
            for (int c = std::max(column - 1, 0); c <= std::min(column + 1, columns - 1); ++c) {
                for (const std::size_t g : open[cellIndex(r, c, columns)]) {
                    const Spot& seed = spots[groups[g][0]];
                    if (!hides(seed, spot)) {
                        continue;
                    }
                    const double distance = std::hypot(seed.x - spot.x, seed.y - spot.y);
                    if (best == groups.size() || distance < nearest ||
                        (distance == nearest && g < best)) {
                        best = g;
                        nearest = distance;
                    }
                }
            }
        }
        if (best == groups.size()) {
            const std::size_t cell = cellIndex(row, column, columns);
            open[cell].push_back(groups.size());
            groups.push_back({i});
            cellOfGroup.push_back(cell);
            continue;
        }
        groups[best].push_back(i);
        if (groups[best].size() == kFanGroup) {
            std::vector<std::size_t>& filed = open[cellOfGroup[best]];
            filed.erase(std::find(filed.begin(), filed.end(), best));
        }
    }
    for (const std::vector<std::size_t>& members : groups) {
        if (members.size() > 1) {
            fan(spots, members, screen, out);
        }
    }
    return out;
}

bool FindRoomBeside(const BoxIndex& taken, const Box& screen, const Spot& marker, double width,
                    double height, double step, int rings, Beside& out) {
    // Offsets of the box's near corner from the marker's edge, by direction:
    // right, left, below, above, then the corners.
    struct Direction {
        double dx;
        double dy;
    };
    constexpr Direction kDirections[] = {{1, 0}, {-1, 0}, {0, 1},  {0, -1},
                                         {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
    for (int ring = 0; ring < rings; ++ring) {
        const double gap = step * (0.25 + ring);
        for (const Direction& d : kDirections) {
            // A corner box sits off the marker's corner, pulled in a little
            // because the marker's outline is rounder than its box.
            const double inset = d.dx != 0 && d.dy != 0 ? 0.7 : 1;
            const double ex = marker.halfWidth * inset + gap;
            const double ey = marker.halfHeight * inset + gap;
            const double cx = d.dx > 0   ? marker.x + ex + width / 2
                              : d.dx < 0 ? marker.x - ex - width / 2
                                         : marker.x;
            const double cy = d.dy > 0   ? marker.y + ey + height / 2
                              : d.dy < 0 ? marker.y - ey - height / 2
                                         : marker.y;
            const Box box = Box::around(cx, cy, width / 2, height / 2);
            if (box.inside(screen) && taken.isFree(box)) {
                out.box = box;
                out.ring = ring;
                return true;
            }
        }
    }
    return false;
}

}  // namespace render
}  // namespace zunokeymap
