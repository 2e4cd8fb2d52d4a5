// The zuno-keymap tool, run as a user runs it: arguments in, output and exit
// status out.

#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <list>
#include <set>
#include <thread>

#include <Poco/Pipe.h>
#include <Poco/PipeStream.h>
#include <Poco/Process.h>
#include <Poco/StreamCopier.h>

#include "tests/ProcessSupport.h"
#include "tests/TestSupport.h"

namespace {

using namespace testsupport;

const std::string kTool = ZUNO_KEYMAP_TOOL;
const std::string kShooter = ZUNO_KM_EXAMPLES_DIR "/shooter.json";
const std::string kGamepad = ZUNO_KM_EXAMPLES_DIR "/gamepad.json";
const std::string kBlank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";

Result run(const std::vector<std::string>& args, const std::string& input = "") {
    return RunProgram(kTool, args, input);
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
    std::string err = "";     // must appear in the standard error
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
    const std::string warned = doc(set(item("Wheel"), "sensitivty", "5"));
    TempFile compact, copy, unloadable;
    compact.write(documentWith(item("Spell", kQ)));
    const std::string saved = saveText(loadText(compact.read()).get());
    unloadable.write(R"({"keymaps":[{"type":"Spell"}]})");
    TempFile built;  // made by `add`
    std::remove(built.path().c_str());
    const std::string& b = built.path();
    std::vector<Case> cases = {
        {0, {"--version"}, {"zuno-keymap 1.0.0\n"}},
        {0, {"--help"}, {"check", "fmt", "list", "new", "macro", "key"}},
        {2, {}, {}},
        {2, {"frobnicate"}, {}, "", "", "not expected: frobnicate"},
        {2,
         {"check", "--fast", kBlank},
         {},
         "",
         "",
         "check: The following argument was not expected: --fast"},
        {2, {"check"}, {}, "", "", "FILE is required"},
        {2,
         {"key", "-x", "1"},
         {},
         "",
         "",
         "zuno-keymap key: The following argument was not expected: -x"},
        {2, {"new", "-x"}, {}, "", "", "not expected: -x"},
        {2, {"list", kBlank, kBlank}, {}, "", "", "not expected: " + kBlank},
        {2, {"fmt", "--check", "--in-place", kBlank}, {}, "", "", "--in-place excludes --check"},
        {2, {"fmt", "--in-place", kBlank}, {}},
        {2, {"fmt", "--in-place", "blank"}, {}},
        {2, {"check", "--", "--json"}, {"--json: error: cannot read"}},
        // Keys the tool would store but no device has.
        {2, {"add", b, "Click", "--key", "joystick: A"}, {}, "", "", "has no blanks"},
        {2, {"add", b, "Click", "--key", "keyboard:-1"}, {}, "", "", "has the code -1"},
        {2, {"add", b, "Click", "--key", "keyboard:0x7fffffff"}, {}, "", "", "has the code"},
        {2,
         {"add", b, "Click", "--key", "keyboard:0"},
         {},
         "",
         "",
         "no keyboard key has the code 0"},
        {2, {"add", b, "Click", "--key", "keyboard:99999"}, {}, "", "", "has the code 99999"},
        {2, {"add", b, "Click", "--key", "mouse:999"}, {}, "", "", "no mouse key has the code 999"},
        {2, {"add", b, "Click", "--key", "Reserved"}, {}, "", "", "no keyboard key named"},
        {2, {"key", "keyboard", "thirty"}, {}, "", "", "no keyboard key named 'thirty'"},
        {2, {"key", "pad", "A"}, {}, "", "", "no device 'pad'"},
        {2, {"macro", "explain"}, {}},
        {2, {"macro"}, {}, "", "", "one of check, to-running, to-editing"},
        {0, {"check", kBlank}, {kBlank + ": ok (0 items)"}},
        {0, {"check", "--joystick", kBlank}, {"ok"}},
        {0, {"check", "blank", "blank-gamepad", "system"}, {"blank: ok", "blank-gamepad: ok"}},
        {0, {"check", kShooter}, {"ok (8 items)"}},
        {0, {"check", "-"}, {"<stdin>: ok"}, documentWith(item("Spell", kQ))},
        {1, {"check", broken}, {"keymaps[1].swipehold_info.steps: required integer is missing"}},
        {1, {"check", broken}, {"type \"Spell\""}},
        {1, {"check", "-"}, {"line 2, column 12"}, "{\n  \"info\": [}\n"},
        {2, {"check", "/nonexistent/k.json"}, {"no such file"}},
        {1, {"check", collide}, {"[0] (Spell) and keymaps[1] (Staring) collide: both fire on Q"}},
        // Where it is, as compilers and workflow annotations say it.
        {1,
         {"check", "--format", "gcc", collide},
         {collide + ":", ": warning: keymaps[0] (Spell) and", " [key-collision]\n"}},
        {1,
         {"check", "--format", "github", collide},
         {"::warning file=", ",line=", ",title=key-collision::keymaps[0] (Spell)"}},
        {2, {"check", "--format", "xml", collide}, {}, "", "", "--format"},
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
        {0, {"check", warned}, {"keymaps[0].sensitivty (Wheel): unknown member", "ok, 2 warning"}},
        {1, {"check", "--strict", warned}, {"did you mean sensitivity?"}},
        {0, {"fmt", kBlank}, {"\"keymaps\": [", "\"wheel_policy\""}},
        {0, {"fmt", "--check", kShooter}, {}},
        {0, {"fmt", "--check", "--joystick", kGamepad}, {}},
        {1,
         {"fmt", "--check", compact.path()},
         {"--- " + compact.path() + "\n+++ " + compact.path() + " (saved form)\n@@ -1,",
          "\n-{\"info\"", "\n+    \"keymaps\": [\n"}},
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
        {2, {"new", "--list", "--document"}, {}},
        {0, {"new", "--document"}, {"\"is_joystick\": false", "\"keymaps\": ["}},
        {0, {"new", "--document", "--joystick"}, {"\"is_joystick\": true"}},
        // A new file starts blank; keys by name, in the type's own order.
        {0,
         {"add", b, "Swipehold", "--key", "W", "--key", "D", "--key", "S", "--key", "A", "--at",
          "0.2,0.7"},
         {b + ": added keymaps[0] (Swipehold)"}},
        {0, {"add", b, "Spell", "--key", "Q", "--key", "Ctrl", "--at", "0.5,0.25"}, {"keymaps[1]"}},
        {2, {"add", b, "Fire", "--key", "mouse:left", "--key", "Q"}, {}, "", "", "at most 1 --key"},
        {2, {"add", b, "Spell", "--at", "2,0"}, {}},
        {2, {"add", b, "Spell", "--key", "nokey"}, {}, "", "", "no keyboard key named 'nokey'"},
        {0, {"set", b, "keymaps[1].spell_info.rel_radius=0.1", "keymaps[1].second_key="}, {}},
        {0, {"set", b, "keymaps[1].key=mouse:right", "keymaps[1].icon.description=cast"}, {}},
        {1, {"set", b, "keymaps[1].spell_info=3"}, {}, "", "", "keymaps[1].spell_info"},
        {2,
         {"set", b, "keymaps[1].spell_info.radius=3"},
         {},
         "",
         "",
         "no member keymaps[1].spell_info.radius"},
        {2, {"set", b, "keymaps[7].key=Q"}, {}, "", "", "no element keymaps[7]"},
        {2, {"set", b, "keymaps[0]"}, {}, "", "", "not PATH=VALUE"},
        {2, {"set", "blank", "info.visibility=false"}, {}},
        {0,
         {"list", b},
         {"0      Swipehold  top:W right:D bottom:S left:A  0.200,0.700",
          "1      Spell      right_mouse                    0.500,0.250"}},
        // A whole item moves with its points.
        {0, {"set", b, "--at", "keymaps[1]=0.25,0.5"}, {}},
        {0, {"list", b}, {"1      Spell      right_mouse                    0.250,0.500"}},
        {2, {"set", b, "--at", "keymaps[1]=2,0"}, {}, "", "", "--at takes ITEM=X,Y"},
        {2, {"set", b, "--at", "keymaps[9]=0,0"}, {}, "", "", "no element keymaps[9]"},
        {0, {"macro", "check"}, {}, "sleep 50\n\nrelease_actions\nloop_end\n"},
        {1, {"macro", "check", "-"}, {"<stdin>:2:"}, "sleep 50\njump\n"},
        {0,
         {"macro", "to-running"},
         {"stop_loop\nrelease_actions\nclick_rel:\n"},
         "loop_end\nrelease_actions\nclick 1,2\n"},
        {1, {"macro", "to-editing"}, {"loop_end\n"}, "stop_loop\nnonsense\n"},
        {2, {"macro", "check", "/nonexistent"}, {}},
        // The caption comes from the code as given; right Alt has none of its own.
        {0,
         {"key", "keyboard", "312"},
         {R"({"device":"keyboard","scan_code":56,"text":"","virtual_key":18})"}},
        {0, {"key", "keyboard", "56", "99"}, {R"("scan_code":56,"text":"Alt","virtual_key":99})"}},
        {0,
         {"key", "keyboard", "Q"},
         {R"({"device":"keyboard","scan_code":16,"text":"Q","virtual_key":81})"}},
        {0, {"key", "keyboard", "16"}, {R"("text":"Q")"}},
        {0, {"key", "keyboard", "ctrl"}, {R"("scan_code":29,"text":"Ctrl","virtual_key":17})"}},
        {0,
         {"key", "keyboard", "up"},
         {R"("scan_code":328,"text":"Direction_up","virtual_key":38})"}},
        {0, {"key", "keyboard", "Home"}, {R"("scan_code":327,"text":"Home","virtual_key":36})"}},
        {0, {"key", "mouse", "left"}, {R"("scan_code":1,"text":"left_mouse","virtual_key":1})"}},
        {0, {"key", "mouse", "0x10"}, {R"("text":"forward_mouse","virtual_key":6})"}},
        {0,
         {"key", "joystick", "LB"},
         {R"("scan_code":2147483647,"text":"LB","virtual_key":2147483647})"}},
        {2, {"key", "keyboard", "Q", "81"}, {}},
        {0, {"key", "--list", "mouse"}, {"left_mouse\t1\nright_mouse\t2\n"}},
    };
    for (const char* command : {"check", "fmt", "list", "new", "add", "set", "macro", "key"}) {
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
        EXPECT_NE(result.err.find(c.err), std::string::npos) << c.err << "\nin:\n" << result.err;
    }
    EXPECT_EQ(copy.read(), saved);
    EXPECT_EQ(compact.read(), saved);
    // A document that does not load is never written over.
    EXPECT_EQ(unloadable.read(), R"({"keymaps":[{"type":"Spell"}]})");
    // `set` saved nothing from the edit that did not load.
    EXPECT_EQ(loadText(built.read())->items.size(), 2u);
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
    // Each finding says where its value is written, as `--format gcc` does.
    Poco::JSON::Object::Ptr finding = documents->getObject(0)->getArray("findings")->getObject(0);
    EXPECT_GT(finding->getValue<int>("line"), 0);
    EXPECT_GT(finding->getValue<int>("column"), 0);
    EXPECT_TRUE(documents->getObject(1)->getValue<bool>("loaded"));
    EXPECT_EQ(documents->getObject(1)->getArray("collisions")->size(), 0u);
}

// The keys the library's own items start with are what `key` builds from the
// same device and code: the tool, the editor and the library share one table.
TEST(Tool, KeysAreTheLibrarysOwn) {
    std::set<std::pair<std::string, int>> seen;
    for (const std::string_view type : km::kDocumentItemTypeNames) {
        std::unique_ptr<km::ConfigItem> fresh(km::CreateConfigItem(std::string(type)));
        for (const km::KeyTrigger& trigger : km::KeyTriggersOf(*fresh)) {
            const km::ConfigKey& key = trigger.first;
            if (key.device == "joystick" || !seen.emplace(key.device, key.scan_code).second) {
                continue;
            }
            SCOPED_TRACE(std::string(type) + " " + trigger.role);
            const Result result = run({"key", key.device, std::to_string(key.scan_code)});
            ASSERT_EQ(result.status, 0) << result.err;
            EXPECT_EQ(stringify(*parseObject(result.out)), stringify(*km::KeyToJson(key)));
        }
    }
    EXPECT_GE(seen.size(), 5u) << "keyboard keys, mouse buttons and the wheel";
}

// File names are UTF-8 as the user typed them, and what the tool writes is
// the same bytes on every platform: no line end is translated.
TEST(Tool, NonAsciiFileNamesAndExactBytes) {
    const std::string saved = readBytes(kShooter);
    for (const std::string name : {"cl\u00e9.json", "\u9375\u4f4d.json"}) {
        SCOPED_TRACE(name);
        TempDir dir;
        const std::string source = dir.file(name);
        const std::string copy = dir.file(name + ".out");
        writeBytes(source, saved);
        EXPECT_EQ(run({"check", source}).status, 0);
        const Result printed = run({"fmt", source});
        EXPECT_EQ(printed.status, 0);
        EXPECT_EQ(printed.out, saved) << "standard output carries the saved bytes";
        EXPECT_EQ(run({"fmt", "-o", copy, source}).status, 0);
        EXPECT_EQ(readBytes(copy), saved);
        EXPECT_EQ(run({"fmt", "--in-place", source}).status, 0);
        EXPECT_EQ(readBytes(source), saved);
        EXPECT_EQ(run({"fmt", "-"}, saved).out, saved) << "from standard input";
        EXPECT_EQ(dir.entries(), (std::vector<std::string>{name, name + ".out"}));
    }
}

// A tool that writes keeps everything it read, or writes nothing: an element
// the library does not keep is named, and only --force drops it.
TEST(Tool, WritesLoseNothingUnlessForced) {
    const std::string known = documentWith(item("Click", kQ));
    const std::string unknownMember = set(known, "$schema", "\"x\"");
    const std::string unknownType = documentWith(item("Click", kQ) + R"(,{"type":"Clik"})");
    const auto visibility = [&known](const std::string& members) {
        std::string text = known;
        return text.replace(text.find(R"("visibility":true)"), 17, members);
    };
    const std::string saidNo = visibility(R"("visibility":"no")");
    const std::string twice = visibility(R"("visibility":true,"visibility":false)");
    struct Row {
        const char* what;
        std::string text;               // the file before
        std::vector<std::string> args;  // FILE is appended
        int status;
        std::string err;  // must appear in the standard error
        bool written;
    };
    const std::vector<Row> rows = {
        {"a misspelt type set",
         known,
         {"set", "--", "keymaps[0].type=Swipehlod"},
         1,
         "keymaps[0] (type \"Swipehlod\")",
         false},
        {"a misspelt member set",
         known,
         {"set", "--", "keymaps[0].colour=1"},
         2,
         "no member",
         false},
        {"an unknown top-level member",
         unknownMember,
         {"fmt", "--in-place"},
         1,
         "  $schema\n",
         false},
        {"to standard output too", unknownMember, {"fmt"}, 1, "$schema", false},
        {"forced", unknownMember, {"fmt", "--in-place", "--force"}, 0, "", true},
        {"an unknown type kept by add",
         unknownType,
         {"add", "--key", "W", "--", "Click"},
         1,
         "keymaps[1] (type \"Clik\")",
         false},
        {"set forced", unknownType, {"set", "--force", "--", "keymaps[0].key=W"}, 0, "", true},
        {"set on a clean file", known, {"set", "--", "keymaps[0].key=W"}, 0, "", true},
        // Kept, but as another value: as good as lost.
        {"a value read as another",
         saidNo,
         {"fmt", "--in-place"},
         1,
         "info.visibility (\"no\" would be written as true)",
         false},
        {"a value set as another",
         known,
         {"set", "--", "info.visibility=no"},
         1,
         "info.visibility (\"no\"",
         false},
        {"a member written twice",
         twice,
         {"fmt", "--in-place"},
         1,
         "info.visibility (written",
         false},
        {"twice, by add", twice, {"add", "--", "Click"}, 1, "written twice", false},
        {"twice, forced", twice, {"fmt", "--in-place", "--force"}, 0, "", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        TempFile file;
        file.write(row.text);
        std::vector<std::string> args = row.args;
        // "--" stands for FILE where it goes before other arguments.
        const auto dashes = std::find(args.begin(), args.end(), "--");
        if (dashes != args.end()) {
            *dashes = file.path();
        } else {
            args.push_back(file.path());
        }
        const Result result = run(args);
        EXPECT_EQ(result.status, row.status) << result.err;
        EXPECT_NE(result.err.find(row.err), std::string::npos) << result.err;
        EXPECT_EQ(file.read() != row.text, row.written);
    }
}

// A document's text and a file's name are shown, never obeyed: escape
// sequences reach the terminal as visible escapes, and no line feed in them
// starts a line of its own (a forged finding).
TEST(Tool, DocumentTextCannotDriveTheTerminal) {
    TempDir dir;
    const std::string hostile =
        R"({"device":"keyboard","text":"\u001b]0;owned\u0007\u001b[2J\u00c2\u009b)"
        R"(\nmain.c:1:1: error: forged","scan_code":16,"virtual_key":81})";
    const std::string file = dir.file("k.json");
    writeBytes(file, documentWith(item("Click", hostile) + "," + item("Click", hostile)));
    const std::string member = dir.file("member.json");
    writeBytes(member,
               set(documentWith(item("Click", kQ)), "\u001b[2J\nmain.c:1:1: error: x", "1"));
    std::vector<std::vector<std::string>> runs = {{"check", file},
                                                  {"check", "--format", "gcc", file},
                                                  {"list", file},
                                                  {"fmt", "--in-place", member},
                                                  {"set", member, "keymaps[0].key=W"},
                                                  {"add", member, "Click"}};
