// The macro recognisers against the line patterns themselves: random short
// lines must be accepted, and given to the same command, exactly as a search
// with the ECMAScript engine of the standard library decides. The engine is
// used here only; the library never runs it.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
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

/// One form of a command: a pattern searched for, a whole word, or nothing.
struct Form {
    enum Kind { Pattern, Word, Nothing } kind;
    const char* text;
};

constexpr Form nothing{Form::Nothing, ""};
constexpr Form word(const char* w) {
    return {Form::Word, w};
}
constexpr Form re(const char* p) {
    return {Form::Pattern, p};
}

struct OracleRow {
    std::type_index type;
    Form editing;
    Form running;
};

#define KM_POINTS_EDIT(kw) re("^" kw R"((?:\s+(?:(\d+),(\d+)|mouse))+$)")
#define KM_POINTS_RUN(kw)                                     \
    re("^" kw R"(_rel:(?:\((\d+\.?\d*),(\d+\.?\d*)\)|mouse))" \
       R"((?:;(?:\((\d+\.?\d*),(\d+\.?\d*)\)|mouse))*$)")

// The commands in the factory's order, with their patterns as the line
// language defines them.
const std::vector<OracleRow>& oracleRows() {
    static const std::vector<OracleRow> rows = {
        {typeid(km::MarcoClickConVerter), KM_POINTS_EDIT("click"), KM_POINTS_RUN("click")},
        {typeid(km::MarcoPressConVerter), KM_POINTS_EDIT("press"), KM_POINTS_RUN("press")},
        {typeid(km::MarcoReleaseConVerter), KM_POINTS_EDIT("release"), KM_POINTS_RUN("release")},
        {typeid(km::MarcoDefaultSleepConVerter), re(R"(default_sleep_time\s+(\d+))"),
         re(R"(default_sleep_time:(\d+))")},
        {typeid(km::MarcoSleepConVerter), re(R"(^sleep\s*(\d+)?)"), re(R"(^sleep:(\d+))")},
        {typeid(km::MarcoKeyboardPressConVerter), nothing, re(R"(keyboard_press:(\d+))")},
        {typeid(km::MarcoKeyboardReleaseConVerter), nothing, re(R"(keyboard_release:(\d+))")},
        {typeid(km::MarcoKeyboardSwitchConVerter), nothing, re(R"(keyboard_switch:(\d+))")},
        {typeid(km::MarcoEnterStaringConVerter), word("enter_staring"), word("enter_staring")},
        {typeid(km::MarcoExitStaringConVerter), word("exit_staring"), word("exit_staring")},
        {typeid(km::MarcoCurveConVerter), KM_POINTS_EDIT("curve"), KM_POINTS_RUN("curve")},
        {typeid(km::MarcoSwitchConVerter), KM_POINTS_EDIT("switch"), KM_POINTS_RUN("switch")},
        {typeid(km::MarcoMousePressConVerter), nothing, re(R"(mouse_press:(\d+))")},
        {typeid(km::MarcoMouseReleaseConVerter), nothing, re(R"(mouse_release:(\d+))")},
        {typeid(km::MarcoMouseSwitchConVerter), nothing, re(R"(mouse_switch:(\d+))")},
        {typeid(km::MarcoReleaseAllConVerter), word("release_all"), word("release_all")},
        {typeid(km::MarcoStopLoopConVerter), word("loop_end"), word("stop_loop")},
        {typeid(km::MarcoStartLoopConVerter), re(R"(^loop(?:\s+(?:(\d+)|until_release))+$)"),
         re(R"(^start_loop:(?:(\d+)|until_release)+$)")},
        {typeid(km::MarcoTextInjectConVerter), re(R"re(^text\s+"(.*)")re"),
         re(R"(^text_inject:(.*))")},
        {typeid(km::MarcoJoystickPressConVerter), re(R"(joystick_press\s+(\S+))"),
         re(R"(joystick_press:(\S+))")},
        {typeid(km::MarcoJoystickReleaseConVerter), re(R"(joystick_release\s+(\S+))"),
         re(R"(joystick_release:(\S+))")},
        {typeid(km::MarcoJoystickSwitchConVerter), re(R"(joystick_switch\s+(\S+))"),
         re(R"(joystick_switch:(\S+))")},
        {typeid(km::MarcoLockWindowsConVerter), word("lock_windows"), word("lock_windows")},
        {typeid(km::MarcoUnLockWindowsConVerter), word("unlock_windows"), word("unlock_windows")},
        {typeid(km::MarcoCurveFirstPointSleepTimeConVerter),
         re(R"(^curve_first_time(?:\s+(?:(\d+)))+$)"),
         re(R"(^curve_first_point_sleep_time:(?:(\d+))+$)")},
        {typeid(km::MarcoCurveLastPointSleepTimeConVerter),
         re(R"(^curve_last_time(?:\s+(?:(\d+)|untilcmd))+$)"),
         re(R"(^curve_last_point_sleep_time:(?:(\d+)|until_release_cmd)+$)")},
        {typeid(km::MarcoCurveReleaseConVerter), word("curve_release"), word("curve_release")},
        {typeid(km::MarcoInputHoldSwitchConVerter), word("hold_switch"), word("hold_switch")},
    };
    return rows;
}

