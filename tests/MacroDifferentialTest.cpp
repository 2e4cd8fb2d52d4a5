// The macro recognisers against the line patterns themselves: on random short
// lines the factory must pick the same command, or none, as searches with the
// standard ECMAScript engine do. The engine is used here only; the library
// never runs it.

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <random>
#include <regex>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <zuno-keymapmanager/keymapmanager.h>

#include "tests/MacroOracle.h"

namespace {

namespace km = zunokeymapmanager;
using Factory = km::MarcoConVerterFactory;

// clang-format off
const char* const kTokens[] = {
    "click", "press", "release", "switch", "curve", "_rel:", "mouse", "sleep", "default_sleep_time",
    ":", "loop", "until_release", "_cmd", "untilcmd", "text", "_inject:", "joystick_press",
    "joystick_release", "joystick_switch", "keyboard_press:", "mouse_release:", "key_press",
    "enter_staring", "exit_staring", "hold_switch", "lock_windows", "unlock_windows", "release_all",
    "loop_end", "stop_loop", "start_loop:", "curve_first_time", "curve_last_time",
    "curve_first_point_sleep_time:", "curve_last_point_sleep_time:", "until_release_cmd",
    "curve_release", "release_actions", "0", "1", "7", "42", "1.", "0.5", "1,2", "(0.5,1)", ",", ".",
    "(", ")", ";", " ", " ", "  ", "\t", "\"", "\"", "\r", "\n", "\v", "x", "A", "\xc3\xa9",
};

// Lines of every command in both forms, for the generator to edit.
const char* const kSeeds[] = {
    "click 1,2", "press mouse 3,4", "release\t10,20", "switch 5,6 mouse", "curve 1,2 3,4",
    "click_rel:(0.5,1)", "press_rel:mouse;(1.,2)", "release_rel:(0,0)", "switch_rel:mouse",
    "curve_rel:(1,2);(3.5,4)", "default_sleep_time 5", "default_sleep_time:5", "sleep 5", "sleep",
    "sleep:5", "keyboard_press:30", "keyboard_release:1", "keyboard_switch:2", "mouse_press:1",
    "mouse_release:2", "mouse_switch:3", "loop 2 until_release", "start_loop:2until_release",
    "text \"a\"b\"", "text\t\"\"", "text_inject:abc", "joystick_press A", "joystick_press:A",
    "joystick_release:B", "joystick_release y", "joystick_switch:z", "joystick_switch x",
    "curve_first_time 5 6", "curve_first_point_sleep_time:12", "curve_last_time 5 untilcmd",
    "curve_last_point_sleep_time:until_release_cmd5", "enter_staring", "exit_staring",
    "hold_switch", "lock_windows", "unlock_windows", "release_all", "loop_end", "stop_loop",
    "curve_release",
};

// Single bytes where the line shapes are most delicate.
const char* const kBytes[] = {" ", "\t", "\r", "\n", "\"", ",", ";", "(", ")", ".", "0", "9", "x", ":"};
// clang-format on

template <typename T, std::size_t N>
const T& pick(std::mt19937& rng, const T (&items)[N]) {
    return items[rng() % N];
}

// Either a seed line with up to two random edits (a token or byte put in, a
// byte taken out or replaced), or a run of random tokens. Runs of more than 8
// digits are avoided: the engine's repeated groups are exponential in them.
std::string randomLine(std::mt19937& rng) {
    static const std::regex longRun(R"(\d{9})");
    for (;;) {
        std::string line;
        if (rng() % 2 == 0) {
            line = pick(rng, kSeeds);
            for (auto edits = rng() % 3; edits > 0; --edits) {
                const std::size_t at = rng() % (line.size() + 1);
                const char* token = rng() % 2 == 0 ? pick(rng, kTokens) : pick(rng, kBytes);
                const auto kind = rng() % 3;
                line.replace(at, kind == 0 ? 0 : 1, kind == 1 ? "" : token);
            }
        } else {
            for (auto n = rng() % 8 + 1; n > 0; --n) {
                line += pick(rng, kTokens);
            }
        }
        if (!std::regex_search(line, longRun)) {
            return line;
        }
    }
}

// The command of the converter the factory made, by its place in the
// language's order (which is the oracle's), or -1 for none.
const std::type_info* const kCommandTypes[] = {
    &typeid(km::MarcoClickConVerter),
    &typeid(km::MarcoPressConVerter),
    &typeid(km::MarcoReleaseConVerter),
    &typeid(km::MarcoDefaultSleepConVerter),
    &typeid(km::MarcoSleepConVerter),
    &typeid(km::MarcoKeyboardPressConVerter),
    &typeid(km::MarcoKeyboardReleaseConVerter),
    &typeid(km::MarcoKeyboardSwitchConVerter),
    &typeid(km::MarcoEnterStaringConVerter),
    &typeid(km::MarcoExitStaringConVerter),
    &typeid(km::MarcoCurveConVerter),
    &typeid(km::MarcoSwitchConVerter),
    &typeid(km::MarcoMousePressConVerter),
    &typeid(km::MarcoMouseReleaseConVerter),
    &typeid(km::MarcoMouseSwitchConVerter),
    &typeid(km::MarcoReleaseAllConVerter),
    &typeid(km::MarcoStopLoopConVerter),
    &typeid(km::MarcoStartLoopConVerter),
    &typeid(km::MarcoTextInjectConVerter),
    &typeid(km::MarcoJoystickPressConVerter),
    &typeid(km::MarcoJoystickReleaseConVerter),
    &typeid(km::MarcoJoystickSwitchConVerter),
    &typeid(km::MarcoLockWindowsConVerter),
    &typeid(km::MarcoUnLockWindowsConVerter),
    &typeid(km::MarcoCurveFirstPointSleepTimeConVerter),
    &typeid(km::MarcoCurveLastPointSleepTimeConVerter),
    &typeid(km::MarcoCurveReleaseConVerter),
    &typeid(km::MarcoInputHoldSwitchConVerter),
};
constexpr int kConverterCount = static_cast<int>(std::size(kCommandTypes));

int indexOf(const std::shared_ptr<km::MarcoConVerter>& converter) {
    if (converter == nullptr) {
        return -1;
    }
    const km::MarcoConVerter& made = *converter;
    for (int i = 0; i < kConverterCount; ++i) {
        if (typeid(made) == *kCommandTypes[i]) {
            return i;
        }
    }
    return -1;
}

// The base converter's conversions read the first pair of numbers, which
// counts only when it ends the text.
std::string baseRunning(const std::string& line) {
    static const std::regex pair(R"((\d+),(\d+))", std::regex::ECMAScript);
    std::smatch m;
    const bool ends = std::regex_search(line, m, pair) && m.suffix().length() == 0;
    return "press_rel:" + (ends ? m.str(1) + ";" + m.str(2) + ";" : "");
}
std::string baseEditing(const std::string& line) {
    static const std::regex group(R"(\(([^,]+),([^)]+)\))", std::regex::ECMAScript);
    std::smatch m;
    const bool ends = std::regex_search(line, m, group) && m.suffix().length() == 0;
    return "press" + (ends ? " " + m.str(1) + " " + m.str(2) : "");
}

TEST(MacroDifferential, ConvertersAgreeWithThePatternsOnRandomLines) {
    ASSERT_EQ(macrooracle::kCommandCount, static_cast<std::size_t>(kConverterCount));
    std::mt19937 rng(20240531);
    std::array<int, kConverterCount> editingHits{}, runningHits{};
    int mismatches = 0, copied = 0;
    for (int n = 0; n < 100000 && mismatches < 20; ++n) {
        const std::string line = randomLine(rng);
        const int wantEditing = macrooracle::commandFor(line, true);
        const int wantRunning = macrooracle::commandFor(line, false);
        const int gotEditing = indexOf(Factory::ProduceMarcoConVerterByEditingText(line));
        const int gotRunning = indexOf(Factory::ProduceMarcoConVerterByRunningText(line));
        km::MarcoConVerter base;
        base.initEditingText(line, km::Rect());
        base.initRunningText(line, km::Rect());
        const std::string wantBase = baseRunning(line) + " | " + baseEditing(line);
        const std::string gotBase =
            base.converterToRunningText() + " | " + base.converterToEditingText();
        copied += wantBase != "press_rel: | press";
        if (wantEditing != gotEditing || wantRunning != gotRunning || wantBase != gotBase) {
            ++mismatches;
            ADD_FAILURE() << testing::PrintToString(line) << ": editing " << gotEditing << " (want "
                          << wantEditing << "), running " << gotRunning << " (want " << wantRunning
                          << "), base " << gotBase << " (want " << wantBase << ")";
        }
        EXPECT_EQ(Factory::isMacroKeyEditingTextGrammarRight(line), wantEditing >= 0);
        editingHits[std::max(wantEditing, 0)] += wantEditing >= 0;
        runningHits[std::max(wantRunning, 0)] += wantRunning >= 0;
    }
    // The lines must reach every command and copy pairs, or the agreement says little.
    for (std::size_t i = 0; i < macrooracle::kCommandCount; ++i) {
        const macrooracle::Command& command = macrooracle::kCommands[i];
        EXPECT_TRUE(editingHits[i] > 0 || command.editing.match == macrooracle::Match::Never)
            << "no editing line for " << command.name;
        EXPECT_GT(runningHits[i], 0) << "no running line for " << command.name;
    }
    EXPECT_GT(copied, 1000);
}

}  // namespace
