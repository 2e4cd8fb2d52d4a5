// Captions of keyboard keys and mouse buttons, the folding of right-hand
// modifiers, and the reverse lookup from caption to code.

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "labels/KeyLabels.h"
#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
namespace labels = km::labels;

struct CaptionCase {
    const char* device;
    int code;
    const char* caption;
};

// Codes that no right-hand modifier folding touches, so the key built for
// them keeps its code and the caption is the table's own.
const CaptionCase kCaptions[] = {
    // Extended and keypad keys: these rows win over the general table...
    {"keyboard", 55, "*"},
    {"keyboard", 71, "N7"},
    {"keyboard", 72, "N8"},
    {"keyboard", 73, "N9"},
    {"keyboard", 74, "-"},
    {"keyboard", 75, "N4"},
    {"keyboard", 76, "N5"},
    {"keyboard", 77, "N6"},
    {"keyboard", 78, "+"},
    {"keyboard", 79, "N1"},
    {"keyboard", 80, "N2"},
    {"keyboard", 81, "N3"},
    {"keyboard", 82, "N0"},
    {"keyboard", 83, "."},
    {"keyboard", 284, "Enter"},
    {"keyboard", 309, "/"},
    {"keyboard", 327, "Home"},
    {"keyboard", 337, "PageDown"},
    {"keyboard", 338, "Insert"},
    {"keyboard", 339, "Delete"},
    // ...except where they have no name of their own.
    {"keyboard", 69, "Numlock"},
    {"keyboard", 325, ""},
    // The general table.
    {"keyboard", 0, "Reserved"},
    {"keyboard", 1, "Esc"},
    {"keyboard", 2, "1"},
    {"keyboard", 11, "0"},
    {"keyboard", 12, "-"},
    {"keyboard", 13, "="},
    {"keyboard", 14, "Backspace"},
    {"keyboard", 15, "Tab"},
    {"keyboard", 16, "Q"},
    {"keyboard", 26, "["},
    {"keyboard", 27, "]"},
    {"keyboard", 28, "Enter"},
    {"keyboard", 29, "Ctrl"},
    {"keyboard", 30, "A"},
    {"keyboard", 39, ";"},
    {"keyboard", 40, "'"},
    {"keyboard", 41, "`"},
    {"keyboard", 42, "Shift"},
    {"keyboard", 43, "\\"},
    {"keyboard", 50, "M"},
    {"keyboard", 51, ","},
    {"keyboard", 52, "."},
    {"keyboard", 53, "/"},
    {"keyboard", 56, "Alt"},
    {"keyboard", 57, "Space"},
    {"keyboard", 58, "Caps"},
    {"keyboard", 59, "F1"},
    {"keyboard", 68, "F10"},
    {"keyboard", 70, "Scrolllock"},
    {"keyboard", 84, ""},
    {"keyboard", 85, "Zenkakuhankaku"},
    {"keyboard", 86, "102nd"},
    {"keyboard", 88, "F12"},
    {"keyboard", 95, "Kjpcomma"},
    {"keyboard", 96, "Kpenter"},
    {"keyboard", 97, "Rightctrl"},
    {"keyboard", 100, "Rightalt"},
    {"keyboard", 102, "Home"},
    {"keyboard", 104, "Pageup"},
    {"keyboard", 109, "Pagedown"},
    {"keyboard", 122, "Hangeul"},
    {"keyboard", 125, "Leftmeta"},
    {"keyboard", 128, "Stop"},
    {"keyboard", 129, "Again"},
    {"keyboard", 131, "Undo"},
    {"keyboard", 133, "Copy"},
    {"keyboard", 134, "Open"},
    {"keyboard", 136, "Find"},
    {"keyboard", 137, "Cut"},
    {"keyboard", 138, "Help"},
    {"keyboard", 139, "Menu"},
    {"keyboard", 140, "Calc"},
    {"keyboard", 142, "Sleep"},
    {"keyboard", 143, "Wakeup"},
    {"keyboard", 238, "Wlan"},
    {"keyboard", 240, ""},
    {"keyboard", 243, "Brightness_cycle"},
    {"keyboard", 255, ""},
    {"keyboard", 256, ""},
    // The arrow block overrides both tables.
    {"keyboard", 328, "Direction_up"},
    {"keyboard", 329, ""},
    {"keyboard", 330, ""},
    {"keyboard", 331, "Direction_left"},
    {"keyboard", 332, ""},
    {"keyboard", 333, "Direction_right"},
    {"keyboard", 334, ""},
    {"keyboard", 335, ""},
    {"keyboard", 336, "Direction_down"},
    {"keyboard", 340, ""},
    {"keyboard", -1, ""},
    {"keyboard", 2147483647, ""},
    // Mouse buttons, including codes where the first of two names is kept.
    {"mouse", 0, ""},
    {"mouse", 1, "left_mouse"},
    {"mouse", 2, "right_mouse"},
    {"mouse", 3, ""},
    {"mouse", 4, "middle_mouse"},
    {"mouse", 8, "back_mouse"},
    {"mouse", 16, "forward_mouse"},
    {"mouse", 256, "Misc"},
    {"mouse", 257, "1"},
    {"mouse", 265, "9"},
    {"mouse", 272, "Mouse"},
    {"mouse", 273, ""},
    {"mouse", 275, "Side"},
    {"mouse", 276, "Extra"},
    {"mouse", 279, "Task"},
    {"mouse", 288, "Joystick"},
    {"mouse", 290, "Thumb2"},
    {"mouse", 293, "Pinkie"},
    {"mouse", 294, "Base"},
    {"mouse", 299, "Base6"},
    {"mouse", 303, "Dead"},
    {"mouse", 304, "Gamepad"},
    {"mouse", 305, "B"},
    {"mouse", 309, "Z"},
    {"mouse", 313, "Tr2"},
    {"mouse", 318, "Thumbr"},
    {"mouse", 320, "Digi"},
    {"mouse", 324, "Tool_airbrush"},
    {"mouse", 330, "Touch"},
    {"mouse", 335, "Tool_quadtap"},
    {"mouse", 336, "Wheel"},
    {"mouse", 337, "Gear_up"},
    {"mouse", 544, "Dpad_up"},
    {"mouse", 547, "Dpad_right"},
    {"mouse", 548, "wheel_up_mouse"},
    {"mouse", 549, "wheel_down_mouse"},
    {"mouse", 550, ""},
    // Devices without captions; names are compared exactly.
    {"pen", 30, ""},
    {"", 1, ""},
    {"Keyboard", 1, ""},
};

