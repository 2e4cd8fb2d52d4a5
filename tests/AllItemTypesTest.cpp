// Every item type, through the factory, the class tree and a whole document.

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

TEST(AllItemTypes, EveryTypeIsMadeInItsPlaceAndSurvivesADocumentRoundTrip) {
    // The base class of each type, in the order of the type names:
    // C composable, R pair (also composable), D diamond, P plain.
    const std::string bases = "CCDPCCCPDDCCPPRRCC";
    ASSERT_EQ(bases.size() + 1, km::kItemTypeNames.size());
    CallbackRecorder recorder;
    std::string items;
    for (std::size_t i = 1; i < km::kItemTypeNames.size(); ++i) {
        const std::string name(km::kItemTypeNames[i]);
        const char base = bases[i - 1];
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(name));
        ASSERT_NE(item, nullptr) << name;
        EXPECT_EQ(item->type, name);
        const bool pair = dynamic_cast<km::PairConfigItem*>(item.get()) != nullptr;
        EXPECT_EQ(dynamic_cast<km::ComposableConfigItem*>(item.get()) != nullptr,
                  base == 'C' || base == 'R')
            << name;
        EXPECT_EQ(pair, base == 'R') << name;
        EXPECT_EQ(dynamic_cast<km::DiamondConfigItem*>(item.get()) != nullptr, base == 'D') << name;
        EXPECT_FALSE(pair && item->IsInvalid()) << "a fresh pair item is usable";

        std::unique_ptr<km::ConfigItem> copy(km::ConfigFactory::ProduceConfigItem(itemJson(*item)));
        ASSERT_NE(copy, nullptr) << name;
        EXPECT_EQ(stringify(copy->ConvertToJsonObject()), stringify(item->ConvertToJsonObject()));

        item->key = km::CreateConfigKey("keyboard", 65, 30);
        item->rel_work_position = {0.125, 0.875};
        items += (items.empty() ? "" : ",") + stringify(item->ConvertToJsonObject());
    }
    DocPtr first = loadText(documentWith(items));
    ASSERT_EQ(first->items.size(), bases.size());
    for (std::size_t i = 0; i < bases.size(); ++i) {
        EXPECT_EQ(first->items[i]->type, km::kItemTypeNames[i + 1]);
    }
    const std::string saved = saveText(first.get());
    DocPtr second = loadText(saved);
    EXPECT_EQ(saveText(second.get()), saved);
    EXPECT_TRUE(recorder.take().empty());
    km::ConfigKey a = km::CreateConfigKey("keyboard", 65, 30), none;
    EXPECT_TRUE(km::isConfigKeyMatch(second.get(), &a, &none));
}

}  // namespace
