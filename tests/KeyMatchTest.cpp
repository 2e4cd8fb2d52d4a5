// Which incoming keys trigger an item: single keys, combinations, pairs of
// opposite inputs, and the document-wide collision question.

#include <gtest/gtest.h>

#include <optional>

#include <Poco/Exception.h>

#include "tests/TestSupport.h"

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

TEST(KeyMatch, SingleKeysCompareDeviceAndCodeOrGamepadName) {
    const struct {
        km::ConfigKey own;
        km::ConfigKey incoming;
        bool matches;
    } cases[] = {
        {pad("LB", 1), pad("LB", 2), true},
        {pad("LB"), pad("RB"), false},
        {pad("A", 30), kb(30, 65, "A"), false},
        {kb(30, 65, "A"), kb(30, 1, "Q"), true},
        {kb(30), kb(31), false},
        {kb(30), mouse(30), false},
        {mouse(1), mouse(1), true},
        {kb(30), {"Keyboard", "", 65, 30}, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.own.Match(c.incoming), c.matches)
            << c.own.device << ":" << c.own.text << ":" << c.own.scan_code << " vs "
            << c.incoming.device << ":" << c.incoming.text << ":" << c.incoming.scan_code;
    }
}

TEST(KeyMatch, ASecondKeyTurnsAComposableItemIntoACombination) {
    const struct {
        const char* what;
        km::ConfigKey second;
        bool written;
        bool single;    // MatchConfigKey(A)
        bool withB;     // MatchComposableConfigKey(A, B)
        bool withNone;  // MatchComposableConfigKey(A, no key)
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

TEST(KeyMatch, PairsReportWhichSideMatched) {
    using Pair = km::PairConfigItem;
    constexpr int kPos = Pair::kPositive, kNeg = Pair::kNegative, kNo = Pair::kNoDirection;
    constexpr std::nullopt_t kAlone = std::nullopt;  // a single-key match
    const struct {
        const char* what;
        km::ComposableKey positive;
        km::ComposableKey negative;
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
        {"gamepad sides", {pad("LT"), kNone}, {pad("RT"), kNone}, pad("RT", 5), kAlone, kNeg},
    };
    for (const auto& c : cases) {
        Pair pair("Wheel");
        pair.positive_key = c.positive;
        pair.negative_key = c.negative;
        EXPECT_FALSE(pair.IsInvalid()) << c.what;
        for (int round = 0; round < 2; ++round) {
            const bool matched =
                c.b ? pair.MatchComposableConfigKey(c.a, *c.b) : pair.MatchConfigKey(c.a);
            EXPECT_EQ(matched, c.direction != kNo) << c.what;
            EXPECT_EQ(pair.matched_direction, c.direction) << c.what;
            // A failed match in between clears the direction again.
            EXPECT_FALSE(pair.MatchConfigKey(mouse(999))) << c.what;
            EXPECT_EQ(pair.matched_direction, kNo) << c.what;
        }
    }
}

TEST(KeyMatch, PairsWriteTheirSidesAndReadThemBack) {
    km::PairConfigItem pair("Zoom");
    pair.second_key = kb(42);  // not used by a pair, and not written
    pair.positive_key = {kb(17), kb(29)};
    pair.negative_key = {kb(31), kNone};
    const Poco::JSON::Object::Ptr json = itemJson(pair);
    EXPECT_FALSE(json->has("second_key"));
    EXPECT_TRUE(json->getObject("positive_key")->has("second_key"));
    EXPECT_FALSE(json->getObject("negative_key")->has("second_key"));

    km::PairConfigItem back("Zoom");
    back.FillFromJsonObject(json);
    EXPECT_EQ(back.positive_key.second_key.scan_code, 29);
    EXPECT_EQ(back.negative_key.key.scan_code, 31);
    EXPECT_FALSE(back.negative_key.second_key.isSet());
    EXPECT_FALSE(back.second_key.isSet());

    // Inside a side, the first key is required.
    json->getObject("negative_key")->remove("key");
    EXPECT_THROW(km::PairConfigItem("Zoom").FillFromJsonObject(json), Poco::NullPointerException);
}

// A document built in memory: the keys are what matters here.
struct Doc {
    km::KeymapConfig config;
    Doc& composable(km::ConfigKey key, km::ConfigKey second = {}) {
        auto* item = new km::ComposableConfigItem("Click");
        item->key = key;
        item->second_key = second;
        config.items.push_back(item);
        return *this;
    }
    Doc& plain(km::ConfigKey key) {
        auto* item = new km::ConfigItem("Fire");
        item->key = key;
        config.items.push_back(item);
        return *this;
    }
    Doc& pair(km::ConfigKey positive, km::ConfigKey negative) {
        auto* item = new km::PairConfigItem("Wheel");
        item->positive_key.key = positive;
        item->negative_key.key = negative;
        config.items.push_back(item);
        return *this;
    }
    Doc& null() {
        config.items.push_back(nullptr);
        return *this;
    }
};

TEST(KeyMatch, DocumentAnswersWhetherAnyItemFires) {
    const std::optional<km::ConfigKey> kNull;  // passed as a null pointer
    const struct {
        const char* what;
        void (*fill)(Doc&);
        km::ConfigKey first;
        std::optional<km::ConfigKey> second;
        bool matches;
    } cases[] = {
        {"empty document", [](Doc&) {}, kb(30), kNone, false},
        {"single-key item", [](Doc& d) { d.composable(kb(30)); }, kb(30), kNone, true},
        {"single-key item, null second key", [](Doc& d) { d.composable(kb(30)); }, kb(30), kNull,
         true},
        {"single-key item asked with a combination", [](Doc& d) { d.composable(kb(30)); }, kb(30),
         kb(42), false},
        {"combination item, other second key", [](Doc& d) { d.composable(kb(30), kb(42)); }, kb(30),
         kb(29), false},
        {"combination item, its second key", [](Doc& d) { d.composable(kb(30), kb(42)); }, kb(30),
         kb(42), true},
        {"combination item asked with its first key alone",
         [](Doc& d) { d.composable(kb(30), kb(42)); }, kb(30), kNone, false},
        {"plain item ignores the second key", [](Doc& d) { d.composable(kb(31)).plain(kb(30)); },
         kb(30), kb(42), true},
        {"plain item after a matching one",
         [](Doc& d) { d.null().composable(kb(30)).plain(kb(31)); }, kb(30), kNone, true},
        {"no item has the key", [](Doc& d) { d.composable(kb(31)).plain(mouse(30)); }, kb(30),
         kNone, false},
        {"pair side", [](Doc& d) { d.pair(kb(17), kb(31)); }, kb(31), kNone, true},
    };
    for (const auto& c : cases) {
        Doc doc;
        c.fill(doc);
        km::ConfigKey first = c.first;
        std::optional<km::ConfigKey> second = c.second;
        EXPECT_EQ(km::isConfigKeyMatch(&doc.config, &first, second ? &*second : nullptr), c.matches)
            << c.what;
    }
}

TEST(KeyMatch, DocumentAsksEveryItemEvenAfterAMatch) {
    Doc doc;
    doc.pair(kb(17), kb(31)).pair(kb(31), kb(17)).pair(kb(1), kb(2));
    auto* last = static_cast<km::PairConfigItem*>(doc.config.items[2]);
    last->matched_direction = km::PairConfigItem::kPositive;
    km::ConfigKey first = kb(31);
    km::ConfigKey second;
    EXPECT_TRUE(doc.config.isConfigKeyMatch(&first, &second));
    EXPECT_EQ(static_cast<km::PairConfigItem*>(doc.config.items[0])->matched_direction,
              km::PairConfigItem::kNegative);
    EXPECT_EQ(static_cast<km::PairConfigItem*>(doc.config.items[1])->matched_direction,
              km::PairConfigItem::kPositive);
    EXPECT_EQ(last->matched_direction, km::PairConfigItem::kNoDirection);
}

}  // namespace
