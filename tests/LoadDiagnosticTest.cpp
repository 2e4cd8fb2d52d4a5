// Why a load failed: the diagnostic a host gets beside the document.

#include <gtest/gtest.h>

#include <thread>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
using Problem = km::LoadDiagnostic::Problem;

const std::string kInfo = R"("info":{"background_color":"000000FF","visibility":true})";

/// A fresh item of `type` as JSON text, changed by `edit`.
template <typename Edit>
std::string editedItem(const std::string& type, Edit edit) {
    Poco::JSON::Object::Ptr item = parseObject(freshItemText(type));
    edit(*item);
    return stringify(*item);
}

Poco::JSON::Object::Ptr member(Poco::JSON::Object& object, const std::string& key) {
    return object.getObject(key);
}

struct Case {
    const char* name;
    std::string text;
    Problem problem;
    std::string path;
    int itemIndex;
    std::string itemType;
    std::string expected;
};

std::vector<Case> memberCases() {
    const std::string spell = freshItemText("Spell");
    const std::string swipehold = freshItemText("Swipehold");
    return {
        {"TopLevelArray", "[1, 2]", Problem::NotAnObject, "", -1, "", "object"},
        {"TopLevelString", R"("text")", Problem::NotAnObject, "", -1, "", "object"},
        {"KeymapsNotAnArray", "{" + kInfo + R"(,"keymaps":{}})", Problem::NotAnArray, "keymaps", -1,
         "", "array"},
        {"ElementNotAnObject", "{" + kInfo + R"(,"keymaps":[7]})", Problem::NotAnObject,
         "keymaps[0]", 0, "", "object"},
        {"ElementWithoutType", "{" + kInfo + R"(,"keymaps":[{"key":{}}]})", Problem::Missing,
         "keymaps[0].type", 0, "", "string"},
        {"NestedMemberMissing",
         documentWith(swipehold + "," +
                      editedItem("Spell",
                                 [](Poco::JSON::Object& o) {
                                     member(o, "swipehold_info")->remove("steps");
                                 })),
         Problem::Missing, "keymaps[1].swipehold_info.steps", 1, "Spell", "integer"},
        {"MemberObjectIsAString",
         documentWith(editedItem("Spell", [](Poco::JSON::Object& o) { o.set("spell_info", "x"); })),
         Problem::NotAnObject, "keymaps[0].spell_info", 0, "Spell", "object"},
        {"ThreeLevelsDown",
         documentWith(editedItem("Swipehold",
                                 [](Poco::JSON::Object& o) {
                                     member(*member(o, "icon"), "rel_position")->remove("rel_x");
                                 })),
         Problem::Missing, "keymaps[0].icon.rel_position.rel_x", 0, "Swipehold", "number"},
        {"ScalarOfWrongKind",
         documentWith(editedItem("Swipehold",
                                 [](Poco::JSON::Object& o) { o.set("editor_icon_scale", "big"); })),
         Problem::WrongType, "keymaps[0].editor_icon_scale", 0, "Swipehold", "number"},
        {"IntegerGivenAsWord",
         documentWith(editedItem(
             "Spell", [](Poco::JSON::Object& o) { member(o, "spell_info")->set("range", "far"); })),
         Problem::WrongType, "keymaps[0].spell_info.range", 0, "Spell", "number"},
        {"DrawnInSkillDragSettings",
         documentWith(spell + "," +
                      editedItem("Spell",
                                 [](Poco::JSON::Object& o) {
                                     member(*member(o, "swipehold_info"), "first_point_policy")
                                         ->set("steps",
                                               Poco::JSON::Array::Ptr(new Poco::JSON::Array));
                                 })),
         Problem::WrongType, "keymaps[1].swipehold_info.first_point_policy.steps", 1, "Spell",
         "integer"},
        {"ArrayMemberNotAnArray",
         documentWith(
             editedItem("Macro", [](Poco::JSON::Object& o) { o.set("release_actions", 5); })),
         Problem::NotAnArray, "keymaps[0].release_actions", 0, "Macro", "array"},
        {"ArrayElementNull",
         documentWith(editedItem("Macro",
                                 [](Poco::JSON::Object& o) {
                                     Poco::JSON::Array::Ptr lines = new Poco::JSON::Array;
                                     lines->add("sleep 5");
                                     lines->add(Poco::Dynamic::Var());
                                     o.set("press_actions", lines);
                                 })),
         Problem::WrongType, "keymaps[0].press_actions[1]", 0, "Macro", "string"},
        {"InfoMissing", R"({"keymaps":[]})", Problem::Missing, "info", -1, "", "object"},
        {"InfoMemberOfWrongKind",
         R"({"info":{"background_color":"000000FF","visibility":true,)"
         R"("transparent_mouse_windows_raw_move_period":"soon"}})",
         Problem::WrongType, "info.transparent_mouse_windows_raw_move_period", -1, "", "integer"},
        {"InfoMemberNull", R"({"info":{"background_color":"000000FF","visibility":null}})",
         Problem::WrongType, "info.visibility", -1, "", "boolean"},
        {"ParamNestedMissing", "{" + kInfo + R"(,"param":{"wheel_policy":{"zoom_steps":4}}})",
         Problem::Missing, "param.wheel_policy.zoom_first_interval", -1, "", "integer"},
    };
}

