// What a saved document looks like, and the forms of "info" and "param".

#include <gtest/gtest.h>

#include "document/DocumentIO.h"
#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";

std::vector<std::string> keysOf(const Poco::JSON::Object::Ptr& object) {
    std::vector<std::string> names;
    object->getNames(names);
    return names;
}

TEST(DocumentSave, TopLevelKeysAreSortedAndAlwaysPresent) {
    DocPtr doc = loadText(R"({"info":{"background_color":"1","visibility":true}})");
    const std::string text = saveText(doc.get());
    EXPECT_LT(text.find("\"info\""), text.find("\"keymaps\""));
    EXPECT_LT(text.find("\"keymaps\""), text.find("\"param\""));
    EXPECT_EQ(keysOf(parseObject(text)), (std::vector<std::string>{"info", "keymaps", "param"}));
    EXPECT_NE(text.find("\n    \"info\": {\n        \"background_color\""), std::string::npos)
        << "indentation of 4 per level";
}

TEST(DocumentSave, KeyboardAndGamepadInfoForms) {
    DocPtr keyboard(km::LoadKeymapConfigAndInfo(kBlank, ""));
    DocPtr gamepad(km::LoadJoystickConfigAndInfo(kBlank, ""));
    const auto keyboardInfo = parseObject(saveText(keyboard.get()))->getObject("info");
    const auto gamepadInfo = parseObject(saveText(gamepad.get()))->getObject("info");

    EXPECT_EQ(
        keysOf(keyboardInfo),
        (std::vector<std::string>{
            "background_color", "is_joystick", "transparent_ESC", "transparent_keyboard",
            "transparent_mouse", "transparent_mouse_windows_raw_move_period",
            "transparent_mouse_windows_raw_move_sensitivity", "transparent_wheel", "visibility"}));
    EXPECT_FALSE(keyboardInfo->getValue<bool>("transparent_keyboard"));
    EXPECT_EQ(keysOf(gamepadInfo),
              (std::vector<std::string>{"background_color", "is_joystick", "transparent_joystick",
                                        "visibility"}));
    EXPECT_FALSE(gamepadInfo->getValue<bool>("transparent_joystick"));
    EXPECT_TRUE(gamepadInfo->getValue<bool>("is_joystick"));
}

TEST(DocumentSave, ParameterForms) {
    DocPtr keyboard(km::LoadKeymapConfigAndInfo(kBlank, ""));
    DocPtr gamepad(km::LoadJoystickConfigAndInfo(kBlank, ""));
    EXPECT_EQ(parseObject(saveText(gamepad.get()))->getObject("param")->size(), 0U);

    const std::string expected = R"({"transparent_wheel_policy": {"protocol_version": 0,
        "sensitivity": 1}, "wheel_policy": {"wheel_step_distance": 0.01, "zoom_first_interval": 16,
        "zoom_last_idle": 0, "zoom_margin": 20, "zoom_period": 16, "zoom_step_distance": 0.00625,
        "zoom_steps": 8}})";
    EXPECT_EQ(stringify(*parseObject(saveText(keyboard.get()))->getObject("param")),
              stringify(*parseObject(expected)));
}

TEST(DocumentSave, InfoAndParametersRoundTrip) {
    CallbackRecorder recorder;
    const std::string text = R"({"info":{"background_color":"12345678","visibility":false,
        "transparent_mouse":"Mouse_Custom","transparent_ESC":true,"transparent_wheel":true,
        "transparent_mouse_windows_raw_move_period":7,
        "transparent_mouse_windows_raw_move_sensitivity":2.5,"transparent_keyboard":false},
        "param":{"wheel_policy":{"zoom_first_interval":1,"zoom_last_idle":2,"zoom_period":3,
        "zoom_steps":4,"zoom_margin":5,"zoom_step_distance":0.5,"wheel_step_distance":0.25},
        "transparent_wheel_policy":{"sensitivity":3,"protocol_version":2}}})";
    DocPtr first = loadText(text);
    const std::string saved = saveText(first.get());
    DocPtr second = loadText(saved);
    EXPECT_EQ(saveText(second.get()), saved);
    EXPECT_TRUE(recorder.take().empty());

    EXPECT_EQ(second->info->transparent_mouse, "Mouse_Custom");
    EXPECT_DOUBLE_EQ(second->info->transparent_mouse_windows_raw_move_sensitivity, 2.5);
    EXPECT_EQ(second->param->zoom_margin, 5);
    EXPECT_DOUBLE_EQ(second->param->sensitivity, 3.0);
}

TEST(DocumentSave, GamepadDocumentsDropKeyboardSettings) {
    DocPtr doc = loadJoystickText(
        R"({"info":{"background_color":"1","visibility":true,"transparent_ESC":true,
        "transparent_keyboard":false,"transparent_joystick":false},
        "param":{"transparent_wheel_policy":{"sensitivity":9}}})");
    DocPtr reread = loadJoystickText(saveText(doc.get()));
    EXPECT_FALSE(reread->info->transparent_ESC);
    EXPECT_TRUE(reread->info->transparent_keyboard);
    EXPECT_FALSE(reread->info->transparent_joystick);
    EXPECT_DOUBLE_EQ(reread->param->sensitivity, 1.0);
}

