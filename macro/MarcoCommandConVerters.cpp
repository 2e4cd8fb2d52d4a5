//
// MarcoCommandConVerters.cpp
//

#include "zuno-keymapmanager/macro/MarcoCommandConVerters.h"

#include "macro/MacroCommands.h"

namespace zunokeymapmanager {

// The classes differ only in their command: each member asks its row.
#define ZUNO_KM_COMMAND_CONVERTER(Name)                                        \
    bool Marco##Name##ConVerter::isEditingTextMatch(const std::string& line) { \
        return macro::IsEditingLine(macro::MacroCommand::Name, line);          \
    }                                                                          \
    bool Marco##Name##ConVerter::isRunningTextMatch(const std::string& line) { \
        return macro::IsRunningLine(macro::MacroCommand::Name, line);          \
    }                                                                          \
    std::string Marco##Name##ConVerter::converterToEditingText() {             \
        return macro::EditingTextOf(macro::MacroCommand::Name);                \
    }                                                                          \
    std::string Marco##Name##ConVerter::converterToRunningText() {             \
        return macro::RunningTextOf(macro::MacroCommand::Name, runningText()); \
    }

ZUNO_KM_COMMAND_CONVERTER(Click)
ZUNO_KM_COMMAND_CONVERTER(Press)
ZUNO_KM_COMMAND_CONVERTER(Release)
ZUNO_KM_COMMAND_CONVERTER(DefaultSleep)
ZUNO_KM_COMMAND_CONVERTER(Sleep)
ZUNO_KM_COMMAND_CONVERTER(KeyboardPress)
ZUNO_KM_COMMAND_CONVERTER(KeyboardRelease)
ZUNO_KM_COMMAND_CONVERTER(KeyboardSwitch)
ZUNO_KM_COMMAND_CONVERTER(EnterStaring)
ZUNO_KM_COMMAND_CONVERTER(ExitStaring)
ZUNO_KM_COMMAND_CONVERTER(Curve)
ZUNO_KM_COMMAND_CONVERTER(Switch)
ZUNO_KM_COMMAND_CONVERTER(MousePress)
ZUNO_KM_COMMAND_CONVERTER(MouseRelease)
ZUNO_KM_COMMAND_CONVERTER(MouseSwitch)
ZUNO_KM_COMMAND_CONVERTER(ReleaseAll)
ZUNO_KM_COMMAND_CONVERTER(StopLoop)
ZUNO_KM_COMMAND_CONVERTER(StartLoop)
ZUNO_KM_COMMAND_CONVERTER(TextInject)
ZUNO_KM_COMMAND_CONVERTER(JoystickPress)
ZUNO_KM_COMMAND_CONVERTER(JoystickRelease)
ZUNO_KM_COMMAND_CONVERTER(JoystickSwitch)
ZUNO_KM_COMMAND_CONVERTER(LockWindows)
ZUNO_KM_COMMAND_CONVERTER(UnLockWindows)
ZUNO_KM_COMMAND_CONVERTER(CurveFirstPointSleepTime)
ZUNO_KM_COMMAND_CONVERTER(CurveLastPointSleepTime)
ZUNO_KM_COMMAND_CONVERTER(CurveRelease)
ZUNO_KM_COMMAND_CONVERTER(InputHoldSwitch)

#undef ZUNO_KM_COMMAND_CONVERTER

}  // namespace zunokeymapmanager
