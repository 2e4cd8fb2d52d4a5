//
// Legend.cpp
//

#include "Legend.h"

#include <algorithm>

#include "TextMetrics.h"

namespace zunokeymap {
namespace render {

Legend::Legend(const Canvas& canvas, const std::vector<bool>& used, bool fanned, bool macroPoints)
    : canvas_(canvas),
      line_(std::max(canvas.side() * 0.03, canvas.minTextSize() * 1.7)),
      size_(std::max(line_ * 0.6, canvas.minTextSize())) {
    const std::vector<TypeShape>& types = TypeShapes();
    for (std::size_t k = 0; k < types.size() && k < used.size(); ++k) {
        if (used[k]) {
            entries_.push_back({&types[k], types[k].type, types[k].legend, nullptr});
        }
    }
    entries_.push_back({nullptr, "touch point", "where the gesture touches the screen", "touch"});
    if (fanned) {
        entries_.push_back({nullptr, "shared spot",
                            "markers at one spot are set out around it; the dot is the spot",
                            "true-spot"});
    }
    if (macroPoints) {
        entries_.push_back({nullptr, "macro point",
                            "a point a macro touches, numbered in the order it touches them",
                            "macro-point"});
    }
    entries_.push_back({nullptr, "invalid",
                        "an item the host cannot use; the reason is in its tooltip",
                        "problem problem-invalid"});
    entries_.push_back({nullptr, "key collision",
                        "items fired by the same key; the reason is in their tooltips",
                        "problem problem-collision"});

    // Laid out before drawing: the band's height goes into the viewBox.
    const double margin = line_ * 0.4;
    double x = margin;
    double y = line_ * 1.6;
    for (Entry& entry : entries_) {
        const double width = line_ * 0.9 + TextWidth(entry.name, size_, Weight::Regular);
        if (x + width > canvas.width && x > margin) {
            x = margin;
            y += line_ * 0.9;
        }
        entry.x = x;
        entry.y = y;
        x += width + line_ * 0.6;
    }
    height_ = y + line_ * 0.6;
}

void Legend::drawSample(SvgWriter& svg, const Entry& entry, double x, double y) const {
    const double r = line_ * 0.3;
    if (entry.type != nullptr) {
        OpenMarker(svg, entry.type->marker, x, y, r * 0.85);
        svg.attr("class", "marker").attr("data-marker-shape", MarkerShapeName(entry.type->marker));
        svg.attr("stroke", entry.type->colour).attr("stroke-width", r * 0.22).close();
        return;
    }
    const std::string mark = entry.mark;
    svg.open("circle").attr("class", mark).attr("cx", x).attr("cy", y);
    svg.attr("r", mark == "touch" || mark == "true-spot" ? r * 0.4 : r).close();
}

void Legend::draw(SvgWriter& svg, const std::string& heading) const {
    svg.open("g").attr("class", "legend").attr("font-size", size_).content();
    svg.open("rect").attr("class", "panel").attr("x", 0).attr("y", -height_);
    svg.attr("width", canvas_.width).attr("height", height_).close();
    svg.open("text").attr("class", "title-line").attr("x", line_ * 0.4);
    svg.attr("y", line_ * 0.85 - height_).attr("font-size", std::max(line_ * 0.7, size_));
    svg.text(heading);
    for (const Entry& entry : entries_) {
        svg.open("g").attr("class", "entry").content();
        svg.open("title").text(entry.tooltip);
        drawSample(svg, entry, entry.x + line_ * 0.3, entry.y - height_);
        svg.open("text").attr("x", entry.x + line_ * 0.75).attr("y", entry.y - height_);
        svg.attr("dy", "0.35em").text(entry.name);
        svg.end("g");
    }
    svg.end("g");
}

}  // namespace render
}  // namespace zunokeymap
