// The keymap picture: what each item type draws, how document text is made
// safe, how problems are marked, background images, and the render command.

#include <gtest/gtest.h>

#include <cstdlib>

#include "ImageHeader.h"
#include "ItemShapes.h"
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

/// A document of fresh items of `types`, each bound to Q (and Ctrl as a
/// second key where it takes one), its marker at (0.25, 0.5) and its touch
/// point at (0.3, 0.6).
DocPtr documentOf(const std::vector<std::string>& types) {
    DocPtr doc(new km::KeymapConfig());
    for (const std::string& type : types) {
        km::ConfigItem* item = km::CreateConfigItem(type);
        item->key = km::CreateConfigKey("keyboard", 81, 16);
        item->icon.rel_position = {0.25, 0.5};
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
    // What each type draws of its own, beside the marker and the touch point.
    const std::vector<std::pair<std::string, std::vector<std::string>>> rows = {
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
    ASSERT_EQ(rows.size(), render::TypeShapes().size());
    std::vector<std::string> all;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.first);
        all.push_back(row.first);
        const std::string svg = draw(*documentOf({row.first}));
        EXPECT_TRUE(has(svg, "data-item-index=\"0\" data-item-type=\"" + row.first + "\""));
        EXPECT_TRUE(has(svg, "class=\"marker\" cx=\"480\" cy=\"540\""));
        EXPECT_TRUE(has(svg, "class=\"touch\" cx=\"576\" cy=\"648\""));
        EXPECT_TRUE(has(svg, "class=\"link\" x1=\"480\" y1=\"540\" x2=\"576\" y2=\"648\""));
        EXPECT_TRUE(has(svg, "<text class=\"caption\"") && has(svg, ">Q</text>"));
        for (const std::string& part : row.second) {
            EXPECT_TRUE(has(svg, part)) << part;
        }
    }
    // One document of every type: one group each, in document order.
    const std::string svg = draw(*documentOf(all));
    EXPECT_EQ(count(svg, "<g class=\"item\""), rows.size());
    EXPECT_TRUE(has(svg, "data-item-index=\"17\" data-item-type=\"Tip\""));
    EXPECT_TRUE(has(svg, "<title>18 items, 0 problems</title>"));
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
    EXPECT_TRUE(has(svg, ">Q+Ctrl</text>"));
    EXPECT_TRUE(has(svg, "r=\"28.08\" fill=\"#FF0000\" fill-opacity=\"0.5\""));
    EXPECT_TRUE(has(svg, "class=\"item hidden\" data-item-index=\"3\""));
    EXPECT_TRUE(has(svg, "r=\"280.8\" fill=\"#000000\" fill-opacity=\"0.4\""));
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
    EXPECT_TRUE(has(first, "viewBox=\"0 0 1280 720\""));
    EXPECT_TRUE(has(first, "d=\"M0 0L128 144L384 288L0 0\""));
}

// ---- the render command ----

const std::string kTool = ZUNO_KEYMAP_TOOL;
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
        {0, {kShooter}, {"viewBox=\"0 0 1920 1080\"", "shooter.json \xE2\x80\x94 8 items"}, ""},
        {0, {"--size", "1280x720", kShooter}, {"viewBox=\"0 0 1280 720\""}, ""},
        {0, {"--background", png.path(), kShooter}, {"viewBox=\"0 0 800 600\"", "base64,"}, ""},
        {0,
         {"--background", png.path(), "--size", "100x100", kShooter},
         {"viewBox=\"0 0 100 100\""},
         ""},
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
