// Where items keep their keys and points, and moving an item as a whole.

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

// The JSON member at a dotted path, or empty when there is none.
Poco::Dynamic::Var memberAt(const Poco::JSON::Object::Ptr& root, const std::string& path) {
    Poco::JSON::Object::Ptr at = root;
    std::size_t from = 0;
    for (;;) {
        const std::size_t dot = path.find('.', from);
        const std::string name = path.substr(from, dot == std::string::npos ? dot : dot - from);
        if (at.isNull() || !at->has(name)) {
            return {};
        }
        if (dot == std::string::npos) {
            return at->get(name);
        }
        at = at->getObject(name);
        from = dot + 1;
    }
}

std::vector<std::unique_ptr<km::ConfigItem>> everyType() {
    std::vector<std::unique_ptr<km::ConfigItem>> items;
    for (const std::string_view type : km::kDocumentItemTypeNames) {
        items.emplace_back(km::CreateConfigItem(std::string(type)));
    }
    return items;
}

TEST(ItemLayout, EverySlotIsTheMemberItsPathNames) {
    for (const auto& item : everyType()) {
        SCOPED_TRACE(item->type);
        const auto& keys = km::KeySlotsOf(*item);
        for (std::size_t k = 0; k < keys.size(); ++k) {
            // A joystick key is set by its name alone, so each slot gets its own.
            keys[k].in(*item) = km::ConfigKey("joystick", "slot" + std::to_string(k), 1, 2);
        }
        const auto& points = km::PointSlotsOf(*item);
        for (std::size_t k = 0; k < points.size(); ++k) {
            if (!points[k].isText) {
                *points[k].point(*item) = {0.125 * static_cast<double>(k + 1), 0.0625};
            }
        }
        if (auto* spell = dynamic_cast<km::SpellConfigItem*>(item.get())) {
            spell->tap_info = {spell->tap_info.rel_center_pos, 0.5, 0.5,
                               "1"};  // written when whole
        }
        const Poco::JSON::Object::Ptr json = itemJson(*item);
        for (std::size_t k = 0; k < keys.size(); ++k) {
            const Poco::Dynamic::Var written = memberAt(json, keys[k].path);
            ASSERT_FALSE(written.isEmpty()) << keys[k].path;
            EXPECT_EQ(written.extract<Poco::JSON::Object::Ptr>()->getValue<std::string>("text"),
                      "slot" + std::to_string(k))
                << keys[k].path;
            EXPECT_TRUE(keys[k].second < 0 ||
                        keys[static_cast<std::size_t>(keys[k].second)].role ==
                            (keys[k].role == km::KeyRole::Key ? km::KeyRole::SecondKey
                                                              : km::KeyRole::PairSecondKey))
                << keys[k].path;
        }
        for (std::size_t k = 0; k < points.size(); ++k) {
            const Poco::Dynamic::Var written = memberAt(json, points[k].path);
            ASSERT_FALSE(written.isEmpty()) << points[k].path;
            if (!points[k].isText) {
                EXPECT_EQ(written.extract<Poco::JSON::Object::Ptr>()->getValue<double>("rel_x"),
                          0.125 * static_cast<double>(k + 1))
                    << points[k].path;
            }
        }
        // A size is a member of the item, centred on one of its points.
        for (const km::SizeSlot& size : km::SizeSlotsOf(*item)) {
            EXPECT_FALSE(memberAt(json, size.path).isEmpty()) << size.path;
            EXPECT_TRUE(size.centre.empty() ||
                        std::any_of(points.begin(), points.end(),
                                    [&](const km::PointSlot& p) { return p.path == size.centre; }))
                << size.path;
        }
        // Every key that fires the item is one its match rules answer to.
        for (const km::KeyTrigger& trigger : km::KeyTriggersOf(*item)) {
            EXPECT_TRUE(km::TriggerFires(*item, trigger)) << trigger.role;
        }
    }
}

TEST(ItemLayout, SlotsFollowTheClassThatBringsThem) {
    const struct {
        const char* type;
        std::vector<std::string> firing;
    } cases[] = {
        {"Click", {"key"}},
        {"Fire", {"key"}},
        {"Swipehold", {"top_key", "right_key", "bottom_key", "left_key"}},
        {"Eye", {"top_key", "right_key", "bottom_key", "left_key"}},
        {"Zoom", {"positive_key.key", "negative_key.key"}},
    };
    for (const auto& c : cases) {
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(c.type));
        std::vector<std::string> firing;
        for (const km::KeySlot& slot : km::KeySlotsOf(*item)) {
            if (slot.fires()) {
                firing.emplace_back(slot.path);
            }
        }
        EXPECT_EQ(firing, c.firing) << c.type;
    }
}