/// A form compiled once.
class Judge {
public:
    explicit Judge(const Form& form) : form_(form) {
        if (form.kind == Form::Pattern) {
            re_.emplace(form.text, std::regex::ECMAScript);
        }
    }

    bool accepts(const std::string& line) const {
        switch (form_.kind) {
            case Form::Nothing:
                return false;
            case Form::Word:
                return line == form_.text;
            case Form::Pattern: {
                std::smatch m;
                return std::regex_search(line, m, *re_) && m.suffix().length() == 0;
            }
        }
        return false;
    }

private:
    Form form_;
    std::optional<std::regex> re_;
};

const char* const kTokens[] = {
    "click",
    "press",
    "release",
    "switch",
    "curve",
    "_rel:",
    "mouse",
    "sleep",
    "default_sleep_time",
    ":",
    "loop",
    "until_release",
    "_cmd",
    "untilcmd",
    "text",
    "_inject:",
    "joystick_press",
    "joystick_release",
    "joystick_switch",
    "keyboard_press:",
    "mouse_release:",
    "key_press",
    "enter_staring",
    "exit_staring",
    "hold_switch",
    "lock_windows",
    "unlock_windows",
    "release_all",
    "loop_end",
    "stop_loop",
    "start_loop:",
    "curve_first_time",
    "curve_last_time",
    "curve_first_point_sleep_time:",
    "curve_last_point_sleep_time:",
    "until_release_cmd",
    "curve_release",
    "release_actions",
    "0",
    "1",
    "7",
    "42",
    "1.",
    "0.5",
    "1,2",
    "(0.5,1)",
    ",",
    ".",
    "(",
    ")",
    ";",
    " ",
    " ",
    "  ",
    "\t",
    "\"",
    "\"",
    "\r",
    "\n",
    "\v",
    "x",
    "A",
    "\xc3\xa9",
};

// Lines of every command, in both forms, for the generator to mutate.
const char* const kSeeds[] = {
    "click 1,2",
    "press mouse 3,4",
    "release\t10,20",
    "switch 5,6 mouse",
    "curve 1,2 3,4",
    "click_rel:(0.5,1)",
    "press_rel:mouse;(1.,2)",
    "release_rel:(0,0)",
    "switch_rel:mouse",
    "curve_rel:(1,2);(3.5,4)",
    "default_sleep_time 5",
    "default_sleep_time:5",
    "sleep 5",
    "sleep",
    "sleep:5",
    "keyboard_press:30",
    "keyboard_release:1",
    "keyboard_switch:2",
    "mouse_press:1",
    "mouse_release:2",
    "mouse_switch:3",
    "loop 2 until_release",
    "start_loop:2until_release",
    "text \"a\"b\"",
    "text\t\"\"",
    "text_inject:abc",
    "joystick_press A",
    "joystick_release:B",
    "joystick_switch x",
    "curve_first_time 5 6",
    "curve_first_point_sleep_time:12",
    "curve_last_time 5 untilcmd",
    "curve_last_point_sleep_time:until_release_cmd5",
    "enter_staring",
    "exit_staring",
    "hold_switch",
    "lock_windows",
    "unlock_windows",
    "release_all",
    "loop_end",
    "stop_loop",
    "curve_release",
};

// Single bytes where the line shapes are most delicate.
const char* const kBytes[] = {" ", "\t", "\r", "\n", "\"", ",", ";",
                              "(", ")",  ".",  "0",  "9",  "x", ":"};

template <typename T, std::size_t N>
const T& pick(std::mt19937& rng, const T (&items)[N]) {
    return items[std::uniform_int_distribution<std::size_t>(0, N - 1)(rng)];
}

int below(std::mt19937& rng, int n) {
    return std::uniform_int_distribution<int>(0, n - 1)(rng);
}

// Either a seed line with a few random edits (a token put in, a byte taken
// out or replaced), or a run of random tokens.
std::string candidateLine(std::mt19937& rng) {
    std::string line;
    if (below(rng, 2) == 0) {
        line = pick(rng, kSeeds);
        for (int edits = below(rng, 3); edits > 0; --edits) {
            const std::size_t at = below(rng, static_cast<int>(line.size()) + 1);
            const char* token = below(rng, 2) == 0 ? pick(rng, kTokens) : pick(rng, kBytes);
            switch (below(rng, 3)) {
                case 0:
                    line.insert(at, token);
                    break;
                case 1:
                    line.erase(at, 1);
                    break;
                default:
                    line.replace(at, 1, token);
                    break;
            }
        }
    } else {
        for (int n = below(rng, 8) + 1; n > 0; --n) {
            line += pick(rng, kTokens);
        }
    }
    return line;
}

