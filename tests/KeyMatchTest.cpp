// Which incoming keys trigger an item: single keys, combinations, pairs of
// opposite inputs, and the document-wide collision question.

#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <vector>

#include "tests/ItemFormatSupport.h"

namespace {

using namespace testsupport;

km::ConfigKey kb(int scanCode, int virtualKey = 65, const char* text = "") {
    return {"keyboard", text, virtualKey, scanCode};
}
km::ConfigKey mouse(int code) {
    return {"mouse", "", 0, code};
}
km::ConfigKey pad(const char* name, int code = km::kUnsetKeyCode) {
    return {"joystick", name, code, code};
}
const km::ConfigKey kNone;

TEST(KeyMatch, ASecondKeyTurnsAComposableItemIntoACombination) {
    const struct {
        const char* what;
        km::ConfigKey second;
        bool written, single, withB, withNone;  // single: A alone; withB/withNone: A with B/none
    } cases[] = {
        {"no second key", kNone, false, true, false, true},
        {"second key without virtual key", kb(48, km::kUnsetKeyCode), false, true, true, false},
        {"keyboard second key", kb(48), true, false, true, false},
        {"gamepad second key", pad("LB"), true, false, false, false},
    };
    for (const auto& c : cases) {
        km::ComposableConfigItem item("Click");
        item.key = kb(30);
        item.second_key = c.second;
        EXPECT_EQ(itemJson(item)->has("second_key"), c.written) << c.what;
        EXPECT_EQ(item.MatchConfigKey(kb(30)), c.single) << c.what;
        EXPECT_EQ(item.MatchComposableConfigKey(kb(30), kb(48)), c.withB) << c.what;
        EXPECT_EQ(item.MatchComposableConfigKey(kb(30), kNone), c.withNone) << c.what;
        EXPECT_FALSE(item.MatchComposableConfigKey(kb(31), c.second)) << c.what;
    }
}

TEST(KeyMatch, PairsReportWhichSideMatchedAndResetOnAMiss) {
    using Pair = km::PairConfigItem;
    constexpr int kPos = Pair::kPositive, kNeg = Pair::kNegative, kNo = Pair::kNoDirection;
    constexpr std::nullopt_t kAlone = std::nullopt;  // a single-key match
    const struct {
        const char* what;
        km::ComposableKey positive, negative;
        km::ConfigKey a;
        std::optional<km::ConfigKey> b;
        int direction;
    } cases[] = {
        {"same key on both sides", {kb(17), kNone}, {kb(17), kNone}, kb(17), kAlone, kPos},
        {"negative side", {kb(17), kNone}, {kb(31), kNone}, kb(31), kAlone, kNeg},
        {"positive needs its second key", {kb(17), kb(42)}, {kb(17), kNone}, kb(17), kAlone, kNeg},
        {"positive combination", {kb(17), kb(42)}, {kb(17), kNone}, kb(17), kb(42), kPos},
        {"negative combination", {kb(17), kNone}, {kb(17), kb(29)}, kb(17), kb(29), kNeg},
        {"both combinations match", {kb(17), kb(29)}, {kb(17), kb(29)}, kb(17), kb(29), kPos},
        {"key without its second", {kb(17), kb(29)}, {kb(31), kb(29)}, kb(17), kAlone, kNo},
        {"all keys unset", {}, {}, kb(17), kAlone, kNo},
        {"exact device names",
         {{"Keyboard", "", 65, 17}, kNone},
         {kb(17), kNone},
         kb(17),
         kAlone,
         kNeg},
        {"gamepad sides", {pad("LT"), kNone}, {pad("RT"), kNone}, pad("RT", 5), kAlone, kNeg},
    };
    for (const auto& c : cases) {
        Pair pair("Wheel");
        pair.positive_key = c.positive;
        pair.negative_key = c.negative;
        EXPECT_FALSE(pair.IsInvalid()) << c.what;
        for (const bool alone : {true, false}) {
            const bool matched =
                c.b ? pair.MatchComposableConfigKey(c.a, *c.b) : pair.MatchConfigKey(c.a);
            EXPECT_EQ(matched, c.direction != kNo) << c.what;
            EXPECT_EQ(pair.matched_direction, c.direction) << c.what;
            // A failed match of either kind clears the direction again.
            EXPECT_FALSE(alone ? pair.MatchConfigKey(mouse(999))
                               : pair.MatchComposableConfigKey(mouse(999), kNone))
                << c.what;
            EXPECT_EQ(pair.matched_direction, kNo) << c.what;
        }
    }
}

TEST(KeyMatch, PairsWriteSecondKeysOnlyInsideTheirSides) {
    km::PairConfigItem pair("Zoom");
    pair.second_key = kb(42);  // not used by a pair, and not written
    pair.positive_key = {kb(17), kb(29)};
    pair.negative_key = {kb(31), kNone};
    const Poco::JSON::Object::Ptr json = itemJson(pair);
    EXPECT_FALSE(json->has("second_key"));
    EXPECT_FALSE(json->getObject("negative_key")->has("second_key"));
    // A full item with a second key in one side survives a reload; inside a
    // side the first key is required.
    const Poco::JSON::Object::Ptr full =
        mutatedItem("Zoom", R"({"positive_key": )" + text(json->get("positive_key")) + "}");
    expectRoundTrip(full);
    expectMemberRule("Zoom", full, "negative_key/key", kRequired);
}

km::ConfigItem* click(km::ConfigKey key, km::ConfigKey second = {}) {
    auto* item = new km::ComposableConfigItem("Click");
    item->key = key;
    item->second_key = second;
    return item;
}
km::ConfigItem* fire(km::ConfigKey key) {
    auto* item = new km::ConfigItem("Fire");
    item->key = key;
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
    const struct {
        const char* what;
        std::vector<km::ConfigItem*> items;   // handed to the document, which owns them
        std::optional<km::ConfigKey> second;  // asked with kb(30) first
        bool matches;
    } cases[] = {
        {"empty document", {}, kNone, false},
        {"single-key item", {click(kb(30))}, kNone, true},
        {"single-key item, null second key", {click(kb(30))}, kNull, true},
        {"single-key item asked with a combination", {click(kb(30))}, kb(42), false},
        {"combination item, other second key", {click(kb(30), kb(42))}, kb(29), false},
        {"combination item, its second key", {click(kb(30), kb(42))}, kb(42), true},
        {"combination item, first key alone", {click(kb(30), kb(42))}, kNone, false},
        {"plain item ignores the second key", {click(kb(31)), fire(kb(30))}, kb(42), true},
        {"null entry skipped", {nullptr, click(kb(30)), fire(kb(31))}, kNone, true},
        {"no item has the key", {click(kb(31)), fire(mouse(30))}, kNone, false},
        {"pair side", {wheel(kb(17), kb(30))}, kNone, true},
    };
    for (const auto& c : cases) {
        km::KeymapConfig config;
        config.items = c.items;
        km::ConfigKey first = kb(30);
        std::optional<km::ConfigKey> second = c.second;
        EXPECT_EQ(km::isConfigKeyMatch(&config, &first, second ? &*second : nullptr), c.matches)
            << c.what;
    }
}

TEST(KeyMatch, DocumentAsksEveryItemEvenAfterAMatch) {
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
