//
// SvgRenderer.cpp
//
// The picture, back to front: the screen, the background image, the items
// in document order (each one <g>: its type's geometry, the link to its touch
// point, the touch point, problem rings, the marker and its caption), then
// the legend and the title line on top.
//

#include "SvgRenderer.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "ImageHeader.h"
#include "ItemShapes.h"
#include "SvgWriter.h"

namespace zunokeymap {
namespace render {

namespace km = zunokeymapmanager;

namespace {

// The style sheet: every rule the picture draws by, keyed by the classes
// docs/render.md lists. Per-item values (a marker's fill, a type's colour)
// are attributes, which these rules and an embedding page's may override.
const char* const kStyle =
    "text{font-family:'DejaVu Sans',Arial,sans-serif;text-anchor:middle}"
    ".screen{fill:#3f4652}"
    ".geometry{fill:none;stroke:currentColor;stroke-width:2}"
    ".geometry .head,.geometry .step,.geometry .finger,.geometry "
    ".tap{fill:currentColor;stroke:none}"
    ".geometry .range{stroke-dasharray:10 6;fill:currentColor;fill-opacity:0.06}"
    ".geometry .drag{fill:currentColor;fill-opacity:0.08}"
    ".geometry .bounded{stroke-width:3}"
    ".geometry .zone{stroke-dasharray:3 3}"
    ".geometry .aim,.geometry .diamond,.geometry .burst{stroke-dasharray:6 4;stroke-width:1.5}"
    ".geometry .keycap{fill:#111827;fill-opacity:0.75;stroke-width:1.5}"
    ".geometry .key,.geometry .badge{fill:#fff;stroke:none;font-weight:bold}"
    ".geometry .badge{text-anchor:start}"
    ".link{stroke:#fff;stroke-width:1.5;stroke-dasharray:4 3}"
    ".touch{fill:#fff;stroke:#111827;stroke-width:1.5}"
    ".marker{stroke:#fff;stroke-width:2}"
    ".caption{fill:#fff;font-weight:bold}"
    ".problem{fill:none;stroke-width:5}"
    ".legend .problem{stroke-width:3}"
    ".invalid>.problem-invalid{stroke:#ff1f1f;stroke-dasharray:9 5}"
    ".collision>.problem-collision{stroke:#ffa000}"
    ".hidden>.geometry,.hidden>.link,.hidden>.touch,.hidden>.marker,.hidden>.caption{opacity:0.35}"
    ".panel{fill:#111827;fill-opacity:0.8}"
    ".legend text{fill:#fff;text-anchor:start}";

const char* const kDefaultMarkerFill = "00000066";

bool isHex(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char ch) {
        return (ch >= '0' && ch <= '9') || (ch >= 'a' && ch <= 'f') || (ch >= 'A' && ch <= 'F');
    });
}

// "RRGGBBAA" as an SVG colour and opacity; anything else is the default.
void markerFill(SvgWriter& svg, const std::string& rgba) {
    const std::string colour = rgba.size() == 8 && isHex(rgba) ? rgba : kDefaultMarkerFill;
    svg.attr("fill", "#" + colour.substr(0, 6));
    const int alpha = std::stoi(colour.substr(6, 2), nullptr, 16);
    svg.attr("fill-opacity", alpha / 255.0);
}

// What the check says of one item: its marks and the reasons for its tooltip.
// An item may collide with thousands of others in a large document; its
// tooltip names the first few, so the picture grows with the items, not with
// the pairs.
constexpr std::size_t kReasonsShown = 4;

struct Problems {
    bool invalid = false;
    bool collision = false;
    std::vector<const std::string*> reasons;
    std::size_t more = 0;

