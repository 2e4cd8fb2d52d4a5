// Why a load failed: the diagnostic a host gets beside the document.

#include <gtest/gtest.h>

#include <thread>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
using Problem = km::LoadDiagnostic::Problem;

const std::string kInfo = R"("info":{"background_color":"000000FF","visibility":true})";

/// A document holding a fresh `type` item whose member at dotted `path` is
/// removed (empty `json`) or replaced by the value `json`.
std::string edited(const std::string& type, const std::string& path, const std::string& json = "",
                   const std::string& before = "") {
    Poco::JSON::Object::Ptr item = parseObject(freshItemText(type));
    Poco::JSON::Object::Ptr object = item;
    std::string key = path;
    for (std::size_t dot; (dot = key.find('.')) != std::string::npos; key.erase(0, dot + 1)) {
        object = object->getObject(key.substr(0, dot));
    }
    if (json.empty()) {
        object->remove(key);
    } else {
        object->set(key, parseObject("{\"v\":" + json + "}")->get("v"));
    }
    return documentWith(before + stringify(*item));
}

struct Case {
    std::string text;
    std::string problem;  // as the tools name it
    std::string path;
    int itemIndex;
    std::string itemType;
    std::string expected;
};

std::vector<Case> memberCases() {
    const std::string first = freshItemText("Swipehold") + ",";
    return {
        {"[1, 2]", "not-an-object", "", -1, "", "object"},
        {"{" + kInfo + R"(,"keymaps":{}})", "not-an-array", "keymaps", -1, "", "array"},
        {"{" + kInfo + R"(,"keymaps":[7]})", "not-an-object", "keymaps[0]", 0, "", "object"},
        {"{" + kInfo + R"(,"keymaps":[{"key":{}}]})", "missing", "keymaps[0].type", 0, "",
         "string"},
        {edited("Spell", "swipehold_info.steps", "", first), "missing",
         "keymaps[1].swipehold_info.steps", 1, "Spell", "integer"},
        {edited("Spell", "spell_info", "\"x\""), "not-an-object", "keymaps[0].spell_info", 0,
         "Spell", "object"},
        {edited("Swipehold", "editor_icon_scale", "\"big\""), "wrong-type",
         "keymaps[0].editor_icon_scale", 0, "Swipehold", "number"},
        {edited("Spell", "swipehold_info.first_point_policy.steps", "[]", first), "wrong-type",
         "keymaps[1].swipehold_info.first_point_policy.steps", 1, "Spell", "integer"},
        {edited("Macro", "release_actions", "5"), "not-an-array", "keymaps[0].release_actions", 0,
         "Macro", "array"},
        {edited("Macro", "press_actions", R"(["sleep 5", null])"), "wrong-type",
         "keymaps[0].press_actions[1]", 0, "Macro", "string"},
        {R"({"keymaps":[]})", "missing", "info", -1, "", "object"},
        {R"({"info":{"background_color":"000000FF","visibility":null}})", "wrong-type",
         "info.visibility", -1, "", "boolean"},
        {"{" + kInfo + R"(,"param":{"wheel_policy":{"zoom_steps":4}}})", "missing",
         "param.wheel_policy.zoom_first_interval", -1, "", "integer"},
    };
}

TEST(LoadDiagnostic, NamesTheFailingMemberItsItemAndWhatWasWrong) {
    for (const Case& c : memberCases()) {
        SCOPED_TRACE(c.text);
        km::LoadDiagnostic d;
        DocPtr doc(km::LoadKeymapConfigAndInfo("broken.json", c.text, &d));
        EXPECT_EQ(std::make_tuple(d.failed, std::string(km::ProblemName(d.problem)), d.path,
                                  d.item_index, d.item_type, d.expected, d.source, d.line),
                  std::make_tuple(true, c.problem, c.path, c.itemIndex, c.itemType, c.expected,
                                  std::string("broken.json"), 0));
        EXPECT_NE(d.message.find(c.path), std::string::npos) << d.message;
        EXPECT_TRUE(c.itemType.empty() ||
                    d.message.find('"' + c.itemType + '"') != std::string::npos)
            << d.message;
    }
}