#ifndef _WIN32
    // Names no shell would type, but files may have.
    const std::string named = dir.file("n\nmain.c:1:1: error: \x1b[2J.json");
    const std::string broken = dir.file("b\nmain.c:1:1: error: \x1b[2J.json");
    writeBytes(named, readBytes(file));
    writeBytes(broken, "{");
    runs.push_back({"check", named});
    runs.push_back({"diff", file, named});
    runs.push_back({"diff", file, broken});
    runs.push_back({"render", "-o", dir.file("out.svg"), broken});
    runs.push_back({"fmt", "--check", broken});
#endif
    for (const std::vector<std::string>& args : runs) {
        SCOPED_TRACE(testing::PrintToString(args));
        const Result result = run(args);
        for (const std::string& text : {result.out, result.err}) {
            EXPECT_EQ(text.find('\x1b'), std::string::npos) << text;
            EXPECT_EQ(text.find("\xc2\x9b"), std::string::npos) << text;
            EXPECT_EQ(text.find("\nmain.c:1:1:"), std::string::npos) << text;
        }
    }
    const Result checked = run({"check", file});
    EXPECT_NE(checked.out.find("\\x1b]0;owned\\x07"), std::string::npos) << checked.out;
    EXPECT_NE(checked.out.find("\\x0amain.c:1:1:"), std::string::npos) << checked.out;
}

