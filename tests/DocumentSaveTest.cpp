// What a saved document looks like, and the forms of "info" and "param".

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
const std::string kSystem = "system-9252A9CA-0C32-4FFD-8BF6-82653751D068";

std::string keysOf(const Poco::JSON::Object::Ptr& object) {
    std::string names;
    for (const std::string& name : object->getNames()) {
        names += name + " ";
    }
    return names;
}

TEST(DocumentSave, KeyboardAndGamepadInfoAndParameterForms) {
    DocPtr keyboard(km::LoadKeymapConfigAndInfo(kBlank, ""));
    DocPtr gamepad(km::LoadJoystickConfigAndInfo(kBlank, ""));
    const std::string keyboardText = saveText(keyboard.get());
    const auto keyboardDoc = parseObject(keyboardText),
               gamepadDoc = parseObject(saveText(gamepad.get()));
    EXPECT_EQ(keysOf(keyboardDoc), "info keymaps param ");
    EXPECT_LT(keyboardText.find("\"info\""), keyboardText.find("\"keymaps\""));
    EXPECT_LT(keyboardText.find("\"keymaps\""), keyboardText.find("\"param\""));
    EXPECT_NE(keyboardText.find("\n    \"info\": {\n        \"background_color\""),
              std::string::npos)
        << "indentation of 4 per level";
    EXPECT_EQ(keysOf(keyboardDoc->getObject("info")),
              "background_color is_joystick transparent_ESC transparent_keyboard "
              "transparent_mouse transparent_mouse_windows_raw_move_period "
              "transparent_mouse_windows_raw_move_sensitivity transparent_wheel visibility ");
    EXPECT_FALSE(keyboardDoc->getObject("info")->getValue<bool>("transparent_keyboard"));
    const auto gamepadInfo = gamepadDoc->getObject("info");
    EXPECT_EQ(keysOf(gamepadInfo), "background_color is_joystick transparent_joystick visibility ");
    EXPECT_FALSE(gamepadInfo->getValue<bool>("transparent_joystick"));
    EXPECT_TRUE(gamepadInfo->getValue<bool>("is_joystick"));
    EXPECT_EQ(gamepadDoc->getObject("param")->size(), 0U);
    EXPECT_EQ(stringify(*keyboardDoc->getObject("param")),
              stringify(*parseObject(R"({"transparent_wheel_policy": {"protocol_version": 0,
        "sensitivity": 1}, "wheel_policy": {"wheel_step_distance": 0.01, "zoom_first_interval": 16,
        "zoom_last_idle": 0, "zoom_margin": 20, "zoom_period": 16, "zoom_step_distance": 0.00625,
        "zoom_steps": 8}})")));
}

TEST(DocumentSave, AbsentInfoMembersKeepTheirDefaults) {
    for (bool joystick : {false, true}) {
        const auto& builtIns =
            joystick ? EmbededConfig::joystickConfigs() : EmbededConfig::keymapConfigs();
        km::ConfigInfo fresh;
        fresh.is_joystick = joystick;
        const Poco::JSON::Object defaults = fresh.ConvertToJsonObject();
        for (const auto& [name, text] : builtIns) {
            SCOPED_TRACE(name + (joystick ? " as a gamepad document" : ""));
            DocPtr doc(joystick ? km::LoadJoystickConfigAndInfo(name, "")
                                : km::LoadKeymapConfigAndInfo(name, ""));
            const auto given = parseObject(text)->getObject("info");
            const auto written = parseObject(saveText(doc.get()))->getObject("info");
            for (const auto& [member, value] : *written) {
                if (!given->has(member) && member != "is_joystick") {
                    EXPECT_EQ(value.toString(), defaults.get(member).toString()) << member;
                }
            }
        }
    }
}

