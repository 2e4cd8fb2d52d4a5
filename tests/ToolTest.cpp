// The zuno-keymap tool, run as a user runs it: arguments in, output and exit
// status out.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <list>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kTool = ZUNO_KEYMAP_TOOL;
const std::string kShooter = ZUNO_KM_EXAMPLES_DIR "/shooter.json";
const std::string kGamepad = ZUNO_KM_EXAMPLES_DIR "/gamepad.json";
const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs the tool with `args` (none holds a single quote), `input` on its standard input.
Result run(const std::vector<std::string>& args, const std::string& input = "") {
    TempFile in, out, err;
    in.write(input);
    std::string command = "'" + kTool + "'";
    for (const std::string& arg : args) {
        command += " '" + arg + "'";
    }
    command += " <" + in.path() + " >" + out.path() + " 2>" + err.path();
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out.read(), err.read()};
}

/// The item `itemText` with its `member` set to the JSON value `json`.
std::string set(const std::string& itemText, const std::string& member, const std::string& json) {
    Poco::JSON::Object::Ptr object = parseObject(itemText);
    object->set(member, parseObject("{\"v\":" + json + "}")->get("v"));
    return stringify(*object);
}

std::string item(const std::string& type, const std::string& key = "",
                 const std::string& member = "key") {
    return key.empty() ? freshItemText(type) : set(freshItemText(type), member, key);
}

const std::string kQ = R"({"device":"keyboard","text":"Q","scan_code":16,"virtual_key":81})";
const std::string kCtrl = R"({"device":"keyboard","text":"Ctrl","scan_code":29,"virtual_key":17})";
const std::string kPadA = R"({"device":"joystick","text":"A","scan_code":1,"virtual_key":1})";

struct Case {
    int status;
    std::vector<std::string> args;
    std::vector<std::string> out;  // each must appear in the standard output
    std::string input = "";
    std::string absent = "";  // must not appear in the standard output
};

