// The keymap picture: what each item type draws, how document text is made
// safe, how problems are marked, background images, and the render command.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <map>
#include <regex>
#include <set>

#include "Captions.h"
#include "ImageHeader.h"
#include "ItemShapes.h"
#include "Layout.h"
#include "SvgRenderer.h"
#include "SvgWriter.h"
#include "tests/ProcessSupport.h"
#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
namespace render = zunokeymap::render;

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t n = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++n;
    }
    return n;
}

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// A document of fresh items of `types`, each bound to Q, the first marker at
/// (0.25, 0.5) and the others apart from it, six to a row; every touch point
/// at (0.3, 0.6).
DocPtr documentOf(const std::vector<std::string>& types) {
    DocPtr doc(new km::KeymapConfig());
    for (const std::string& type : types) {
        km::ConfigItem* item = km::CreateConfigItem(type);
        item->key = km::CreateConfigKey("keyboard", 81, 16);
        const auto k = static_cast<double>(doc->items.size());
        item->icon.rel_position = {0.25 + 0.1 * std::fmod(k, 6), 0.5 + 0.12 * std::floor(k / 6)};
        item->rel_work_position = {0.3, 0.6};
        doc->items.push_back(item);
    }
    return doc;
}

std::string draw(const km::KeymapConfig& doc, const km::CheckReport& report = {},
                 const render::RenderOptions& options = {}) {
    return render::RenderSvg(doc, report, options);
}

TEST(Render, EveryTypeDrawsItsMarkerCaptionAndGeometry) {
    // What a type draws of its own, beside the marker and the touch point;
    // a type not named here draws nothing more.
    const std::map<std::string, std::vector<std::string>> own = {
        {"Click", {}},
        {"BunchClick",
         {"class=\"burst\"",
          ">\xC3\x97"
          "20\xE2\x80\xA6<"}},
        {"Swipehold", {"class=\"diamond\"", "class=\"step\"", ">W<", ">A<", ">S<", ">D<"}},
        {"Fire", {"class=\"drag\"", "class=\"aim\""}},
        {"Staring", {"class=\"range\" x=\"96\" y=\"378\" width=\"960\" height=\"540\""}},
        {"Spell", {"class=\"range\"", "class=\"cast\"", "class=\"drag\""}},
        {"SpellCancel", {"class=\"cancel\""}},
        {"RightWalk", {"class=\"measure\"", "class=\"aim\""}},
        {"Eye", {"class=\"diamond\"", ">\xE2\x86\x91<", ">\xE2\x86\x90<"}},
        {"Gravity", {"class=\"diamond\"", ">\xE2\x86\x93<", ">\xE2\x86\x92<"}},
        {"Macro", {">0+0 lines<"}},
        {"Curve", {"class=\"curve\" d=\"M0 0L0 0\""}},
        {"LeftStickWalk", {"class=\"drag\""}},
        {"RightStickEye", {"class=\"range\""}},
        {"Wheel", {"class=\"direction\"", ">\xE2\x86\x91<", ">\xE2\x86\x93<"}},
        {"Zoom", {"class=\"finger\"", ">Wheel\xE2\x86\x91<"}},
        {"Observe", {"class=\"look\""}},
        {"Tip", {">tip<"}},
    };
    std::vector<std::string> all;
    for (const render::TypeShape& shape : render::TypeShapes()) {
        const std::string type = shape.type;
        SCOPED_TRACE(type);
        all.push_back(type);
        const auto found = own.find(type);
        const std::vector<std::string> parts =
            found == own.end() ? std::vector<std::string>() : found->second;
        const std::string svg = draw(*documentOf({type}));
        EXPECT_TRUE(has(svg, "data-item-index=\"0\" data-item-type=\"" + type + "\""));
        EXPECT_TRUE(has(svg, std::string("class=\"marker\" data-marker-shape=\"") +
                                 render::MarkerShapeName(render::FindTypeShape(type)->marker)));
        EXPECT_TRUE(has(svg, "class=\"touch\" cx=\"576\" cy=\"648\""));
        EXPECT_TRUE(has(svg, "class=\"link\" x1=\"480\" y1=\"540\" x2=\"576\" y2=\"648\""));
        EXPECT_TRUE(has(svg, "<text class=\"caption\"") && has(svg, ">Q</text>"));
        for (const std::string& part : parts) {
            EXPECT_TRUE(has(svg, part)) << part;
        }
    }
    // One document of every type: one group each, in document order.
    const std::string svg = draw(*documentOf(all));
    EXPECT_EQ(count(svg, "<g class=\"item\""), all.size());
    EXPECT_TRUE(has(svg, "data-item-index=\"" + std::to_string(all.size() - 1) +
                             "\" data-item-type=\"" + all.back() + "\""));
    EXPECT_TRUE(has(svg, "<title>" + std::to_string(all.size()) + " items, 0 problems</title>"));
}

