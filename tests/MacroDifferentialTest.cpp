// The macro recognisers against the line patterns themselves: on random short
// lines the factory must pick the same command, or none, as searches with the
// standard ECMAScript engine do. The engine is used here only; the library
// never runs it.

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <random>
#include <regex>
#include <string>
#include <typeindex>
#include <vector>

#include <gtest/gtest.h>

#include <zuno-keymapmanager/keymapmanager.h>

namespace {

namespace km = zunokeymapmanager;
using Factory = km::MarcoConVerterFactory;

/// The dynamic type of a converter (through a reference: clang flags typeid
/// on an expression that calls a function).
std::type_index typeOf(const km::MarcoConVerter& converter) {
    return typeid(converter);
}

struct OracleRow {
    std::type_index type;
    const char* editing;  // null: no line
    const char* running;
};

// Whole-word commands are written as "^word$", which accepts the same lines.
#define KM_POINTS(kw) "^" kw R"((?:\s+(?:(\d+),(\d+)|mouse))+$)"
#define KM_REL_POINTS(kw) \
    "^" kw                \
    R"(_rel:(?:\((\d+\.?\d*),(\d+\.?\d*)\)|mouse)(?:;(?:\((\d+\.?\d*),(\d+\.?\d*)\)|mouse))*$)"

// clang-format off
const OracleRow kOracle[] = {
    {typeid(km::MarcoClickConVerter), KM_POINTS("click"), KM_REL_POINTS("click")},
    {typeid(km::MarcoPressConVerter), KM_POINTS("press"), KM_REL_POINTS("press")},
    {typeid(km::MarcoReleaseConVerter), KM_POINTS("release"), KM_REL_POINTS("release")},
    {typeid(km::MarcoDefaultSleepConVerter), R"(default_sleep_time\s+(\d+))", R"(default_sleep_time:(\d+))"},
    {typeid(km::MarcoSleepConVerter), R"(^sleep\s*(\d+)?)", R"(^sleep:(\d+))"},
    {typeid(km::MarcoKeyboardPressConVerter), nullptr, R"(keyboard_press:(\d+))"},
    {typeid(km::MarcoKeyboardReleaseConVerter), nullptr, R"(keyboard_release:(\d+))"},
    {typeid(km::MarcoKeyboardSwitchConVerter), nullptr, R"(keyboard_switch:(\d+))"},
    {typeid(km::MarcoEnterStaringConVerter), "^enter_staring$", "^enter_staring$"},
    {typeid(km::MarcoExitStaringConVerter), "^exit_staring$", "^exit_staring$"},
    {typeid(km::MarcoCurveConVerter), KM_POINTS("curve"), KM_REL_POINTS("curve")},
    {typeid(km::MarcoSwitchConVerter), KM_POINTS("switch"), KM_REL_POINTS("switch")},
    {typeid(km::MarcoMousePressConVerter), nullptr, R"(mouse_press:(\d+))"},
    {typeid(km::MarcoMouseReleaseConVerter), nullptr, R"(mouse_release:(\d+))"},
    {typeid(km::MarcoMouseSwitchConVerter), nullptr, R"(mouse_switch:(\d+))"},
    {typeid(km::MarcoReleaseAllConVerter), "^release_all$", "^release_all$"},
    {typeid(km::MarcoStopLoopConVerter), "^loop_end$", "^stop_loop$"},
    {typeid(km::MarcoStartLoopConVerter), R"(^loop(?:\s+(?:(\d+)|until_release))+$)", R"(^start_loop:(?:(\d+)|until_release)+$)"},
    {typeid(km::MarcoTextInjectConVerter), R"re(^text\s+"(.*)")re", R"(^text_inject:(.*))"},
    {typeid(km::MarcoJoystickPressConVerter), R"(joystick_press\s+(\S+))", R"(joystick_press:(\S+))"},
    {typeid(km::MarcoJoystickReleaseConVerter), R"(joystick_release\s+(\S+))", R"(joystick_release:(\S+))"},
    {typeid(km::MarcoJoystickSwitchConVerter), R"(joystick_switch\s+(\S+))", R"(joystick_switch:(\S+))"},
    {typeid(km::MarcoLockWindowsConVerter), "^lock_windows$", "^lock_windows$"},
    {typeid(km::MarcoUnLockWindowsConVerter), "^unlock_windows$", "^unlock_windows$"},
    {typeid(km::MarcoCurveFirstPointSleepTimeConVerter), R"(^curve_first_time(?:\s+(?:(\d+)))+$)", R"(^curve_first_point_sleep_time:(?:(\d+))+$)"},
    {typeid(km::MarcoCurveLastPointSleepTimeConVerter), R"(^curve_last_time(?:\s+(?:(\d+)|untilcmd))+$)", R"(^curve_last_point_sleep_time:(?:(\d+)|until_release_cmd)+$)"},
    {typeid(km::MarcoCurveReleaseConVerter), "^curve_release$", "^curve_release$"},
    {typeid(km::MarcoInputHoldSwitchConVerter), "^hold_switch$", "^hold_switch$"},
};

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

// The index of the first pattern found at the end of the line, or -1.
template <typename Patterns>
int firstFound(const Patterns& patterns, const std::string& line) {
    std::smatch m;
    for (std::size_t i = 0; i < std::size(patterns); ++i) {
        if (patterns[i] && std::regex_search(line, m, *patterns[i]) && m.suffix().length() == 0) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int indexOf(const std::shared_ptr<km::MarcoConVerter>& converter) {
    for (std::size_t i = 0; converter && i < std::size(kOracle); ++i) {
        if (kOracle[i].type == typeOf(*converter)) {
            return static_cast<int>(i);
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
    ASSERT_EQ(std::size(kOracle), static_cast<std::size_t>(km::kMacroCommandCount));
    std::array<std::optional<std::regex>, km::kMacroCommandCount> editing, running;
    for (std::size_t i = 0; i < std::size(kOracle); ++i) {
        if (kOracle[i].editing) {
            editing[i].emplace(kOracle[i].editing, std::regex::ECMAScript);
        }
        running[i].emplace(kOracle[i].running, std::regex::ECMAScript);
    }
    std::mt19937 rng(20240531);
    std::array<int, km::kMacroCommandCount> editingHits{}, runningHits{};
    int mismatches = 0, copied = 0;
    for (int n = 0; n < 100000 && mismatches < 20; ++n) {
        const std::string line = randomLine(rng);
        const int wantEditing = firstFound(editing, line);
        const int wantRunning = firstFound(running, line);
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
    for (std::size_t i = 0; i < std::size(kOracle); ++i) {
        EXPECT_TRUE(editingHits[i] > 0 || !kOracle[i].editing) << "no editing line for " << i;
        EXPECT_GT(runningHits[i], 0) << "no running line for " << i;
    }
    EXPECT_GT(copied, 1000);
}

}  // namespace
