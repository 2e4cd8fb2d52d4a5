// Captions of keyboard keys and mouse buttons, the folding of right-hand
// modifiers, and the reverse lookup from caption to code.

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "labels/KeyLabels.h"
#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
namespace labels = km::labels;

// Codes that no right-hand modifier folding touches, so the key built for
// them keeps its code and the caption is the table's own.
// clang-format off
const std::pair<int, const char*> kKeyboardCaptions[] = {
    // Extended and keypad keys: these rows win over the general table...
    {55, "*"}, {71, "N7"}, {72, "N8"}, {73, "N9"}, {74, "-"}, {75, "N4"}, {76, "N5"}, {77, "N6"},
    {78, "+"}, {79, "N1"}, {80, "N2"}, {81, "N3"}, {82, "N0"}, {83, "."}, {284, "Enter"},
    {309, "/"}, {327, "Home"}, {337, "PageDown"}, {338, "Insert"}, {339, "Delete"},
    // ...except where they have no name of their own.
    {69, "Numlock"}, {325, ""},
    // The general table.
    {0, "Reserved"}, {1, "Esc"}, {2, "1"}, {11, "0"}, {12, "-"}, {13, "="}, {14, "Backspace"},
    {26, "["}, {27, "]"}, {28, "Enter"}, {29, "Ctrl"}, {39, ";"}, {40, "'"}, {41, "`"},
    {42, "Shift"}, {43, "\\"}, {51, ","}, {52, "."}, {53, "/"}, {56, "Alt"}, {57, "Space"},
    {58, "Caps"}, {84, ""}, {95, "Kjpcomma"}, {96, "Kpenter"}, {102, "Home"}, {122, "Hangeul"},
    {128, "Stop"}, {129, "Again"}, {143, "Wakeup"}, {238, "Wlan"}, {240, ""},
    {243, "Brightness_cycle"}, {255, ""}, {256, ""},
    // The arrow block overrides both tables.
    {328, "Direction_up"}, {329, ""}, {330, ""}, {331, "Direction_left"}, {332, ""},
    {333, "Direction_right"}, {334, ""}, {335, ""}, {336, "Direction_down"}, {340, ""}, {-1, ""},
    {2147483647, ""},
};

const std::pair<int, const char*> kMouseCaptions[] = {
    // Mouse buttons, including codes where the first of two names is kept.
    {0, ""}, {1, "left_mouse"}, {2, "right_mouse"}, {3, ""}, {4, "middle_mouse"},
    {8, "back_mouse"}, {16, "forward_mouse"}, {256, "Misc"}, {257, "1"}, {265, "9"},
    {272, "Mouse"}, {273, ""}, {275, "Side"}, {279, "Task"}, {288, "Joystick"}, {294, "Base"},
    {299, "Base6"}, {303, "Dead"}, {304, "Gamepad"}, {305, "B"}, {313, "Tr2"}, {320, "Digi"},
    {330, "Touch"}, {336, "Wheel"}, {337, "Gear_up"}, {544, "Dpad_up"}, {547, "Dpad_right"},
    {548, "wheel_up_mouse"}, {549, "wheel_down_mouse"}, {550, ""},
};
// clang-format on

TEST(KeyCaption, BuiltKeysCarryTheTableCaption) {
    const auto check = [](const char* device, int code, const char* caption) {
        const km::ConfigKey key = km::CreateConfigKey(device, 7, code);
        EXPECT_EQ(key.text, caption) << device << " " << code;
        EXPECT_EQ(key.scan_code, code) << device << " " << code;
    };
    for (const auto& [code, caption] : kKeyboardCaptions) {
        check("keyboard", code, caption);
    }
    for (const auto& [code, caption] : kMouseCaptions) {
        check("mouse", code, caption);
    }
    // Devices without captions; names are compared exactly.
    for (const char* device : {"pen", "", "Keyboard", "joystick"}) {
        check(device, 30, "");
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

}  // namespace