TEST(Render, MarkersFollowTheirIconSettings) {
    DocPtr doc = documentOf({"Click", "Click", "Click", "Click"});
    auto& items = doc->items;
    static_cast<km::ClickConfigItem*>(items[1])->second_key =
        km::CreateConfigKey("keyboard", 17, 29);
    items[2]->editor_icon_scale = 2;
    items[2]->icon.radius_correction = 0.5;
    items[2]->icon.background_color = "FF000080";
    items[3]->icon.visibility = false;
    items[3]->icon.background_color = "not a colour";
    items[3]->editor_icon_scale = 1e308;
    const std::string svg = draw(*doc);
    EXPECT_TRUE(has(svg, ">Ctrl+Q</text>"));
    EXPECT_TRUE(has(svg,
                    "r=\"28.08\" class=\"marker\" data-marker-shape=\"circle\" "
                    "fill=\"#FF0000\" fill-opacity=\"0.5\""));
    EXPECT_TRUE(has(svg, "class=\"item hidden\" data-item-index=\"3\""));
    EXPECT_TRUE(has(svg,
                    "r=\"280.8\" class=\"marker\" data-marker-shape=\"circle\" "
                    "fill=\"#000000\" fill-opacity=\"0.4\""));
}

TEST(Render, DocumentTextCannotInjectMarkup) {
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"<script>&\"'", "&lt;script&gt;&amp;&quot;&apos;"},
        {"a\x01"
         "b\x7F\tc",
         "a"
         "b\x7F\tc"},
        {"\xEF\xBF\xBE\xEF\xBF\xBF", ""},  // U+FFFE, U+FFFF
        {"\xFF"
         "a",
         "\xEF\xBF\xBD"
         "a"},                                                     // not UTF-8
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // overlong '/'
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},  // a surrogate
        {"\xE2\x82", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // cut short
        {"\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E", "\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E"},
    };
    for (const auto& row : rows) {
        std::string out;
        render::AppendEscaped(out, row.first);
        EXPECT_EQ(out, row.second) << testing::PrintToString(row.first);
    }
    DocPtr doc = documentOf({"Click", "Swipehold"});
    doc->items[0]->icon.description = "</title><script>alert(1)</script>";
    doc->items[0]->key.text = "\"><svg onload=alert(1)>";
    doc->items[1]->type = "<g onclick='x'>";
    static_cast<km::SwipeholdConfigItem*>(doc->items[1])->top.text = "]]><script>";
    render::RenderOptions options;
    options.title = "<a href=\"javascript:x\">";
    const std::string svg = draw(*doc, {}, options);
    for (const char* bad : {"<script", "<svg onload", "<g onclick", "<a href", "]]>"}) {
        EXPECT_FALSE(has(svg, bad)) << bad;
    }
    EXPECT_TRUE(has(svg, "&lt;/title&gt;&lt;script&gt;alert(1)&lt;/script&gt;"));
}

