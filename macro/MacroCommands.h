//
// MacroCommands.h
//
// The commands of the macro language by number, for the converter classes
// and the factory: one row of data per command, read by one implementation.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_MACROCOMMANDS_H
#define ZUNO_KEYMAPMANAGER_MACRO_MACROCOMMANDS_H

#include <string>

namespace zunokeymapmanager {
namespace macro {

/// The commands, in the order MarcoConVerterFactory tries them on a line.
enum class MacroCommand : int {
    Click,
    Press,
    Release,
    DefaultSleep,
    Sleep,
    KeyboardPress,
    KeyboardRelease,
    KeyboardSwitch,
    EnterStaring,
    ExitStaring,
    Curve,
    Switch,
    MousePress,
    MouseRelease,
    MouseSwitch,
    ReleaseAll,
    StopLoop,
    StartLoop,
    TextInject,
    JoystickPress,
    JoystickRelease,
    JoystickSwitch,
    LockWindows,
    UnLockWindows,
    CurveFirstPointSleepTime,
    CurveLastPointSleepTime,
    CurveRelease,
    InputHoldSwitch,
};

/// The number of commands.
inline constexpr int kMacroCommandCount = static_cast<int>(MacroCommand::InputHoldSwitch) + 1;

/// True when `line` is an editing line of `command`.
bool IsEditingLine(MacroCommand command, const std::string& line);

/// True when `line` is a running line of `command`.
bool IsRunningLine(MacroCommand command, const std::string& line);

/// What a converter of `command` writes in editing form.
std::string EditingTextOf(MacroCommand command);

/// What a converter of `command` holding `runningText` writes in running form.
std::string RunningTextOf(MacroCommand command, const std::string& runningText);

}  // namespace macro
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_MACROCOMMANDS_H