TEST(DocumentSave, InfoAndParametersRoundTrip) {
    CallbackRecorder recorder;
    DocPtr first = loadText(R"({"info":{"background_color":"12345678","visibility":false,
        "transparent_mouse":"Mouse_Custom","transparent_ESC":true,"transparent_wheel":true,
        "transparent_mouse_windows_raw_move_period":7,
        "transparent_mouse_windows_raw_move_sensitivity":2.5,"transparent_keyboard":false},
        "param":{"wheel_policy":{"zoom_first_interval":1,"zoom_last_idle":2,"zoom_period":3,
        "zoom_steps":4,"zoom_margin":5,"zoom_step_distance":0.5,"wheel_step_distance":0.25},
        "transparent_wheel_policy":{"sensitivity":3,"protocol_version":2}}})");
    const std::string saved = saveText(first.get());
    DocPtr second = loadText(saved);
    EXPECT_EQ(saveText(second.get()), saved);
    EXPECT_TRUE(recorder.take().empty());
    EXPECT_EQ(second->info->transparent_mouse, "Mouse_Custom");
    EXPECT_DOUBLE_EQ(second->info->transparent_mouse_windows_raw_move_sensitivity, 2.5);
    EXPECT_EQ(second->param->zoom_margin, 5);
    EXPECT_DOUBLE_EQ(second->param->sensitivity, 3.0);
}

// A save writes exactly what the stringifier writes for the document object
// (sorted keys, escapes, indentation), skipping null entries.
TEST(DocumentSave, WritesTheStringifiedDocumentObject) {
    std::string everyType = freshItemText("Click");
    for (std::size_t i = 2; i < km::kItemTypeNames.size(); ++i) {
        everyType += "," + freshItemText(std::string(km::kItemTypeNames[i]));
    }
    DocPtr docs[] = {
        loadJoystickText(documentWith("")),
        loadText(documentWith(everyType + "," + everyType)),
        loadText(R"({"info":{"background_color":"a\"b\\c/d\u00e9\n\t","visibility":true}})"),
    };
    ASSERT_EQ(docs[2]->info->background_color, "a\"b\\c/d\xC3\xA9\n\t");
    docs[1]->items.insert(docs[1]->items.begin() + 1, nullptr);
    for (const DocPtr& doc : docs) {
        const std::string saved = saveText(doc.get());
        const auto object = parseObject(saved);
        EXPECT_EQ(saved, stringify(*object));
        EXPECT_EQ(object->getArray("keymaps")->size(),
                  doc->items.size() - std::count(doc->items.begin(), doc->items.end(), nullptr));
    }
}

TEST(DocumentSave, KeymapAndJoystickSavesWriteTheSameBytesAndMissingDirectoriesSucceed) {
    DocPtr doc(km::LoadJoystickConfigAndInfo(kBlank, ""));
    TempFile a, b;
    km::SaveKeymapConfigAndInfo(a.path(), doc.get());
    km::SaveJoystickConfigAndInfo(b.path(), doc.get());
    EXPECT_FALSE(a.read().empty());
    EXPECT_EQ(a.read(), b.read());
    EXPECT_TRUE(km::SaveKeymapConfigAndInfo("/nonexistent-dir/x/keymap.json", doc.get()));
    EXPECT_TRUE(km::SaveJoystickConfigAndInfo("/nonexistent-dir/x/keymap.json", doc.get()));
}

TEST(BuiltInDocuments, TextsAreKeptByteForByte) {
    const auto& keymaps = EmbededConfig::keymapConfigs();
    const auto& joysticks = EmbededConfig::joystickConfigs();
    ASSERT_EQ(keymaps.size() * 10 + joysticks.size(), 21U);
    EXPECT_EQ(keymaps.at(kBlank).size(), 518U);
    EXPECT_EQ(keymaps.at(kSystem).size(), 393U);
    EXPECT_EQ(joysticks.at(kBlank).size(), 517U);
    for (const auto* text : {&keymaps.at(kBlank), &keymaps.at(kSystem), &joysticks.at(kBlank)}) {
        EXPECT_EQ(text->rfind("{\n                \"info\": {\n", 0), 0U);
        EXPECT_NE(text->back(), '\n');
    }
    EXPECT_NE(keymaps.at(kSystem).find("\"keymaps\":[]\n                }"), std::string::npos);

    // The host's text is used only when the name is no built-in of that table.
    KeymapManager& manager = KeymapManager::GetInstance();
    const std::string data = "{}";
    EXPECT_EQ(&manager.GetDataString(true, "no-such-name", data), &data);
    EXPECT_EQ(&manager.GetDataString(true, kBlank, data), &keymaps.at(kBlank));
    EXPECT_EQ(&manager.GetDataString(false, kBlank, data), &joysticks.at(kBlank));
}

}  // namespace
