// The zuno-keymap tool, run as a user runs it: arguments in, output and exit
// status out.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kTool = ZUNO_KEYMAP_TOOL;
const std::string kExamples = ZUNO_KM_EXAMPLES_DIR;
const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

std::string quote(const std::string& arg) {
    std::string quoted = "'";
    for (char c : arg) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

/// Runs the tool with `args`, `input` on its standard input.
Result run(const std::vector<std::string>& args, const std::string& input = "") {
    TempFile in;
    TempFile err;
    in.write(input);
    std::string command = quote(kTool);
    for (const std::string& arg : args) {
        command += " " + quote(arg);
    }
    command += " <" + quote(in.path()) + " 2>" + quote(err.path());
    Result result;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        return result;
    }
    char buffer[4096];
    std::size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) {
        result.out.append(buffer, n);
    }
    const int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.err = err.read();
    return result;
}

std::string example(const std::string& name) {
    return kExamples + "/" + name;
}

/// A document file holding `items` (item objects as JSON text).
struct DocFile {
    explicit DocFile(const std::string& items) { file.write(documentWith(items)); }
    TempFile file;
    const std::string& path() const { return file.path(); }
};

std::string item(const std::string& type, const std::string& keyJson,
                 const std::string& member = "key") {
    Poco::JSON::Object::Ptr object = parseObject(freshItemText(type));
    if (!keyJson.empty()) {
        object->set(member, parseObject(keyJson));
    }
    return stringify(*object);
}

std::string kb(const std::string& text, int scan, int vk) {
    return R"({"device":"keyboard","text":")" + text + R"(","scan_code":)" + std::to_string(scan) +
           R"(,"virtual_key":)" + std::to_string(vk) + "}";
}

const std::string kQ = kb("Q", 16, 81);
const std::string kPadA = R"({"device":"joystick","text":"A","scan_code":1,"virtual_key":1})";

struct Case {
    const char* name;
    std::vector<std::string> args;
    std::string input;
    int status;
    std::vector<std::string> expectedOut;  // each must appear in the standard output
};

void expectCases(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Result result = run(c.args, c.input);
        EXPECT_EQ(result.status, c.status) << result.out << result.err;
        for (const std::string& line : c.expectedOut) {
            EXPECT_NE(result.out.find(line), std::string::npos) << "missing: " << line << "\nin:\n"
                                                                << result.out << result.err;
        }
    }
}

TEST(Tool, CommandsHelpAndUsageErrors) {
    std::vector<Case> cases = {
        {"Version", {"--version"}, "", 0, {"zuno-keymap 1.0.0\n"}},
        {"Overview", {"--help"}, "", 0, {"check", "fmt", "list", "new", "macro", "key"}},
        {"NoCommand", {}, "", 2, {}},
        {"UnknownCommand", {"frobnicate"}, "", 2, {}},
        {"UnknownOption", {"check", "--fast", kBlank}, "", 2, {}},
        {"CheckWithoutFile", {"check"}, "", 2, {}},
        {"FmtTwoTargets", {"fmt", "--check", "--in-place", kBlank}, "", 2, {}},
        {"InPlaceOnBuiltIn", {"fmt", "--in-place", kBlank}, "", 2, {}},
        {"KeyBadNumber", {"key", "keyboard", "thirty"}, "", 2, {}},
        {"MacroBadAction", {"macro", "explain"}, "", 2, {}},
    };
    for (const char* command : {"check", "fmt", "list", "new", "macro", "key"}) {
        cases.push_back(
            {command, {command, "--help"}, "", 0, {std::string("usage: zuno-keymap ") + command}});
    }
    expectCases(cases);
}

TEST(Tool, CheckPassesTheBuiltInsAndTheExamples) {
    expectCases({
        {"BlankKeymap", {"check", kBlank}, "", 0, {kBlank + ": ok (0 items)"}},
        {"BlankGamepad", {"check", "--joystick", kBlank}, "", 0, {"ok"}},
        {"Shooter", {"check", example("shooter.json")}, "", 0, {"ok (8 items)"}},
        {"Gamepad", {"check", "--joystick", example("gamepad.json")}, "", 0, {"ok (7 items)"}},
        {"Macros", {"check", example("macros.json")}, "", 0, {"ok (5 items)"}},
        {"StandardInput", {"check", "-"}, documentWith(item("Spell", kQ)), 0, {"<stdin>: ok"}},
    });
}

