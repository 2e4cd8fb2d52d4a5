// The members every item shares: JSON form, required members, validity, factory.

#include <gtest/gtest.h>

#include <Poco/Exception.h>

#include "tests/ItemFormatSupport.h"

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

TEST(ItemBase, JsonFormAndReadBack) {
    EXPECT_EQ(stringify(PlainItem().ConvertToJsonObject()),
              stringify(*parseObject(R"({"type": "Plain", "editor_icon_scale": 1,
        "rel_work_position": {"rel_x": 0, "rel_y": 0},
        "key": {"device": "", "text": "", "virtual_key": 2147483647, "scan_code": 2147483647},
        "icon": {"visibility": true, "radius_correction": 1, "background_color": "00000066",
                 "rel_position": {"rel_x": 0, "rel_y": 0}, "description": ""}})")));
    // Numbers given as strings and integers given for doubles are taken.
    PlainItem item;
    item.FillFromJsonObject(parseObject(kFullItem));
    EXPECT_EQ(stringify(item.ConvertToJsonObject()),
              stringify(*parseObject(R"({"type": "Plain", "editor_icon_scale": 2,
        "rel_work_position": {"rel_x": 0.25, "rel_y": 0.75},
        "key": {"device": "keyboard", "text": "A", "virtual_key": 65, "scan_code": 30},
        "icon": {"visibility": false, "radius_correction": 1.5, "background_color": "FF0000FF",
                 "rel_position": {"rel_x": 0.1, "rel_y": 0.2}, "description": "jump"}})")));
}

// Each member is required: removing it fails the read with the library's
// exception (a missing or non-object object raises a null-pointer exception).
TEST(ItemBase, EveryMemberIsRequired) {
    // Objects are marked with a trailing '/'.
    for (std::string path : {"type", "rel_work_position/", "editor_icon_scale", "key/", "icon/",
                             "key/device", "key/text", "key/virtual_key", "key/scan_code",
                             "icon/visibility", "icon/radius_correction", "icon/background_color",
                             "icon/rel_position/", "icon/description", "rel_work_position/rel_x"}) {
        const bool isObject = path.back() == '/';
        if (isObject) {
            path.pop_back();
        }
        auto object = parseObject(kFullItem);
        std::string last;
        parentOf(object, path, last)->remove(last);
        PlainItem item;
        if (isObject) {
            EXPECT_THROW(item.FillFromJsonObject(object), Poco::NullPointerException) << path;
        } else {
            EXPECT_THROW(item.FillFromJsonObject(object), Poco::InvalidAccessException) << path;
        }
    }
    auto object = parseObject(kFullItem);
    object->set("icon", 5);
    EXPECT_THROW(PlainItem().FillFromJsonObject(object), Poco::NullPointerException);
}

TEST(ItemBase, Validity) {
    const std::pair<km::ConfigKey, bool> cases[] = {
        {{}, true},
        {{"", "A", 65, 30}, true},
        {{"joystick", "LB", km::kUnsetKeyCode, km::kUnsetKeyCode}, false},
        {{"joystick", "", 1, 1}, true},
        {{"keyboard", "", 65, 30}, false},
        {{"keyboard", "A", km::kUnsetKeyCode, 30}, true},
        {{"keyboard", "A", 65, km::kUnsetKeyCode}, true},
        {{"pen", "", 1, 1}, false},
    };
    for (const auto& [key, invalid] : cases) {
        PlainItem item;
        item.key = key;
        EXPECT_EQ(item.IsInvalid(), invalid) << key.device << "/" << key.text;
    }
}

TEST(Factory, NamesThatMakeNoItemAndJsonExceptions) {
    for (const char* name : {"Unknown", "", "click", "Click ", "ConfigItem", "Composable"}) {
        std::unique_ptr<km::ConfigItem> item(km::ConfigFactory::ProduceConfigItem(name));
        EXPECT_EQ(item, nullptr) << name;
    }
    EXPECT_THROW(km::ConfigFactory::ProduceConfigItem(Poco::JSON::Object::Ptr()),
                 Poco::NullPointerException);
    EXPECT_THROW(km::ConfigFactory::ProduceConfigItem(parseObject("{}")),
                 Poco::InvalidAccessException);
    EXPECT_EQ(km::ConfigFactory::ProduceConfigItem(parseObject(R"({"type":"Unknown"})")), nullptr);
}

}  // namespace
