// The grammar check of a mixed 1,000-line macro script: the library against
// a checker that compiles each command's pattern with std::regex on every
// try, 28 commands per line in the factory's order, as the first design of
// the checker did.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <zuno-keymapmanager/keymapmanager.h>

namespace {

namespace km = zunokeymapmanager;

/// An editing form: a pattern searched for, a whole word, or nothing.
struct Form {
    enum Kind { Pattern, Word, Nothing } kind;
    const char* text;
};

#define POINTS(kw) \
    { Form::Pattern, "^" kw R"((?:\s+(?:(\d+),(\d+)|mouse))+$)" }
#define NEVER \
    { Form::Nothing, "" }

// The editing forms in the factory's order.
const Form kEditingForms[] = {
    POINTS("click"),
    POINTS("press"),
    POINTS("release"),
    {Form::Pattern, R"(default_sleep_time\s+(\d+))"},
    {Form::Pattern, R"(^sleep\s*(\d+)?)"},
    NEVER,
    NEVER,
    NEVER,
    {Form::Word, "enter_staring"},
    {Form::Word, "exit_staring"},
    POINTS("curve"),
    POINTS("switch"),
    NEVER,
    NEVER,
    NEVER,
    {Form::Word, "release_all"},
    {Form::Word, "loop_end"},
    {Form::Pattern, R"(^loop(?:\s+(?:(\d+)|until_release))+$)"},
    {Form::Pattern, R"re(^text\s+"(.*)")re"},
    {Form::Pattern, R"(joystick_press\s+(\S+))"},
    {Form::Pattern, R"(joystick_release\s+(\S+))"},
    {Form::Pattern, R"(joystick_switch\s+(\S+))"},
    {Form::Word, "lock_windows"},
    {Form::Word, "unlock_windows"},
    {Form::Pattern, R"(^curve_first_time(?:\s+(?:(\d+)))+$)"},
    {Form::Pattern, R"(^curve_last_time(?:\s+(?:(\d+)|untilcmd))+$)"},
    {Form::Word, "curve_release"},
    {Form::Word, "hold_switch"},
};
static_assert(sizeof(kEditingForms) / sizeof(kEditingForms[0]) == 28, "one form per command");

bool acceptsCompilingEachTime(const Form& form, const std::string& line) {
    switch (form.kind) {
        case Form::Nothing:
            return false;
        case Form::Word:
            return line == form.text;
        case Form::Pattern: {
            const std::regex re(form.text, std::regex::ECMAScript);
            std::smatch m;
            return std::regex_search(line, m, re) && m.suffix().length() == 0;
        }
    }
    return false;
}

std::vector<std::uint32_t> baselineGrammarCheck(const std::vector<std::string>& lines) {
    std::vector<std::uint32_t> failing;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (line.empty() || line == "release_actions") {
            continue;
        }
        bool accepted = false;
        for (const Form& form : kEditingForms) {
            if (acceptsCompilingEachTime(form, line)) {
                accepted = true;
                break;
            }
        }
        if (!accepted) {
            failing.push_back(static_cast<std::uint32_t>(i + 1));
        }
    }
    return failing;
}

// A script such as users write: every command, a separator, blank lines and
// some mistakes.
std::vector<std::string> mixedScript() {
    const char* const lines[] = {
        "default_sleep_time 20",
        "press 540,960",
        "sleep 50",
        "curve 100,200 300,400 mouse",
        "curve_first_time 30",
        "curve_last_time untilcmd",
        "loop 3",
        "click 10,20 mouse",
        "switch 700,800",
        "loop_end",
        "text \"hello, world\"",
        "joystick_press A",
        "joystick_release A",
        "enter_staring",
        "exit_staring",
        "hold_switch",
        "lock_windows",
        "unlock_windows",
        "",
        "release_actions",
        "release 540,960",
        "release_all",
        "curve_release",
        "click 10, 20",
        "key_press 30",
        "sleep 5x",
    };
    std::vector<std::string> script;
    for (std::size_t i = 0; script.size() < 1000; ++i) {
        script.push_back(lines[i % (sizeof(lines) / sizeof(lines[0]))]);
    }
    return script;
}

const std::vector<std::string>& script() {
    static const std::vector<std::string> s = [] {
        std::vector<std::string> lines = mixedScript();
        if (km::MacroKeyEditingTextGrammarCheck(lines) != baselineGrammarCheck(lines)) {
            std::fprintf(stderr, "the library and the baseline disagree on the script\n");
            std::abort();
        }
        return lines;
    }();
    return s;
}

void BM_GrammarCheck_Library(benchmark::State& state) {
    const std::vector<std::string>& lines = script();
    for (auto _ : state) {
        benchmark::DoNotOptimize(km::MacroKeyEditingTextGrammarCheck(lines));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
}
BENCHMARK(BM_GrammarCheck_Library);

void BM_GrammarCheck_RegexCompiledPerTry(benchmark::State& state) {
    const std::vector<std::string>& lines = script();
    for (auto _ : state) {
        benchmark::DoNotOptimize(baselineGrammarCheck(lines));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines.size()));
}
BENCHMARK(BM_GrammarCheck_RegexCompiledPerTry)->Unit(benchmark::kMillisecond);

}  // namespace
