// Behaviour of the drag, skill and look items beyond their JSON form: which
// direction keys make an item usable, which keys trigger it, and the drag
// item a skill item hands out.

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
using km::ConfigKey;

const ConfigKey kNone;
const ConfigKey kKeyW("keyboard", "W", 87, 17);
const ConfigKey kKeyA("keyboard", "A", 65, 30);
const ConfigKey kPadLB("joystick", "LB", km::kUnsetKeyCode, km::kUnsetKeyCode);
const ConfigKey kPadNoName("joystick", "", km::kUnsetKeyCode, km::kUnsetKeyCode);
const ConfigKey kScanOnly("keyboard", "W", km::kUnsetKeyCode, 17);

TEST(DirectionItems, ValidityAndMatchingFollowTheFourDirectionKeys) {
    const struct {
        const char* what;
        ConfigKey top, right, bottom, left;
        bool invalid;
    } cases[] = {
        {"no key", kNone, kNone, kNone, kNone, true},
        {"only a named pad key", kNone, kPadLB, kNone, kNone, false},
        {"only an unnamed pad key", kNone, kPadNoName, kNone, kNone, true},
        {"only a key without virtual key", kScanOnly, kNone, kNone, kNone, true},
        {"only the left key", kScanOnly, kNone, kNone, kKeyA, false},
        {"only the bottom key", kNone, kNone, kKeyW, kNone, false},
    };
    for (const char* type : {"Swipehold", "Eye", "Gravity"}) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(type) + ": " + c.what);
            std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
            auto* diamond = dynamic_cast<km::DiamondConfigItem*>(item.get());
            ASSERT_NE(diamond, nullptr);
            EXPECT_FALSE(item->IsInvalid()) << "fresh items come with usable keys";
            diamond->top = c.top;
            diamond->right = c.right;
            diamond->bottom = c.bottom;
            diamond->left = c.left;
            item->key = kKeyW;  // the item's own key never counts
            EXPECT_EQ(item->IsInvalid(), c.invalid);
            for (const ConfigKey* direction : {&c.top, &c.right, &c.bottom, &c.left}) {
                if (!direction->device.empty()) {
                    EXPECT_TRUE(item->MatchConfigKey(*direction)) << direction->text;
                }
            }
            const bool wUsed = c.top.Match(kKeyW) || c.bottom.Match(kKeyW);
            EXPECT_EQ(item->MatchConfigKey(kKeyW), wUsed);
        }
    }
}

TEST(SpellItem, HandsOutItsDragSettingsAsADragItem) {
    const struct {
        const char* what;
        km::PointF dragPosition;
        km::PointF expectedCentre;
    } cases[] = {
        {"null drag position", {0.0, 0.0}, {0.3, 0.7}},
        {"own drag position", {0.6, 0.2}, {0.6, 0.2}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        km::SpellConfigItem spell;
        spell.rel_work_position = {0.3, 0.7};
        spell.swipehold_info.rel_position = c.dragPosition;
        spell.swipehold_info.rel_radius = 0.25;
        spell.swipehold_info.interval = 99;  // the drag item's own timing is separate
        spell.swipehold_info.first_point_policy.speed = 7;
        spell.swipehold_info.subsequent_point_policy.handle_type = "Transparent";
        spell.swipehold_info.hold_center_interval_after_release = 5;
        spell.swipehold_info.in_line_policy = "Just_Use_Last";
        spell.swipehold_info.target_point_input_compensatory_policy.x_policy = "Tan";

        std::unique_ptr<km::SwipeholdConfigItem> raw(spell.getRawSwipeholdConfigItem());
        std::unique_ptr<km::SwipeholdConfigItem> valid(spell.getValidSwipeholdConfigItem());
        ASSERT_TRUE(raw && valid);
        EXPECT_EQ(raw->rel_work_position, c.dragPosition);
        EXPECT_EQ(valid->rel_work_position, c.expectedCentre);
        for (const km::SwipeholdConfigItem* item : {raw.get(), valid.get()}) {
            EXPECT_EQ(item->type, "Swipehold");
            EXPECT_EQ(item->rel_radius, 0.25);
            EXPECT_EQ(item->first_point_policy.speed, 7);
            EXPECT_EQ(item->first_point_policy.interval, 32);
            EXPECT_EQ(item->subsequent_point_policy.handle_type, "Transparent");
            EXPECT_EQ(item->hold_center_interval_after_release, 5);
            EXPECT_EQ(item->in_line_policy, "Just_Use_Last");
            EXPECT_EQ(item->target_point_input_compensatory_policy.x_policy, "Tan");
            EXPECT_TRUE(item->left.Match(kKeyA));
        }
    }
}

TEST(SpellItem, WritesTapInfoOnlyWhenComplete) {
    const std::pair<km::TapInfo, bool> cases[] = {
        {{{0.0, 0.4}, 1.5, 0.5, "1,2"}, true},  {{{0.0, 0.0}, 1.5, 0.5, "1,2"}, false},
        {{{0.0, 0.4}, 0.0, 0.5, "1,2"}, false}, {{{0.0, 0.4}, 1.5, 0.0, "1,2"}, false},
        {{{0.0, 0.4}, 1.5, 0.5, ""}, false},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        km::SpellConfigItem spell;
        spell.tap_info = cases[i].first;
        EXPECT_EQ(itemJson(spell)->has("tap_info"), cases[i].second) << "case " << i;
    }
}

}  // namespace
