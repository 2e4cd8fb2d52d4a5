// The commands of the macro language one by one: which lines each accepts in
// both forms, which command the factory picks, and what each writes.

#include <memory>
#include <ostream>
#include <string>
#include <typeindex>
#include <vector>

#include <gtest/gtest.h>

#include <zuno-keymapmanager/keymapmanager.h>

namespace {

namespace km = zunokeymapmanager;
using Lines = std::vector<std::string>;

/// The dynamic type of a converter (through a reference: clang flags typeid
/// on an expression that calls a function).
std::type_index typeOf(const km::MarcoConVerter& converter) {
    return typeid(converter);
}

struct CommandCase {
    const char* name;
    std::type_index type;
    bool (*isEditing)(const std::string&);
    bool (*isRunning)(const std::string&);
    Lines editingLines;   // taken by this command (and by no earlier one)
    Lines editingOthers;  // not lines of this command
    Lines runningLines;
    Lines runningOthers;
    std::string editingOut;
    std::string runningOut;  // for a converter made from runningLines[0]
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

const std::vector<CommandCase> kCases = {
    {KM_COMMAND(Click),
        {"click 100,200", "click mouse", "click 10,20 mouse 30,40", "click\t1,2\n mouse"},
        {"click", "click 10, 20", "click -5,3", "click 1.5,2", "click 1,2 ", "click 1,2mouse",
         " click 1,2", "Click 1,2", "click mouse,1"},
        {"click_rel:(0.5,0.25)", "click_rel:mouse;(1,0)", "click_rel:(0.,1);mouse;(2,3.5)"},
        {"click_rel:", "click_rel:(.5,1)", "click_rel:(1,2);", "click_rel:(1, 2)",
         "click_rel: mouse", "click_rel:(1,2)(3,4)", "x click_rel:mouse"},
        "click ", "click_rel:"},
    {KM_COMMAND(Press), {"press mouse", "press 1,2 3,4"}, {"press", "pressmouse"},
        {"press_rel:(1,2)"}, {"press_rel:mouse;"}, "press ", "press_rel:"},
    {KM_COMMAND(Release), {"release 0,0"}, {"release", "release_all 1,2"},
        {"release_rel:mouse"}, {"release_rel:(1;2)"}, "release ", "release_rel:"},
    {KM_COMMAND(Switch), {"switch 5,6 mouse"}, {"switch mouse mouse x"},
        {"switch_rel:mouse;mouse"}, {"switch_rel:mousemouse"}, "switch ", "switch_rel:"},
    {KM_COMMAND(Curve), {"curve 1,2 3,4 5,6"}, {"curve 1,2,3"},
        {"curve_rel:(1,2);(3,4)"}, {"curve_rel:(1,2,3)"}, "curve ", "curve_rel:"},
    {KM_COMMAND(DefaultSleep),
        {"default_sleep_time 20", "x default_sleep_time 5", "sleep default_sleep_time\t7",
         "default_sleep_time x default_sleep_time 5"},
        {"default_sleep_time", "default_sleep_time 5 ", "default_sleep_time 5x",
         "default_sleep_time 5 default_sleep_time 6", "default_sleep_time:5"},
        {"default_sleep_time:20", "xdefault_sleep_time:5"},
        {"default_sleep_time: 5", "default_sleep_time:5;", "default_sleep_time:1default_sleep_time:2"},
        "default_sleep_time ", "default_sleep_time:"},
    {KM_COMMAND(Sleep),
        {"sleep", "sleep 50", "sleep50", "sleep \t", "sleep\n7"},
        {"sleep 5x", "sleep 5 ", "sleep 5 6", " sleep 5", "sleep:5", "sleepy"},
        {"sleep:100", "sleep:0"}, {"sleep:", "sleep: 1", "sleep:1x", "sleep 1", "sleep"},
        "sleep", "sleep"},
    {KM_COMMAND(KeyboardPress), {},
        {"key_press a", "key_press 30", "keyboard_press:30", "keyboard_press 30"},
        {"keyboard_press:30", "x keyboard_press:30"}, {"keyboard_press:", "keyboard_press:30 "},
        "key_press ", "keyboard_press:30"},
    {KM_COMMAND(KeyboardRelease), {}, {"key_release 30"},
        {"keyboard_release:31"}, {"keyboard_release:a"}, "key_release ", "keyboard_release:31"},
    {KM_COMMAND(KeyboardSwitch), {}, {"key_switch 30"},
        {"keyboard_switch:32"}, {"keyboard_switch:-1"}, "key_switch ", "keyboard_switch:32"},
    {KM_COMMAND(MousePress), {}, {"mouse_press 1", "mouse_press:1"},
        {"mouse_press:1"}, {"mouse_press:"}, "mouse_press ", "mouse_press:1"},
    {KM_COMMAND(MouseRelease), {}, {"mouse_release 2"},
        {"mouse_release:2"}, {"mouse_release:2 2"}, "mouse_release ", "mouse_release:2"},
    {KM_COMMAND(MouseSwitch), {}, {"mouse_switch 3"},
        {"mouse_switch:3"}, {"mouse_switch:x3"}, "mouse_switch ", "mouse_switch:3"},
    {KM_COMMAND(StartLoop),
        {"loop 3", "loop 2 3", "loop until_release", "loop\t1 until_release"},
        {"loop", "loop 3 ", "loop until_release_cmd", "loop 1until_release", "loop_end 2"},
        {"start_loop:3", "start_loop:12until_release", "start_loop:until_releaseuntil_release"},
        {"start_loop:", "start_loop: 3", "start_loop:until_release_cmd", "loop 3"},
        "loop ", "start_loop:"},
    {KM_COMMAND(StopLoop), {"loop_end"}, {"stop_loop", "loop_end "},
        {"stop_loop"}, {"loop_end", "stop_loop\r"}, "loop_end", "stop_loop"},
    {KM_COMMAND(TextInject),
        {"text \"hello\"", "text  \"\"", "text \"say \"hi\"\"", "text\t\"a\" and \"b\""},
        {"text \"a\" ", "text \"a", "text \"", "text\"a\"", " text \"a\"", "text \"a\rb\"",
         "text \"a\"\n"},
        {"text_inject:", "text_inject:any \"thing\" at all"},
        {"text_inject:a\nb", "text_inject:\r", "text inject:a"},
        "text \"\"", "text_inject:"},
    {KM_COMMAND(JoystickPress),
        {"joystick_press A", "xyz joystick_press A", "joystick_press\t\xc3\xa9"},
        {"joystick_press", "joystick_press A ", "joystick_press A B", "joystick_pressA"},
        {"joystick_press:A", "joystick_press:(x)"}, {"joystick_press: A", "joystick_press:A B"},
        "joystick_press ", "joystick_press:"},
    {KM_COMMAND(JoystickRelease), {"joystick_release B"},
        {"joystick_release"}, {"joystick_release:B"}, {"joystick_release:"},
        "joystick_release ", "joystick_release:"},
    {KM_COMMAND(JoystickSwitch), {"joystick_switch C"},
        {"joystick_switch\t"}, {"joystick_switch:C"}, {"joystick_switch :C"},
        "joystick_switch ", "joystick_switch:"},
    {KM_COMMAND(CurveFirstPointSleepTime),
        {"curve_first_time 5", "curve_first_time 5 6"},
        {"curve_first_time", "curve_first_time untilcmd", "curve_first_time 5 "},
        {"curve_first_point_sleep_time:12"},
        {"curve_first_point_sleep_time:", "curve_first_point_sleep_time:1 2"},
        "curve_first_time ", "curve_first_point_sleep_time:"},
    {KM_COMMAND(CurveLastPointSleepTime),
        {"curve_last_time 5", "curve_last_time untilcmd 5"},
        {"curve_last_time until_release_cmd", "curve_last_time"},
        {"curve_last_point_sleep_time:5", "curve_last_point_sleep_time:until_release_cmd7"},
        {"curve_last_point_sleep_time:untilcmd", "curve_last_point_sleep_time:until_release"},
        "curve_last_time ", "curve_last_point_sleep_time:"},
    {KM_COMMAND(EnterStaring), {"enter_staring"},
        {"Enter_staring", "enter_staring ", " enter_staring"}, {"enter_staring"},
        {"enter_staring:"}, "enter_staring", "enter_staring"},
    {KM_COMMAND(ExitStaring), {"exit_staring"}, {"exit_staring\t"},
        {"exit_staring"}, {"EXIT_STARING"}, "exit_staring", "exit_staring"},
    {KM_COMMAND(InputHoldSwitch), {"hold_switch"}, {"hold_switch 1"},
        {"hold_switch"}, {"hold_switch:"}, "hold_switch", "hold_switch"},
    {KM_COMMAND(LockWindows), {"lock_windows"}, {"lock_window"},
        {"lock_windows"}, {"lock_windowss"}, "lock_windows", "lock_windows"},
    {KM_COMMAND(UnLockWindows), {"unlock_windows"},
        {"unLock_windows"}, {"unlock_windows"}, {"unlock_windows\n"}, "unlock_windows",
        "unlock_windows"},
    {KM_COMMAND(ReleaseAll), {"release_all"}, {"release all"},
        {"release_all"}, {"release_all "}, "release_all", "release_all"},
    {KM_COMMAND(CurveRelease), {"curve_release"}, {"curve_release 1"},
        {"curve_release"}, {"curve_releases"}, "curve_release", "curve_release"},
};
// clang-format on

class MacroCommandTest : public testing::TestWithParam<CommandCase> {};

std::string caseName(const testing::TestParamInfo<CommandCase>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(AllCommands, MacroCommandTest, testing::ValuesIn(kCases), caseName);

TEST_P(MacroCommandTest, AcceptsItsLinesOnly) {
    const CommandCase& c = GetParam();
    for (const std::string& line : c.editingLines) {
        EXPECT_TRUE(c.isEditing(line)) << "editing: " << line;
    }
    for (const std::string& line : c.editingOthers) {
        EXPECT_FALSE(c.isEditing(line)) << "editing: " << line;
    }
    for (const std::string& line : c.runningLines) {
        EXPECT_TRUE(c.isRunning(line)) << "running: " << line;
    }
    for (const std::string& line : c.runningOthers) {
        EXPECT_FALSE(c.isRunning(line)) << "running: " << line;
    }
}

TEST_P(MacroCommandTest, IsPickedForItsLinesAndWritesTheOtherForm) {
    const CommandCase& c = GetParam();
    const km::Rect rect(0, 0, 1920, 1080);
    for (const std::string& line : c.editingLines) {
        const auto converter = km::MarcoConVerterFactory::ProduceMarcoConVerterByEditingText(line);
        ASSERT_TRUE(converter) << line;
        EXPECT_EQ(typeOf(*converter), c.type) << line;
        converter->initEditingText(line, rect);
        EXPECT_EQ(converter->converterToRunningText(), c.runningOut) << line;
        EXPECT_EQ(converter->converterToEditingText(), c.editingOut) << line;
    }
    for (const std::string& line : c.runningLines) {
        const auto converter = km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(line);
        ASSERT_TRUE(converter) << line;
        EXPECT_EQ(typeOf(*converter), c.type) << line;
        converter->initRunningText(line, rect);
        EXPECT_EQ(converter->converterToEditingText(), c.editingOut) << line;
        if (line == c.runningLines.front()) {
            EXPECT_EQ(converter->converterToRunningText(), c.runningOut) << line;
        }
    }
}

// The key commands end their running line in the code of the running line
// they were made from, when there is one that fits.
TEST(MacroKeyCode, ComesFromTheStoredRunningLine) {
    struct Case {
        std::string stored;
        std::string out;
    };
    const Case cases[] = {
        {"keyboard_press:30", "keyboard_press:30"},
        {"x keyboard_press:007", "keyboard_press:7"},
        {"keyboard_press:2147483647", "keyboard_press:2147483647"},
        {"keyboard_press:2147483648", "keyboard_press:0"},
        {"keyboard_press:99999999999999999999", "keyboard_press:0"},
        {"keyboard_press:30 ", "keyboard_press:0"},
        {"mouse_press:4", "keyboard_press:0"},
        {"", "keyboard_press:0"},
    };
    for (const Case& c : cases) {
        km::MarcoKeyboardPressConVerter converter;
        converter.initRunningText(c.stored, km::Rect());
        EXPECT_EQ(converter.converterToRunningText(), c.out) << c.stored;
    }
    km::MarcoMouseSwitchConVerter mouse;
    mouse.initRunningText("mouse_switch:2", km::Rect());
    EXPECT_EQ(mouse.converterToRunningText(), "mouse_switch:2");
    mouse.converterFromEditingText("mouse_switch 5");
    EXPECT_EQ(mouse.converterToRunningText(), "mouse_switch:2");
}

// A line that several commands accept goes to the one tried first; commands
// that find their keyword anywhere in the line take lines of later commands.
TEST(MacroTryOrder, FirstAcceptingCommandWins) {
    struct Case {
        std::string line;
        std::type_index type;
    };
    const Case editing[] = {
        {"sleep default_sleep_time 5", typeid(km::MarcoDefaultSleepConVerter)},
        {"text \"joystick_press A\"", typeid(km::MarcoTextInjectConVerter)},
        {"text \"x\" joystick_press A", typeid(km::MarcoJoystickPressConVerter)},
    };
    for (const Case& c : editing) {
        const auto converter =
            km::MarcoConVerterFactory::ProduceMarcoConVerterByEditingText(c.line);
        ASSERT_TRUE(converter) << c.line;
        EXPECT_EQ(typeOf(*converter), c.type) << c.line;
    }
    const Case running[] = {
        {"text_inject:keyboard_press:5", typeid(km::MarcoKeyboardPressConVerter)},
        {"text_inject:mouse_press:5", typeid(km::MarcoMousePressConVerter)},
        {"text_inject:default_sleep_time:1", typeid(km::MarcoDefaultSleepConVerter)},
        {"text_inject:joystick_press:A", typeid(km::MarcoTextInjectConVerter)},
    };
    for (const Case& c : running) {
        const auto converter =
            km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(c.line);
        ASSERT_TRUE(converter) << c.line;
        EXPECT_EQ(typeOf(*converter), c.type) << c.line;
    }
}

}  // namespace