// A folder is checked file by file, and the run ends with what it found.
TEST(Tool, FoldersAreCheckedWithASummary) {
    TempDir dir;
    std::filesystem::create_directories(std::filesystem::u8path(dir.file("a/b")));
    const std::string clean = readBytes(kShooter);
    for (int i = 0; i < 200; ++i) {
        writeBytes(dir.file((i % 2 == 0 ? "a/" : "a/b/") + std::to_string(i) + ".json"), clean);
    }
    writeBytes(dir.file("collide.json"),
               documentWith(item("Spell", kQ) + "," + item("Staring", kQ)));
    writeBytes(dir.file("broken.json"), "{\"keymaps\": [");
    writeBytes(dir.file("package.json"), "{\"name\": \"not a keymap\"}");
    writeBytes(dir.file("notes.txt"), "not JSON at all");
    const Result result = run({"check", dir.file("")});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(
        result.out.find("203 files: 200 clean, 1 with warnings, 1 with errors, 1 not keymaps"),
        std::string::npos)
        << result.out.substr(result.out.size() > 300 ? result.out.size() - 300 : 0);
    EXPECT_NE(result.out.find("package.json: not a keymap document, skipped"), std::string::npos);
}

// A background of any size is looked at before it is read.
TEST(Tool, HugeBackgroundsAreRefusedUnread) {
    TempDir dir;
    const std::string image = dir.file("shot.png");
    writeBytes(image, std::string("\x89PNG\r\n\x1a\n", 8));
    std::filesystem::resize_file(std::filesystem::u8path(image), 3ULL << 30);  // sparse
    const Result result = run({"render", kShooter, "--background", image});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("larger than 32 MiB"), std::string::npos) << result.err;
}