TEST(Tool, CheckReportsEveryKindOfProblem) {
    Poco::JSON::Object::Ptr spell = parseObject(item("Spell", kQ));
    spell->getObject("swipehold_info")->remove("steps");
    const DocFile broken(item("Fire", "") + "," + stringify(*spell));
    const DocFile collide(item("Spell", kQ) + "," + item("Staring", kQ));
    // Arrow keys on both: the pair's positive key and the look item's top key.
    const DocFile arrows(item("Wheel", "") + "," + item("Eye", ""));
    Poco::JSON::Object::Ptr comboMacro = parseObject(item("Macro", kQ));
    comboMacro->set("second_key", parseObject(kb("Ctrl", 29, 17)));
    Poco::JSON::Object::Ptr comboCurve = parseObject(item("Curve", kQ));
    comboCurve->set("second_key", parseObject(kb("Ctrl", 29, 17)));
    const DocFile combos(stringify(*comboMacro) + "," + item("Spell", kQ) + "," +
                         stringify(*comboCurve));
    const DocFile pads(item("Spell", kPadA) + "," + item("Staring", kPadA));
    const DocFile invalid(
        item("Spell", "") + "," +
        item("Eye", R"({"device":"","text":"","scan_code":0,"virtual_key":0})", "top_key"));
    Poco::JSON::Object::Ptr macro = parseObject(item("Macro", kQ));
    Poco::JSON::Array::Ptr lines = new Poco::JSON::Array;
    lines->add("loop_end");
    lines->add("jump twice");
    macro->set("release_actions", lines);
    const DocFile macros(stringify(*macro));

    expectCases({
        {"LoadFailure",
         {"check", broken.path()},
         "",
         1,
         {"error: keymaps[1].swipehold_info.steps: required integer is missing", "type \"Spell\""}},
        {"Malformed", {"check", "-"}, "{\n  \"info\": [}\n", 1, {"line 2, column 12"}},
        {"Unreadable", {"check", "/nonexistent/k.json"}, "", 2, {"no such file"}},
        {"Collision",
         {"check", collide.path()},
         "",
         1,
         {"keymaps[0] (Spell) and keymaps[1] (Staring) collide: both fire on Q"}},
        {"PairAndDirectionKeys",
         {"check", arrows.path()},
         "",
         1,
         {"keymaps[0] (Wheel) and keymaps[1] (Eye) collide"}},
        {"GamepadKeys", {"check", "--joystick", pads.path()}, "", 1, {"both fire on A"}},
        {"Invalid",
         {"check", invalid.path()},
         "",
         1,
         {"keymaps[0] (Spell): invalid: no key is assigned"}},
        {"MacroLines",
         {"check", macros.path()},
         "",
         1,
         {"keymaps[0] (Macro): release_actions line 2: not a macro command: \"jump twice\""}},
    });

    // A combination collides with the same combination, not with its first key alone.
    const Result result = run({"check", combos.path()});
    EXPECT_NE(result.out.find("keymaps[0] (Macro) and keymaps[2] (Curve) collide"),
              std::string::npos)
        << result.out;
    EXPECT_EQ(result.out.find("keymaps[1]"), std::string::npos) << result.out;
}

TEST(Tool, CheckWritesTheSameReportAsJson) {
    Poco::JSON::Object::Ptr spell = parseObject(item("Spell", kQ));
    spell->set("spell_option", 3);
    const DocFile broken(stringify(*spell));
    const Result result = run({"check", "--json", broken.path(), example("shooter.json")});
    EXPECT_EQ(result.status, 1);
    Poco::JSON::Object::Ptr report = parseObject(result.out);
    EXPECT_EQ(report->getValue<int>("problems"), 1);
    Poco::JSON::Array::Ptr documents = report->getArray("documents");
    ASSERT_EQ(documents->size(), 2u);
    Poco::JSON::Object::Ptr error = documents->getObject(0)->getObject("error");
    ASSERT_FALSE(error.isNull());
    EXPECT_EQ(error->getValue<std::string>("problem"), "not-an-object");
    EXPECT_EQ(error->getValue<std::string>("path"), "keymaps[0].spell_option");
    EXPECT_EQ(error->getValue<std::string>("item_type"), "Spell");
    EXPECT_TRUE(documents->getObject(1)->getValue<bool>("loaded"));
    EXPECT_EQ(documents->getObject(1)->getArray("collisions")->size(), 0u);
}

