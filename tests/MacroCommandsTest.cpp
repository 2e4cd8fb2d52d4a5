// The commands of the macro language one by one: which lines each accepts in
// both forms, which command the factory picks, and what each writes.

#include <memory>
#include <ostream>
#include <string>
#include <typeindex>
#include <utility>

#include <gtest/gtest.h>

#include <zuno-keymapmanager/keymapmanager.h>

namespace {

namespace km = zunokeymapmanager;

/// The dynamic type of a converter, taken through a reference so that typeid
/// evaluates no call.
std::type_index typeOf(const km::MarcoConVerter& converter) {
    return typeid(converter);
}

struct CommandCase {
    const char* name;
    std::type_index type;
    bool (*isEditing)(const std::string&);
    bool (*isRunning)(const std::string&);
    const char* editing;  // null: the command has no editing line
    const char* running;
    const char* editingOut;
    const char* runningOut;
};

// Without it the test framework prints the raw bytes of a case, padding
// included, which memory checkers report as reads of uninitialised memory.
void PrintTo(const CommandCase& c, std::ostream* out) {
    *out << c.name;
}

// clang-format off
// The class's name, type and predicates.
#define KM_COMMAND(name) \
    #name, typeid(km::Marco##name##ConVerter), &km::Marco##name##ConVerter::isEditingTextMatch, \
        &km::Marco##name##ConVerter::isRunningTextMatch

const CommandCase kCases[] = {
    {KM_COMMAND(Click), "click\t1,2\n mouse", "click_rel:(0.,1);mouse;(2,3.5)", "click ", "click_rel:"},
    {KM_COMMAND(Press), "press mouse", "press_rel:(1,2)", "press ", "press_rel:"},
    {KM_COMMAND(Release), "release 0,0", "release_rel:mouse", "release ", "release_rel:"},
    {KM_COMMAND(Switch), "switch 5,6 mouse", "switch_rel:mouse;mouse", "switch ", "switch_rel:"},
    {KM_COMMAND(Curve), "curve 1,2 3,4 5,6", "curve_rel:(1,2);(3,4)", "curve ", "curve_rel:"},
    {KM_COMMAND(DefaultSleep), "default_sleep_time x default_sleep_time 5", "xdefault_sleep_time:5",
        "default_sleep_time ", "default_sleep_time:"},
    {KM_COMMAND(Sleep), "sleep\n7", "sleep:100", "sleep", "sleep"},
    {KM_COMMAND(KeyboardPress), nullptr, "x keyboard_press:30", "key_press ", "keyboard_press:30"},
    {KM_COMMAND(KeyboardRelease), nullptr, "keyboard_release:31", "key_release ", "keyboard_release:31"},
    {KM_COMMAND(KeyboardSwitch), nullptr, "keyboard_switch:32", "key_switch ", "keyboard_switch:32"},
    {KM_COMMAND(MousePress), nullptr, "mouse_press:1", "mouse_press ", "mouse_press:1"},
    {KM_COMMAND(MouseRelease), nullptr, "mouse_release:2", "mouse_release ", "mouse_release:2"},
    {KM_COMMAND(MouseSwitch), nullptr, "mouse_switch:3", "mouse_switch ", "mouse_switch:3"},
    {KM_COMMAND(StartLoop), "loop\t1 until_release", "start_loop:12until_release", "loop ", "start_loop:"},
    {KM_COMMAND(StopLoop), "loop_end", "stop_loop", "loop_end", "stop_loop"},
    {KM_COMMAND(TextInject), "text\t\"a\" and \"b\"", "text_inject:any \"thing\"", "text \"\"", "text_inject:"},
    {KM_COMMAND(JoystickPress), "xyz joystick_press\t\xc3\xa9", "joystick_press:(x)", "joystick_press ",
        "joystick_press:"},
    {KM_COMMAND(JoystickRelease), "joystick_release B", "joystick_release:B", "joystick_release ",
        "joystick_release:"},
    {KM_COMMAND(JoystickSwitch), "joystick_switch C", "joystick_switch:C", "joystick_switch ",
        "joystick_switch:"},
    {KM_COMMAND(CurveFirstPointSleepTime), "curve_first_time 5 6", "curve_first_point_sleep_time:12",
        "curve_first_time ", "curve_first_point_sleep_time:"},
    {KM_COMMAND(CurveLastPointSleepTime), "curve_last_time untilcmd 5",
        "curve_last_point_sleep_time:until_release_cmd7", "curve_last_time ", "curve_last_point_sleep_time:"},
    {KM_COMMAND(EnterStaring), "enter_staring", "enter_staring", "enter_staring", "enter_staring"},
    {KM_COMMAND(ExitStaring), "exit_staring", "exit_staring", "exit_staring", "exit_staring"},
    {KM_COMMAND(InputHoldSwitch), "hold_switch", "hold_switch", "hold_switch", "hold_switch"},
    {KM_COMMAND(LockWindows), "lock_windows", "lock_windows", "lock_windows", "lock_windows"},
    {KM_COMMAND(UnLockWindows), "unlock_windows", "unlock_windows", "unlock_windows", "unlock_windows"},
    {KM_COMMAND(ReleaseAll), "release_all", "release_all", "release_all", "release_all"},
    {KM_COMMAND(CurveRelease), "curve_release", "curve_release", "curve_release", "curve_release"},
};

// Near misses of the rules above: no command takes them in either form.
const char* const kNoCommand[] = {
    "click 1,2 ", "click 10, 20", "Click 1,2", "click 1.5,2", "click_rel:(.5,1)", "click_rel:(1,2);",
    "sleep 5 ", " sleep 5", "sleep:1x", "default_sleep_time 5x", "default_sleep_time: 5",
    "loop until_release_cmd", "start_loop: 3", "text \"a\rb\"", "text \"a\"\n", "text\"a\"",
    "text_inject:a\nb", "joystick_press A ", "joystick_press:A B", "keyboard_press:30 ",
    "curve_last_point_sleep_time:until_release", "enter_staring ", "release_all ", "lock_windowss",
};
// clang-format on

class MacroCommandTest : public testing::TestWithParam<CommandCase> {};

std::string caseName(const testing::TestParamInfo<CommandCase>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(AllCommands, MacroCommandTest, testing::ValuesIn(kCases), caseName);

TEST_P(MacroCommandTest, IsPickedForItsLinesAndWritesTheOtherForm) {
    const CommandCase& c = GetParam();
    const km::Rect rect(0, 0, 1920, 1080);
    if (c.editing) {
        EXPECT_TRUE(c.isEditing(c.editing));
        const auto converter =
            km::MarcoConVerterFactory::ProduceMarcoConVerterByEditingText(c.editing);
        ASSERT_TRUE(converter);
        EXPECT_EQ(typeOf(*converter), c.type);
        converter->initEditingText(c.editing, rect);
        EXPECT_EQ(converter->converterToRunningText(), c.runningOut);
        EXPECT_EQ(converter->converterToEditingText(), c.editingOut);
    }
    EXPECT_TRUE(c.isRunning(c.running));
    const auto converter = km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(c.running);
    ASSERT_TRUE(converter);
    EXPECT_EQ(typeOf(*converter), c.type);
    converter->initRunningText(c.running, rect);
    EXPECT_EQ(converter->converterToEditingText(), c.editingOut);
    EXPECT_EQ(converter->converterToRunningText(), c.runningOut);
}

TEST(MacroCommands, NearMissesAreNoCommand) {
    for (const char* line : kNoCommand) {
        EXPECT_FALSE(km::MarcoConVerterFactory::ProduceMarcoConVerterByEditingText(line)) << line;
        EXPECT_FALSE(km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(line)) << line;
    }
}

// The key commands end their running line in the code of the running line
// they were made from, when there is one that fits.
TEST(MacroKeyCode, ComesFromTheStoredRunningLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"x keyboard_press:007", "keyboard_press:7"},
        {"keyboard_press:2147483647", "keyboard_press:2147483647"},
        {"keyboard_press:2147483648", "keyboard_press:0"},
        {"keyboard_press:99999999999999999999", "keyboard_press:0"},
        {"keyboard_press:30 ", "keyboard_press:0"},
        {"mouse_press:4", "keyboard_press:0"},
    };
    for (const auto& [stored, out] : cases) {
        km::MarcoKeyboardPressConVerter converter;
        converter.initRunningText(stored, km::Rect());
        EXPECT_EQ(converter.converterToRunningText(), out) << stored;
    }
    km::MarcoMouseSwitchConVerter mouse;
    mouse.initRunningText("mouse_switch:2", km::Rect());
    mouse.converterFromEditingText("mouse_switch 5");
    EXPECT_EQ(mouse.converterToRunningText(), "mouse_switch:2");
}