#ifndef _WIN32
// A file name that is not UTF-8 still gives valid JSON.
TEST(Tool, CheckJsonIsValidForAnyFileName) {
    TempDir dir;
    const std::string path = dir.file("k\xff.json");
    writeBytes(path, documentWith(item("Click", kQ)));
    const Result result = run({"check", "--json", path});
    EXPECT_NO_THROW(Poco::JSON::Parser().parse(result.out)) << result.out;
    EXPECT_NE(result.out.find("k\xef\xbf\xbd.json"), std::string::npos) << result.out;
}

// The words that run the tool as another user than the test's: root runs
// it as nobody, where setpriv can, so that file modes bite; empty where
// nothing can.
std::vector<std::string> asAnotherUser() {
    if (geteuid() != 0) {
        return {kTool};
    }
    if (access("/usr/bin/setpriv", X_OK) != 0) {
        return {};
    }
    return {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", kTool};
}

Result runAs(std::vector<std::string> words, const std::vector<std::string>& args) {
    const std::string program = words.front();
    words.erase(words.begin());
    words.insert(words.end(), args.begin(), args.end());
    return RunProgram(program, words);
}

// Whatever in a folder cannot be read is an I/O error that names it, and the
// walk goes on past it to the keymaps beside it.
TEST(Tool, WhatCannotBeReadInAFolderIsAnError) {
    const std::vector<std::string> user = asAnotherUser();
    if (user.empty()) {
        GTEST_SKIP() << "cannot run the tool as another user here";
    }
    TempDir dir;
    const std::string clean = readBytes(kShooter);
    std::filesystem::create_directories(std::filesystem::u8path(dir.file("locked")));
    writeBytes(dir.file("locked/inside.json"), clean);
    writeBytes(dir.file("secret.json"), clean);
    writeBytes(dir.file("broken.json"), "{\"keymaps\": [");
    ASSERT_EQ(symlink("nowhere.json", dir.file("gone.json").c_str()), 0);
    ASSERT_EQ(mkfifo(dir.file("pipe.json").c_str(), 0644), 0);
    chmod(dir.file("").c_str(), 0755);
    chmod(dir.file("locked").c_str(), 0);
    chmod(dir.file("secret.json").c_str(), 0);
    const Result result = runAs(user, {"check", dir.file("")});
    chmod(dir.file("locked").c_str(), 0755);  // for the clean-up
    EXPECT_EQ(result.status, 2) << result.out << result.err;
    for (const char* named :
         {"locked: error: cannot read the folder", "secret.json: error:", "gone.json: error:",
          "pipe.json: error: cannot read it: not a regular file",
          "broken.json: error: malformed"}) {
        EXPECT_NE(result.out.find(named), std::string::npos) << named << "\nin:\n" << result.out;
    }
    EXPECT_EQ(result.out.find("skipped"), std::string::npos) << result.out;
}

// Twenty tools adding to one file at once keep every item, also where the
// folder may be written but not read by them.
TEST(Tool, ParallelAddsKeepEveryItem) {
    const std::vector<std::string> user = asAnotherUser();
    if (user.empty()) {
        GTEST_SKIP() << "cannot run the tool as another user here";
    }
    TempDir dir;
    chmod(dir.file("").c_str(), 0733);
    const std::string file = dir.file("k.json");
    std::vector<std::thread> adders;
    std::atomic<int> failed{0};
    // Enough to overlap; few enough that the last one's wait for the lock
    // stays well inside the tool's limit on a loaded machine.
    constexpr int kAdders = 10;
    for (int i = 0; i < kAdders; ++i) {
        adders.emplace_back([&] { failed += runAs(user, {"add", file, "Click"}).status != 0; });
    }
    for (std::thread& adder : adders) {
        adder.join();
    }
    chmod(dir.file("").c_str(), 0755);
    EXPECT_EQ(failed, 0);
    EXPECT_EQ(loadText(readBytes(file))->items.size(), std::size_t{kAdders});
    EXPECT_EQ(dir.entries(), std::vector<std::string>{"k.json"}) << "the lock file goes";
}

// Another user who may read the folder, the file and a lock file left
// behind, but write none of them, cannot hold the owner's edit up.
TEST(Tool, ReadersCannotHoldTheLock) {
    const std::vector<std::string> user = asAnotherUser();
    if (geteuid() != 0 || user.empty() || access("/usr/bin/flock", X_OK) != 0) {
        GTEST_SKIP() << "needs root, setpriv and flock";
    }
    TempDir dir;
    chmod(dir.file("").c_str(), 0755);
    const std::string file = dir.file("k.json");
    writeBytes(file, documentWith(item("Click", kQ)));
    writeBytes(dir.file(".k.json.zuno-keymap-lock"), "");
    std::vector<Poco::ProcessHandle> holders;
    for (const std::string& path : {dir.file(""), file, dir.file(".k.json.zuno-keymap-lock")}) {
        std::vector<std::string> args(user.begin() + 1, user.end() - 1);
        // One process that holds the lock until it is killed.
        args.insert(args.end(),
                    {"/bin/sh", "-c", "exec 9<\"$0\" && flock -n 9 && exec sleep 30", path});
        holders.push_back(Poco::Process::launch(user.front(), args));
        for (int tries = 0; tries < 250; ++tries) {
            if (RunProgram("/usr/bin/flock", {"-n", "-E", "99", path, "true"}).status == 99) {
                break;  // held
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    const Result result = run({"add", file, "Click"});
    for (Poco::ProcessHandle& holder : holders) {
        Poco::Process::kill(holder);
        holder.wait();
    }
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(loadText(readBytes(file))->items.size(), 2U);
}

// Where no lock can be taken, the edit says so and writes nothing.
TEST(Tool, NoLockNoEdit) {
    for (const bool link : {false, true}) {
        SCOPED_TRACE(link ? "a link in the lock file's place" : "a folder in its place");
        TempDir dir;
        const std::string file = dir.file("k.json");
        writeBytes(file, documentWith(item("Click", kQ)));
        const std::string lock = dir.file(".k.json.zuno-keymap-lock");
        if (link) {
            ASSERT_EQ(symlink("elsewhere", lock.c_str()), 0);
        } else {
            std::filesystem::create_directory(std::filesystem::u8path(lock));
        }
        for (const std::vector<std::string>& args : {std::vector<std::string>{"add", file, "Click"},
                                                     {"set", file, "keymaps[0].key=W"},
                                                     {"fmt", "--in-place", file}}) {
            SCOPED_TRACE(args[0]);
            const Result result = run(args);
            EXPECT_EQ(result.status, 2);
            EXPECT_NE(result.err.find("cannot lock '" + file + "'"), std::string::npos)
                << result.err;
            EXPECT_EQ(readBytes(file), documentWith(item("Click", kQ)));
        }
    }
}

// '-' is standard output for every -o; output that cannot be written is an
// error, not a silent loss.
TEST(Tool, StandardOutputIsAnOutputLikeAnyOther) {
    struct Row {
        std::string shell;  // run with the tool as $0
        int status;
        std::string out;
    };
    const std::vector<Row> rows = {
        {"exec \"$0\" fmt -o - " + kShooter, 0, "\"keymaps\""},
        {"exec \"$0\" render -o - " + kShooter, 0, "<svg"},
        {"exec \"$0\" fmt -o /dev/stdout " + kShooter, 0, "\"keymaps\""},
        {"exec \"$0\" fmt " + kShooter + " >&-", 2, ""},
        {"exec \"$0\" fmt " + kShooter + " >/dev/full", 2, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.shell);
        const Result result = RunProgram("/bin/sh", {"-c", row.shell, kTool});
        EXPECT_EQ(result.status, row.status) << result.err;
        EXPECT_NE(result.out.find(row.out), std::string::npos);
    }
}

// An output that names a descriptor the tool was given is written to that
// descriptor, where the shell put it: a log appended to keeps its lines.
TEST(Tool, OutputToADescriptorIsWrittenThere) {
    const std::string saved = readBytes(kShooter);
    struct Row {
        std::string output;
        std::string redirect;  // of the whole group
        int status;
    };
    const std::vector<Row> rows = {
        {"/dev/stdout", ">>", 0},  {"/dev/fd/1", ">>", 0}, {"/proc/self/fd/1", ">>", 0},
        {"/dev/stderr", "2>>", 0}, {"/dev/fd/7", ">>", 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.output);
        TempDir dir;
        const std::string log = dir.file("log.txt");
        writeBytes(log, "earlier\n");
        const std::string shell =
            "{ echo before >&" + std::string(row.redirect == ">>" ? "1" : "2") +
            "; \"$0\" fmt -o " + row.output + " " + kShooter + "; s=$?; echo after >&" +
            (row.redirect == ">>" ? "1" : "2") + "; exit $s; } " + row.redirect + " " + log;
        const Result result = RunProgram("/bin/sh", {"-c", shell, kTool});
        EXPECT_EQ(result.status, row.status) << result.err;
        EXPECT_EQ(readBytes(log),
                  "earlier\nbefore\n" + (row.status == 0 ? saved : std::string()) + "after\n");
        EXPECT_EQ(dir.entries(), std::vector<std::string>{"log.txt"});
    }
}

// With no thread to be had, a malformed file is still reported like any
// other (exit 1), not an abort: the tools load without the host's callback
// thread. Root ignores the limit, so root runs the tool as nobody.
TEST(Tool, NoThreadsLeftIsNoCrash) {
    TempFile file;
    file.write("{\"keymaps\": [");
    chmod(file.path().c_str(), 0644);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) {
            _exit(100);
        }
        const rlimit none{1, 1};
        setrlimit(RLIMIT_NPROC, &none);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, STDOUT_FILENO);
        dup2(null, STDERR_FILENO);
        execl(kTool.c_str(), kTool.c_str(), "check", file.path().c_str(), nullptr);
        _exit(101);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) >= 100) {
        GTEST_SKIP() << "cannot run the tool as another user here";
    }
    ASSERT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 1);
}

