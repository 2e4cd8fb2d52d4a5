// Whole macro scripts: the grammar check, both conversions and the public
// path to them; the base converter's own conversions; and very long lines.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <zuno-keymapmanager/keymapmanager.h>

namespace {

namespace km = zunokeymapmanager;
using Lines = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;

const km::Rect kScreen(0, 0, 1280, 720);

TEST(MacroScript, GrammarCheckNumbersFailingLinesFromOne) {
    struct Case {
        Lines script;
        Numbers failing;
    };
    const Case cases[] = {
        {{}, {}},
        {{"release_actions", "", "release_actions"}, {}},
        {{"", "sleep 5", "bogus"}, {3}},
        {{"click 1,2", "release_actions", "nope", "loop_end", ""}, {3}},
        // Only the exact separator is skipped; blanks are not empty.
        {{"Release_actions", " release_actions", "release_actions ", "release_actions", " "},
         {1, 2, 3, 5}},
        // Key commands exist only as running lines.
        {{"key_press 30", "keyboard_press:30", "mouse_press 1", "stop_loop"}, {1, 2, 3, 4}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(km::MarcoConVerterFactory::MacroKeyEditingTextGrammarCheck(c.script), c.failing);
        EXPECT_EQ(km::MacroKeyEditingTextGrammarCheck(c.script), c.failing);
    }
}

TEST(MacroScript, ConversionsDropSkippedAndUnknownLines) {
    struct Case {
        Lines editing;
        Lines running;
    };
    const Case toRunning[] = {
        {{}, {}},
        {{"", "release_actions"}, {}},
        {{"press 1,2", "sleep 100", "release_actions", "", "release mouse", "bogus", "loop_end"},
         {"press_rel:", "sleep", "release_rel:", "stop_loop"}},
        {{"default_sleep_time 20", "loop 2", "text \"hi\"", "curve_last_time untilcmd"},
         {"default_sleep_time:", "start_loop:", "text_inject:", "curve_last_point_sleep_time:"}},
    };
    for (const Case& c : toRunning) {
        EXPECT_EQ(
            km::MarcoConVerterFactory::MacroKeyEditingTextChangeToRunningText(c.editing, kScreen),
            c.running);
        EXPECT_EQ(km::MacroKeyEditingTextChangeToRunningText(c.editing, km::Rect()), c.running);
    }
    const Case toEditing[] = {
        {{}, {}},
        {{"press ", "sleep", "key_press ", "loop_end", "text \"\""},
         {"press_rel:(1,2)", "release_actions", "sleep:100", "junk", "", "keyboard_press:30",
          "stop_loop", "text_inject:abc"}},
    };
    for (const Case& c : toEditing) {
        EXPECT_EQ(
            km::MarcoConVerterFactory::MacroKeyRunningTextChangeToEditingText(c.running, kScreen),
            c.editing);
        EXPECT_EQ(
            KeymapManager::GetInstance().MacroKeyRunningTextChangeToEditingText(c.running, kScreen),
            c.editing);
    }
}

TEST(MacroConverter, StoresWhatItIsGiven) {
    km::MarcoClickConVerter converter;
    converter.initEditingText("click 1,2", kScreen);
    EXPECT_TRUE(converter.converterFromEditingText("click mouse"));
    converter.initRunningText("click_rel:mouse", km::Rect(1, 2, 3, 4));
    EXPECT_EQ(converter.editingText(), "click mouse");
    EXPECT_EQ(converter.runningText(), "click_rel:mouse");
    EXPECT_EQ(converter.screenRect().x2, 3);
    EXPECT_EQ(km::MarcoConVerter::scancodeToText("keyboard", 1), "Esc");
    EXPECT_EQ(km::MarcoConVerter::textToScancode("mouse", "left_mouse"), 1);
    EXPECT_EQ(km::MarcoConVerter::scancodeToText("gamepad", 1), "");
    EXPECT_EQ(km::MarcoConVerter::textToScancode("gamepad", "A"), -1);
    EXPECT_EQ(km::MarcoConVerter::textToScancode("keyboard", "no such key"), -1);
}

// The base conversions copy the first pair of numbers when it ends the text.
TEST(MacroConverter, BaseConversionsCopyATrailingPair) {
    struct Case {
        std::string in;
        std::string out;
    };
    const Case toRunning[] = {
        {"press 100,200", "press_rel:100;200;"},
        {"a12,345", "press_rel:12;345;"},
        {"1, 2,3", "press_rel:2;3;"},
        {"x 1,2 3,4", "press_rel:"},
        {"press 1,2 ", "press_rel:"},
        {"1,,2", "press_rel:"},
        {"", "press_rel:"},
    };
    for (const Case& c : toRunning) {
        km::MarcoConVerter converter;
        converter.initEditingText(c.in, kScreen);
        EXPECT_EQ(converter.converterToRunningText(), c.out) << c.in;
    }
    const Case toEditing[] = {
        {"press_rel:(0.5,0.3)", "press 0.5 0.3"},
        {"((a,b)", "press (a b"},
        {"(,1)(2,3)", "press 2 3"},
        {"(a,b,c)", "press a b,c"},
        {"(0.5,0.3);(1,2)", "press"},
        {"(a,)", "press"},
        {"(1,2", "press"},
        {"", "press"},
    };
    for (const Case& c : toEditing) {
        km::MarcoConVerter converter;
        converter.initRunningText(c.in, kScreen);
        EXPECT_EQ(converter.converterToEditingText(), c.out) << c.in;
    }
}

std::string repeated(const std::string& part, std::size_t times) {
    std::string out;
    out.reserve(part.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        out += part;
    }
    return out;
}

// Lines on which a backtracking matcher would take exponential time or
// exhaust its stack are answered like any other.
TEST(MacroLongLines, AreAnsweredCorrectly) {
    const std::string digits(64, '7');
    for (const std::string keyword :
         {"start_loop:", "curve_first_point_sleep_time:", "curve_last_point_sleep_time:"}) {
        EXPECT_FALSE(
            km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(keyword + digits + "x"));
        EXPECT_TRUE(
            km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(keyword + digits));
    }

    const std::string text(1 << 20, 'a');
    EXPECT_EQ(km::MacroKeyEditingTextChangeToRunningText({"text \"" + text + "\""}, kScreen),
              Lines{"text_inject:"});
    EXPECT_EQ(km::MacroKeyEditingTextGrammarCheck({"text \"" + text + "\r\""}), Numbers{1});
    EXPECT_EQ(km::MacroKeyRunningTextChangeToEditingText({"text_inject:" + text}, kScreen),
              Lines{"text \"\""});

    const std::string points = repeated(" 1920,1080", 200000);
    EXPECT_EQ(km::MacroKeyEditingTextGrammarCheck({"click" + points, "click" + points + " x"}),
              Numbers{2});
    const std::string relative = "click_rel:" + repeated("(0.5,0.25);", 200000) + "mouse";
    EXPECT_EQ(km::MacroKeyRunningTextChangeToEditingText({relative}, kScreen), Lines{"click "});

    const std::string keywords = repeated("joystick_press default_sleep_time ", 30000);
    EXPECT_EQ(km::MacroKeyEditingTextGrammarCheck({keywords, keywords + "5"}), Numbers{1});

    km::MarcoConVerter base;
    base.initRunningText(repeated("(,", 500000) + "(a,b)", kScreen);
    EXPECT_EQ(base.converterToEditingText(), "press a b");
    base.initEditingText(repeated("1,,", 500000) + "2,3", kScreen);
    EXPECT_EQ(base.converterToRunningText(), "press_rel:2;3;");
}

}  // namespace