TEST(Tool, FmtWritesTheSavedForm) {
    TempFile compact;
    compact.write(documentWith(item("Spell", kQ)));
    const std::string saved = saveText(loadText(compact.read()).get());
    TempFile out;
    expectCases({
        {"BuiltIn", {"fmt", kBlank}, "", 0, {"\"keymaps\": [", "\"wheel_policy\""}},
        {"ExamplesAreTidy", {"fmt", "--check", example("shooter.json")}, "", 0, {}},
        {"GamepadExampleIsTidy",
         {"fmt", "--check", "--joystick", example("gamepad.json")},
         "",
         0,
         {}},
        {"UntidyFile", {"fmt", "--check", compact.path()}, "", 1, {"not in the saved form"}},
        {"ToFile", {"fmt", "-o", out.path(), compact.path()}, "", 0, {}},
        {"Broken", {"fmt", "-"}, R"({"keymaps":[]})", 1, {}},
    });
    EXPECT_EQ(out.read(), saved);
    EXPECT_EQ(run({"fmt", compact.path()}).out, saved);

    EXPECT_EQ(run({"fmt", "--in-place", compact.path()}).status, 0);
    EXPECT_EQ(compact.read(), saved);
    EXPECT_EQ(run({"fmt", "--check", compact.path()}).status, 0);

    // A document that does not load is never written over.
    compact.write(R"({"keymaps":[{"type":"Spell"}]})");
    EXPECT_EQ(run({"fmt", "--in-place", compact.path()}).status, 1);
    EXPECT_EQ(compact.read(), R"({"keymaps":[{"type":"Spell"}]})");
}

TEST(Tool, ListNewMacroAndKey) {
    expectCases({
        {"ListBuiltIn", {"list", kBlank}, "", 0, {"keymap document, 0 items", "INDEX  TYPE"}},
        {"ListShooter",
         {"list", example("shooter.json")},
         "",
         0,
         {"0      Swipehold    top:W right:D bottom:S left:A", "0.180,0.720  yes"}},
        {"ListGamepad", {"list", "--joystick", example("gamepad.json")}, "", 0, {"gamepad"}},
        {"ListBroken", {"list", "-"}, "[]", 1, {}},
        {"NewItem", {"new", "Fire"}, "", 0, {"\"type\": \"Fire\"", "\"need_fire_and_drag\""}},
        {"NewList", {"new", "--list"}, "", 0, {"Click\nBunchClick\nSwipehold\n", "\nTip\n"}},
        {"NewUnknown", {"new", "click"}, "", 2, {}},
        {"MacroCheckGood", {"macro", "check"}, "sleep 50\n\nrelease_actions\nloop_end\n", 0, {}},
        {"MacroCheckBad", {"macro", "check", "-"}, "sleep 50\njump\n", 1, {"<stdin>:2:"}},
        {"MacroToRunning",
         {"macro", "to-running"},
         "loop_end\nrelease_actions\nclick 1,2\n",
         0,
         {"stop_loop\nrelease_actions\nclick_rel:\n"}},
        {"MacroToEditing", {"macro", "to-editing"}, "stop_loop\nnonsense\n", 1, {"loop_end\n"}},
        {"MacroUnreadable", {"macro", "check", "/nonexistent"}, "", 2, {}},
        // The caption comes from the code as given; right Alt has none of its own.
        {"KeyFoldsRightAlt",
         {"key", "keyboard", "312", "18"},
         "",
         0,
         {"caption: \"\"\nscan_code: 56"}},
        {"KeyLeftAlt", {"key", "keyboard", "56"}, "", 0, {"caption: \"Alt\"\nscan_code: 56"}},
        {"KeyMouse", {"key", "mouse", "0x1"}, "", 0, {"caption: \"left_mouse\"", "scan_code: 1"}},
        {"KeyGamepad", {"key", "joystick", "5"}, "", 0, {"caption: \"\""}},
    });
    // Every listed type makes an item that loads back.
    std::string items;
    for (const char* type : {"Click", "Tip", "Observe", "Zoom", "Gravity"}) {
        items += (items.empty() ? "" : ",") + run({"new", type}).out;
    }
    EXPECT_EQ(loadText(documentWith(items))->items.size(), 5u);
}

}  // namespace
