//
// SvgRenderer.cpp
//
// The picture is planned before a byte of it is written: where each marker
// goes (fanned out when it would hide another), what its type draws around
// it, which captions fit their markers, and where the captions that do not,
// and the labels, find room. Then it is written back to front: the screen,
// the background image, the items in document order (each one <g>: its
// geometry, the links to its touch point and its spot, problem rings, the
// marker, its caption, the touch ring, then what stands beside it), and the
// band with the title line and the legend above the screen.
//

#include "SvgRenderer.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "Captions.h"
#include "ImageHeader.h"
#include "ItemShapes.h"
#include "Layout.h"
#include "Legend.h"
#include "SvgWriter.h"
#include "TextMetrics.h"

namespace zunokeymap {
namespace render {

namespace km = zunokeymapmanager;

namespace {

// The style sheet: every rule the picture draws by, keyed by the classes
// docs/render.md lists. Per-item values (a marker's fill, a type's colour)
// are attributes, which these rules and an embedding page's may override.
// Only markers, captions, labels and touch rings take the pointer: the
// shapes around an item never hide another item from a click.
const char* const kStyle =
    "text{font-family:'DejaVu Sans',Arial,sans-serif;text-anchor:middle}"
    ".screen{fill:#3f4652}"
    ".geometry,.link,.leader,.true-spot,.problem{pointer-events:none}"
    ".geometry{fill:none;stroke:currentColor;stroke-width:2}"
    ".geometry .head,.geometry .step,.geometry .finger,.geometry "
    ".tap{fill:currentColor;stroke:none}"
    ".geometry .range{stroke-dasharray:10 6;fill:currentColor;fill-opacity:0.06}"
    ".geometry .drag{fill:currentColor;fill-opacity:0.08}"
    ".geometry .bounded{stroke-width:3}"
    ".geometry .zone{stroke-dasharray:3 3}"
    ".geometry .aim,.geometry .diamond,.geometry .burst{stroke-dasharray:6 4;stroke-width:1.5}"
    ".geometry .keycap{fill:#111827;fill-opacity:0.8;stroke-width:1.5}"
    ".geometry .key,.geometry .badge{fill:#fff;stroke:none;font-weight:bold}"
    ".geometry .badge{text-anchor:start;paint-order:stroke;stroke:#111827;stroke-width:0.2em}"
    ".geometry .macro-path{stroke-width:2.5;stroke-dasharray:8 4}"
    ".geometry .macro-point{fill:currentColor;stroke:#111827;stroke-width:1.5}"
    ".geometry .macro-point.off-screen{stroke:#ff1f1f;stroke-width:2.5;stroke-dasharray:3 2}"
    ".geometry .macro-step{fill:#111827;stroke:none;font-weight:bold}"
    ".link{stroke:#fff;stroke-width:1.5;stroke-dasharray:4 3}"
    ".leader{stroke:#fff;stroke-width:1.5;stroke-opacity:0.85}"
    ".true-spot{fill:#fff;stroke:#111827;stroke-width:1}"
    ".touch{fill:#111827;fill-opacity:0.5;stroke:#fff;stroke-width:2}"
    ".caption,.label{fill:#fff;paint-order:stroke;stroke:#111827;stroke-width:0.22em;"
    "stroke-linejoin:round}"
    ".caption{font-weight:bold}"
    ".problem{fill:none;stroke-width:5}"
    ".legend .problem{stroke-width:3}"
    ".problem-invalid{stroke:#ff1f1f;stroke-dasharray:9 5}"
    ".problem-collision{stroke:#ffa000}"
    ".legend .macro-point{fill:#C0E0C0;stroke:#111827}"
    ".hidden>.geometry,.hidden>.link,.hidden>.touch,.hidden>.marker,.hidden>.caption,"
    ".hidden>.label,.hidden>.leader{opacity:0.35}"
    ".panel{fill:#111827}"
    ".legend text{fill:#fff;text-anchor:start}";

const char* const kDefaultMarkerFill = "00000066";
// Captions and labels longer than these are cut; the whole text stays in
// the tooltip.
constexpr std::size_t kCaptionGlyphs = 24;
constexpr std::size_t kLabelGlyphs = 40;
// How many rings of places around a marker a caption or label may try.
constexpr int kRings = 5;

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

// Text put beside a marker: a caption too long for it, or a label.
struct Aside {
    std::string text;
    double size = 0;
    Box box;
    bool shown = false;
    bool leader = false;  // joined to the marker by a line
};

// Everything decided about one item before it is written.
struct Plan {
    const km::ConfigItem* item = nullptr;
    int index = -1;                        // in its document
    bool extra = false;                    // one of the overlay's extras
    const std::string* classes = nullptr;  // the overlay's, for its group
    const TypeShape* type = nullptr;
    MarkerShape marker = MarkerShape::Circle;
    const char* colour = "#ffffff";
    double r = 0;
    Spot spot;     // where the document puts the marker
    double x = 0;  // where it is drawn
    double y = 0;
    bool fanned = false;
    // What its type draws around it, in the text every item's geometry
    // shares: one buffer written and read in document order keeps a large
    // picture's memory in a few sequential runs rather than a string per item.
    std::string_view geometry;
    std::string caption;  // as shown: the key, or the type's name
    bool typeName = false;
    double captionSize = 0;
    bool captionInside = true;
    Aside outside;  // the caption, when it does not fit inside
    Aside label;
    double ringX = 0;  // the touch ring
    double ringY = 0;
    double ringR = 0;
};

Spot drawnSpot(const Plan& plan) {
    return {plan.x, plan.y, plan.spot.halfWidth, plan.spot.halfHeight};
}

// The touch ring sits on the touch point, unless that is under the drawn
// marker: then on the marker's lower right rim, clear of the caption.
void placeTouchRing(Plan& plan, const Canvas& canvas) {
    const double tx = canvas.x(plan.item->rel_work_position.x);
    const double ty = canvas.y(plan.item->rel_work_position.y);
    plan.ringR = canvas.side() * 0.005;
    if (std::abs(tx - plan.x) < plan.spot.halfWidth &&
        std::abs(ty - plan.y) < plan.spot.halfHeight) {
        plan.ringX = plan.x + plan.spot.halfWidth * 0.72;
        plan.ringY = plan.y + plan.spot.halfHeight * 0.72;
    } else {
        plan.ringX = tx;
        plan.ringY = ty;
    }
}

void planCaption(Plan& plan, const Canvas& canvas) {
    plan.caption = Truncated(ItemCaption(*plan.item), kCaptionGlyphs);
    plan.typeName = plan.caption.empty();
    if (plan.typeName) {
        plan.caption = Truncated(plan.item->type, kCaptionGlyphs);
    }
    const double smallest = canvas.textSize(0.0115);
    const double perUnit = std::max(TextWidth(plan.caption, 1, Weight::Bold), 0.01);
    const double fits = std::min(plan.r * 0.8, MarkerTextWidth(plan.marker, plan.r) / perUnit);
    plan.captionInside = fits >= smallest;
    plan.captionSize = plan.captionInside ? fits : smallest;
    if (!plan.captionInside) {
        plan.outside.text = plan.caption;
        plan.outside.size = canvas.textSize(0.0165);
        plan.outside.leader = true;
    }
}

// Finds a place for `aside` beside its marker; a caption that finds none is
// put at the marker's right (or left) edge all the same, since it names the
// key, while a label without room is left to the tooltip.
void placeAside(Aside& aside, const Plan& plan, BoxIndex& taken, const Box& screen, bool always,
                Weight weight) {
    const double width = TextWidth(aside.text, aside.size, weight) + aside.size * 0.3;
    const double height = aside.size * 1.3;
    Beside found;
    if (FindRoomBeside(taken, screen, drawnSpot(plan), width, height, height, kRings, found)) {
        aside.box = found.box;
        aside.leader = aside.leader || found.ring > 0;
        aside.shown = true;
    } else if (always) {
        const double gap = height * 0.25;
        const bool right = plan.x + plan.spot.halfWidth + gap + width <= screen.x1;
        const double x0 =
            right ? plan.x + plan.spot.halfWidth + gap : plan.x - plan.spot.halfWidth - gap - width;
        aside.box = {x0, plan.y - height / 2, x0 + width, plan.y + height / 2};
        aside.shown = true;
    }
    if (aside.shown) {
        taken.add(aside.box);
    }
}

void line(SvgWriter& svg, const char* cls, double x1, double y1, double x2, double y2) {
    svg.open("line").attr("class", cls).attr("x1", x1).attr("y1", y1).attr("x2", x2);
    svg.attr("y2", y2).close();
}

void drawAside(SvgWriter& svg, const Aside& aside, const Plan& plan, const char* cls) {
    if (!aside.shown) {
        return;
    }
    const Box& b = aside.box;
    if (aside.leader) {
        // From the marker's edge to the nearest point of the text's box.
        const double nx = std::clamp(plan.x, b.x0, b.x1);
        const double ny = std::clamp(plan.y, b.y0, b.y1);
        const double dx = nx - plan.x;
        const double dy = ny - plan.y;
        const double length = std::hypot(dx, dy);
        if (length > 0) {
            const double reach =
                std::min({plan.spot.halfWidth / std::max(std::abs(dx) / length, 1e-9),
                          plan.spot.halfHeight / std::max(std::abs(dy) / length, 1e-9), length});
            line(svg, "leader", plan.x + dx / length * reach, plan.y + dy / length * reach, nx, ny);
        }
    }
    svg.open("text").attr("class", cls).attr("x", (b.x0 + b.x1) / 2).attr("y", (b.y0 + b.y1) / 2);
    svg.attr("dy", "0.35em").attr("font-size", aside.size).text(aside.text);
}

void drawItem(SvgWriter& svg, const Canvas& canvas, const Plan& plan, const Problems& found,
              const Overlay& overlay) {
    const int index = plan.index;
    const km::ConfigItem& item = *plan.item;
    const Problems* problems = found.invalid || found.collision ? &found : nullptr;
    std::string cls = "item";
    if (plan.classes != nullptr && !plan.classes->empty()) {
        cls += " " + *plan.classes;
    }
    if (!item.icon.visibility) {
        cls += " hidden";
    }
    if (problems != nullptr && problems->invalid) {
        cls += " invalid";
    }
    if (problems != nullptr && problems->collision) {
        cls += " collision";
    }
    if (plan.fanned) {
        cls += " fanned";
    }
    svg.open("g")
        .attr("class", cls)
        .attr(plan.extra ? "data-old-index" : "data-item-index", index)
        .attr("data-item-type", item.type);
    svg.content();

    const std::string key = ItemCaption(item);
    std::string tooltip = "keymaps[" + std::to_string(index) + "] " + item.type;
    if (!key.empty()) {
        tooltip += ": " + key;
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

    svg.open("g").attr("class", "geometry").attr("color", plan.colour).content();
    svg.raw(plan.geometry);
    svg.end("g");

    const double tx = canvas.x(item.rel_work_position.x);
    const double ty = canvas.y(item.rel_work_position.y);
    if (std::hypot(plan.spot.x - tx, plan.spot.y - ty) >= 0.5) {
        line(svg, "link", plan.spot.x, plan.spot.y, tx, ty);
    }
    if (plan.fanned) {
        line(svg, "leader", plan.spot.x, plan.spot.y, plan.x, plan.y);
        svg.open("circle").attr("class", "true-spot").attr("cx", plan.spot.x);
        svg.attr("cy", plan.spot.y).attr("r", plan.ringR * 0.6).close();
    }
    const double reach = std::max(plan.spot.halfWidth, plan.spot.halfHeight);
    if (problems != nullptr && problems->invalid) {
        svg.open("circle").attr("class", "problem problem-invalid").attr("cx", plan.x);
        svg.attr("cy", plan.y).attr("r", reach + 6).close();
    }
    if (problems != nullptr && problems->collision) {
        svg.open("circle").attr("class", "problem problem-collision").attr("cx", plan.x);
        svg.attr("cy", plan.y).attr("r", reach + (problems->invalid ? 12 : 6)).close();
    }
    OpenMarker(svg, plan.marker, plan.x, plan.y, plan.r);
    svg.attr("class", "marker").attr("data-marker-shape", MarkerShapeName(plan.marker));
    markerFill(svg, item.icon.background_color);
    svg.attr("stroke", plan.colour).attr("stroke-width", plan.r * 0.13).close();
    if (plan.captionInside) {
        svg.open("text").attr("class", plan.typeName ? "caption type-name" : "caption");
        svg.attr("x", plan.x).attr("y", plan.y).attr("dy", "0.35em");
        svg.attr("font-size", plan.captionSize).text(plan.caption);
    }
    svg.open("circle").attr("class", "touch").attr("cx", plan.ringX).attr("cy", plan.ringY);
    svg.attr("r", plan.ringR).close();
    drawAside(svg, plan.outside, plan,
              plan.typeName ? "caption outside type-name" : "caption outside");
    drawAside(svg, plan.label, plan, "label");
    if (overlay.draw) {
        overlay.draw(svg, canvas, {&item, index, plan.extra, plan.x, plan.y, plan.r});
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
    const Box screen{0, 0, canvas.width, canvas.height};
    std::size_t problemCount = 0;
    const std::size_t count = doc.items.size();
    const std::vector<Problems> problems = problemsByItem(report, count, problemCount);

    // Markers, and where they are drawn: the document's items, then the
    // overlay's extras (drawn under them, where their document has them).
    const Overlay& overlay = options.overlay;
    std::vector<Plan> plans(count + overlay.extras.size());
    std::vector<Spot> spots;
    std::vector<std::size_t> planOfSpot;
    std::vector<bool> used(TypeShapes().size(), false);
    for (std::size_t i = 0; i < plans.size(); ++i) {
        const bool extra = i >= count;
        const km::ConfigItem* item = extra ? overlay.extras[i - count].item : doc.items[i];
        if (item == nullptr) {
            continue;
        }
        Plan& plan = plans[i];
        plan.item = item;
        plan.extra = extra;
        plan.index = extra ? overlay.extras[i - count].index : static_cast<int>(i);
        plan.classes = extra                        ? &overlay.extras[i - count].classes
                       : i < overlay.classes.size() ? &overlay.classes[i]
                                                    : nullptr;
        plan.type = FindTypeShape(item->type);
        if (plan.type != nullptr) {
            plan.marker = plan.type->marker;
            plan.colour = plan.type->colour;
            used[static_cast<std::size_t>(plan.type - TypeShapes().data())] = true;
        }
        plan.r = canvas.markerRadius(*item);
        plan.spot = {canvas.x(item->icon.rel_position.x), canvas.y(item->icon.rel_position.y),
                     MarkerHalfWidth(plan.marker, plan.r), MarkerHalfHeight(plan.marker, plan.r)};
        plan.x = plan.spot.x;
        plan.y = plan.spot.y;
        if (!extra) {
            spots.push_back(plan.spot);
            planOfSpot.push_back(i);
        }
    }
    const std::vector<Fanned> fanned = FanOut(spots, screen);
    bool anyFanned = false;
    for (std::size_t k = 0; k < spots.size(); ++k) {
        Plan& plan = plans[planOfSpot[k]];
        plan.x = fanned[k].x;
        plan.y = fanned[k].y;
        plan.fanned = fanned[k].moved;
        anyFanned = anyFanned || plan.fanned;
    }

    // Each type's own geometry, and what of it labels must not cover.
    std::vector<Box> kept;
    canvas.taken = &kept;
    SvgWriter geometry(count * 512);
    std::vector<std::size_t> geometryAt;  // where each plan's starts, then the end
    geometryAt.reserve(plans.size() + 1);
    for (Plan& plan : plans) {
        geometryAt.push_back(geometry.str().size());
        if (plan.item != nullptr && plan.type != nullptr && plan.type->draw != nullptr) {
            plan.type->draw(geometry, canvas, *plan.item);
        }
    }
    geometryAt.push_back(geometry.str().size());
    canvas.taken = nullptr;
    const std::string geometries = geometry.take();
    for (std::size_t i = 0; i < plans.size(); ++i) {
        plans[i].geometry =
            std::string_view(geometries).substr(geometryAt[i], geometryAt[i + 1] - geometryAt[i]);
    }
    const bool macroPoints = geometries.find("macro-point") != std::string::npos;

    BoxIndex taken(screen, canvas.side() * 0.06);
    for (const Box& box : kept) {
        taken.add(box);
    }
    for (Plan& plan : plans) {
        if (plan.item == nullptr) {
            continue;
        }
        taken.add(Box::around(plan.x, plan.y, plan.spot.halfWidth, plan.spot.halfHeight));
        placeTouchRing(plan, canvas);
        taken.add(Box::around(plan.ringX, plan.ringY, plan.ringR * 1.5, plan.ringR * 1.5));
        planCaption(plan, canvas);
    }
    // Captions first: they name the keys. Then the labels, while room lasts.
    for (Plan& plan : plans) {
        if (plan.item != nullptr && !plan.captionInside) {
            placeAside(plan.outside, plan, taken, screen, true, Weight::Bold);
        }
    }
    if (options.labels) {
        for (Plan& plan : plans) {
            if (plan.item == nullptr || plan.extra || plan.item->icon.description.empty()) {
                continue;
            }
            plan.label.text = Truncated(plan.item->icon.description, kLabelGlyphs);
            plan.label.size = canvas.textSize(0.017);
            placeAside(plan.label, plan, taken, screen, false, Weight::Regular);
        }
    }

    const Legend legend(canvas, used, anyFanned, macroPoints);
    const double band = options.legend ? legend.height() : 0;

    const std::size_t reserve =
        4096 + options.background.bytes.size() * 4 / 3 + plans.size() * 1200 + geometries.size();
    SvgWriter svg(reserve);
    svg.raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    svg.open("svg")
        .attr("xmlns", "http://www.w3.org/2000/svg")
        .attr("xmlns:xlink", "http://www.w3.org/1999/xlink")
        .attr("version", "1.1")
        .attr("width", canvas.width)
        .attr("height", canvas.height + band);
    std::string viewBox = "0 ";
    AppendNumber(viewBox, -band);
    viewBox += ' ';
    AppendNumber(viewBox, canvas.width);
    viewBox += ' ';
    AppendNumber(viewBox, canvas.height + band);
    svg.attr("viewBox", viewBox).content();

    const std::string summary = std::to_string(count) + (count == 1 ? " item, " : " items, ") +
                                std::to_string(problemCount) +
                                (problemCount == 1 ? " problem" : " problems");
    const std::string heading =
        options.title.empty() ? summary : options.title + " \xE2\x80\x94 " + summary;
    svg.open("title").text(heading);
    svg.open("style").attr("type", "text/css").content();
    svg.raw(kStyle);
    svg.raw(overlay.style);
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
    const Problems none;
    for (std::size_t k = 0; k < plans.size(); ++k) {
        // The extras first, so that the document's items stand over them.
        const std::size_t i = (k + count) % plans.size();
        if (plans[i].item != nullptr) {
            drawItem(svg, canvas, plans[i], plans[i].extra ? none : problems[i], overlay);
        }
    }
    svg.end("g");

    if (options.legend) {
        legend.draw(svg, heading);
    }
    svg.end("svg");
    return svg.take();
}

std::string RenderDocumentSvg(const km::KeymapConfig& doc, const std::string& text, bool joystick,
                              const std::string& source, RenderOptions options) {
    const km::CheckReport report = km::CheckKeymapDocument(text, joystick, source);
    if (options.title.empty()) {
        options.title = LastPathComponent(source);
    }
    return RenderSvg(doc, report, options);
}

std::string LastPathComponent(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace render
}  // namespace zunokeymap