TEST(Tool, CommandsStatusAndOutput) {
    std::list<TempFile> files;
    auto doc = [&files](const std::string& items) {
        files.emplace_back();
        files.back().write(documentWith(items));
        return files.back().path();
    };
    Poco::JSON::Object::Ptr spell = parseObject(item("Spell", kQ));
    spell->getObject("swipehold_info")->remove("steps");
    const std::string broken = doc(item("Fire") + "," + stringify(*spell));
    const std::string collide = doc(item("Spell", kQ) + "," + item("Staring", kQ));
    // Arrow keys on both: the pair's positive key and the look item's top key.
    const std::string arrows = doc(item("Wheel") + "," + item("Eye"));
    // A combination collides with the same combination, not with its first key alone.
    const std::string combos =
        doc(set(item("Macro", kQ), "second_key", kCtrl) + "," + item("Spell", kQ) + "," +
            set(item("Curve", kQ), "second_key", kCtrl));
    const std::string pads = doc(item("Spell", kPadA) + "," + item("Staring", kPadA));
    const std::string unset = R"({"device":"","text":"","scan_code":0,"virtual_key":0})";
    const std::string invalid = doc(item("Spell") + "," + item("Eye", unset, "top_key"));
    const std::string macros =
        doc(item("Macro", R"(["loop_end","jump twice"])", "release_actions"));
    TempFile compact, copy, unloadable;
    compact.write(documentWith(item("Spell", kQ)));
    const std::string saved = saveText(loadText(compact.read()).get());
    unloadable.write(R"({"keymaps":[{"type":"Spell"}]})");
    std::vector<Case> cases = {
        {0, {"--version"}, {"zuno-keymap 1.0.0\n"}},
        {0, {"--help"}, {"check", "fmt", "list", "new", "macro", "key"}},
        {2, {}, {}},
        {2, {"frobnicate"}, {}},
        {2, {"check", "--fast", kBlank}, {}},
        {2, {"fmt", "--check", "--in-place", kBlank}, {}},
        {2, {"fmt", "--in-place", kBlank}, {}},
        {2, {"key", "keyboard", "thirty"}, {}},
        {2, {"macro", "explain"}, {}},
        {0, {"check", kBlank}, {kBlank + ": ok (0 items)"}},
        {0, {"check", "--joystick", kBlank}, {"ok"}},
        {0, {"check", kShooter}, {"ok (8 items)"}},
        {0, {"check", "-"}, {"<stdin>: ok"}, documentWith(item("Spell", kQ))},
        {1, {"check", broken}, {"keymaps[1].swipehold_info.steps: required integer is missing"}},
        {1, {"check", broken}, {"type \"Spell\""}},
        {1, {"check", "-"}, {"line 2, column 12"}, "{\n  \"info\": [}\n"},
        {2, {"check", "/nonexistent/k.json"}, {"no such file"}},
        {1, {"check", collide}, {"[0] (Spell) and keymaps[1] (Staring) collide: both fire on Q"}},
        {1, {"check", arrows}, {"keymaps[0] (Wheel) and keymaps[1] (Eye) collide"}},
        {1,
         {"check", combos},
         {"keymaps[0] (Macro) and keymaps[2] (Curve) collide"},
         "",
         "and keymaps[1]"},
        {1, {"check", "--joystick", pads}, {"both fire on A"}},
        {1, {"check", invalid}, {"keymaps[0] (Spell): invalid: no key is assigned"}},
        {1,
         {"check", macros},
         {"keymaps[0] (Macro): release_actions line 2: not a macro command: \"jump"}},
        {0, {"fmt", kBlank}, {"\"keymaps\": [", "\"wheel_policy\""}},
        {0, {"fmt", "--check", kShooter}, {}},
        {0, {"fmt", "--check", "--joystick", kGamepad}, {}},
        {1, {"fmt", "--check", compact.path()}, {"not in the saved form"}},
        {0, {"fmt", compact.path()}, {saved}},
        {0, {"fmt", "-o", copy.path(), compact.path()}, {}},
        {0, {"fmt", "--in-place", compact.path()}, {}},
        {0, {"fmt", "--check", compact.path()}, {}},
        {1, {"fmt", "-"}, {}, R"({"keymaps":[]})"},
        {1, {"fmt", "--in-place", unloadable.path()}, {}},
        {0, {"list", kBlank}, {"keymap document, 0 items", "INDEX  TYPE"}},
        {0,
         {"list", kShooter},
         {"0      Swipehold    top:W right:D bottom:S left:A", "0.180,0.720  yes"}},
        {0, {"list", "--joystick", kGamepad}, {"gamepad"}},
        {1, {"list", "-"}, {}, "[]"},
        {0, {"new", "Fire"}, {"\"type\": \"Fire\"", "\"need_fire_and_drag\""}},
        {0, {"new", "--list"}, {"Click\nBunchClick\nSwipehold\n", "\nTip\n"}},
        {2, {"new", "click"}, {}},
        {0, {"macro", "check"}, {}, "sleep 50\n\nrelease_actions\nloop_end\n"},
        {1, {"macro", "check", "-"}, {"<stdin>:2:"}, "sleep 50\njump\n"},
        {0,
         {"macro", "to-running"},
         {"stop_loop\nrelease_actions\nclick_rel:\n"},
         "loop_end\nrelease_actions\nclick 1,2\n"},
        {1, {"macro", "to-editing"}, {"loop_end\n"}, "stop_loop\nnonsense\n"},
        {2, {"macro", "check", "/nonexistent"}, {}},
        // The caption comes from the code as given; right Alt has none of its own.
        {0, {"key", "keyboard", "312", "18"}, {"caption: \"\"\nscan_code: 56"}},
        {0, {"key", "keyboard", "56"}, {"caption: \"Alt\"\nscan_code: 56"}},
        {0, {"key", "mouse", "0x1"}, {"caption: \"left_mouse\"", "scan_code: 1"}},
        {0, {"key", "joystick", "5"}, {"caption: \"\""}},
    };
    for (const char* command : {"check", "fmt", "list", "new", "macro", "key"}) {
        cases.push_back({0, {command, "--help"}, {std::string("usage: zuno-keymap ") + command}});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args));
        const Result result = run(c.args, c.input);
        EXPECT_EQ(result.status, c.status) << result.out << result.err;
        for (const std::string& fragment : c.out) {
            EXPECT_NE(result.out.find(fragment), std::string::npos) << fragment << "\nin:\n"
                                                                    << result.out;
        }
        EXPECT_TRUE(c.absent.empty() || result.out.find(c.absent) == std::string::npos);
    }
    EXPECT_EQ(copy.read(), saved);
    EXPECT_EQ(compact.read(), saved);
    // A document that does not load is never written over.
    EXPECT_EQ(unloadable.read(), R"({"keymaps":[{"type":"Spell"}]})");
    // What `new` prints loads back as an item.
    EXPECT_EQ(loadText(documentWith(run({"new", "Observe"}).out))->items.size(), 1u);
}

TEST(Tool, CheckWritesTheSameReportAsJson) {
    TempFile broken;
    broken.write(documentWith(item("Spell", "3", "spell_option")));
    const Result result = run({"check", "--json", broken.path(), kShooter});
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

}  // namespace