TEST(Render, NumbersAreWrittenTheSameEverywhere) {
    const std::vector<std::pair<double, std::string>> rows = {
        {0, "0"},
        {12.5, "12.5"},
        {-3, "-3"},
        {0.07, "0.07"},
        {0.005, "0.01"},
        {-0.001, "0"},
        {1919.999, "1920"},
        {1e300, "1000000000"},
        {-1.0 / 0.0, "-1000000000"},
        {std::nan(""), "0"},
    };
    for (const auto& row : rows) {
        std::string out;
        render::AppendNumber(out, row.first);
        EXPECT_EQ(out, row.second) << row.first;
    }
}

TEST(Render, ProblemsAreMarkedWithTheirReasons) {
    DocPtr doc = documentOf({"Click", "Spell", "Staring", "Tip"});
    km::CheckReport report;
    km::Finding invalid;
    invalid.kind = km::FindingKind::InvalidItem;
    invalid.item_index = 0;
    invalid.message = "no key is assigned";
    km::Finding collision;
    collision.kind = km::FindingKind::KeyCollision;
    collision.item_index = 1;
    collision.other_index = 2;
    collision.message = "keymaps[1] and keymaps[2] both fire on Q";
    km::Finding other;  // not a mark of the picture
    other.kind = km::FindingKind::UnsetPosition;
    other.item_index = 3;
    other.message = "unset";
    report.findings = {invalid, collision, other};
    const std::string svg = draw(*doc, report);
    EXPECT_TRUE(has(svg, "class=\"item invalid\" data-item-index=\"0\""));
    EXPECT_TRUE(has(svg, "class=\"item collision\" data-item-index=\"1\""));
    EXPECT_TRUE(has(svg, "class=\"item collision\" data-item-index=\"2\""));
    EXPECT_TRUE(has(svg, "class=\"item\" data-item-index=\"3\""));
    EXPECT_TRUE(has(svg, "<title>keymaps[0] Click: Q\nno key is assigned</title>"));
    EXPECT_EQ(count(svg, "both fire on Q</title>"), 2u);
    EXPECT_TRUE(has(svg, "4 items, 2 problems"));
}

// A PNG of `width` x `height`: signature and IHDR are all the reader needs.
std::string pngHeader(unsigned width, unsigned height) {
    std::string s("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR", 16);
    for (unsigned v : {width, height}) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            s += static_cast<char>((v >> shift) & 0xFF);
        }
    }
    return s + std::string("\x08\x06\0\0\0", 5);
}