TEST(LoadDiagnostic, NamesTheFailingMemberItsItemAndWhatWasWrong) {
    for (const Case& c : memberCases()) {
        SCOPED_TRACE(c.name);
        km::LoadDiagnostic diagnostic;
        DocPtr doc(km::LoadKeymapConfigAndInfo("broken.json", c.text, &diagnostic));
        EXPECT_TRUE(diagnostic.failed);
        EXPECT_EQ(diagnostic.problem, c.problem) << diagnostic.message;
        EXPECT_EQ(diagnostic.path, c.path);
        EXPECT_EQ(diagnostic.item_index, c.itemIndex);
        EXPECT_EQ(diagnostic.item_type, c.itemType);
        EXPECT_EQ(diagnostic.expected, c.expected);
        EXPECT_EQ(diagnostic.source, "broken.json");
        EXPECT_EQ(diagnostic.line, 0);
        // The message carries the path and the item's type for people.
        EXPECT_NE(diagnostic.message.find(c.path), std::string::npos) << diagnostic.message;
        if (!c.itemType.empty()) {
            EXPECT_NE(diagnostic.message.find("\"" + c.itemType + "\""), std::string::npos)
                << diagnostic.message;
        }
    }
}

TEST(LoadDiagnostic, PointsAtTheFirstSyntaxError) {
    struct Syntax {
        std::string text;
        int line;
        int column;
    };
    const std::vector<Syntax> cases = {
        {"", 1, 1},
        {"  \n  ", 2, 3},
        {"{\"info\":{},}", 1, 12},
        {"{\n  \"info\" {}\n}", 2, 10},
        {"{} x", 1, 4},
        {"{\"a\":01}", 1, 7},
        {"{\"a\":\"\xff\"}", 1, 7},
        {"{\"a\":\"\\ud800\"}", 1, 13},
        {"{\"a\":tru}", 1, 9},
        {"{\"a\":[1,]}", 1, 9},
        {"{\"a\":[1, 2e999]}", 1, 10},
        {"{\n\"a\":\n\"x\ny\"}", 3, 3},
        {std::string(129, '[') + std::string(129, ']'), 1, 129},
    };
    for (const Syntax& c : cases) {
        SCOPED_TRACE(c.text);
        km::LoadDiagnostic diagnostic;
        DocPtr doc(
            km::LoadKeymapConfigAndInfo("broken.json", c.text.empty() ? " " : c.text, &diagnostic));
        if (c.text.empty()) {
            // Empty host text means "read the file": use an empty file instead.
            TempFile file;
            doc.reset(km::LoadKeymapConfigAndInfo(file.path(), "", &diagnostic));
        }
        EXPECT_EQ(diagnostic.problem, Problem::Malformed) << diagnostic.message;
        EXPECT_EQ(diagnostic.line, c.line) << diagnostic.message;
        EXPECT_EQ(diagnostic.column, c.column) << diagnostic.message;
        EXPECT_EQ(diagnostic.path, "");
    }
}

