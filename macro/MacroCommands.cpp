//
// MacroCommands.cpp
//
// The commands of the macro language as data: one row per command.
//

#include "macro/MacroCommands.h"

#include <cstdint>
#include <limits>
#include <string_view>

#include "macro/LineShapes.h"

namespace zunokeymapmanager {

namespace {

using macro::kMacroCommandCount;
using macro::LineShape;
using macro::MacroCommand;
using macro::Shape;

struct CommandRow {
    MacroCommand command;
    /// The running output ends in the key code of the running line.
    bool endsInKeyCode = false;
    LineShape editing;
    LineShape running;
    std::string_view editingOut;
    std::string_view runningOut;

    constexpr CommandRow(MacroCommand c, LineShape e, LineShape r, std::string_view eo,
                         std::string_view ro, bool code = false)
        : command(c), endsInKeyCode(code), editing(e), running(r), editingOut(eo), runningOut(ro) {}
};

constexpr LineShape never{};

constexpr LineShape word(std::string_view w) {
    return {Shape::Word, w};
}

constexpr LineShape points(std::string_view keyword) {
    return {Shape::Points, keyword};
}

constexpr LineShape relativePoints(std::string_view keyword) {
    return {Shape::RelativePoints, keyword};
}

/// Values after blanks ("loop 2 until_release").
constexpr LineShape spacedValues(std::string_view keyword, std::string_view w = {}) {
    return {Shape::Values, keyword, true, w};
}

/// Values run together after the keyword ("start_loop:2until_release"); with
/// no word this is the keyword and one run of digits.
constexpr LineShape joinedValues(std::string_view keyword, std::string_view w = {}) {
    return {Shape::Values, keyword, false, w};
}

constexpr bool kEndsInKeyCode = true;

/// Whether blanks stand between a keyword and its value.
constexpr bool kAfterBlanks = true;
constexpr bool kJoined = false;

constexpr LineShape findNumber(std::string_view keyword, bool gap) {
    return {Shape::FindNumber, keyword, gap};
}

constexpr LineShape findName(std::string_view keyword, bool gap) {
    return {Shape::FindName, keyword, gap};
}

using C = MacroCommand;

// clang-format off
constexpr CommandRow kCommands[] = {
    {C::Click, points("click"), relativePoints("click_rel:"), "click ", "click_rel:"},
    {C::Press, points("press"), relativePoints("press_rel:"), "press ", "press_rel:"},
    {C::Release, points("release"), relativePoints("release_rel:"), "release ", "release_rel:"},
    {C::DefaultSleep, findNumber("default_sleep_time", kAfterBlanks), findNumber("default_sleep_time:", kJoined),
     "default_sleep_time ", "default_sleep_time:"},
    // The running sleep line is "sleep:" and its digits, with nothing after them.
    {C::Sleep, {Shape::OptionalNumber, "sleep"}, joinedValues("sleep:"), "sleep", "sleep"},
    {C::KeyboardPress, never, findNumber("keyboard_press:", kJoined), "key_press ", "keyboard_press:", kEndsInKeyCode},
    {C::KeyboardRelease, never, findNumber("keyboard_release:", kJoined), "key_release ", "keyboard_release:", kEndsInKeyCode},
    {C::KeyboardSwitch, never, findNumber("keyboard_switch:", kJoined), "key_switch ", "keyboard_switch:", kEndsInKeyCode},
    {C::EnterStaring, word("enter_staring"), word("enter_staring"), "enter_staring", "enter_staring"},
    {C::ExitStaring, word("exit_staring"), word("exit_staring"), "exit_staring", "exit_staring"},
    {C::Curve, points("curve"), relativePoints("curve_rel:"), "curve ", "curve_rel:"},
    {C::Switch, points("switch"), relativePoints("switch_rel:"), "switch ", "switch_rel:"},
    {C::MousePress, never, findNumber("mouse_press:", kJoined), "mouse_press ", "mouse_press:", kEndsInKeyCode},
    {C::MouseRelease, never, findNumber("mouse_release:", kJoined), "mouse_release ", "mouse_release:", kEndsInKeyCode},
    {C::MouseSwitch, never, findNumber("mouse_switch:", kJoined), "mouse_switch ", "mouse_switch:", kEndsInKeyCode},
    {C::ReleaseAll, word("release_all"), word("release_all"), "release_all", "release_all"},
    {C::StopLoop, word("loop_end"), word("stop_loop"), "loop_end", "stop_loop"},
    {C::StartLoop, spacedValues("loop", "until_release"), joinedValues("start_loop:", "until_release"),
     "loop ", "start_loop:"},
    {C::TextInject, {Shape::Quoted, "text"}, {Shape::Rest, "text_inject:"}, "text \"\"", "text_inject:"},
    {C::JoystickPress, findName("joystick_press", kAfterBlanks), findName("joystick_press:", kJoined),
     "joystick_press ", "joystick_press:"},
    {C::JoystickRelease, findName("joystick_release", kAfterBlanks), findName("joystick_release:", kJoined),
     "joystick_release ", "joystick_release:"},
    {C::JoystickSwitch, findName("joystick_switch", kAfterBlanks), findName("joystick_switch:", kJoined),
     "joystick_switch ", "joystick_switch:"},
    {C::LockWindows, word("lock_windows"), word("lock_windows"), "lock_windows", "lock_windows"},
    {C::UnLockWindows, word("unlock_windows"), word("unlock_windows"), "unlock_windows", "unlock_windows"},
    {C::CurveFirstPointSleepTime, spacedValues("curve_first_time"),
     joinedValues("curve_first_point_sleep_time:"), "curve_first_time ", "curve_first_point_sleep_time:"},
    {C::CurveLastPointSleepTime, spacedValues("curve_last_time", "untilcmd"),
     joinedValues("curve_last_point_sleep_time:", "until_release_cmd"), "curve_last_time ",
     "curve_last_point_sleep_time:"},
    {C::CurveRelease, word("curve_release"), word("curve_release"), "curve_release", "curve_release"},
    {C::InputHoldSwitch, word("hold_switch"), word("hold_switch"), "hold_switch", "hold_switch"},
};
// clang-format on

constexpr bool rowsInCommandOrder() {
    int i = 0;
    for (const CommandRow& row : kCommands) {
        if (static_cast<int>(row.command) != i++) {
            return false;
        }
    }
    return i == kMacroCommandCount;
}
static_assert(rowsInCommandOrder(), "one row per command, in command order");

const CommandRow& rowOf(MacroCommand command) {
    return kCommands[static_cast<int>(command)];
}

/// The decimal digits as a signed 32-bit value, or 0 when they do not fit.
std::int32_t keyCodeOf(std::string_view digits) {
    std::int64_t value = 0;
    for (char d : digits) {
        value = value * 10 + (d - '0');
        if (value > std::numeric_limits<std::int32_t>::max()) {
            return 0;
        }
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace

namespace macro {

bool IsEditingLine(MacroCommand command, const std::string& line) {
    return accepts(rowOf(command).editing, line);
}

bool IsRunningLine(MacroCommand command, const std::string& line) {
    return accepts(rowOf(command).running, line);
}

std::string EditingTextOf(MacroCommand command) {
    return std::string(rowOf(command).editingOut);
}

std::string RunningTextOf(MacroCommand command, const std::string& runningText) {
    const CommandRow& row = rowOf(command);
    std::string out(row.runningOut);
    if (row.endsInKeyCode) {
        const auto code = findValue(row.running, runningText);
        out += std::to_string(code ? keyCodeOf(*code) : 0);
    }
    return out;
}

}  // namespace macro

}  // namespace zunokeymapmanager
