// Every item type, through the factory, the class tree and a whole document.

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

enum class Base { Composable, Pair, Diamond, Plain };

struct TypeCase {
    const char* type;
    Base base;
};

const TypeCase kTypes[] = {
    {"Click", Base::Composable},
    {"BunchClick", Base::Composable},
    {"Swipehold", Base::Diamond},
    {"Fire", Base::Plain},
    {"Staring", Base::Composable},
    {"Spell", Base::Composable},
    {"SpellCancel", Base::Composable},
    {"RightWalk", Base::Plain},
    {"Eye", Base::Diamond},
    {"Gravity", Base::Diamond},
    {"Macro", Base::Composable},
    {"Curve", Base::Composable},
    {"LeftStickWalk", Base::Plain},
    {"RightStickEye", Base::Plain},
    {"Wheel", Base::Pair},
    {"Zoom", Base::Pair},
    {"Observe", Base::Composable},
    {"Tip", Base::Composable},
};

TEST(AllItemTypes, FactoryMakesEveryNamedTypeInItsPlaceOfTheClassTree) {
    ASSERT_EQ(std::size(kTypes) + 1, km::kItemTypeNames.size());
    for (std::size_t i = 1; i < km::kItemTypeNames.size(); ++i) {
        const std::string name(km::kItemTypeNames[i]);
        const TypeCase& expected = kTypes[i - 1];
        ASSERT_EQ(name, expected.type);
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(name));
        ASSERT_NE(item, nullptr) << name;
        EXPECT_EQ(item->type, name);

        const bool composable = dynamic_cast<km::ComposableConfigItem*>(item.get()) != nullptr;
        const bool pair = dynamic_cast<km::PairConfigItem*>(item.get()) != nullptr;
        const bool diamond = dynamic_cast<km::DiamondConfigItem*>(item.get()) != nullptr;
        EXPECT_EQ(composable, expected.base == Base::Composable || expected.base == Base::Pair)
            << name;
        EXPECT_EQ(pair, expected.base == Base::Pair) << name;
        EXPECT_EQ(diamond, expected.base == Base::Diamond) << name;
        // A fresh pair item is never invalid; other fresh items are invalid
        // exactly when they come without a key of their own.
        if (pair) {
            EXPECT_FALSE(item->IsInvalid()) << name;
        }
    }
}

TEST(AllItemTypes, FreshItemsReadBackTheirOwnJson) {
    for (const TypeCase& c : kTypes) {
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(c.type));
        std::unique_ptr<km::ConfigItem> copy(km::ConfigFactory::ProduceConfigItem(itemJson(*item)));
        ASSERT_NE(copy, nullptr) << c.type;
        EXPECT_EQ(stringify(copy->ConvertToJsonObject()), stringify(item->ConvertToJsonObject()))
            << c.type;
    }
}

TEST(AllItemTypes, DocumentWithEveryTypeSavesTheSameTextAfterAReload) {
    CallbackRecorder recorder;
    std::string items;
    for (const TypeCase& c : kTypes) {
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(c.type));
        item->key = km::CreateConfigKey("keyboard", 65, 30);
        item->rel_work_position = {0.125, 0.875};
        items += (items.empty() ? "" : ",") + stringify(item->ConvertToJsonObject());
    }
    DocPtr first = loadText(documentWith(items));
    ASSERT_EQ(first->items.size(), std::size(kTypes));
    for (std::size_t i = 0; i < std::size(kTypes); ++i) {
        EXPECT_EQ(first->items[i]->type, kTypes[i].type);
    }
    const std::string saved = saveText(first.get());
    DocPtr second = loadText(saved);
    EXPECT_EQ(saveText(second.get()), saved);
    EXPECT_TRUE(recorder.take().empty());

    // Every item but the pairs answers to the key it was given; the pairs keep their own.
    km::ConfigKey a = km::CreateConfigKey("keyboard", 65, 30);
    km::ConfigKey none;
    EXPECT_TRUE(km::isConfigKeyMatch(second.get(), &a, &none));
}

}  // namespace