// Started without a standard input (as some job runners start programs), the
// tool says it cannot read it, as for any unreadable file: no crash.
TEST(Tool, ClosedStandardInputIsAnInputError) {
    struct Row {
        std::vector<std::string> args;
        std::string message;  // on either stream
    };
    const std::vector<Row> rows = {
        {{"check", "-"}, "cannot read the standard input"},
        {{"fmt", "-"}, "cannot read the standard input"},
        {{"render", "-"}, "cannot read the standard input"},
        {{"macro", "check"}, "cannot read '-'"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.args));
        std::vector<std::string> words = {"-c", "exec \"$0\" \"$@\" <&-", kTool};
        words.insert(words.end(), row.args.begin(), row.args.end());
        const Result result = RunProgram("/bin/sh", words);
        EXPECT_EQ(result.status, 2) << result.out << result.err;
        EXPECT_NE((result.out + result.err).find(row.message), std::string::npos)
            << result.out << result.err;
    }
}
#endif

// Every example script of the macro guide passes: editing scripts the grammar
// check, running scripts the conversion (a line no command accepts exits 1).
TEST(Tool, MacroGuideExamplesAreCommands) {
    std::ifstream guide(ZUNO_KM_EXAMPLES_DIR "/../docs/macro.md");
    ASSERT_TRUE(guide) << "docs/macro.md";
    std::string line;
    std::string block;
    std::string form;
    int blocks = 0;
    while (std::getline(guide, line)) {
        if (form.empty() && line.rfind("```macro-", 0) == 0) {
            form = line.substr(9);
            block.clear();
        } else if (!form.empty() && line == "```") {
            SCOPED_TRACE(form + " example:\n" + block);
            const Result result = run({"macro", form == "editing" ? "check" : "to-editing"}, block);
            EXPECT_EQ(result.status, 0) << result.out << result.err;
            EXPECT_TRUE(form == "editing" || form == "running");
            form.clear();
            ++blocks;
        } else if (!form.empty()) {
            block += line + "\n";
        }
    }
    EXPECT_GE(blocks, 10);
}

}  // namespace