TEST(Render, BackgroundImagesAreSizedAndEmbedded) {
    const std::string app0("\xFF\xE0\x00\x10JFIF\x00\x01\x01\x00\x00\x01\x00\x01\x00\x00", 18);
    const std::string sof0("\xFF\xC0\x00\x11\x08\x00\xC8\x01\x2C\x03", 10);  // 300x200
    const std::string soi("\xFF\xD8", 2);
    const struct {
        const char* name;
        std::string bytes;
        std::string error;  // empty when the image is accepted
        int width, height;
    } rows[] = {
        {"png", pngHeader(640, 360), "", 640, 360},
        {"jpeg", soi + app0 + sof0, "", 300, 200},
        {"jpeg with fill bytes", soi + "\xFF" + sof0, "", 300, 200},
        {"gif", "GIF89a\x01\x00\x01\x00", "not a PNG or JPEG image", 0, 0},
        {"text", "{\"keymaps\":[]}", "not a PNG or JPEG image", 0, 0},
        {"png cut short", pngHeader(640, 360).substr(0, 20), "no IHDR", 0, 0},
        {"png of size 0", pngHeader(0, 360), "not usable", 0, 0},
        {"png too large", pngHeader(70000, 360), "not usable", 0, 0},
        {"jpeg without frame", soi + app0 + "\xFF\xD9", "no frame header", 0, 0},
        {"jpeg with a bad length", soi + std::string("\xFF\xE0\x00\x01", 4), "damaged", 0, 0},
        {"jpeg frame cut short", soi + sof0.substr(0, 6), "cut short", 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        render::Background background;
        const std::string error = render::ReadBackground(row.bytes, background);
        if (row.error.empty()) {
            EXPECT_EQ(error, "");
            EXPECT_EQ(background.width, row.width);
            EXPECT_EQ(background.height, row.height);
            EXPECT_EQ(background.bytes, row.bytes);
        } else {
            EXPECT_TRUE(has(error, row.error)) << error;
            EXPECT_TRUE(background.bytes.empty());
        }
    }
    render::RenderOptions options;
    ASSERT_EQ(render::ReadBackground(pngHeader(640, 360), options.background), "");
    const std::string svg = draw(*documentOf({"Click"}), {}, options);
    // The PNG signature, "\x89PNG\r\n\x1A\n", is "iVBORw0KGgo" in base64.
    EXPECT_TRUE(
        has(svg, "xlink:href=\"data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAoAAAAFoCAYAAAA=\""));
    EXPECT_LT(svg.find("<image"), svg.find("<g class=\"items\""));
}

TEST(Render, SameInputSameBytes) {
    DocPtr doc = documentOf({"Spell", "Curve", "Swipehold"});
    static_cast<km::CurveConfigItem*>(doc->items[1])->rel_all_points_pos = "(0.1,0.2);(0.3,x0.4);(";
    render::RenderOptions options;
    options.width = 1280;
    options.height = 720;
    const std::string first = draw(*doc, {}, options);
    EXPECT_EQ(draw(*doc, {}, options), first);
    EXPECT_TRUE(has(first, "class=\"screen\" x=\"0\" y=\"0\" width=\"1280\" height=\"720\""));
    EXPECT_TRUE(has(first, "d=\"M0 0L128 144L384 288L0 0\""));
}

// ---- markers, captions and layout ----

// A colour as CIE L*a*b*, as seen with full colour vision (0) or simulated
// protanopia (1), deuteranopia (2) or tritanopia (3) (Machado et al., 2009).
std::array<double, 3> seen(const std::string& hex, int vision) {
    static const double kVision[4][3][3] = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                                            {{0.152286, 1.052583, -0.204868},
                                             {0.114503, 0.786281, 0.099216},
                                             {-0.003882, -0.048116, 1.051998}},
                                            {{0.367322, 0.860646, -0.227968},
                                             {0.280085, 0.672501, 0.047413},
                                             {-0.011820, 0.042940, 0.968881}},
                                            {{1.255528, -0.076749, -0.178779},
                                             {-0.078411, 0.930809, 0.147602},
                                             {0.004733, 0.691367, 0.303900}}};
    double linear[3];
    for (int k = 0; k < 3; ++k) {
        const double c = std::stoi(hex.substr(1 + 2 * k, 2), nullptr, 16) / 255.0;
        linear[k] = c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    }
    double rgb[3];
    for (int i = 0; i < 3; ++i) {
        rgb[i] = 0;
        for (int j = 0; j < 3; ++j) {
            rgb[i] += kVision[vision][i][j] * linear[j];
        }
        rgb[i] = std::clamp(rgb[i], 0.0, 1.0);
    }
    const double xyz[3] = {(0.4124 * rgb[0] + 0.3576 * rgb[1] + 0.1805 * rgb[2]) / 0.95047,
                           0.2126 * rgb[0] + 0.7152 * rgb[1] + 0.0722 * rgb[2],
                           (0.0193 * rgb[0] + 0.1192 * rgb[1] + 0.9505 * rgb[2]) / 1.08883};
    double f[3];
    for (int k = 0; k < 3; ++k) {
        f[k] = xyz[k] > 0.008856 ? std::cbrt(xyz[k]) : 7.787 * xyz[k] + 16.0 / 116;
    }
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

// The least difference between two colours for any of the four visions.
double leastDifference(const std::string& a, const std::string& b) {
    double least = 1e9;
    for (int vision = 0; vision < 4; ++vision) {
        const auto p = seen(a, vision);
        const auto q = seen(b, vision);
        least = std::min(least, std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]));
    }
    return least;
}

