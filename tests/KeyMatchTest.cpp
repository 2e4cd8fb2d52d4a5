// Which incoming keys trigger an item: single keys, combinations, pairs of
// opposite inputs, and the document-wide collision question.

#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <vector>

#include "tests/ItemFormatSupport.h"

namespace {

using namespace testsupport;

km::ConfigKey kb(int scanCode, int virtualKey = 65) {
    return {"keyboard", "", virtualKey, scanCode};
}
km::ConfigKey pad(const char* name, int code = km::kUnsetKeyCode) {
    return {"joystick", name, code, code};
}
const km::ConfigKey kNone;
const km::ConfigKey kMiss{"mouse", "", 0, 999};

TEST(KeyMatch, ASecondKeyTurnsAComposableItemIntoACombination) {
    const struct {
        km::ConfigKey second;
        bool written, single, withB, withNone;  // single: A alone; withB/withNone: A with B/none
    } cases[] = {
        {kNone, false, true, false, true},
        {kb(48, km::kUnsetKeyCode), false, true, true, false},
        {kb(48), true, false, true, false},
        {pad("LB"), true, false, false, false},
    };
    for (const auto& c : cases) {
        km::ComposableConfigItem item("Click");
        item.key = kb(30);
        item.second_key = c.second;
        SCOPED_TRACE(c.second.device + std::to_string(c.second.virtual_key));
        EXPECT_EQ(itemJson(item)->has("second_key"), c.written);
        EXPECT_EQ(item.MatchConfigKey(kb(30)), c.single);
        EXPECT_EQ(item.MatchComposableConfigKey(kb(30), kb(48)), c.withB);
        EXPECT_EQ(item.MatchComposableConfigKey(kb(30), kNone), c.withNone);
        EXPECT_FALSE(item.MatchComposableConfigKey(kb(31), c.second));
    }
}

TEST(KeyMatch, PairsReportWhichSideMatchedAndResetOnAMiss) {
    using Pair = km::PairConfigItem;
    constexpr int kPos = Pair::kPositive, kNeg = Pair::kNegative, kNo = Pair::kNoDirection;
    const std::optional<km::ConfigKey> kAlone;  // a single-key match
    const struct {
        km::ComposableKey positive, negative;
        km::ConfigKey a;
        std::optional<km::ConfigKey> b;
        int direction;
    } cases[] = {
        {{kb(17), kNone}, {kb(17), kNone}, kb(17), kAlone, kPos},  // positive wins
        {{kb(17), kNone}, {kb(31), kNone}, kb(31), kAlone, kNeg},
        {{kb(17), kb(42)}, {kb(17), kNone}, kb(17), kAlone, kNeg},
        {{kb(17), kb(42)}, {kb(17), kNone}, kb(17), kb(42), kPos},
        {{kb(17), kNone}, {kb(17), kb(29)}, kb(17), kb(29), kNeg},
        {{kb(17), kb(29)}, {kb(17), kb(29)}, kb(17), kb(29), kPos},  // positive wins
        {{}, {}, kb(17), kAlone, kNo},
        {{kb(17), kb(29)}, {kb(31), kb(29)}, kb(17), kAlone, kNo},
        {{{"Keyboard", "", 65, 17}, kNone}, {kb(17), kNone}, kb(17), kAlone, kNeg},
        {{pad("LT"), kNone}, {pad("RT"), kNone}, pad("RT", 5), kAlone, kNeg},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& c = cases[i];
        Pair pair("Wheel");
        pair.positive_key = c.positive;
        pair.negative_key = c.negative;
        for (const bool alone : {true, false}) {
            const bool matched =
                c.b ? pair.MatchComposableConfigKey(c.a, *c.b) : pair.MatchConfigKey(c.a);
            EXPECT_EQ(matched, c.direction != kNo) << "case " << i;
            EXPECT_EQ(pair.matched_direction, c.direction) << "case " << i;
            // A failed match of either kind clears the direction again.
            EXPECT_FALSE(alone ? pair.MatchConfigKey(kMiss)
                               : pair.MatchComposableConfigKey(kMiss, kNone));
            EXPECT_EQ(pair.matched_direction, kNo) << "case " << i;
        }
    }
}

TEST(KeyMatch, PairsWriteSecondKeysOnlyInsideTheirSides) {
    km::PairConfigItem pair("Zoom");
    pair.second_key = kb(42);  // not used by a pair, and not written
    pair.positive_key = {kb(17), kb(29)};
    const Poco::JSON::Object::Ptr json = itemJson(pair);
    EXPECT_FALSE(json->has("second_key"));
    EXPECT_FALSE(json->getObject("negative_key")->has("second_key"));
    expectRoundTrip(
        mutatedItem("Zoom", R"({"positive_key": )" + text(json->get("positive_key")) + "}"));
}

km::ConfigItem* click(km::ConfigKey key, km::ConfigKey second = {}) {
    auto* item = new km::ComposableConfigItem("Click");
    item->key = key;
    item->second_key = second;
    return item;
}
km::PairConfigItem* wheel(km::ConfigKey positive, km::ConfigKey negative) {
    auto* item = new km::PairConfigItem("Wheel");
    item->positive_key.key = positive;
    item->negative_key.key = negative;
    return item;
}

TEST(KeyMatch, DocumentAnswersWhetherAnyItemFires) {
    const std::optional<km::ConfigKey> kNull;  // passed as a null pointer
    auto* fire = new km::ConfigItem("Fire");
    fire->key = kb(30);
    const struct {
        std::vector<km::ConfigItem*> items;   // handed to the document, which owns them
        std::optional<km::ConfigKey> second;  // asked with kb(30) first
        bool matches;
    } cases[] = {
        {{}, kNone, false},
        {{click(kb(30))}, kNull, true},
        {{click(kb(30))}, kb(42), false},
        {{click(kb(30), kb(42))}, kb(29), false},
        {{click(kb(30), kb(42))}, kb(42), true},
        {{click(kb(30), kb(42))}, kNone, false},
        {{nullptr, click(kb(31)), fire}, kb(42), true},  // a plain item ignores the second key
        {{click(kb(31)), wheel(kb(1), kb(2))}, kNone, false},
        {{wheel(kb(17), kb(30))}, kNone, true},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        km::KeymapConfig config;
        config.items = cases[i].items;
        km::ConfigKey first = kb(30);
        std::optional<km::ConfigKey> second = cases[i].second;
        EXPECT_EQ(km::isConfigKeyMatch(&config, &first, second ? &*second : nullptr),
                  cases[i].matches)
            << "case " << i;
    }
    // Every item is asked even after a match, so each pair's direction is fresh.
    km::PairConfigItem* pairs[] = {wheel(kb(17), kb(31)), wheel(kb(31), kb(17)),
                                   wheel(kb(1), kb(2))};
    km::KeymapConfig config;
    config.items.assign(std::begin(pairs), std::end(pairs));
    pairs[2]->matched_direction = km::PairConfigItem::kPositive;
    km::ConfigKey first = kb(31), second;
    EXPECT_TRUE(config.isConfigKeyMatch(&first, &second));
    EXPECT_EQ(pairs[0]->matched_direction, km::PairConfigItem::kNegative);
    EXPECT_EQ(pairs[1]->matched_direction, km::PairConfigItem::kPositive);
    EXPECT_EQ(pairs[2]->matched_direction, km::PairConfigItem::kNoDirection);
}

}  // namespace