TEST(ItemLayout, SizesAreCentredOnThePointOfTheirBlock) {
    // path, name, centre, area, zero means something
    using Size = std::tuple<std::string, std::string, std::string, bool, bool>;
    const std::map<std::string, std::vector<Size>> cases = {
        {"Click", {}},
        {"Swipehold", {{"rel_radius", "drag radius", "", false, false}}},
        {"Spell",
         {{"spell_info.rel_radius", "range", "spell_info.rel_position", false, false},
          {"swipehold_info.rel_radius", "drag radius", "swipehold_info.rel_position", false,
           false}}},
        {"Staring", {{"staring_range", "look area", "", true, false}}},
        {"RightWalk", {{"first_move_policy.rel_radius", "first move radius", "", false, true}}},
    };
    for (const auto& [type, expected] : cases) {
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
        std::vector<Size> sizes;
        for (const km::SizeSlot& size : km::SizeSlotsOf(*item)) {
            sizes.emplace_back(size.path, size.name, size.centre, size.isArea, size.zeroMeans);
        }
        EXPECT_EQ(sizes, expected) << type;
    }
}

TEST(MoveItem, MovesThePointsThatGoWithTheItemAndKeepsItsShape) {
    km::SpellConfigItem spell;
    spell.rel_work_position = spell.icon.rel_position = {0.5, 0.5};
    spell.spell_info.rel_position = {0.75, 0.5};
    km::FireConfigItem fire;
    fire.rel_work_position = {0.5, 0.5};
    fire.swipehold_info.rel_position = {0.25, 0.25};
    km::MouseRightWalkConfigItem walk;
    walk.rel_work_position = {0.25, 0.25};
    km::CurveConfigItem curve;
    curve.rel_start_pos = {0.25, 0.25};
    curve.rel_end_pos = {0.5, 0.5};
    curve.rel_all_points_pos = "(0.3,0.3);(0.4,0.45)";

    EXPECT_EQ(km::MoveItem(spell, 0.125, -0.25), km::PointF(0.125, -0.25));
    EXPECT_EQ(spell.icon.rel_position, km::PointF(0.625, 0.25));
    EXPECT_EQ(spell.spell_info.rel_position, km::PointF(0.875, 0.25));
    EXPECT_TRUE(spell.swipehold_info.rel_position.isNull()) << "an unset drag centre follows";
    EXPECT_TRUE(spell.tap_info.rel_center_pos.isNull()) << "an unset tap stays unset";

    km::MoveItem(fire, 0.125, 0.125);
    EXPECT_EQ(fire.swipehold_info.rel_position, km::PointF(0.375, 0.375));

    km::MoveItem(walk, 0.25, 0.25);
    EXPECT_EQ(walk.rel_measurement_pos, km::PointF(0.5, 0.5)) << "the screen's point stays";

    // Only as far as the last point on the screen can go: the curve's end.
    EXPECT_EQ(km::MoveItem(curve, 0.75, 0.0), km::PointF(0.5, 0.0));
    EXPECT_EQ(curve.rel_start_pos, km::PointF(0.75, 0.25));
    EXPECT_EQ(curve.rel_end_pos, km::PointF(1.0, 0.5));
    EXPECT_EQ(curve.rel_all_points_pos, "(0.8,0.3);(0.9,0.45)");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(km::MoveItem(curve, nan, INFINITY), km::PointF());
}

TEST(MoveItem, PlacingAFreshItemPutsItsPointsTogether) {
    km::SpellConfigItem spell;
    km::PlaceItem(spell, {0.25, 0.75});
    for (const km::PointF& point :
         {spell.icon.rel_position, spell.rel_work_position, spell.spell_info.rel_position}) {
        EXPECT_EQ(point, km::PointF(0.25, 0.75));
    }
    EXPECT_TRUE(spell.swipehold_info.rel_position.isNull());
    // Placed once, it moves as a whole.
    km::PlaceItem(spell, {0.5, 0.5});
    EXPECT_EQ(spell.spell_info.rel_position, km::PointF(0.5, 0.5));
}

TEST(MoveItem, PointTextsKeepEverythingButTheirNumbers) {
    const struct {
        const char* text;
        const char* moved;
        std::size_t points;
    } cases[] = {
        {"", "", 0},
        {"(0.2,0.3);(0.4,0.5)", "(0.3,0.2);(0.5,0.4)", 2},
        {"0.2 0.3 0.4", "0.3 0.2 0.5", 1},
        {"x-,.;(1e-1,-0.5)", "x-,.;(0.2,-0.6)", 1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(km::MovePointText(c.text, 0.1, -0.1), c.moved) << c.text;
        EXPECT_EQ(km::PointsOfText(c.text, 100).size(), c.points) << c.text;
    }
    EXPECT_EQ(km::PointsOfText("(0,0);(1,1);(2,2)", 2).size(), 2u);
}

}  // namespace
