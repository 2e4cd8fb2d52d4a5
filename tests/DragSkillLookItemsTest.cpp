// Behaviour of the drag, skill and look items beyond their JSON form: which
// direction keys make an item usable, which keys trigger it, and the drag
// item a skill item hands out.

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>

#include "tests/ItemFormatSupport.h"

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
        {"left key beside an unusable one", kScanOnly, kNone, kNone, kKeyA, false},
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
    // A null drag position hands out the item's own place as the valid centre.
    const struct {
        const char* name;
        km::PointF c[2];
    } cases[] = {{"null drag position", {{0.0, 0.0}, {0.3, 0.7}}},
                 {"drag position of its own", {{0.6, 0.2}, {0.6, 0.2}}}};
    for (const auto& [name, c] : cases) {
        SCOPED_TRACE(name);
        km::SpellConfigItem spell;
        const Poco::JSON::Object::Ptr source = mutatedItem("Spell");
        spell.FillFromJsonObject(source);
        spell.rel_work_position = {0.3, 0.7};
        spell.swipehold_info.rel_position = c[0];
        const Poco::JSON::Object::Ptr drag = source->getObject("swipehold_info");
        std::unique_ptr<km::SwipeholdConfigItem> raw(spell.getRawSwipeholdConfigItem());
        std::unique_ptr<km::SwipeholdConfigItem> valid(spell.getValidSwipeholdConfigItem());
        ASSERT_TRUE(raw && valid);
        EXPECT_EQ(raw->rel_work_position, c[0]);
        EXPECT_EQ(valid->rel_work_position, c[1]);
        for (const km::SwipeholdConfigItem* item : {raw.get(), valid.get()}) {
            const Poco::JSON::Object::Ptr json = itemJson(*item);
            EXPECT_EQ(item->type, "Swipehold");
            for (const char* name : {"first_point_policy", "subsequent_point_policy", "rel_radius",
                                     "hold_center_interval_after_release", "in_line_policy",
                                     "target_point_input_compensatory_policy"}) {
                EXPECT_EQ(text(json->get(name)), text(drag->get(name))) << name;
            }
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
    for (const auto& [tap, written] : cases) {
        km::SpellConfigItem spell;
        spell.tap_info = tap;
        EXPECT_EQ(itemJson(spell)->has("tap_info"), written) << tap.seq;
    }
}

}  // namespace