TEST(LoadDiagnostic, PointsAtTheFirstSyntaxError) {
    const std::vector<std::tuple<std::string, int, int>> cases = {
        {"  \n  ", 2, 3},
        {"{\"info\":{},}", 1, 12},
        {"{\n  \"info\" {}\n}", 2, 10},
        {"{\"a\":\"\xff\"}", 1, 7},
        {"{\"a\":\"\\ud800\"}", 1, 13},
        {"{\"a\":[1, 2e999]}", 1, 10},
        {"{\n\"a\":\n\"x\ny\"}", 3, 3},
        {std::string(129, '[') + std::string(129, ']'), 1, 129},
        {"\xEF\xBB\xBF{}", 1, 1},
    };
    for (const auto& [text, line, column] : cases) {
        SCOPED_TRACE(text);
        km::LoadDiagnostic d;
        DocPtr doc(km::LoadKeymapConfigAndInfo("broken.json", text, &d));
        EXPECT_EQ(std::make_tuple(d.problem, d.line, d.column, d.path),
                  std::make_tuple(Problem::Malformed, line, column, std::string()))
            << d.message;
    }
    // Editors on some systems write one; the message says what to do.
    km::LoadDiagnostic bom;
    DocPtr doc(km::LoadKeymapConfigAndInfo("bom.json", "\xEF\xBB\xBF{}", &bom));
    EXPECT_NE(bom.message.find("byte-order mark at the start: save as UTF-8 without BOM"),
              std::string::npos)
        << bom.message;
}

TEST(LoadDiagnostic, UnreadableFilesAreToldApartFromBadText) {
    km::LoadDiagnostic d;
    DocPtr missing(km::LoadKeymapConfigAndInfo("/nonexistent/keymap.json", "", &d));
    EXPECT_EQ(d.problem, Problem::Unreadable);
    EXPECT_NE(d.message.find("/nonexistent/keymap.json"), std::string::npos);
    TempFile file;
    file.write("{\n\"keymaps\": 3,\n" + kInfo + "}");
    DocPtr fromFile(km::LoadKeymapConfigAndInfo(file.path(), "", &d));
    EXPECT_EQ(d.problem, Problem::NotAnArray);
    EXPECT_EQ(d.source, file.path());
}

TEST(LoadDiagnostic, ChangesNothingElseAboutTheLoad) {
    const std::string broken = edited("Eye", "sensitivity", "", freshItemText("Eye") + ",");
    for (bool joystick : {false, true}) {
        for (const std::string& text : {documentWith(freshItemText("Gravity")), broken}) {
            km::LoadDiagnostic d;
            d.failed = true;
            DocPtr plain(joystick ? km::LoadJoystickConfigAndInfo("doc.json", text)
                                  : km::LoadKeymapConfigAndInfo("doc.json", text));
            DocPtr told(joystick ? km::LoadJoystickConfigAndInfo("doc.json", text, &d)
                                 : km::LoadKeymapConfigAndInfo("doc.json", text, &d));
            EXPECT_EQ(saveText(plain.get()), saveText(told.get()));
            EXPECT_EQ(d.failed, text == broken);
            EXPECT_EQ(d.problem == Problem::None, text != broken);
            EXPECT_EQ(told->info->is_joystick, joystick);
        }
    }
    DocPtr doc(km::LoadKeymapConfigAndInfo("doc.json", broken, nullptr));
    EXPECT_EQ(doc->items.size(), 1u);
}

TEST(LoadDiagnostic, AFailedLoadStillCallsBackExactlyOnce) {
    CallbackRecorder recorder;
    for (bool joystick : {false, true}) {
        SCOPED_TRACE(joystick ? "gamepad" : "keymap");
        km::LoadDiagnostic d;
        DocPtr doc(joystick ? km::LoadJoystickConfigAndInfo("doc.json", "{", &d)
                            : km::LoadKeymapConfigAndInfo("doc.json", "{", &d));
        const auto calls = recorder.take();
        ASSERT_EQ(calls.size(), 1U);
        EXPECT_EQ(calls[0].path, "doc.json");
        EXPECT_TRUE(d.failed);
    }
}

TEST(LoadDiagnostic, ThreadsLoadingAtOnceEachGetTheirOwn) {
    const std::vector<Case> cases = memberCases();
    std::vector<std::thread> threads;
    std::vector<int> wrong(cases.size(), 0);
    for (std::size_t t = 0; t < cases.size(); ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 40; ++round) {
                km::LoadDiagnostic d;
                DocPtr doc(km::LoadKeymapConfigAndInfo("doc.json", cases[t].text, &d));
                wrong[t] += d.path != cases[t].path || d.item_index != cases[t].itemIndex;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t t = 0; t < cases.size(); ++t) {
        EXPECT_EQ(wrong[t], 0) << cases[t].path;
    }
}

}  // namespace
