// The tap items: single tap, repeated tap and tip.

#include <gtest/gtest.h>

#include "tests/ItemFormatSupport.h"

namespace {

using namespace testsupport;

const std::string kSecondKey =
    R"({"second_key": {"device": "mouse", "text": "right_mouse", "virtual_key": 0, "scan_code": 2}})";

TEST(TapItems, FreshItemsWriteTheirDefaults) {
    expectFreshForm("BunchClick",
                    R"("bunch_click_type": "Continue", "bunch_click_continue_number": 20,
                       "bunch_click_one_off_number": 20)",
                    {"icon", "key", "rel_work_position", "editor_icon_scale"});
    const char* const shared[] = {"icon", "key", "rel_work_position", "editor_icon_scale"};
    // Click and Tip write nothing beyond what every item shares.
    for (const char* type : {"Click", "Tip"}) {
        Poco::JSON::Object::Ptr written = parseObject(freshItemText(type));
        for (const char* member : shared) {
            written->remove(member);
        }
        EXPECT_EQ(text(written), text(parseObject(R"({"type": ")" + std::string(type) + "\"}")));
    }
}

TEST(TapItems, NonDefaultValuesSurviveSaveAndReload) {
    for (const char* type : {"Click", "Tip", "BunchClick"}) {
        expectRoundTrip(mutatedItem(type));
        expectRoundTrip(mutatedItem(type, kSecondKey));
    }
}

TEST(TapItems, BunchClickNeedsAllItsMembers) {
    for (const char* path :
         {"bunch_click_type", "bunch_click_continue_number", "bunch_click_one_off_number"}) {
        expectMemberRule("BunchClick", mutatedItem("BunchClick"), path, kRequired);
    }
}

}  // namespace
