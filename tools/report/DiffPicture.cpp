//
// DiffPicture.cpp
//

#include "DiffPicture.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <Captions.h>
#include <ItemShapes.h>
#include <SvgWriter.h>

namespace zunokeymap {

namespace km = zunokeymapmanager;
using render::Canvas;
using render::DrawnItem;
using render::SvgWriter;

namespace {

// Removed items are drawn from the old document, under the new one's.
const char* const kStyle =
    ".removed{opacity:0.55}"
    ".removed>.marker{fill:#e53935;fill-opacity:0.8}"
    ".removed>.geometry{color:#e53935}"
    ".diff-added{fill:none;stroke:#43a047;stroke-width:5}"
    ".diff-changed{fill:none;stroke:#64b5f6;stroke-width:2;stroke-dasharray:2 4}"
    ".diff-from{fill:none;stroke:#ffd54f;stroke-width:2;stroke-dasharray:5 4}"
    ".diff-arrow{stroke:#ffd54f;stroke-width:3}"
    ".diff-head{fill:#ffd54f}"
    ".diff-caption{fill:#fff;font-weight:bold;paint-order:stroke;stroke:#111827;stroke-width:2}"
    ".diff-caption .was{fill:#ff8a80;text-decoration:line-through}";

// What to draw over one item of the new document.
struct Mark {
    bool added = false;
    bool changed = false;
    bool moved = false;
    km::PointF from;
    bool rebound = false;
    std::string was;  // the caption before it was rebound
};

std::string captionOf(const km::ConfigItem& item) {
    const std::string caption = render::ItemCaption(item);
    return caption.empty() ? std::string("no key") : caption;
}

// An arrow from the marker's old place to the edge of its new one, and a
// dashed ring where it was.
void drawMove(SvgWriter& svg, const Canvas& canvas, const DrawnItem& drawn, km::PointF from) {
    const double fx = canvas.x(from.x);
    const double fy = canvas.y(from.y);
    const double r = drawn.radius;
    svg.open("circle").attr("class", "diff-from").attr("cx", fx).attr("cy", fy).attr("r", r);
    svg.close();
    const double dx = drawn.x - fx;
    const double dy = drawn.y - fy;
    const double length = std::hypot(dx, dy);
    const double head = std::max(10.0, r * 0.6);
    if (!(length > 2 * r + head)) {
        return;  // too close for an arrow to show: the ring says it
    }
    const double ux = dx / length;
    const double uy = dy / length;
    const double tipX = drawn.x - ux * r;
    const double tipY = drawn.y - uy * r;
    const double baseX = tipX - ux * head;
    const double baseY = tipY - uy * head;
    svg.open("line").attr("class", "diff-arrow").attr("x1", fx + ux * r).attr("y1", fy + uy * r);
    svg.attr("x2", baseX).attr("y2", baseY).close();
    std::string points;
    for (const double p : {tipX, tipY, baseX - uy * head * 0.5, baseY + ux * head * 0.5,
                           baseX + uy * head * 0.5, baseY - ux * head * 0.5}) {
        if (!points.empty()) {
            points += ' ';
        }
        render::AppendNumber(points, p);
    }
    svg.open("polygon").attr("class", "diff-head").attr("points", points).close();
}

void drawMark(SvgWriter& svg, const Canvas& canvas, const DrawnItem& drawn, const Mark& mark) {
    if (mark.added || mark.changed) {
        svg.open("circle").attr("class", mark.added ? "diff-added" : "diff-changed");
        svg.attr("cx", drawn.x).attr("cy", drawn.y).attr("r", drawn.radius + 8).close();
    }
    if (mark.moved) {
        drawMove(svg, canvas, drawn, mark.from);
    }
    if (mark.rebound) {
        const double size = std::max(16.0, drawn.radius * 0.8);
        svg.open("text").attr("class", "diff-caption").attr("x", drawn.x);
        svg.attr("y", drawn.y + drawn.radius + size * 1.2).attr("font-size", size).content();
        svg.open("tspan").attr("class", "was").text(mark.was);
        svg.open("tspan").text(" \xE2\x86\x92 " + captionOf(*drawn.item));
        svg.end("text");
    }
}

}  // namespace

render::Overlay DiffOverlay(const km::KeymapConfig& before, const km::KeymapConfig& after,
                            const std::vector<KeymapChange>& changes) {
    render::Overlay overlay;
    overlay.style = kStyle;
    overlay.classes.resize(after.items.size());
    auto marks = std::make_shared<std::vector<Mark>>(after.items.size());
    const auto known = [](int index, std::size_t size) {
        return index >= 0 && static_cast<std::size_t>(index) < size;
    };
    for (const KeymapChange& change : changes) {
        if (change.kind == KeymapChange::Kind::Removed) {
            if (known(change.oldIndex, before.items.size())) {
                const km::ConfigItem* item =
                    before.items[static_cast<std::size_t>(change.oldIndex)];
                overlay.extras.push_back({item, change.oldIndex, "removed"});
            }
            continue;
        }
        if (!known(change.newIndex, after.items.size())) {
            continue;  // info and param
        }
        const auto n = static_cast<std::size_t>(change.newIndex);
        std::string& classes = overlay.classes[n];
        const std::string kind = ChangeKindName(change.kind);
        if ((" " + classes + " ").find(" " + kind + " ") == std::string::npos) {
            classes += (classes.empty() ? "" : " ") + kind;
        }
        Mark& mark = (*marks)[n];
        switch (change.kind) {
            case KeymapChange::Kind::Added:
                mark.added = true;
                break;
            case KeymapChange::Kind::Moved:
                mark.moved = true;
                mark.from = change.from;
                break;
            case KeymapChange::Kind::Rebound:
                mark.rebound = true;
                if (known(change.oldIndex, before.items.size())) {
                    mark.was = captionOf(*before.items[static_cast<std::size_t>(change.oldIndex)]);
                }
                break;
            case KeymapChange::Kind::Changed:
                mark.changed = true;
                break;
            case KeymapChange::Kind::Removed:
            case KeymapChange::Kind::Reordered:
                break;
        }
    }
    overlay.draw = [marks](SvgWriter& svg, const Canvas& canvas, const DrawnItem& drawn) {
        if (!drawn.extra && drawn.item != nullptr && drawn.index >= 0 &&
            static_cast<std::size_t>(drawn.index) < marks->size()) {
            drawMark(svg, canvas, drawn, (*marks)[static_cast<std::size_t>(drawn.index)]);
        }
    };
    return overlay;
}

std::string DiffSummary(const std::vector<KeymapChange>& changes) {
    using Kind = KeymapChange::Kind;
    std::string out;
    for (const Kind kind :
         {Kind::Added, Kind::Removed, Kind::Moved, Kind::Rebound, Kind::Reordered, Kind::Changed}) {
        const auto count = std::count_if(changes.begin(), changes.end(),
                                         [kind](const KeymapChange& c) { return c.kind == kind; });
        if (count > 0) {
            out += (out.empty() ? "" : ", ") + std::to_string(count) + " " + ChangeKindName(kind);
        }
    }
    return out.empty() ? std::string("no changes") : out;
}

}  // namespace zunokeymap