    void add(const std::string& message) {
        if (reasons.size() < kReasonsShown) {
            reasons.push_back(&message);
        } else {
            ++more;
        }
    }
};

std::vector<Problems> problemsByItem(const km::CheckReport& report, std::size_t items,
                                     std::size_t& count) {
    std::vector<Problems> result(items);
    count = 0;
    const auto known = [items](int index) {
        return index >= 0 && static_cast<std::size_t>(index) < items;
    };
    for (const km::Finding& finding : report.findings) {
        if (finding.kind == km::FindingKind::InvalidItem) {
            if (known(finding.item_index)) {
                Problems& p = result[static_cast<std::size_t>(finding.item_index)];
                p.invalid = true;
                p.add(finding.message);
            }
            ++count;
        } else if (finding.kind == km::FindingKind::KeyCollision) {
            const std::vector<int> pair{finding.item_index, finding.other_index};
            for (const int index : finding.items.empty() ? pair : finding.items) {
                if (known(index)) {
                    Problems& p = result[static_cast<std::size_t>(index)];
                    p.collision = true;
                    p.add(finding.message);
                }
            }
            ++count;
        }
    }
    return result;
}

void drawItem(SvgWriter& svg, const Canvas& canvas, const km::ConfigItem& item, int index,
              const Problems& found) {
    const Problems* problems = found.invalid || found.collision ? &found : nullptr;
    const TypeShape* shape = FindTypeShape(item.type);
    std::string cls = "item";
    if (!item.icon.visibility) {
        cls += " hidden";
    }
    if (problems != nullptr && problems->invalid) {
        cls += " invalid";
    }
    if (problems != nullptr && problems->collision) {
        cls += " collision";
    }
    svg.open("g")
        .attr("class", cls)
        .attr("data-item-index", index)
        .attr("data-item-type", item.type);
    svg.content();

    const std::string caption = ItemCaption(item);
    std::string tooltip = "keymaps[" + std::to_string(index) + "] " + item.type;
    if (!caption.empty()) {
        tooltip += ": " + caption;
    }
    if (!item.icon.description.empty()) {
        tooltip += " \xE2\x80\x94 " + item.icon.description;
    }
    if (problems != nullptr) {
        for (const std::string* reason : problems->reasons) {
            tooltip += "\n" + *reason;
        }
        if (problems->more > 0) {
            tooltip += "\n\xE2\x80\xA6 and " + std::to_string(problems->more) + " more";
        }
    }
    svg.open("title").text(tooltip);

    svg.open("g").attr("class", "geometry").attr("color", shape ? shape->colour : "#ffffff");
    svg.content();
    if (shape != nullptr && shape->draw != nullptr) {
        shape->draw(svg, canvas, item);
    }
    svg.end("g");

    const double mx = canvas.x(item.icon.rel_position.x);
    const double my = canvas.y(item.icon.rel_position.y);
    const double tx = canvas.x(item.rel_work_position.x);
    const double ty = canvas.y(item.rel_work_position.y);
    const double r = canvas.markerRadius(item);
    if (std::hypot(mx - tx, my - ty) >= 0.5) {
        svg.open("line").attr("class", "link").attr("x1", mx).attr("y1", my).attr("x2", tx);
        svg.attr("y2", ty).close();
    }
    svg.open("circle").attr("class", "touch").attr("cx", tx).attr("cy", ty).attr("r", 4).close();
    if (problems != nullptr && problems->invalid) {
        svg.open("circle").attr("class", "problem problem-invalid").attr("cx", mx).attr("cy", my);
        svg.attr("r", r + 6).close();
    }
    if (problems != nullptr && problems->collision) {
        svg.open("circle").attr("class", "problem problem-collision").attr("cx", mx);
        svg.attr("cy", my).attr("r", r + (problems->invalid ? 12 : 6)).close();
    }
    svg.open("circle").attr("class", "marker").attr("cx", mx).attr("cy", my).attr("r", r);
    markerFill(svg, item.icon.background_color);
    svg.close();

    // The caption fills the disc; a long one gets smaller rather than spill.
    const std::string shown = caption.empty() ? item.type : caption;
    const double size = FittedTextSize(shown, r);
    svg.open("text").attr("class", caption.empty() ? "caption type-name" : "caption");
    svg.attr("x", mx).attr("y", my).attr("dy", "0.35em").attr("font-size", size).text(shown);
    svg.end("g");
}

// The band along the top: the title line, then one entry for each type the
// document uses and for each problem mark, wrapped to the screen's width.
// Each entry's tooltip says what the type's geometry shows.
void drawHeading(SvgWriter& svg, const Canvas& canvas, const km::KeymapConfig& doc,
                 const std::string& heading) {
    const double line = canvas.side() * 0.03;
    const double size = line * 0.6;
    struct Entry {
        const char* swatchClass;
        const char* group;  // the problem class the swatch stands for
        const char* colour;
        std::string name;
        std::string tooltip;
    };
    std::vector<Entry> entries;
    for (const TypeShape& shape : TypeShapes()) {
        const bool used =
            std::any_of(doc.items.begin(), doc.items.end(), [&](const km::ConfigItem* item) {
                return item != nullptr && item->type == shape.type;
            });
        if (used) {
            entries.push_back({"swatch", nullptr, shape.colour, shape.type, shape.legend});
        }
    }
    entries.push_back({"problem problem-invalid", "invalid", nullptr, "invalid",
                       "an item the host cannot use; the reason is in its tooltip"});
    entries.push_back({"problem problem-collision", "collision", nullptr, "key collision",
                       "items fired by the same key; the reason is in their tooltips"});

    // Lay the entries out first: the panel behind them needs their height.
    std::vector<std::pair<double, double>> places;
    double x = line * 0.4;
    double y = line * 1.5;
    for (const Entry& entry : entries) {
        const double width = line * 0.8 + size * 0.62 * static_cast<double>(entry.name.size());
        if (x + width > canvas.width && x > line * 0.4) {
            x = line * 0.4;
            y += line * 0.8;
        }
        places.emplace_back(x, y);
        x += width + line * 0.6;
    }

    svg.open("g").attr("class", "legend").attr("font-size", size).content();
    svg.open("rect").attr("class", "panel").attr("x", 0).attr("y", 0).attr("width", canvas.width);
    svg.attr("height", y + line * 0.5).close();
    svg.open("text").attr("class", "title-line").attr("x", line * 0.4).attr("y", line * 0.8);
    svg.attr("font-size", line * 0.7).text(heading);
    for (std::size_t k = 0; k < entries.size(); ++k) {
        const Entry& entry = entries[k];
        const double ex = places[k].first;
        const double ey = places[k].second;
        svg.open("g").attr("class", entry.group ? std::string("entry ") + entry.group : "entry");
        svg.content();
        svg.open("title").text(entry.tooltip);
        svg.open("circle").attr("class", entry.swatchClass).attr("cx", ex + line * 0.25);
        svg.attr("cy", ey).attr("r", line * 0.22);
        if (entry.colour != nullptr) {
            svg.attr("fill", entry.colour);
        }
        svg.close();
        svg.open("text").attr("x", ex + line * 0.6).attr("y", ey).attr("dy", "0.35em");
        svg.text(entry.name);
        svg.end("g");
    }
    svg.end("g");
}

}  // namespace

