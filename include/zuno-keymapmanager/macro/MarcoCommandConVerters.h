//
// MarcoCommandConVerters.h
//
// The commands of the macro language, one converter class each.
//
// Every class answers the same four questions for its own command:
// isEditingTextMatch and isRunningTextMatch, whether a line is the command
// in editing or running form; converterToEditingText and
// converterToRunningText, the line in the other form. The recognisers run
// in time linear in the line's length and never recurse, so any line is
// answered promptly.
//
// Outputs are fixed strings: a command converts to the bare keyword of the
// other form and carries no arguments across ("click 100,200" becomes
// "click_rel:"). The keyboard and mouse key commands are the exception: their
// running output ends in a key code, which is the code of the stored running
// text when that text is a line of the command (and the code fits a signed
// 32-bit integer), else 0. Their editing form accepts no line at all.
//
// The commands are final: nothing derives from them, and as the converters
// have no virtual destructor, a derived command could not be destroyed safely.
// MarcoConVerterFactory tries them on a line in the order they stand here.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_MARCOCOMMANDCONVERTERS_H
#define ZUNO_KEYMAPMANAGER_MACRO_MARCOCOMMANDCONVERTERS_H

#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/macro/MarcoConVerter.h"

namespace zunokeymapmanager {

class ZUNO_KM_API MarcoClickConVerter final : public MarcoConVerter
/// "click" when edited, "click_rel:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoPressConVerter final : public MarcoConVerter
/// "press" when edited, "press_rel:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoReleaseConVerter final : public MarcoConVerter
/// "release" when edited, "release_rel:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoDefaultSleepConVerter final : public MarcoConVerter
/// "default_sleep_time" when edited, "default_sleep_time:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoSleepConVerter final : public MarcoConVerter
/// "sleep" when edited, "sleep:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoKeyboardPressConVerter final : public MarcoConVerter
/// "keyboard_press:" when run; there is no editing line of it.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoKeyboardReleaseConVerter final : public MarcoConVerter
/// "keyboard_release:" when run; there is no editing line of it.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoKeyboardSwitchConVerter final : public MarcoConVerter
/// "keyboard_switch:" when run; there is no editing line of it.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoEnterStaringConVerter final : public MarcoConVerter
/// "enter_staring" when edited, "enter_staring" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoExitStaringConVerter final : public MarcoConVerter
/// "exit_staring" when edited, "exit_staring" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoCurveConVerter final : public MarcoConVerter
/// "curve" when edited, "curve_rel:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoSwitchConVerter final : public MarcoConVerter
/// "switch" when edited, "switch_rel:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoMousePressConVerter final : public MarcoConVerter
/// "mouse_press:" when run; there is no editing line of it.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoMouseReleaseConVerter final : public MarcoConVerter
/// "mouse_release:" when run; there is no editing line of it.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoMouseSwitchConVerter final : public MarcoConVerter
/// "mouse_switch:" when run; there is no editing line of it.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoReleaseAllConVerter final : public MarcoConVerter
/// "release_all" when edited, "release_all" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoStopLoopConVerter final : public MarcoConVerter
/// "loop_end" when edited, "stop_loop" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoStartLoopConVerter final : public MarcoConVerter
/// "loop" when edited, "start_loop:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoTextInjectConVerter final : public MarcoConVerter
/// "text" when edited, "text_inject:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoJoystickPressConVerter final : public MarcoConVerter
/// "joystick_press" when edited, "joystick_press:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoJoystickReleaseConVerter final : public MarcoConVerter
/// "joystick_release" when edited, "joystick_release:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoJoystickSwitchConVerter final : public MarcoConVerter
/// "joystick_switch" when edited, "joystick_switch:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoLockWindowsConVerter final : public MarcoConVerter
/// "lock_windows" when edited, "lock_windows" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoUnLockWindowsConVerter final : public MarcoConVerter
/// "unlock_windows" when edited, "unlock_windows" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoCurveFirstPointSleepTimeConVerter final : public MarcoConVerter
/// "curve_first_time" when edited, "curve_first_point_sleep_time:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoCurveLastPointSleepTimeConVerter final : public MarcoConVerter
/// "curve_last_time" when edited, "curve_last_point_sleep_time:" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoCurveReleaseConVerter final : public MarcoConVerter
/// "curve_release" when edited, "curve_release" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

class ZUNO_KM_API MarcoInputHoldSwitchConVerter final : public MarcoConVerter
/// "hold_switch" when edited, "hold_switch" when run.
{
public:
    /// True when `line` is this command in editing form.
    static bool isEditingTextMatch(const std::string& line);
    /// True when `line` is this command in running form.
    static bool isRunningTextMatch(const std::string& line);
    /// The command's editing output (see the top of this file).
    std::string converterToEditingText() override;
    /// The command's running output (see the top of this file).
    std::string converterToRunningText() override;
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_MARCOCOMMANDCONVERTERS_H
