// Whole macro scripts: the grammar check, both conversions and the public
// path to them; and very long lines.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <zuno-keymapmanager/keymapmanager.h>

namespace {

namespace km = zunokeymapmanager;
using Lines = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;
using Factory = km::MarcoConVerterFactory;

const km::Rect kScreen(0, 0, 1280, 720);

TEST(MacroScript, GrammarCheckNumbersFailingLinesFromOne) {
    const std::pair<Lines, Numbers> cases[] = {
        {{}, {}},
        {{"click 1,2", "release_actions", "nope", "loop_end", ""}, {3}},
        // Only the exact separator is skipped; blanks are not empty.
        {{"Release_actions", " release_actions", "release_actions ", "release_actions", " "},
         {1, 2, 3, 5}},
        // Key commands exist only as running lines.
        {{"key_press 30", "keyboard_press:30", "mouse_press 1", "stop_loop"}, {1, 2, 3, 4}},
        // Carriage returns, vertical tabs and form feeds are blanks like spaces.
        {{"sleep\r100", "sleep\v100", "click\f1,2", "sleep\001100"}, {4}},
        // A text needs its closing quote: a lone one is no text.
        {{"text \"", "text \"\"", "text \"a\""}, {1}},
    };
    for (const auto& [script, failing] : cases) {
        SCOPED_TRACE(testing::PrintToString(script));
        EXPECT_EQ(Factory::MacroKeyEditingTextGrammarCheck(script), failing);
        EXPECT_EQ(km::MacroKeyEditingTextGrammarCheck(script), failing);
    }
}

TEST(MacroScript, ConversionsDropSkippedAndUnknownLines) {
    const Lines editing = {"press 1,2", "sleep 100",     "release_actions",
                           "",          "release mouse", "bogus",
                           "loop_end",  "text \"hi\"",   "curve_last_time untilcmd"};
    const Lines running = {"press_rel:", "sleep",        "release_rel:",
                           "stop_loop",  "text_inject:", "curve_last_point_sleep_time:"};
    EXPECT_EQ(Factory::MacroKeyEditingTextChangeToRunningText(editing, kScreen), running);
    EXPECT_EQ(km::MacroKeyEditingTextChangeToRunningText(editing, km::Rect()), running);
    EXPECT_EQ(km::MacroKeyEditingTextChangeToRunningText({"", "release_actions"}, kScreen),
              Lines{});

    const Lines stored = {"press_rel:(1,2)",   "release_actions", "sleep:100",      "junk", "",
                          "keyboard_press:30", "stop_loop",       "text_inject:abc"};
    const Lines back = {"press ", "sleep", "key_press ", "loop_end", "text \"\""};
    EXPECT_EQ(Factory::MacroKeyRunningTextChangeToEditingText(stored, kScreen), back);
    EXPECT_EQ(KeymapManager::GetInstance().MacroKeyRunningTextChangeToEditingText(stored, kScreen),
              back);
}

std::string repeated(const std::string& part, std::size_t times) {
    std::string out;
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
        EXPECT_FALSE(Factory::ProduceMarcoConVerterByRunningText(keyword + digits + "x"));
        EXPECT_TRUE(Factory::ProduceMarcoConVerterByRunningText(keyword + digits));
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
