// The free functions a host calls, and the manager behind them.

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

TEST(PublicApi, RightHandModifiersFoldOntoLeftHandOnes) {
    const std::pair<int, int> cases[] = {{312, 56},  {285, 29}, {54, 42}, {42, 42},
                                         {310, 310}, {0, 0},    {-1, -1}, {2147483647, 2147483647}};
    for (const auto& [in, out] : cases) {
        EXPECT_EQ(km::ModifyKeyboardScanCodeIfNeeded(in), out) << in;
    }
    const km::ConfigKey key = km::CreateConfigKey("keyboard", 18, 312);
    EXPECT_EQ(key.device, "keyboard");
    EXPECT_EQ(key.virtual_key, 18);
    EXPECT_EQ(key.scan_code, 56);
    EXPECT_EQ(key.reserved0 + key.reserved1 + key.reserved2, 0);
    km::ConfigKey pad("joystick", "LB", 3, 312);
    km::SetTextForConfigKey(&pad);
    EXPECT_EQ(pad.text, "LB");
    EXPECT_EQ(pad.scan_code, 56);
}

TEST(PublicApi, NullArgumentsAndUnknownNamesAreHarmless) {
    EXPECT_EQ(&KeymapManager::GetInstance(), &KeymapManager::GetInstance());
    EXPECT_TRUE(km::AllowUsedForConfigKey("", -1, -1));
    EXPECT_TRUE(km::AllowUsedForConfigKey("pen", 2147483647, -5));
    km::SetTextForConfigKey(nullptr);
    km::ConfigKey key("keyboard", "A", 65, 30);
    EXPECT_FALSE(km::isConfigKeyMatch(nullptr, &key, &key));
    DocPtr doc = loadText(documentWith(""));
    EXPECT_FALSE(km::isConfigKeyMatch(doc.get(), nullptr, &key));
    EXPECT_FALSE(km::isConfigKeyMatch(doc.get(), &key, &key));
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo("/tmp/never-written.json", nullptr));
    EXPECT_EQ(km::CreateConfigItem("Unknown"), nullptr);
}

}  // namespace
