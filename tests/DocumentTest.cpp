#include <gtest/gtest.h>

#include "tests/TestSupport.h"

TEST(Smoke, LoadsBlank) {
    std::unique_ptr<zunokeymapmanager::KeymapConfig> c(zunokeymapmanager::LoadKeymapConfigAndInfo(
        "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", ""));
    EXPECT_FALSE(c->info->transparent_keyboard);
}
