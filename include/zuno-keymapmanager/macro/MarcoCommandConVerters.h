//
// MarcoCommandConVerters.h
//
// The commands of the macro language, one converter class each.
//
// Every command is a row of data (keywords, line shapes, outputs) in the
// library; the classes below differ only in that row, so they share one
// implementation, MarcoCommandConVerter.
//
// Outputs are fixed strings: a command converts to the bare keyword of the
// other form and carries no arguments across ("click 100,200" becomes
// "click_rel:"). The keyboard and mouse key commands are the exception: their
// running output ends in a key code, which is the code of the stored running
// text when that text is a line of the command (and the code fits a signed
// 32-bit integer), else 0. Their editing form accepts no line at all.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_MARCOCOMMANDCONVERTERS_H
#define ZUNO_KEYMAPMANAGER_MACRO_MARCOCOMMANDCONVERTERS_H

#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/macro/MarcoConVerter.h"

namespace zunokeymapmanager {

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
ZUNO_KM_API bool isMacroEditingLine(MacroCommand command, const std::string& line);

/// True when `line` is a running line of `command`.
ZUNO_KM_API bool isMacroRunningLine(MacroCommand command, const std::string& line);

/// What a converter of `command` writes in editing form.
ZUNO_KM_API std::string macroEditingTextOf(MacroCommand command, const MarcoConVerter& converter);

/// What a converter of `command` writes in running form.
ZUNO_KM_API std::string macroRunningTextOf(MacroCommand command, const MarcoConVerter& converter);

template <MacroCommand C>
class ZUNO_KM_API MarcoCommandConVerter : public MarcoConVerter
/// The converter of one command. The recognisers run in time linear in the
/// line's length and never recurse, so any line is answered promptly.
{
public:
    /// The command this class converts.
    static constexpr MacroCommand kCommand = C;

    /// True when `line` is an editing line of the command.
    static bool isEditingTextMatch(const std::string& line) { return isMacroEditingLine(C, line); }
    /// True when `line` is a running line of the command.
    static bool isRunningTextMatch(const std::string& line) { return isMacroRunningLine(C, line); }

    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override { return macroEditingTextOf(C, *this); }
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override { return macroRunningTextOf(C, *this); }
};

// The commands are final: nothing derives from them, and as the converters
// have no virtual destructor, a derived command could not be destroyed safely.
// clang-format off
class ZUNO_KM_API MarcoClickConVerter final : public MarcoCommandConVerter<MacroCommand::Click> {};
class ZUNO_KM_API MarcoPressConVerter final : public MarcoCommandConVerter<MacroCommand::Press> {};
class ZUNO_KM_API MarcoReleaseConVerter final : public MarcoCommandConVerter<MacroCommand::Release> {};
class ZUNO_KM_API MarcoDefaultSleepConVerter final : public MarcoCommandConVerter<MacroCommand::DefaultSleep> {};
class ZUNO_KM_API MarcoSleepConVerter final : public MarcoCommandConVerter<MacroCommand::Sleep> {};
class ZUNO_KM_API MarcoKeyboardPressConVerter final : public MarcoCommandConVerter<MacroCommand::KeyboardPress> {};
class ZUNO_KM_API MarcoKeyboardReleaseConVerter final : public MarcoCommandConVerter<MacroCommand::KeyboardRelease> {};
class ZUNO_KM_API MarcoKeyboardSwitchConVerter final : public MarcoCommandConVerter<MacroCommand::KeyboardSwitch> {};
class ZUNO_KM_API MarcoEnterStaringConVerter final : public MarcoCommandConVerter<MacroCommand::EnterStaring> {};
class ZUNO_KM_API MarcoExitStaringConVerter final : public MarcoCommandConVerter<MacroCommand::ExitStaring> {};
class ZUNO_KM_API MarcoCurveConVerter final : public MarcoCommandConVerter<MacroCommand::Curve> {};
class ZUNO_KM_API MarcoSwitchConVerter final : public MarcoCommandConVerter<MacroCommand::Switch> {};
class ZUNO_KM_API MarcoMousePressConVerter final : public MarcoCommandConVerter<MacroCommand::MousePress> {};
class ZUNO_KM_API MarcoMouseReleaseConVerter final : public MarcoCommandConVerter<MacroCommand::MouseRelease> {};
class ZUNO_KM_API MarcoMouseSwitchConVerter final : public MarcoCommandConVerter<MacroCommand::MouseSwitch> {};
class ZUNO_KM_API MarcoReleaseAllConVerter final : public MarcoCommandConVerter<MacroCommand::ReleaseAll> {};
class ZUNO_KM_API MarcoStopLoopConVerter final : public MarcoCommandConVerter<MacroCommand::StopLoop> {};
class ZUNO_KM_API MarcoStartLoopConVerter final : public MarcoCommandConVerter<MacroCommand::StartLoop> {};
class ZUNO_KM_API MarcoTextInjectConVerter final : public MarcoCommandConVerter<MacroCommand::TextInject> {};
class ZUNO_KM_API MarcoJoystickPressConVerter final : public MarcoCommandConVerter<MacroCommand::JoystickPress> {};
class ZUNO_KM_API MarcoJoystickReleaseConVerter final : public MarcoCommandConVerter<MacroCommand::JoystickRelease> {};
class ZUNO_KM_API MarcoJoystickSwitchConVerter final : public MarcoCommandConVerter<MacroCommand::JoystickSwitch> {};
class ZUNO_KM_API MarcoLockWindowsConVerter final : public MarcoCommandConVerter<MacroCommand::LockWindows> {};
class ZUNO_KM_API MarcoUnLockWindowsConVerter final : public MarcoCommandConVerter<MacroCommand::UnLockWindows> {};
class ZUNO_KM_API MarcoCurveFirstPointSleepTimeConVerter final : public MarcoCommandConVerter<MacroCommand::CurveFirstPointSleepTime> {};
class ZUNO_KM_API MarcoCurveLastPointSleepTimeConVerter final : public MarcoCommandConVerter<MacroCommand::CurveLastPointSleepTime> {};
class ZUNO_KM_API MarcoCurveReleaseConVerter final : public MarcoCommandConVerter<MacroCommand::CurveRelease> {};
class ZUNO_KM_API MarcoInputHoldSwitchConVerter final : public MarcoCommandConVerter<MacroCommand::InputHoldSwitch> {};

// clang-format on

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_MARCOCOMMANDCONVERTERS_H
