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
// them keeps its code; a null label is not checked.
struct CaptionCase {
    const char* device;
    int code;
    const char* caption;
    const char* label;
};

// clang-format off
const CaptionCase kCaptions[] = {
    // Extended and keypad keys win over the general table...
    {"keyboard", 55, "*", "key.asterisk"}, {"keyboard", 71, "N7", "key.n7"},
    {"keyboard", 284, "Enter", nullptr}, {"keyboard", 337, "PageDown", "key.pageDown"},
    // ...except where they have no name of their own.
    {"keyboard", 69, "Numlock", "key.numlock"}, {"keyboard", 325, "", "key.unknown"},
    // The general table, its punctuation, gaps and the end of it.
    {"keyboard", 1, "Esc", "key.esc"}, {"keyboard", 40, "'", "key.apostrophe"},
    {"keyboard", 43, "\\", "key.backslash"}, {"keyboard", 58, "Caps", "key.caps"},
    {"keyboard", 84, "", "key.unknown"}, {"keyboard", 122, "Hangeul", "key.hangeul"},
    {"keyboard", 256, "", nullptr},
    // The arrow block overrides both tables, the extended 329 and 335 included.
    {"keyboard", 328, "Direction_up", "key.direction_up"}, {"keyboard", 329, "", "key.unknown"},
    {"keyboard", 335, "", nullptr}, {"keyboard", 336, "Direction_down", nullptr},
    {"keyboard", 340, "", nullptr}, {"keyboard", -1, "", "key.unknown"},
    {"keyboard", 2147483647, "", "key.unknown"},
    // Mouse buttons: single bits, then shared codes keep their first name.
    {"mouse", 0, "", "btn.unknown"}, {"mouse", 1, "left_mouse", nullptr},
    {"mouse", 3, "", nullptr}, {"mouse", 16, "forward_mouse", nullptr},
    {"mouse", 256, "Misc", "btn.misc"}, {"mouse", 273, "", nullptr},
    {"mouse", 288, "Joystick", "btn.joystick"}, {"mouse", 304, "Gamepad", "btn.gamepad"},
    {"mouse", 320, "Digi", "btn.digi"}, {"mouse", 336, "Wheel", "btn.wheel"},
    {"mouse", 549, "wheel_down_mouse", nullptr}, {"mouse", 550, "", "btn.unknown"},
    // Devices without captions; names are compared exactly.
    {"pen", 30, "", ""}, {"Keyboard", 30, "", ""}, {"joystick", 1, "", ""},
};
// clang-format on

TEST(KeyCaption, BuiltKeysCarryTheTableCaption) {
    for (const auto& c : kCaptions) {
        const km::ConfigKey key = km::CreateConfigKey(c.device, 7, c.code);
        EXPECT_EQ(key.text, c.caption) << c.device << " " << c.code;
        EXPECT_EQ(key.scan_code, c.code) << c.device << " " << c.code;
        if (c.label) {
            EXPECT_EQ(labels::LabelKey(c.device, c.code), c.label) << c.device << " " << c.code;
        }
    }
}

TEST(KeyCaption, RightHandModifiersFoldButTheCaptionFollowsTheCallersCode) {
    const struct {
        const char* device;
        int code, folded;
        const char* built;       // CreateConfigKey: caption of the code as given
        const char* recomputed;  // SetTextForConfigKey: caption of the folded code
    } cases[] = {
        {"keyboard", 312, 56, "", "Alt"},
        {"keyboard", 54, 42, "Rightshift", "Shift"},
        {"keyboard", 310, 310, "", ""},
        {"mouse", 312, 56, "Tl2", ""},  // folding looks at the code alone
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

TEST(KeyCaption, EveryCaptionLeadsBackToTheLowestCodeWithThatCaption) {
    for (const char* device : {"keyboard", "mouse"}) {
        for (int code = -1; code <= 600; ++code) {
            const std::string caption = labels::Caption(device, code);
            if (!caption.empty()) {
                const int back = labels::CodeOf(device, caption);
                EXPECT_LE(back, code) << device << " " << caption;
                EXPECT_EQ(labels::Caption(device, back), caption) << device << " " << code;
            }
        }
    }
    // Captions are compared exactly, per device.
    const std::pair<const char*, const char*> unknown[] = {
        {"keyboard", "left_mouse"}, {"keyboard", "esc"}, {"keyboard", "Unknown"},
        {"keyboard", ""},           {"mouse", ""},       {"joystick", "A"},
    };
    for (const auto& [device, caption] : unknown) {
        EXPECT_EQ(labels::CodeOf(device, caption), -1) << device << " " << caption;
    }
}

}  // namespace