// A line that several commands accept goes to the one tried first; commands
// that find their keyword anywhere in the line take lines of later commands.
TEST(MacroTryOrder, FirstAcceptingCommandWins) {
    const struct {
        bool running;
        std::string line;
        std::type_index type;
    } cases[] = {
        {false, "sleep default_sleep_time 5", typeid(km::MarcoDefaultSleepConVerter)},
        {false, "text \"joystick_press A\"", typeid(km::MarcoTextInjectConVerter)},
        {false, "text \"x\" joystick_press A", typeid(km::MarcoJoystickPressConVerter)},
        {true, "text_inject:keyboard_press:5", typeid(km::MarcoKeyboardPressConVerter)},
        {true, "text_inject:mouse_press:5", typeid(km::MarcoMousePressConVerter)},
        {true, "text_inject:default_sleep_time:1", typeid(km::MarcoDefaultSleepConVerter)},
        {true, "text_inject:joystick_press:A", typeid(km::MarcoTextInjectConVerter)},
    };
    for (const auto& c : cases) {
        const auto converter =
            c.running ? km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(c.line)
                      : km::MarcoConVerterFactory::ProduceMarcoConVerterByEditingText(c.line);
        ASSERT_TRUE(converter) << c.line;
        EXPECT_EQ(typeOf(*converter), c.type) << c.line;
    }
}

}  // namespace