TEST(LoadDiagnostic, UnreadableFilesAreToldApartFromBadText) {
    km::LoadDiagnostic diagnostic;
    DocPtr missing(km::LoadKeymapConfigAndInfo("/nonexistent/keymap.json", "", &diagnostic));
    EXPECT_EQ(diagnostic.problem, Problem::Unreadable);
    EXPECT_NE(diagnostic.message.find("/nonexistent/keymap.json"), std::string::npos);

    DocPtr directory(km::LoadKeymapConfigAndInfo("/tmp", "", &diagnostic));
    EXPECT_EQ(diagnostic.problem, Problem::Unreadable);
    EXPECT_NE(diagnostic.message.find("not a regular file"), std::string::npos);

    TempFile file;
    file.write("{\n\"keymaps\": 3,\n" + kInfo + "}");
    DocPtr fromFile(km::LoadKeymapConfigAndInfo(file.path(), "", &diagnostic));
    EXPECT_EQ(diagnostic.problem, Problem::NotAnArray);
    EXPECT_EQ(diagnostic.source, file.path());
}

TEST(LoadDiagnostic, ChangesNothingElseAboutTheLoad) {
    // Same document and same callback as the two-argument loads, for a good
    // document, a broken one and a built-in one, keymap or gamepad.
    const std::string broken =
        documentWith(freshItemText("Eye") + "," +
                     editedItem("Eye", [](Poco::JSON::Object& o) { o.remove("sensitivity"); }));
    const std::vector<std::string> texts = {documentWith(freshItemText("Gravity")), broken, ""};
    for (bool joystick : {false, true}) {
        for (const std::string& text : texts) {
            const std::string path =
                text.empty() ? "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300" : "doc.json";
            CallbackRecorder recorder;
            km::LoadDiagnostic diagnostic;
            diagnostic.failed = true;
            DocPtr plain(joystick ? km::LoadJoystickConfigAndInfo(path, text)
                                  : km::LoadKeymapConfigAndInfo(path, text));
            DocPtr told(joystick ? km::LoadJoystickConfigAndInfo(path, text, &diagnostic)
                                 : km::LoadKeymapConfigAndInfo(path, text, &diagnostic));
            EXPECT_EQ(saveText(plain.get()), saveText(told.get()));
            const auto calls = recorder.take();
            EXPECT_EQ(calls.size(), text == broken ? 2u : 0u);
            EXPECT_EQ(diagnostic.failed, text == broken);
            EXPECT_EQ(diagnostic.problem == Problem::None, text != broken);
            EXPECT_EQ(diagnostic.source, path);
            EXPECT_EQ(told->info->is_joystick, joystick);
        }
    }
    // A null diagnostic is allowed.
    DocPtr doc(km::LoadKeymapConfigAndInfo("doc.json", broken, nullptr));
    EXPECT_EQ(doc->items.size(), 1u);
}

TEST(LoadDiagnostic, ThreadsLoadingAtOnceEachGetTheirOwn) {
    const std::vector<Case> cases = memberCases();
    std::vector<std::thread> threads;
    std::vector<int> wrong(cases.size(), 0);
    for (std::size_t t = 0; t < cases.size(); ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 40; ++round) {
                km::LoadDiagnostic diagnostic;
                DocPtr doc(km::LoadKeymapConfigAndInfo("doc.json", cases[t].text, &diagnostic));
                if (diagnostic.path != cases[t].path || diagnostic.problem != cases[t].problem ||
                    diagnostic.item_index != cases[t].itemIndex) {
                    ++wrong[t];
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t t = 0; t < cases.size(); ++t) {
        EXPECT_EQ(wrong[t], 0) << cases[t].name;
    }
}

TEST(LoadDiagnostic, ProblemsHaveStableNames) {
    EXPECT_STREQ(km::ProblemName(Problem::Missing), "missing");
    EXPECT_STREQ(km::ProblemName(Problem::WrongType), "wrong-type");
    EXPECT_STREQ(km::ProblemName(Problem::NotAnArray), "not-an-array");
}

}  // namespace