TEST(KeyCaption, BuiltKeysCarryTheTableCaption) {
    for (const CaptionCase& c : kCaptions) {
        const km::ConfigKey key = km::CreateConfigKey(c.device, 7, c.code);
        EXPECT_EQ(key.text, c.caption) << c.device << " " << c.code;
        EXPECT_EQ(key.scan_code, c.code) << c.device << " " << c.code;
    }
}

TEST(KeyCaption, LabelKeysKeepTheirSpellingAndTheFirstNameOfASharedCode) {
    const struct {
        const char* device;
        int code;
        const char* label;
    } cases[] = {
        {"keyboard", 337, "key.pageDown"}, {"keyboard", 329, "key.unknown"},
        {"keyboard", 58, "key.caps"},      {"keyboard", 69, "key.numlock"},
        {"keyboard", 55, "key.asterisk"},  {"keyboard", 122, "key.hangeul"},
        {"keyboard", 999, "key.unknown"},  {"mouse", 256, "btn.misc"},
        {"mouse", 288, "btn.joystick"},    {"mouse", 304, "btn.gamepad"},
        {"mouse", 320, "btn.digi"},        {"mouse", 336, "btn.wheel"},
        {"mouse", 7, "btn.unknown"},       {"joystick", 1, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(labels::LabelKey(c.device, c.code), c.label) << c.device << " " << c.code;
    }
}

TEST(KeyCaption, RightHandModifiersFoldButTheCaptionFollowsTheCallersCode) {
    const struct {
        const char* device;
        int code;
        int folded;
        const char* built;       // CreateConfigKey: caption of the code as given
        const char* recomputed;  // SetTextForConfigKey: caption of the folded code
    } cases[] = {
        {"keyboard", 312, 56, "", "Alt"},
        {"keyboard", 285, 29, "", "Ctrl"},
        {"keyboard", 54, 42, "Rightshift", "Shift"},
        {"keyboard", 56, 56, "Alt", "Alt"},
        {"keyboard", 310, 310, "", ""},
        // Folding looks at the code alone, whatever the device.
        {"mouse", 312, 56, "Tl2", ""},
    };
    for (const auto& c : cases) {
        km::ConfigKey key = km::CreateConfigKey(c.device, 18, c.code);
        EXPECT_EQ(key.scan_code, c.folded) << c.code;
        EXPECT_EQ(key.virtual_key, 18) << c.code;
        EXPECT_EQ(key.text, c.built) << c.code;

        key.scan_code = c.code;
        km::SetTextForConfigKey(&key);
        EXPECT_EQ(key.scan_code, c.folded) << c.code;
        EXPECT_EQ(key.text, c.recomputed) << c.code;
    }
}

TEST(KeyCaption, GamepadKeysKeepTheCallersName) {
    km::ConfigKey key("joystick", "RT", 1, 1);
    key.setText("joystick", 30);
    EXPECT_EQ(key.text, "RT");
    key.setText("keyboard", 30);
    EXPECT_EQ(key.text, "A");
    key.setText("pen", 30);
    EXPECT_EQ(key.text, "");
}

TEST(KeyCaption, EveryCaptionLeadsBackToACodeWithThatCaption) {
    for (const char* device : {"keyboard", "mouse"}) {
        for (int code = -1; code <= 600; ++code) {
            const std::string caption = labels::Caption(device, code);
            if (caption.empty()) {
                continue;
            }
            const int back = labels::CodeOf(device, caption);
            EXPECT_LE(back, code) << device << " " << caption;
            EXPECT_EQ(labels::Caption(device, back), caption) << device << " " << code;
        }
    }
}

TEST(KeyCaption, CodeOfPrefersTheLowestCodeAndKnowsNoOtherSpelling) {
    const struct {
        const char* device;
        const char* caption;
        int code;
    } cases[] = {
        {"keyboard", "Enter", 28},
        {"keyboard", "Home", 102},
        {"keyboard", "-", 12},
        {"keyboard", "N7", 71},
        {"keyboard", "Direction_up", 328},
        {"keyboard", "Alt", 56},
        {"mouse", "left_mouse", 1},
        {"mouse", "wheel_down_mouse", 549},
        {"keyboard", "left_mouse", -1},
        {"keyboard", "esc", -1},
        {"keyboard", "Unknown", -1},
        {"keyboard", "", -1},
        {"mouse", "", -1},
        {"pen", "A", -1},
        {"joystick", "A", -1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(labels::CodeOf(c.device, c.caption), c.code) << c.device << " " << c.caption;
    }
}

TEST(KeyCaption, FirstUseFromManyThreadsSeesOneTable) {
    // Each test runs in a process of its own, so this is the tables' first use.
    std::vector<std::string> seen(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < seen.size(); ++i) {
        threads.emplace_back([&seen, i] {
            for (int code = 0; code < 600; ++code) {
                seen[i] += km::CreateConfigKey(i % 2 ? "mouse" : "keyboard", 0, code).text + "|";
            }
        });
    }
    for (std::thread& t : threads) {
        t.join();
    }
    for (std::size_t i = 2; i < seen.size(); ++i) {
        EXPECT_EQ(seen[i], seen[i % 2]) << i;
    }
}

}  // namespace