// The whole document as one object, written by the stringifier: what a save
// must produce byte for byte, however it gets there.
std::string stringifiedDocument(const km::KeymapConfig& doc) {
    Poco::JSON::Array::Ptr items = new Poco::JSON::Array();
    for (const km::ConfigItem* item : doc.items) {
        if (item != nullptr) {
            items->add(
                Poco::JSON::Object::Ptr(new Poco::JSON::Object(item->ConvertToJsonObject())));
        }
    }
    Poco::JSON::Object root;
    root.set("keymaps", items);
    root.set("info",
             Poco::JSON::Object::Ptr(new Poco::JSON::Object(doc.info->ConvertToJsonObject())));
    root.set("param", Poco::JSON::Object::Ptr(new Poco::JSON::Object(
                          doc.param->ConvertToJsonObject(doc.info->is_joystick))));
    return stringify(root);
}

TEST(DocumentSave, WritesTheStringifiedDocumentObject) {
    std::string everyType;
    for (const char* type : {"Click", "BunchClick", "Swipehold", "Fire", "Staring", "Spell",
                             "SpellCancel", "RightWalk", "Eye", "Gravity", "Macro", "Curve",
                             "LeftStickWalk", "RightStickEye", "Wheel", "Zoom", "Observe", "Tip"}) {
        const std::string text = freshItemText(type);
        if (!text.empty()) {
            everyType += (everyType.empty() ? "" : ",") + text;
        }
    }
    const struct {
        const char* name;
        DocPtr doc;
    } cases[] = {
        {"no items", loadText(documentWith(""))},
        {"gamepad, empty param", loadJoystickText(documentWith(""))},
        {"every item type twice", loadText(documentWith(everyType + "," + everyType))},
        {"escapes and non-ASCII text",
         loadText(R"({"info":{"background_color":"a\"b\\c/d\u00e9\n\t","visibility":true}})")},
    };
    ASSERT_EQ(cases[3].doc->info->background_color, "a\"b\\c/d\xC3\xA9\n\t");
    for (const auto& c : cases) {
        EXPECT_EQ(saveText(c.doc.get()), stringifiedDocument(*c.doc)) << c.name;
    }

    DocPtr withNull = loadText(documentWith(everyType));
    withNull->items.insert(withNull->items.begin() + 1, nullptr);
    EXPECT_EQ(saveText(withNull.get()), stringifiedDocument(*withNull)) << "null entries skipped";
}

TEST(DocumentSave, MissingDirectoryWritesNothingAndStillSucceeds) {
    DocPtr doc(km::LoadKeymapConfigAndInfo(kBlank, ""));
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo("/nonexistent-dir/x/keymap.json", doc.get()));
    EXPECT_TRUE(km::SaveJoystickConfigAndInfo("/nonexistent-dir/x/keymap.json", doc.get()));
}

TEST(DocumentSave, KeymapAndJoystickSavesWriteTheSameBytes) {
    DocPtr doc(km::LoadJoystickConfigAndInfo(kBlank, ""));
    TempFile a;
    TempFile b;
    km::SaveKeymapConfigAndInfo(a.path(), doc.get());
    km::SaveJoystickConfigAndInfo(b.path(), doc.get());
    EXPECT_FALSE(a.read().empty());
    EXPECT_EQ(a.read(), b.read());
}

TEST(BuiltInDocuments, TextsAreKeptByteForByte) {
    const auto& keymaps = EmbededConfig::keymapConfigs();
    const auto& joysticks = EmbededConfig::joystickConfigs();
    ASSERT_EQ(keymaps.size(), 2U);
    ASSERT_EQ(joysticks.size(), 1U);
    EXPECT_EQ(keymaps.at(kBlank).size(), 518U);
    EXPECT_EQ(keymaps.at("system-9252A9CA-0C32-4FFD-8BF6-82653751D068").size(), 393U);
    EXPECT_EQ(joysticks.at(kBlank).size(), 517U);
    for (const auto* table : {&keymaps, &joysticks}) {
        for (const auto& entry : *table) {
            EXPECT_EQ(entry.second.rfind("{\n                \"info\": {\n", 0), 0U);
            EXPECT_NE(entry.second.back(), '\n');
        }
    }
    EXPECT_NE(keymaps.at("system-9252A9CA-0C32-4FFD-8BF6-82653751D068")
                  .find("\"keymaps\":[]\n                }"),
              std::string::npos);
    EXPECT_EQ(&EmbededConfig::keymapConfigs(), &keymaps);
}

TEST(KeymapManagerText, DataStringPicksBuiltInElseHostText) {
    KeymapManager& manager = KeymapManager::GetInstance();
    const std::string data = "{}";
    EXPECT_EQ(&manager.GetDataString(true, "no-such-name", data), &data);
    EXPECT_EQ(&manager.GetDataString(true, kBlank, data),
              &EmbededConfig::keymapConfigs().at(kBlank));
    EXPECT_EQ(&manager.GetDataString(false, kBlank, data),
              &EmbededConfig::joystickConfigs().at(kBlank));
}

}  // namespace
