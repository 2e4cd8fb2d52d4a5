//
// MarcoConVerterFactory.cpp
//

#include "zuno-keymapmanager/macro/MarcoConVerterFactory.h"

#include <cstddef>

#include "macro/MacroCommands.h"
#include "zuno-keymapmanager/macro/MarcoCommandConVerters.h"

namespace zunokeymapmanager {

namespace {

using macro::kMacroCommandCount;
using macro::MacroCommand;
using Predicate = bool (*)(const std::string&);
using Maker = std::shared_ptr<MarcoConVerter> (*)();

struct Candidate {
    MacroCommand command;
    Predicate editing;
    Predicate running;
    Maker make;
};

template <typename T>
std::shared_ptr<MarcoConVerter> make() {
    return std::make_shared<T>();
}

template <typename T>
constexpr Candidate candidate(MacroCommand command) {
    return {command, &T::isEditingTextMatch, &T::isRunningTextMatch, &make<T>};
}

// The try order. Where two commands accept the same line, the earlier one
// takes it: default_sleep_time before sleep, and the commands that look for
// their keyword anywhere in the line before the later ones that need it at
// the start.
constexpr Candidate kTryOrder[] = {
    candidate<MarcoClickConVerter>(MacroCommand::Click),
    candidate<MarcoPressConVerter>(MacroCommand::Press),
    candidate<MarcoReleaseConVerter>(MacroCommand::Release),
    candidate<MarcoDefaultSleepConVerter>(MacroCommand::DefaultSleep),
    candidate<MarcoSleepConVerter>(MacroCommand::Sleep),
    candidate<MarcoKeyboardPressConVerter>(MacroCommand::KeyboardPress),
    candidate<MarcoKeyboardReleaseConVerter>(MacroCommand::KeyboardRelease),
    candidate<MarcoKeyboardSwitchConVerter>(MacroCommand::KeyboardSwitch),
    candidate<MarcoEnterStaringConVerter>(MacroCommand::EnterStaring),
    candidate<MarcoExitStaringConVerter>(MacroCommand::ExitStaring),
    candidate<MarcoCurveConVerter>(MacroCommand::Curve),
    candidate<MarcoSwitchConVerter>(MacroCommand::Switch),
    candidate<MarcoMousePressConVerter>(MacroCommand::MousePress),
    candidate<MarcoMouseReleaseConVerter>(MacroCommand::MouseRelease),
    candidate<MarcoMouseSwitchConVerter>(MacroCommand::MouseSwitch),
    candidate<MarcoReleaseAllConVerter>(MacroCommand::ReleaseAll),
    candidate<MarcoStopLoopConVerter>(MacroCommand::StopLoop),
    candidate<MarcoStartLoopConVerter>(MacroCommand::StartLoop),
    candidate<MarcoTextInjectConVerter>(MacroCommand::TextInject),
    candidate<MarcoJoystickPressConVerter>(MacroCommand::JoystickPress),
    candidate<MarcoJoystickReleaseConVerter>(MacroCommand::JoystickRelease),
    candidate<MarcoJoystickSwitchConVerter>(MacroCommand::JoystickSwitch),
    candidate<MarcoLockWindowsConVerter>(MacroCommand::LockWindows),
    candidate<MarcoUnLockWindowsConVerter>(MacroCommand::UnLockWindows),
    candidate<MarcoCurveFirstPointSleepTimeConVerter>(MacroCommand::CurveFirstPointSleepTime),
    candidate<MarcoCurveLastPointSleepTimeConVerter>(MacroCommand::CurveLastPointSleepTime),
    candidate<MarcoCurveReleaseConVerter>(MacroCommand::CurveRelease),
    candidate<MarcoInputHoldSwitchConVerter>(MacroCommand::InputHoldSwitch),
};

constexpr bool inCommandOrder() {
    int i = 0;
    for (const Candidate& c : kTryOrder) {
        if (static_cast<int>(c.command) != i++) {
            return false;
        }
    }
    return i == kMacroCommandCount;
}
static_assert(inCommandOrder(), "every command once, in MacroCommand order");

const Candidate* firstAccepting(Predicate Candidate::*form, const std::string& line) {
    for (const Candidate& c : kTryOrder) {
        if ((c.*form)(line)) {
            return &c;
        }
    }
    return nullptr;
}

/// Lines that scripts skip: empty ones and the press/release separator.
bool isSkipped(const std::string& line) {
    return line.empty() || line == "release_actions";
}

}  // namespace

std::shared_ptr<MarcoConVerter> MarcoConVerterFactory::ProduceMarcoConVerterByEditingText(
    const std::string& line) {
    const Candidate* c = firstAccepting(&Candidate::editing, line);
    return c ? c->make() : nullptr;
}

std::shared_ptr<MarcoConVerter> MarcoConVerterFactory::ProduceMarcoConVerterByRunningText(
    const std::string& line) {
    const Candidate* c = firstAccepting(&Candidate::running, line);
    return c ? c->make() : nullptr;
}

bool MarcoConVerterFactory::isMacroKeyEditingTextGrammarRight(const std::string& line) {
    return firstAccepting(&Candidate::editing, line) != nullptr;
}

std::vector<std::uint32_t> MarcoConVerterFactory::MacroKeyEditingTextGrammarCheck(
    const std::vector<std::string>& lines) {
    std::vector<std::uint32_t> failing;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!isSkipped(lines[i]) && !isMacroKeyEditingTextGrammarRight(lines[i])) {
            failing.push_back(static_cast<std::uint32_t>(i + 1));
        }
    }
    return failing;
}

std::vector<std::string> MarcoConVerterFactory::MacroKeyEditingTextChangeToRunningText(
    const std::vector<std::string>& lines, Rect rect) {
    std::vector<std::string> running;
    for (const std::string& line : lines) {
        if (isSkipped(line)) {
            continue;
        }
        if (const auto converter = ProduceMarcoConVerterByEditingText(line)) {
            converter->initEditingText(line, rect);
            running.push_back(converter->converterToRunningText());
        }
    }
    return running;
}

std::vector<std::string> MarcoConVerterFactory::MacroKeyRunningTextChangeToEditingText(
    const std::vector<std::string>& lines, Rect rect) {
    std::vector<std::string> editing;
    for (const std::string& line : lines) {
        if (isSkipped(line)) {
            continue;
        }
        if (const auto converter = ProduceMarcoConVerterByRunningText(line)) {
            converter->initRunningText(line, rect);
            editing.push_back(converter->converterToEditingText());
        }
    }
    return editing;
}

}  // namespace zunokeymapmanager