TEST(Render, EveryTypeHasAMarkerOfItsOwn) {
    const auto& types = render::TypeShapes();
    ASSERT_EQ(types.size() + 1, km::kItemTypeNames.size());
    std::set<std::pair<std::string, std::string>> looks;
    std::set<std::string> shapes;
    for (std::size_t i = 0; i < types.size(); ++i) {
        SCOPED_TRACE(types[i].type);
        EXPECT_TRUE(
            looks.insert({render::MarkerShapeName(types[i].marker), types[i].colour}).second);
        shapes.insert(render::MarkerShapeName(types[i].marker));
        // Light enough for the dark screen, under every vision.
        for (int vision = 0; vision < 4; ++vision) {
            EXPECT_GE(seen(types[i].colour, vision)[0], 45) << vision;
        }
        for (std::size_t j = i + 1; j < types.size(); ++j) {
            const bool family = types[i].marker == types[j].marker;
            EXPECT_GE(leastDifference(types[i].colour, types[j].colour), family ? 30 : 13)
                << types[j].type;
        }
    }
    EXPECT_EQ(shapes.size(), 7u);
}

// Every font size of `svg` as shown when the picture is 1920 px wide.
std::vector<double> fontSizesAt1920(const std::string& svg) {
    std::smatch box;
    EXPECT_TRUE(std::regex_search(svg, box, std::regex("viewBox=\"[-0-9.]+ [-0-9.]+ ([0-9.]+) ")));
    const double scale = 1920 / std::stod(box[1]);
    std::vector<double> sizes;
    const std::regex size("font-size=\"([0-9.]+)\"");
    for (auto it = std::sregex_iterator(svg.begin(), svg.end(), size); it != std::sregex_iterator();
         ++it) {
        sizes.push_back(std::stod((*it)[1]) * scale);
    }
    return sizes;
}

TEST(Render, TextIsNeverSmallerThan11PxAt1920Wide) {
    std::vector<std::pair<std::string, DocPtr>> docs;
    for (const char* name : {"shooter", "macros", "gamepad"}) {
        docs.emplace_back(name, DocPtr(km::LoadKeymapConfigAndInfo(
                                    std::string(ZUNO_KM_EXAMPLES_DIR "/") + name + ".json", "")));
    }
    std::vector<std::string> all;
    for (const render::TypeShape& type : render::TypeShapes()) {
        all.push_back(type.type);
    }
    docs.emplace_back("every type", documentOf(all));
    for (const auto& [name, doc] : docs) {
        for (const auto& [width, height] :
             {std::pair{1920, 1080}, {1080, 1920}, {3840, 1080}, {640, 360}}) {
            SCOPED_TRACE(name + " at " + std::to_string(width) + "x" + std::to_string(height));
            render::RenderOptions options;
            options.width = width;
            options.height = height;
            options.labels = true;
            const std::vector<double> sizes = fontSizesAt1920(draw(*doc, {}, options));
            EXPECT_GT(sizes.size(), doc->items.size());
            EXPECT_GE(*std::min_element(sizes.begin(), sizes.end()), 11.0);
        }
    }
}

TEST(Render, CombinationsAreCaptionedModifierFirst) {
    const auto key = [](int vk, int scan) { return km::CreateConfigKey("keyboard", vk, scan); };
    const struct {
        km::ConfigKey first, second;
        std::string caption;
    } rows[] = {
        {key(71, 34), key(17, 29), "Ctrl+G"},  // G, then Ctrl
        {key(17, 29), key(71, 34), "Ctrl+G"},  // Ctrl, then G
        {key(71, 34), key(18, 56), "Alt+G"},       {key(81, 16), key(160, 42), "Shift+Q"},  //
        {key(160, 42), key(17, 29), "Shift+Ctrl"},  // two modifiers: as written
        {key(81, 16), key(71, 34), "Q+G"},          // no modifier: as written
        {key(81, 16), km::ConfigKey(), "Q"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.caption);
        km::ClickConfigItem item;
        item.key = row.first;
        item.second_key = row.second;
        EXPECT_EQ(render::ItemCaption(item), row.caption);
        km::KeyTrigger trigger;
        trigger.first = row.first;
        trigger.second = row.second;
        trigger.combination = row.second.isSet();
        EXPECT_EQ(km::DescribeKeyTrigger(trigger), row.caption);
    }
}