std::string randomLine(std::mt19937& rng) {
    for (;;) {
        std::string line = candidateLine(rng);
        // Long runs of digits make the engine's repeated groups exponential;
        // the recognisers do not care, but the test must finish.
        std::size_t run = 0;
        std::size_t longest = 0;
        for (char c : line) {
            run = (c >= '0' && c <= '9') ? run + 1 : 0;
            longest = std::max(longest, run);
        }
        if (longest <= 8) {
            return line;
        }
    }
}

std::string escaped(const std::string& line) {
    std::string out;
    for (unsigned char c : line) {
        if (c >= 0x20 && c < 0x7f) {
            out += static_cast<char>(c);
        } else {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\x%02x", c);
            out += buf;
        }
    }
    return out;
}

constexpr int kNone = -1;

template <typename Producer>
int producedIndex(Producer produce, const std::string& line) {
    const std::shared_ptr<km::MarcoConVerter> converter = produce(line);
    if (!converter) {
        return kNone;
    }
    const auto& rows = oracleRows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].type == typeid(*converter)) {
            return static_cast<int>(i);
        }
    }
    return -2;
}

TEST(MacroDifferential, RecognisersAgreeWithThePatternsOnRandomLines) {
    const auto& rows = oracleRows();
    ASSERT_EQ(rows.size(), static_cast<std::size_t>(km::kMacroCommandCount));
    std::vector<Judge> editing;
    std::vector<Judge> running;
    for (const OracleRow& row : rows) {
        editing.emplace_back(row.editing);
        running.emplace_back(row.running);
    }
    auto expected = [](const std::vector<Judge>& judges, const std::string& line) {
        for (std::size_t i = 0; i < judges.size(); ++i) {
            if (judges[i].accepts(line)) {
                return static_cast<int>(i);
            }
        }
        return kNone;
    };

    std::mt19937 rng(20240531);
    std::array<int, km::kMacroCommandCount> editingHits{};
    std::array<int, km::kMacroCommandCount> runningHits{};
    int mismatches = 0;
    for (int n = 0; n < 100000 && mismatches < 20; ++n) {
        const std::string line = randomLine(rng);
        const int wantEditing = expected(editing, line);
        const int wantRunning = expected(running, line);
        const int gotEditing =
            producedIndex(&km::MarcoConVerterFactory::ProduceMarcoConVerterByEditingText, line);
        const int gotRunning =
            producedIndex(&km::MarcoConVerterFactory::ProduceMarcoConVerterByRunningText, line);
        if (wantEditing != gotEditing || wantRunning != gotRunning) {
            ++mismatches;
            ADD_FAILURE() << "line \"" << escaped(line) << "\": editing " << gotEditing << " (want "
                          << wantEditing << "), running " << gotRunning << " (want " << wantRunning
                          << ")";
        }
        EXPECT_EQ(km::MarcoConVerterFactory::isMacroKeyEditingTextGrammarRight(line),
                  wantEditing != kNone);
        if (wantEditing != kNone) {
            ++editingHits[wantEditing];
        }
        if (wantRunning != kNone) {
            ++runningHits[wantRunning];
        }
    }

    // The lines must reach every command, or the agreement says little.
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].editing.kind != Form::Nothing) {
            EXPECT_GT(editingHits[i], 0) << "no editing line for command " << i;
        }
        EXPECT_GT(runningHits[i], 0) << "no running line for command " << i;
    }
}

// The base converter's conversions read the first pair of numbers, which
// counts only when it ends the text.
TEST(MacroDifferential, BaseConversionsAgreeWithThePatternsOnRandomLines) {
    const std::regex pair(R"((\d+),(\d+))", std::regex::ECMAScript);
    const std::regex group(R"(\(([^,]+),([^)]+)\))", std::regex::ECMAScript);
    std::mt19937 rng(7);
    int copied = 0;
    for (int n = 0; n < 100000; ++n) {
        const std::string line = randomLine(rng);
        std::smatch m;
        std::string running = "press_rel:";
        if (std::regex_search(line, m, pair) && m.suffix().length() == 0) {
            running += m.str(1) + ";" + m.str(2) + ";";
            ++copied;
        }
        std::string editing = "press";
        if (std::regex_search(line, m, group) && m.suffix().length() == 0) {
            editing += " " + m.str(1) + " " + m.str(2);
            ++copied;
        }
        km::MarcoConVerter converter;
        converter.initEditingText(line, km::Rect());
        converter.initRunningText(line, km::Rect());
        ASSERT_EQ(converter.converterToRunningText(), running) << escaped(line);
        ASSERT_EQ(converter.converterToEditingText(), editing) << escaped(line);
    }
    EXPECT_GT(copied, 1000);
}

}  // namespace