std::string RenderSvg(const km::KeymapConfig& doc, const km::CheckReport& report,
                      const RenderOptions& options) {
    Canvas canvas;
    if (options.width > 0 && options.height > 0) {
        canvas.width = options.width;
        canvas.height = options.height;
    }
    std::size_t problemCount = 0;
    const std::vector<Problems> problems = problemsByItem(report, doc.items.size(), problemCount);

    SvgWriter svg(4096 + doc.items.size() * 1600 + options.background.bytes.size() * 4 / 3);
    svg.raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    svg.open("svg")
        .attr("xmlns", "http://www.w3.org/2000/svg")
        .attr("xmlns:xlink", "http://www.w3.org/1999/xlink")
        .attr("version", "1.1")
        .attr("width", canvas.width)
        .attr("height", canvas.height);
    std::string viewBox = "0 0 ";
    AppendNumber(viewBox, canvas.width);
    viewBox += ' ';
    AppendNumber(viewBox, canvas.height);
    svg.attr("viewBox", viewBox).content();

    const std::size_t count = doc.items.size();
    const std::string summary = std::to_string(count) + (count == 1 ? " item, " : " items, ") +
                                std::to_string(problemCount) +
                                (problemCount == 1 ? " problem" : " problems");
    const std::string heading =
        options.title.empty() ? summary : options.title + " \xE2\x80\x94 " + summary;
    svg.open("title").text(heading);
    svg.open("style").attr("type", "text/css").content();
    svg.raw(kStyle);
    svg.raw("\n");
    svg.end("style");

    svg.open("rect").attr("class", "screen").attr("x", 0).attr("y", 0);
    svg.attr("width", canvas.width).attr("height", canvas.height).close();
    const Background& background = options.background;
    if (!background.bytes.empty()) {
        svg.open("image").attr("class", "background").attr("x", 0).attr("y", 0);
        svg.attr("width", canvas.width).attr("height", canvas.height);
        svg.attr("preserveAspectRatio", "none");
        svg.attr("xlink:href", background.uri.empty() ? DataUri(background.mime, background.bytes)
                                                      : background.uri);
        svg.close();
    }

    svg.open("g").attr("class", "items").content();
    for (std::size_t i = 0; i < count; ++i) {
        if (doc.items[i] == nullptr) {
            continue;
        }
        drawItem(svg, canvas, *doc.items[i], static_cast<int>(i), problems[i]);
    }
    svg.end("g");

    drawHeading(svg, canvas, doc, heading);
    svg.end("svg");
    return svg.take();
}

std::string RenderDocumentSvg(const km::KeymapConfig& doc, const std::string& text, bool joystick,
                              const std::string& source, RenderOptions options) {
    const km::CheckReport report = km::CheckKeymapDocument(text, joystick, source);
    const std::size_t slash = source.find_last_of("/\\");
    options.title = slash == std::string::npos ? source : source.substr(slash + 1);
    return RenderSvg(doc, report, options);
}

}  // namespace render
}  // namespace zunokeymap
