//
// ItemShapes.cpp
//
// Each type draws inside the item's "geometry" group, whose `color` is the
// type's colour: strokes and arrow heads use currentColor, so one rule in the
// style sheet (or the editor's) restyles every type.
//

#include "ItemShapes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

#include "Captions.h"
#include "TextMetrics.h"

namespace zunokeymap {
namespace render {

namespace km = zunokeymapmanager;

namespace {

struct Vec {
    double x;
    double y;
};

// A marker is this fraction of the screen's shorter side at scale 1.
constexpr double kMarkerSide = 0.026;
// Curves with more points than this are drawn with their first ones only.
constexpr std::size_t kMaxCurvePoints = 4096;
// Swipehold spokes show at most this many steps.
constexpr int kMaxSteps = 32;
// A macro shows at most this many of its points.
constexpr std::size_t kMaxMacroPoints = 256;

double sane(double value, double fallback, double low, double high) {
    if (!std::isfinite(value)) {
        return fallback;
    }
    return std::min(std::max(value, low), high);
}

Vec at(const Canvas& c, const km::PointF& p) {
    return {c.x(p.x), c.y(p.y)};
}

Vec touchOf(const Canvas& c, const km::ConfigItem& item) {
    return at(c, item.rel_work_position);
}

// A drag centre that is "not set" (0, 0) means the item's own touch point.
Vec centreOr(const Canvas& c, const km::PointF& p, const km::ConfigItem& item) {
    return p.isNull() ? touchOf(c, item) : at(c, p);
}

void circle(SvgWriter& svg, const char* cls, Vec p, double r) {
    svg.open("circle").attr("class", cls).attr("cx", p.x).attr("cy", p.y).attr("r", r).close();
}

void line(SvgWriter& svg, const char* cls, Vec a, Vec b) {
    svg.open("line")
        .attr("class", cls)
        .attr("x1", a.x)
        .attr("y1", a.y)
        .attr("x2", b.x)
        .attr("y2", b.y);
    svg.close();
}

void cross(SvgWriter& svg, const char* cls, Vec p, double size) {
    std::string d;
    AppendPathPoint(d, 'M', p.x - size, p.y - size);
    AppendPathPoint(d, 'L', p.x + size, p.y + size);
    AppendPathPoint(d, 'M', p.x - size, p.y + size);
    AppendPathPoint(d, 'L', p.x + size, p.y - size);
    svg.open("path").attr("class", cls).attr("d", d).close();
}

// An open path through `points` in order.
void polyline(SvgWriter& svg, const char* cls, const std::vector<Vec>& points) {
    std::string d;
    for (std::size_t k = 0; k < points.size(); ++k) {
        AppendPathPoint(d, k == 0 ? 'M' : 'L', points[k].x, points[k].y);
    }
    svg.open("path").attr("class", cls).attr("d", d).close();
}

// A line from `a` to `b` with a filled head at `b`.
void arrow(SvgWriter& svg, const char* cls, Vec a, Vec b, double head) {
    line(svg, cls, a, b);
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = std::hypot(dx, dy);
    if (length <= 0) {
        return;
    }
    const Vec u{dx / length, dy / length};
    std::string points;
    const auto point = [&](double x, double y) {
        AppendNumber(points, x);
        points += ',';
        AppendNumber(points, y);
        points += ' ';
    };
    point(b.x, b.y);
    point(b.x - u.x * head - u.y * head * 0.5, b.y - u.y * head + u.x * head * 0.5);
    point(b.x - u.x * head + u.y * head * 0.5, b.y - u.y * head - u.x * head * 0.5);
    points.pop_back();
    svg.open("polygon").attr("class", "head").attr("points", points).close();
}

// How far from its arrow or spoke a key plate stands.
double plateDistance(const Canvas& c) {
    return c.side() * 0.022;
}

// A key's caption on a plate as wide as the caption, for keys drawn away
// from the marker (direction keys, the two keys of a pair).
void keyPlate(SvgWriter& svg, const Canvas& c, Vec p, const std::string& caption) {
    if (caption.empty()) {
        return;
    }
    const double size = c.textSize(0.015);
    const double halfHeight = size * 0.75;
    const double halfWidth =
        std::max(halfHeight, TextWidth(caption, size, Weight::Bold) / 2 + size * 0.35);
    svg.open("rect").attr("class", "keycap").attr("x", p.x - halfWidth).attr("y", p.y - halfHeight);
    svg.attr("width", 2 * halfWidth).attr("height", 2 * halfHeight).attr("rx", size * 0.3).close();
    svg.open("text").attr("class", "key").attr("x", p.x).attr("y", p.y);
    svg.attr("font-size", size).attr("dy", "0.35em").text(caption);
    c.take(Box::around(p.x, p.y, halfWidth, halfHeight));
}

// Small text beside the touch point: counts and kinds a shape cannot show.
void badge(SvgWriter& svg, const Canvas& c, const km::ConfigItem& item, const std::string& text) {
    const Vec p = touchOf(c, item);
    const double r = c.markerRadius(item);
    const double size = c.textSize(0.015);
    const double x = p.x + r * 0.9;
    const double y = p.y - r * 0.9;
    svg.open("text").attr("class", "badge").attr("x", x).attr("y", y);
    svg.attr("font-size", size).text(text);
    c.take({x, y - size, x + TextWidth(text, size, Weight::Bold), y + size * 0.25});
}

void rangeRect(SvgWriter& svg, const Canvas& c, Vec centre, const km::SizeF& range) {
    const double w = std::abs(sane(range.width, 0, -4, 4)) * c.width;
    const double h = std::abs(sane(range.height, 0, -4, 4)) * c.height;
    svg.open("rect").attr("class", "range").attr("x", centre.x - w / 2).attr("y", centre.y - h / 2);
    svg.attr("width", w).attr("height", h).close();
}

// The four direction keys at the corners of a diamond around `centre`, and
// `steps` marks along each spoke.
void diamond(SvgWriter& svg, const Canvas& c, const km::DiamondConfigItem& item, Vec centre,
             double arm, int steps) {
    const Vec tips[4] = {{centre.x, centre.y - arm},
                         {centre.x + arm, centre.y},
                         {centre.x, centre.y + arm},
                         {centre.x - arm, centre.y}};
    std::string points;
    for (const Vec& tip : tips) {
        AppendNumber(points, tip.x);
        points += ',';
        AppendNumber(points, tip.y);
        points += ' ';
    }
    points.pop_back();
    svg.open("polygon").attr("class", "diamond").attr("points", points).close();
    steps = std::min(std::max(steps, 0), kMaxSteps);
    for (int k = 1; k < steps; ++k) {
        for (const Vec& tip : tips) {
            const double f = static_cast<double>(k) / steps;
            circle(svg, "step",
                   {centre.x + (tip.x - centre.x) * f, centre.y + (tip.y - centre.y) * f}, 1.5);
        }
    }
    const km::ConfigKey* keys[4] = {&item.top, &item.right, &item.bottom, &item.left};
    for (int k = 0; k < 4; ++k) {
        keyPlate(svg, c, tips[k], KeyCaption(*keys[k]));
    }
}

// The two directions of a Wheel or Zoom item, positive up (or right), each
// labelled with its key; Zoom's two fingers start `gap` from the centre.
void pairArrows(SvgWriter& svg, const Canvas& c, const km::PairConfigItem& item,
                const std::string& orientation, double gap) {
    const Vec p = touchOf(c, item);
    const double r = c.markerRadius(item);
    const Vec axis = orientation == "horizontal" ? Vec{1, 0} : Vec{0, -1};
    const double reach = gap + r * 2.2;
    const struct {
        double sign;
        const km::ComposableKey* key;
    } sides[2] = {{1, &item.positive_key}, {-1, &item.negative_key}};
    for (const auto& side : sides) {
        const Vec from{p.x + axis.x * side.sign * gap, p.y + axis.y * side.sign * gap};
        const Vec to{p.x + axis.x * side.sign * reach, p.y + axis.y * side.sign * reach};
        if (gap > 0) {
            circle(svg, "finger", from, 3);
        }
        arrow(svg, "direction", from, to, r * 0.4);
        const std::string caption = CombinationCaption(side.key->key, side.key->second_key);
        // Along a horizontal axis the plate's own width decides its distance.
        const double away =
            plateDistance(c) +
            (axis.x != 0 ? TextWidth(caption, c.textSize(0.015), Weight::Bold) / 2 : 0);
        keyPlate(svg, c, {to.x + axis.x * side.sign * away, to.y + axis.y * side.sign * away},
                 caption);
    }
}

// "(x,y);(x,y)..." as written by editors; any text is read leniently as
// numbers taken two by two, so odd or hostile text gives fewer points, never
// an error.
std::vector<Vec> curvePoints(const Canvas& c, const std::string& text) {
    std::vector<Vec> points;
    for (const km::PointF& p : km::PointsOfText(text, kMaxCurvePoints)) {
        points.push_back({c.x(sane(p.x, 0, -4, 4)), c.y(sane(p.y, 0, -4, 4))});
    }
    return points;
}

template <typename Item, void (*Draw)(SvgWriter&, const Canvas&, const Item&)>
void typed(SvgWriter& svg, const Canvas& c, const km::ConfigItem& item) {
    if (const auto* concrete = dynamic_cast<const Item*>(&item)) {
        Draw(svg, c, *concrete);
    }
}

void drawBunchClick(SvgWriter& svg, const Canvas& c, const km::BunchClickConfigItem& item) {
    const Vec p = touchOf(c, item);
    const double r = c.markerRadius(item);
    circle(svg, "burst", p, r * 1.25);
    circle(svg, "burst", p, r * 1.5);
    const bool oneOff = item.bunch_click_type == "One_Off";
    badge(svg, c, item,
          "\xC3\x97" +
              std::to_string(oneOff ? item.bunch_click_one_off_number
                                    : item.bunch_click_continue_number) +
              (oneOff ? "" : "\xE2\x80\xA6"));
}

void drawSwipehold(SvgWriter& svg, const Canvas& c, const km::SwipeholdConfigItem& item) {
    const Vec p = touchOf(c, item);
    const double radius = c.length(item.rel_radius);
    if (radius > 0) {
        circle(svg, "drag", p, radius);
    }
    const double arm = radius > 0 ? radius : c.markerRadius(item) * 2.5;
    diamond(svg, c, item, p, arm, item.first_point_policy.steps);
}

void drawLook(SvgWriter& svg, const Canvas& c, const km::DiamondConfigItem& item) {
    diamond(svg, c, item, touchOf(c, item), c.markerRadius(item) * 2.5, 0);
}

void drawFire(SvgWriter& svg, const Canvas& c, const km::FireConfigItem& item) {
    const km::FireSwipeholdInfo& drag = item.swipehold_info;
    const Vec centre = centreOr(c, drag.rel_position, item);
    circle(svg,
           item.fire_option.fire_range_policy == "Fire_range_dependent_swipehold" ? "drag bounded"
                                                                                  : "drag",
           centre, c.length(drag.rel_radius));
    if (drag.invalid_zone_info.enable) {
        circle(svg, "zone", centre,
               c.length(drag.invalid_zone_info.rel_radius_outside_invalid_zone));
        circle(svg, "zone inner", centre,
               c.length(drag.invalid_zone_info.rel_radius_inside_invalid_zone));
    }
    line(svg, "aim", touchOf(c, item), centre);
}

void drawStaring(SvgWriter& svg, const Canvas& c, const km::StaringConfigItem& item) {
    rangeRect(svg, c, touchOf(c, item), item.staring_range);
}

void drawRightStickEye(SvgWriter& svg, const Canvas& c,
                       const km::JoystickRightEyeConfigItem& item) {
    rangeRect(svg, c, touchOf(c, item), item.staring_range);
}

void drawLeftStickWalk(SvgWriter& svg, const Canvas& c,
                       const km::JoystickLeftWalkConfigItem& item) {
    circle(svg, "drag", touchOf(c, item), c.length(item.rel_radius));
}

void drawSpell(SvgWriter& svg, const Canvas& c, const km::SpellConfigItem& item) {
    const Vec cast = at(c, item.spell_info.rel_position);
    circle(svg, "range", cast, c.length(item.spell_info.rel_radius));
    cross(svg, "cast", cast, c.markerRadius(item) * 0.4);
    const Vec drag = centreOr(c, item.swipehold_info.rel_position, item);
    circle(svg, "drag", drag, c.length(item.swipehold_info.rel_radius));
    line(svg, "aim", drag, cast);
    if (!item.tap_info.rel_center_pos.isNull()) {
        circle(svg, "tap", at(c, item.tap_info.rel_center_pos), 4);
    }
}

void drawSpellCancel(SvgWriter& svg, const Canvas& c, const km::SpellCancelConfigItem& item) {
    const Vec p = touchOf(c, item);
    const double r = c.markerRadius(item);
    cross(svg, "cancel", {p.x + r, p.y - r}, r * 0.3);
}

void drawRightWalk(SvgWriter& svg, const Canvas& c, const km::MouseRightWalkConfigItem& item) {
    const Vec p = touchOf(c, item);
    const Vec measure = at(c, item.rel_measurement_pos);
    line(svg, "aim", p, measure);
    cross(svg, "measure", measure, c.markerRadius(item) * 0.4);
    const double radius = c.length(item.first_move_policy.rel_radius);
    if (radius > 0) {
        circle(svg, "drag", p, radius);
    }
}

// Each point a press or release script touches, numbered in the order the
// scripts touch them, in the item's colour; the points of a curve line are
// joined in order. Points off the macro screen are drawn at its edge.
void drawMacro(SvgWriter& svg, const Canvas& c, const km::MacroConfigItem& item) {
    badge(svg, c, item,
          std::to_string(item.press_actions.size()) + "+" +
              std::to_string(item.release_actions.size()) + " lines");
    struct Dot {
        Vec at;
        int line;
        const char* script;
        bool off;
    };
    std::vector<Dot> dots;
    std::vector<std::vector<Vec>> strokes;
    const std::pair<const char*, const std::vector<std::string>*> scripts[] = {
        {"press", &item.press_actions}, {"release", &item.release_actions}};
    for (const auto& [name, lines] : scripts) {
        for (const km::MacroTouch& touch : km::MacroTouchesOf(*lines)) {
            std::vector<Vec> stroke;
            for (const km::Point& point : touch.points) {
                if (dots.size() == kMaxMacroPoints) {
                    break;
                }
                const Vec at{std::clamp(MacroX(c, point.x), 0.0, c.width),
                             std::clamp(MacroY(c, point.y), 0.0, c.height)};
                dots.push_back({at, touch.line, name, !km::IsOnMacroScreen(point)});
                stroke.push_back(at);
            }
            if (touch.command == "curve" && stroke.size() > 1) {
                strokes.push_back(std::move(stroke));
            }
        }
    }
    for (const std::vector<Vec>& stroke : strokes) {
        polyline(svg, "macro-path", stroke);
    }
    // Points touched more than once carry all their numbers on one dot.
    std::map<std::pair<long long, long long>, std::string> numbers;
    const auto key = [](Vec at) { return std::make_pair(std::llround(at.x), std::llround(at.y)); };
    for (std::size_t k = 0; k < dots.size(); ++k) {
        std::string& text = numbers[key(dots[k].at)];
        if (text.size() < 12) {
            text += (text.empty() ? "" : ",") + std::to_string(k + 1);
        } else if (text.back() != '.') {
            text += ",...";
        }
    }
    const double size = c.textSize(0.012);
    const auto radiusOf = [&](const std::string& text) {
        return std::max(size * 0.8, TextWidth(text, size, Weight::Bold) / 2 + size * 0.25);
    };
    for (const Dot& dot : dots) {
        const double r = radiusOf(numbers[key(dot.at)]);
        svg.open("circle").attr("class", dot.off ? "macro-point off-screen" : "macro-point");
        svg.attr("data-line", dot.line).attr("data-script", dot.script);
        svg.attr("cx", dot.at.x).attr("cy", dot.at.y).attr("r", r).close();
    }
    for (const Dot& dot : dots) {
        auto found = numbers.find(key(dot.at));
        if (found == numbers.end()) {
            continue;  // numbered already
        }
        svg.open("text").attr("class", "macro-step").attr("x", dot.at.x).attr("y", dot.at.y);
        svg.attr("dy", "0.35em").attr("font-size", size).text(found->second);
        const double r = radiusOf(found->second);
        c.take(Box::around(dot.at.x, dot.at.y, r, r));
        numbers.erase(found);
    }
}

void drawCurve(SvgWriter& svg, const Canvas& c, const km::CurveConfigItem& item) {
    const Vec start = at(c, item.rel_start_pos);
    const Vec end = at(c, item.rel_end_pos);
    std::vector<Vec> points{start};
    if (!item.act_as_line) {
        const std::vector<Vec> between = curvePoints(c, item.rel_all_points_pos);
        points.insert(points.end(), between.begin(), between.end());
    }
    points.push_back(end);
    polyline(svg, "curve", points);
    circle(svg, "finger", start, 4);
    const Vec before = points[points.size() - 2];
    const double r = c.markerRadius(item);
    if (std::hypot(end.x - before.x, end.y - before.y) > 0) {
        arrow(svg, "curve", before, end, r * 0.4);
    }
}

void drawWheel(SvgWriter& svg, const Canvas& c, const km::WheelConfigItem& item) {
    pairArrows(svg, c, item, item.orientation, 0);
}

void drawZoom(SvgWriter& svg, const Canvas& c, const km::ZoomConfigItem& item) {
    pairArrows(svg, c, item, item.orientation, c.length(sane(item.one_side_gap, 0, 0, 1)));
}

void drawObserve(SvgWriter& svg, const Canvas& c, const km::ObserveConfigItem& item) {
    const Vec p = touchOf(c, item);
    const double r = c.markerRadius(item);
    svg.open("ellipse").attr("class", "look").attr("cx", p.x).attr("cy", p.y);
    svg.attr("rx", r * 1.8).attr("ry", r * 1.2).close();
}

void drawTip(SvgWriter& svg, const Canvas& c, const km::TipConfigItem& item) {
    badge(svg, c, item, "tip");
}

// The drawing of each class with a geometry of its own, chosen by the class
// (the nearest base that has one); every other type draws none.
DrawGeometry drawingOf(const void* /*none*/) {
    return nullptr;
}
DrawGeometry drawingOf(const km::BunchClickConfigItem* /*type*/) {
    return &typed<km::BunchClickConfigItem, drawBunchClick>;
}
DrawGeometry drawingOf(const km::SwipeholdConfigItem* /*type*/) {
    return &typed<km::SwipeholdConfigItem, drawSwipehold>;
}
DrawGeometry drawingOf(const km::FireConfigItem* /*type*/) {
    return &typed<km::FireConfigItem, drawFire>;
}
DrawGeometry drawingOf(const km::StaringConfigItem* /*type*/) {
    return &typed<km::StaringConfigItem, drawStaring>;
}
DrawGeometry drawingOf(const km::SpellConfigItem* /*type*/) {
    return &typed<km::SpellConfigItem, drawSpell>;
}
DrawGeometry drawingOf(const km::SpellCancelConfigItem* /*type*/) {
    return &typed<km::SpellCancelConfigItem, drawSpellCancel>;
}
DrawGeometry drawingOf(const km::MouseRightWalkConfigItem* /*type*/) {
    return &typed<km::MouseRightWalkConfigItem, drawRightWalk>;
}
DrawGeometry drawingOf(const km::DirectionalLookConfigItem* /*type*/) {
    return &typed<km::DiamondConfigItem, drawLook>;
}
DrawGeometry drawingOf(const km::MacroConfigItem* /*type*/) {
    return &typed<km::MacroConfigItem, drawMacro>;
}
DrawGeometry drawingOf(const km::CurveConfigItem* /*type*/) {
    return &typed<km::CurveConfigItem, drawCurve>;
}
DrawGeometry drawingOf(const km::JoystickLeftWalkConfigItem* /*type*/) {
    return &typed<km::JoystickLeftWalkConfigItem, drawLeftStickWalk>;
}
DrawGeometry drawingOf(const km::JoystickRightEyeConfigItem* /*type*/) {
    return &typed<km::JoystickRightEyeConfigItem, drawRightStickEye>;
}
DrawGeometry drawingOf(const km::WheelConfigItem* /*type*/) {
    return &typed<km::WheelConfigItem, drawWheel>;
}
DrawGeometry drawingOf(const km::ZoomConfigItem* /*type*/) {
    return &typed<km::ZoomConfigItem, drawZoom>;
}
DrawGeometry drawingOf(const km::ObserveConfigItem* /*type*/) {
    return &typed<km::ObserveConfigItem, drawObserve>;
}
DrawGeometry drawingOf(const km::TipConfigItem* /*type*/) {
    return &typed<km::TipConfigItem, drawTip>;
}

}  // namespace

double Canvas::length(double rel) const {
    return std::abs(sane(rel, 0, -4, 4)) * side();
}

double Canvas::markerRadius(const km::ConfigItem& item) const {
    const double scale =
        sane(item.editor_icon_scale, 1, 0.1, 10) * sane(item.icon.radius_correction, 1, 0.1, 10);
    return side() * kMarkerSide * scale;
}

double Canvas::textSize(double fraction) const {
    return std::max(side() * fraction, minTextSize());
}

double Canvas::minTextSize() const {
    return 11.5 * width / 1920;
}

double MacroX(const Canvas& canvas, int x) {
    return static_cast<double>(x) / km::kMacroScreenWidth * canvas.width;
}

double MacroY(const Canvas& canvas, int y) {
    return static_cast<double>(y) / km::kMacroScreenHeight * canvas.height;
}

const std::vector<TypeShape>& TypeShapes() {
#define ZUNO_KM_SHAPE(name, itemClass, marker, colour, legend) \
    {#name, MarkerShape::marker, colour, legend,               \
     drawingOf(static_cast<const km::itemClass*>(nullptr))},
    static const std::vector<TypeShape> shapes = {ZUNO_KM_ITEM_TYPES(ZUNO_KM_SHAPE)};
#undef ZUNO_KM_SHAPE
    return shapes;
}

const TypeShape* FindTypeShape(const std::string& type) {
    for (const TypeShape& shape : TypeShapes()) {
        if (type == shape.type) {
            return &shape;
        }
    }
    return nullptr;
}

}  // namespace render
}  // namespace zunokeymap