TEST(Render, MarkersThatHideEachOtherAreFannedOut) {
    using render::Spot;
    const render::Box screen{0, 0, 1920, 1080};
    const Spot lone{100, 100, 28, 28};
    const struct {
        const char* name;
        std::vector<Spot> spots;
        std::vector<bool> moved;
    } rows[] = {
        {"apart", {lone, {500, 500, 28, 28}}, {false, false}},
        {"same spot",
         {{960, 540, 28, 28}, {960, 540, 28, 28}, {960, 540, 28, 28}, lone},
         {true, true, true, false}},
        {"overlapping", {{960, 540, 28, 28}, {990, 520, 28, 28}}, {true, true}},
        {"in a corner", {{0, 0, 28, 28}, {0, 0, 28, 28}}, {true, true}},
        {"twenty at one spot", std::vector<Spot>(20, Spot{960, 540, 28, 28}),
         std::vector<bool>(20, true)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::vector<render::Fanned> out = render::FanOut(row.spots, screen);
        ASSERT_EQ(out.size(), row.spots.size());
        for (std::size_t i = 0; i < out.size(); ++i) {
            EXPECT_EQ(out[i].moved, row.moved[i]) << i;
            EXPECT_TRUE(render::Box::around(out[i].x, out[i].y, 28, 28).inside(screen)) << i;
        }
        // Markers of one group (at most twelve) no longer overlap, and a pair
        // keeps the sides the document gives it.
        for (std::size_t i = 0; i < out.size() && i < render::kFanGroup; ++i) {
            for (std::size_t j = i + 1; j < out.size() && j < render::kFanGroup; ++j) {
                if (row.moved[i] && row.moved[j]) {
                    EXPECT_GE(std::hypot(out[i].x - out[j].x, out[i].y - out[j].y), 56) << i << j;
                }
            }
        }
    }
    const auto pair = render::FanOut({{960, 540, 28, 28}, {990, 520, 28, 28}}, screen);
    EXPECT_LT(pair[0].x, pair[1].x);
    EXPECT_GT(pair[0].y, pair[1].y);
}

TEST(Render, RoomIsFoundBesideAMarker) {
    const render::Box screen{0, 0, 1000, 500};
    const render::Spot marker{500, 250, 20, 20};
    const struct {
        const char* name;
        std::vector<render::Box> taken;
        render::Spot marker;
        bool found;
        double x0, y0;  // the box found
    } rows[] = {
        {"right of it", {}, marker, true, 525, 240},
        {"left when the right is taken", {{520, 200, 700, 300}}, marker, true, 375, 240},
        {"below when both sides are taken",
         {{520, 235, 700, 265}, {300, 235, 480, 265}},
         marker,
         true,
         450,
         275},
        {"further out when all around is taken", {{400, 200, 600, 300}}, marker, true, 450, 315},
        {"left at the screen's right edge", {}, {990, 250, 5, 5}, true, 880, 240},
        {"none on a full screen", {screen}, marker, false, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        render::BoxIndex taken(screen, 64);
        for (const render::Box& box : row.taken) {
            taken.add(box);
        }
        render::Beside out;
        ASSERT_EQ(render::FindRoomBeside(taken, screen, row.marker, 100, 20, 20, 3, out),
                  row.found);
        if (row.found) {
            EXPECT_NEAR(out.box.x0, row.x0, 0.01);
            EXPECT_NEAR(out.box.y0, row.y0, 0.01);
            EXPECT_TRUE(taken.isFree(out.box));
        }
    }
}

TEST(Render, MacroPointsAreWhereTheScriptTouches) {
    DocPtr doc = documentOf({"Macro"});
    auto* macro = static_cast<km::MacroConfigItem*>(doc->items[0]);
    macro->press_actions = {"click 960,540 mouse 480,270", "sleep 50", "curve 0,0 1919,1079",
                            "release_all"};
    macro->release_actions = {"press 2000,100", "not a line 1,2"};
    render::RenderOptions options;
    options.width = 1280;
    options.height = 720;
    const std::string svg = draw(*doc, {}, options);
    const std::string group = svg.substr(svg.find("data-item-index=\"0\""));
    for (const char* point : {
             "data-line=\"1\" data-script=\"press\" cx=\"640\" cy=\"360\"",
             "data-line=\"1\" data-script=\"press\" cx=\"320\" cy=\"180\"",
             "data-line=\"3\" data-script=\"press\" cx=\"0\" cy=\"0\"",
             "data-line=\"3\" data-script=\"press\" cx=\"1279.33\" cy=\"719.33\"",
             R"(off-screen" data-line="1" data-script="release" cx="1280" cy="66.67")",
         }) {
        EXPECT_TRUE(has(group, point)) << point;
    }
    EXPECT_EQ(count(group.substr(0, group.find("class=\"legend\"")), "<circle class=\"macro-point"),
              5u);
    EXPECT_TRUE(has(group, "class=\"macro-path\" d=\"M0 0L1279.33 719.33\""));
    EXPECT_TRUE(has(group, ">5</text>"));
}

TEST(Render, TouchPointsAndLabelsStayClearOfCaptions) {
    DocPtr doc = documentOf({"Click", "Click", "Click"});
    doc->items[0]->rel_work_position = doc->items[0]->icon.rel_position;
    doc->items[2]->icon.rel_position = doc->items[1]->icon.rel_position;  // the same spot
    doc->items[0]->icon.description = "jump";
    doc->items[1]->icon.description = "crouch";
    render::RenderOptions options;
    options.labels = true;
    const std::string svg = draw(*doc, {}, options);
    // A touch point under its marker is drawn on the marker's rim; markers
    // at one spot leave it, and the spot stays marked.
    EXPECT_TRUE(has(svg, "class=\"touch\" cx=\"500.22\" cy=\"560.22\""));
    EXPECT_EQ(count(svg, "class=\"true-spot\" cx=\"672\" cy=\"540\""), 2u);
    EXPECT_TRUE(has(svg, "class=\"item fanned\" data-item-index=\"1\""));
    EXPECT_TRUE(has(svg, ">jump</text>"));
    EXPECT_TRUE(has(svg, ">crouch</text>"));
    options.labels = false;
    EXPECT_FALSE(has(draw(*doc, {}, options), "class=\"label\""));
    options.legend = false;
    EXPECT_FALSE(has(draw(*doc, {}, options), "class=\"legend\""));
}

TEST(Render, AnOverlayAddsClassesItemsAndShapes) {
    DocPtr doc = documentOf({"Click", "Tip"});
    DocPtr old = documentOf({"Spell"});
    render::RenderOptions options;
    options.overlay.classes = {"added"};
    options.overlay.extras.push_back({old->items[0], 7, "removed"});
    options.overlay.style = ".removed{opacity:0.4}";
    options.overlay.draw = [](render::SvgWriter& svg, const render::Canvas&,
                              const render::DrawnItem& drawn) {
        svg.open("circle").attr("class", drawn.extra ? "ghost" : "mark").attr("cx", drawn.x);
        svg.attr("r", drawn.radius).close();
    };
    const std::string svg = draw(*doc, {}, options);
    // The extra is drawn first, under the document's items, with its own index.
    EXPECT_LT(svg.find("class=\"item removed\" data-old-index=\"7\" data-item-type=\"Spell\""),
              svg.find("class=\"item added\" data-item-index=\"0\""));
    EXPECT_TRUE(has(svg, "class=\"item\" data-item-index=\"1\""));
    EXPECT_TRUE(has(svg, ".removed{opacity:0.4}"));
    EXPECT_TRUE(has(svg, "class=\"ghost\" cx=\"480\" r=\"28.08\""));
    EXPECT_EQ(count(svg, "class=\"mark\""), 2u);
}

// ---- the render command ----

const std::string kTool = ZUNO_KEYMAP_TOOL;

std::string screen(int width, int height) {
    return "<rect class=\"screen\" x=\"0\" y=\"0\" width=\"" + std::to_string(width) +
           "\" height=\"" + std::to_string(height) + "\"/>";
}
const std::string kShooter = ZUNO_KM_EXAMPLES_DIR "/shooter.json";

Result tool(const std::vector<std::string>& args, const std::string& input = "") {
    std::vector<std::string> words{"render"};
    words.insert(words.end(), args.begin(), args.end());
    return RunProgram(kTool, words, input);
}

TEST(Render, CommandStatusAndOutput) {
    TempFile png, text, broken, target, kept;
    png.write(pngHeader(800, 600));
    text.write("not an image");
    broken.write(R"({"keymaps":[{"type":"Spell"}]})");
    kept.write("keep me");
    // The check's own findings, end to end: two items on Q, one with no key.
    TempFile problems;
    {
        DocPtr doc = documentOf({"Spell", "Staring", "Click"});
        doc->items[2]->key = km::ConfigKey();
        doc->info = new km::ConfigInfo();
        doc->param = new km::ConfigParam();
        problems.write(km::SaveKeymapConfigAndInfoToText(doc.get()));
    }
    const std::string blank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
    const struct {
        int status;
        std::vector<std::string> args;
        std::vector<std::string> out;  // each must appear on standard output
        std::string input;
    } rows[] = {
        {0, {kShooter}, {screen(1920, 1080), "shooter.json \xE2\x80\x94 8 items"}, ""},
        {0, {"--size", "1280x720", kShooter}, {screen(1280, 720)}, ""},
        {0, {"--background", png.path(), kShooter}, {screen(800, 600), "base64,"}, ""},
        {0, {"--background", png.path(), "--size", "100x100", kShooter}, {screen(100, 100)}, ""},
        {0, {"--no-legend", kShooter}, {"viewBox=\"0 0 1920 1080\""}, ""},
        {0, {"--labels", kShooter}, {"<text class=\"label\"", ">fire and aim</text>"}, ""},
        {0, {"-"}, {"&lt;stdin&gt; \xE2\x80\x94 1 item"}, documentWith(freshItemText("Tip"))},
        {0, {blank}, {"0 items"}, ""},
        {0,
         {problems.path()},
         {"class=\"item collision\" data-item-index=\"0\"",
          "class=\"item collision\" data-item-index=\"1\"",
          "class=\"item invalid\" data-item-index=\"2\"", "3 items, 2 problems"},
         ""},
        {0, {"-o", target.path(), kShooter}, {}, ""},
        {1, {"-o", kept.path(), broken.path()}, {}, ""},
        {2, {"/nonexistent/k.json"}, {}, ""},
        {2, {"--size", "1920", kShooter}, {}, ""},
        {2, {"--size", "0x10", kShooter}, {}, ""},
        {2, {"--size", "99999x10", kShooter}, {}, ""},
        {2, {"--background", text.path(), kShooter}, {}, ""},
        {2, {"--background", "/nonexistent.png", kShooter}, {}, ""},
        {2, {kShooter, kShooter}, {}, ""},
        {2, {}, {}, ""},
        {2, {"-o", "/nonexistent/dir/out.svg", kShooter}, {}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.args));
        const Result result = tool(row.args, row.input);
        EXPECT_EQ(result.status, row.status) << result.err;
        for (const std::string& part : row.out) {
            EXPECT_TRUE(has(result.out, part)) << part;
        }
    }
    EXPECT_EQ(target.read(), tool({kShooter}).out);
    EXPECT_EQ(kept.read(), "keep me");
    EXPECT_TRUE(has(tool({broken.path()}).err, ": error: keymaps[0]"));
}

}  // namespace
