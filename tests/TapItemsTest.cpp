// The tap items: single tap, repeated tap and tip.

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

void setBase(km::ConfigItem& item) {
    item.key = km::CreateConfigKey("keyboard", 65, 30);
    item.rel_work_position = {0.25, 0.75};
    item.editor_icon_scale = 1.5;
    item.icon.description = "jump";
    item.icon.rel_position = {0.125, 0.5};
}

TEST(TapItems, SurviveASaveAndReload) {
    const struct {
        const char* what;
        std::function<km::ConfigItem*()> make;
    } cases[] = {
        {"Click", [] { return new km::ClickConfigItem(); }},
        {"Tip", [] { return new km::TipConfigItem(); }},
        {"BunchClick", [] { return new km::BunchClickConfigItem(); }},
        {"BunchClick, one-off burst",
         [] {
             auto* item = new km::BunchClickConfigItem();
             item->bunch_click_type = "One_Off";
             item->bunch_click_continue_number = 7;
             item->bunch_click_one_off_number = 3;
             return item;
         }},
        {"BunchClick, values outside the usual range",
         [] {
             auto* item = new km::BunchClickConfigItem();
             item->bunch_click_type = "Sometimes";
             item->bunch_click_continue_number = 0;
             item->bunch_click_one_off_number = -5;
             return item;
         }},
    };
    for (const auto& c : cases) {
        for (const bool combination : {false, true}) {
            km::KeymapConfig doc;
            doc.info = new km::ConfigInfo();
            doc.param = new km::ConfigParam();
            km::ConfigItem* item = c.make();
            setBase(*item);
            if (combination) {
                static_cast<km::ComposableConfigItem*>(item)->second_key =
                    km::CreateConfigKey("mouse", 0, 2);
            }
            doc.items.push_back(item);

            CallbackRecorder recorder;
            DocPtr back = loadText(saveText(&doc));
            EXPECT_TRUE(recorder.take().empty()) << c.what;
            ASSERT_EQ(back->items.size(), 1u) << c.what;
            const km::ConfigItem& reread = *back->items[0];
            EXPECT_EQ(typeid(reread), typeid(*item)) << c.what;
            EXPECT_EQ(stringify(back->items[0]->ConvertToJsonObject()),
                      stringify(item->ConvertToJsonObject()))
                << c.what << (combination ? " with a second key" : "");
        }
    }
}

TEST(TapItems, FreshItemsWriteTheirDefaults) {
    const Poco::JSON::Object::Ptr bunch = parseObject(freshItemText("BunchClick"));
    EXPECT_EQ(bunch->getValue<std::string>("bunch_click_type"), "Continue");
    EXPECT_EQ(bunch->getValue<int>("bunch_click_continue_number"), 20);
    EXPECT_EQ(bunch->getValue<int>("bunch_click_one_off_number"), 20);
    EXPECT_FALSE(bunch->has("second_key"));
    EXPECT_FALSE(parseObject(freshItemText("Click"))->has("bunch_click_type"));

    // A tip is a click under another name.
    km::ClickConfigItem click;
    km::TipConfigItem tip;
    setBase(click);
    setBase(tip);
    const Poco::JSON::Object::Ptr clickJson = itemJson(click);
    Poco::JSON::Object::Ptr tipJson = itemJson(tip);
    EXPECT_EQ(tipJson->getValue<std::string>("type"), "Tip");
    tipJson->set("type", "Click");
    EXPECT_EQ(stringify(*tipJson), stringify(*clickJson));
}

TEST(TapItems, BunchClickTakesValuesAsGiven) {
    Poco::JSON::Object::Ptr json = parseObject(freshItemText("BunchClick"));
    json->set("bunch_click_type", "Sometimes");
    json->set("bunch_click_continue_number", "15");
    json->set("bunch_click_one_off_number", -3);
    CallbackRecorder recorder;
    DocPtr doc = loadText(documentWith(stringify(*json)));
    EXPECT_TRUE(recorder.take().empty());
    ASSERT_EQ(doc->items.size(), 1u);
    const auto* item = dynamic_cast<km::BunchClickConfigItem*>(doc->items[0]);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->bunch_click_type, "Sometimes");
    EXPECT_EQ(item->bunch_click_continue_number, 15);
    EXPECT_EQ(item->bunch_click_one_off_number, -3);
}

TEST(TapItems, BunchClickLackingARequiredMemberIsNotKept) {
    for (const char* member :
         {"bunch_click_type", "bunch_click_continue_number", "bunch_click_one_off_number"}) {
        Poco::JSON::Object::Ptr json = parseObject(freshItemText("BunchClick"));
        json->remove(member);
        CallbackRecorder recorder;
        DocPtr doc =
            loadText(documentWith(freshItemText("Tip") + "," + stringify(*json)), "broken-bunch");
        const auto calls = recorder.take();
        ASSERT_EQ(calls.size(), 1u) << member;
        EXPECT_EQ(calls[0].path, "broken-bunch") << member;
        ASSERT_EQ(doc->items.size(), 1u) << member;
        EXPECT_EQ(doc->items[0]->type, "Tip") << member;
    }
}

}  // namespace