namespace {

TEST(MacroTouches, ArePointsOfTheTouchingLines) {
    const std::vector<std::string> script = {
        "click 100,200",
        "click 10,20 mouse 30,40",
        "sleep 50",
        "press mouse",
        "release 960,540",
        "switch 1,2 3,4",
        "curve 100,900 500,900 900,500",
        "curve_first_time 30",  // a curve setting, not a curve
        "release_all",          // a plain word, not a release
        "xclick 1,2",           // no command
        "click 1, 2",           // no command
        "click 99999999999,5",  // too large for an int
        "",
    };
    const struct {
        int line;
        const char* command;
        std::vector<km::Point> points;
    } expected[] = {
        {1, "click", {{100, 200}}},
        {2, "click", {{10, 20}, {30, 40}}},
        {4, "press", {}},
        {5, "release", {{960, 540}}},
        {6, "switch", {{1, 2}, {3, 4}}},
        {7, "curve", {{100, 900}, {500, 900}, {900, 500}}},
        {12, "click", {{2147483647, 5}}},
    };
    const std::vector<km::MacroTouch> touches = km::MacroTouchesOf(script);
    ASSERT_EQ(touches.size(), std::size(expected));
    for (std::size_t k = 0; k < touches.size(); ++k) {
        SCOPED_TRACE(script[static_cast<std::size_t>(expected[k].line - 1)]);
        EXPECT_EQ(touches[k].line, expected[k].line);
        EXPECT_EQ(touches[k].command, expected[k].command);
        EXPECT_EQ(touches[k].points, expected[k].points);
    }
    const struct {
        km::Point point;
        bool on;
    } screen[] = {{{0, 0}, true}, {{1919, 1079}, true}, {{1920, 5}, false}, {{5, 1080}, false}};
    for (const auto& row : screen) {
        EXPECT_EQ(km::IsOnMacroScreen(row.point), row.on) << row.point.x << "," << row.point.y;
    }
}

}  // namespace
