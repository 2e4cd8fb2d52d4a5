// The members every item shares: JSON form, required members, validity, factory.

#include <gtest/gtest.h>

#include <Poco/Exception.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

// The base behaviour, seen through a class that adds nothing to it.
class PlainItem : public km::ConfigItem {
public:
    PlainItem() : ConfigItem("Plain") {}
};

const char* const kFullItem = R"({"type":"Plain",
    "rel_work_position":{"rel_x":0.25,"rel_y":"0.75"},
    "editor_icon_scale":2,
    "key":{"device":"keyboard","text":"A","virtual_key":65,"scan_code":30},
    "icon":{"visibility":false,"radius_correction":1.5,"background_color":"FF0000FF",
            "rel_position":{"rel_x":0.1,"rel_y":0.2},"description":"jump"}})";

TEST(ItemBase, DefaultJsonForm) {
    const std::string expected = R"({"type": "Plain", "editor_icon_scale": 1,
        "rel_work_position": {"rel_x": 0, "rel_y": 0},
        "key": {"device": "", "text": "", "virtual_key": 2147483647, "scan_code": 2147483647},
        "icon": {"visibility": true, "radius_correction": 1, "background_color": "00000066",
                 "rel_position": {"rel_x": 0, "rel_y": 0}, "description": ""}})";
    EXPECT_EQ(stringify(PlainItem().ConvertToJsonObject()), stringify(*parseObject(expected)));
}

TEST(ItemBase, ReadsEveryMemberWithLibraryConversions) {
    PlainItem item;
    item.FillFromJsonObject(parseObject(kFullItem));
    EXPECT_DOUBLE_EQ(item.rel_work_position.y, 0.75);  // a number given as a string
    EXPECT_DOUBLE_EQ(item.editor_icon_scale, 2.0);     // an integer where a double is expected
    EXPECT_EQ(item.key.text, "A");
    EXPECT_EQ(item.key.scan_code, 30);
    EXPECT_FALSE(item.icon.visibility);
    EXPECT_EQ(item.icon.description, "jump");
    EXPECT_DOUBLE_EQ(item.icon.rel_position.y, 0.2);
    // Written and read back, nothing changes.
    PlainItem copy;
    copy.FillFromJsonObject(itemJson(item));
    EXPECT_EQ(stringify(copy.ConvertToJsonObject()), stringify(item.ConvertToJsonObject()));
}

// Each member is required: removing it fails the read with the library's exception.
TEST(ItemBase, EveryMemberIsRequired) {
    struct Case {
        const char* object;  // where the member sits, "" for the item itself
        const char* member;
        bool isObject;  // a missing object raises a null-pointer exception
    };
    const Case cases[] = {
        {"", "type", false},
        {"", "rel_work_position", true},
        {"", "editor_icon_scale", false},
        {"", "key", true},
        {"", "icon", true},
        {"key", "device", false},
        {"key", "text", false},
        {"key", "virtual_key", false},
        {"key", "scan_code", false},
        {"icon", "visibility", false},
        {"icon", "radius_correction", false},
        {"icon", "background_color", false},
        {"icon", "rel_position", true},
        {"icon", "description", false},
        {"rel_work_position", "rel_x", false},
    };
    for (const Case& c : cases) {
        auto object = parseObject(kFullItem);
        (*c.object ? object->getObject(c.object) : object)->remove(c.member);
        PlainItem item;
        if (c.isObject) {
            EXPECT_THROW(item.FillFromJsonObject(object), Poco::NullPointerException) << c.member;
        } else {
            EXPECT_THROW(item.FillFromJsonObject(object), Poco::InvalidAccessException) << c.member;
        }
    }
}

TEST(ItemBase, ValueOfTheWrongKindRaisesAPocoException) {
    auto object = parseObject(kFullItem);
    object->getObject("key")->set("scan_code", "thirty");
    PlainItem item;
    EXPECT_THROW(item.FillFromJsonObject(object), Poco::Exception);
    object = parseObject(kFullItem);
    object->set("icon", 5);
    EXPECT_THROW(item.FillFromJsonObject(object), Poco::NullPointerException);
}

TEST(ItemBase, Validity) {
    struct Case {
        km::ConfigKey key;
        bool invalid;
    };
    const Case cases[] = {
        {{}, true},
        {{"", "A", 65, 30}, true},
        {{"joystick", "LB", km::kUnsetKeyCode, km::kUnsetKeyCode}, false},
        {{"joystick", "", 1, 1}, true},
        {{"keyboard", "", 65, 30}, false},
        {{"keyboard", "A", km::kUnsetKeyCode, 30}, true},
        {{"keyboard", "A", 65, km::kUnsetKeyCode}, true},
        {{"mouse", "", 1, 1}, false},
        {{"pen", "", 1, 1}, false},
    };
    for (const Case& c : cases) {
        PlainItem item;
        item.key = c.key;
        EXPECT_EQ(item.IsInvalid(), c.invalid) << c.key.device << "/" << c.key.text;
    }
}

TEST(Factory, NamesThatMakeNoItem) {
    for (const char* name :
         {"Unknown", "", "click", "CLICK", "Click ", "ConfigItem", "Composable"}) {
        std::unique_ptr<km::ConfigItem> item(km::ConfigFactory::ProduceConfigItem(name));
        EXPECT_EQ(item, nullptr) << name;
    }
}

TEST(Factory, JsonOverloadRaisesOnNullOrMissingType) {
    EXPECT_THROW(km::ConfigFactory::ProduceConfigItem(Poco::JSON::Object::Ptr()),
                 Poco::NullPointerException);
    EXPECT_THROW(km::ConfigFactory::ProduceConfigItem(parseObject("{}")),
                 Poco::InvalidAccessException);
    EXPECT_EQ(km::ConfigFactory::ProduceConfigItem(parseObject(R"({"type":"Unknown"})")), nullptr);
}

TEST(NameLists, PositionsAreTheEnumerationValues) {
    EXPECT_EQ(km::kItemTypeNames.size(), 19U);
    EXPECT_EQ(km::NameOf(km::ItemType::Tip), "Tip");
    EXPECT_EQ(km::NameOf(km::ItemType::RightWalk), "RightWalk");
    EXPECT_EQ(km::IndexOfName(km::kItemTypeNames, "Observe"), 17);
    EXPECT_EQ(km::IndexOfName(km::kDeviceNames, "joystick"), 2);
    EXPECT_EQ(km::IndexOfName(km::kSpellTriggerPolicyNames, "Spell_Trigger_Immedaite"), 3);
    EXPECT_EQ(km::IndexOfName(km::kDeviceNames, "pen"), -1);
}

}  // namespace
