// The macro commands written as regular expressions for the standard
// ECMAScript engine: an oracle the library's own recognisers are checked
// against, by the differential test and by the macro fuzz target. The
// library never runs these patterns.

#ifndef ZUNO_KEYMAPMANAGER_TESTS_MACROORACLE_H
#define ZUNO_KEYMAPMANAGER_TESTS_MACROORACLE_H

#include <cstddef>
#include <regex>
#include <string>
#include <vector>

namespace macrooracle {

// How one form of a command recognises a line.
enum class Match { Pattern, Word, Never };

struct Form {
    Match match;
    const char* text;  // the pattern or the word
};

struct Command {
    const char* name;
    Form editing;
    Form running;
    const char* editingOut;
    const char* runningOut;
    bool runningOutEndsInNumber;
};

#define POINTS_EDIT(word) "^" word "(?:\\s+(?:(\\d+),(\\d+)|mouse))+$"
#define POINT_RUN "(?:\\((\\d+\\.?\\d*),(\\d+\\.?\\d*)\\)|mouse)"
#define POINTS_RUN(word) "^" word "_rel:" POINT_RUN "(?:;" POINT_RUN ")*$"
#define POINTER(name, word)                                                                      \
    {                                                                                            \
        name, {Match::Pattern, POINTS_EDIT(word)}, {Match::Pattern, POINTS_RUN(word)}, word " ", \
            word "_rel:", false                                                                  \
    }
#define PLAIN(name, edit, run) \
    { name, {Match::Word, edit}, {Match::Word, run}, edit, run, false }
#define KEYED(name, editOut, run) \
    { name, {Match::Never, ""}, {Match::Pattern, run ":(\\d+)"}, editOut, run ":", true }

// The commands in the order a line is offered to them.
inline const Command kCommands[] = {
    POINTER("click", "click"),
    POINTER("press", "press"),
    POINTER("release", "release"),
    {"default sleep",
     {Match::Pattern, "default_sleep_time\\s+(\\d+)"},
     {Match::Pattern, "default_sleep_time:(\\d+)"},
     "default_sleep_time ",
     "default_sleep_time:",
     false},
    {"sleep",
     {Match::Pattern, "^sleep\\s*(\\d+)?"},
     {Match::Pattern, "^sleep:(\\d+)"},
     "sleep",
     "sleep",
     false},
    KEYED("keyboard press", "key_press ", "keyboard_press"),
    KEYED("keyboard release", "key_release ", "keyboard_release"),
    KEYED("keyboard switch", "key_switch ", "keyboard_switch"),
    PLAIN("enter staring", "enter_staring", "enter_staring"),
    PLAIN("exit staring", "exit_staring", "exit_staring"),
    POINTER("curve", "curve"),
    POINTER("switch", "switch"),
    KEYED("mouse press", "mouse_press ", "mouse_press"),
    KEYED("mouse release", "mouse_release ", "mouse_release"),
    KEYED("mouse switch", "mouse_switch ", "mouse_switch"),
    PLAIN("release all", "release_all", "release_all"),
    PLAIN("stop loop", "loop_end", "stop_loop"),
    {"start loop",
     {Match::Pattern, "^loop(?:\\s+(?:(\\d+)|until_release))+$"},
     {Match::Pattern, "^start_loop:(?:(\\d+)|until_release)+$"},
     "loop ",
     "start_loop:",
     false},
    {"text inject",
     {Match::Pattern, "^text\\s+\"(.*)\""},
     {Match::Pattern, "^text_inject:(.*)"},
     "text \"\"",
     "text_inject:",
     false},
    {"joystick press",
     {Match::Pattern, "joystick_press\\s+(\\S+)"},
     {Match::Pattern, "joystick_press:(\\S+)"},
     "joystick_press ",
     "joystick_press:",
     false},
    {"joystick release",
     {Match::Pattern, "joystick_release\\s+(\\S+)"},
     {Match::Pattern, "joystick_release:(\\S+)"},
     "joystick_release ",
     "joystick_release:",
     false},
    {"joystick switch",
     {Match::Pattern, "joystick_switch\\s+(\\S+)"},
     {Match::Pattern, "joystick_switch:(\\S+)"},
     "joystick_switch ",
     "joystick_switch:",
     false},
    PLAIN("lock windows", "lock_windows", "lock_windows"),
    PLAIN("unlock windows", "unlock_windows", "unlock_windows"),
    {"curve first time",
     {Match::Pattern, "^curve_first_time(?:\\s+(?:(\\d+)))+$"},
     {Match::Pattern, "^curve_first_point_sleep_time:(?:(\\d+))+$"},
     "curve_first_time ",
     "curve_first_point_sleep_time:",
     false},
    {"curve last time",
     {Match::Pattern, "^curve_last_time(?:\\s+(?:(\\d+)|untilcmd))+$"},
     {Match::Pattern, "^curve_last_point_sleep_time:(?:(\\d+)|until_release_cmd)+$"},
     "curve_last_time ",
     "curve_last_point_sleep_time:",
     false},
    PLAIN("curve release", "curve_release", "curve_release"),
    PLAIN("hold switch", "hold_switch", "hold_switch"),
};
constexpr std::size_t kCommandCount = sizeof(kCommands) / sizeof(kCommands[0]);
static_assert(kCommandCount == 28, "every command of the language");

#undef POINTS_EDIT
#undef POINT_RUN
#undef POINTS_RUN
#undef POINTER
#undef PLAIN
#undef KEYED

// A pattern matches only lines that hold its leading keyword, so a line
// without it needs no trip through the engine.
inline std::string keywordOf(const Form& form) {
    std::string keyword;
    for (const char* c = form.text + (form.text[0] == '^' ? 1 : 0);
         (*c >= 'a' && *c <= 'z') || *c == '_' || *c == ':'; ++c) {
        keyword.push_back(*c);
    }
    return keyword;
}

// A pattern anchored at both ends accepts exactly the lines it matches as a
// whole, whichever way the engine searches, so such patterns run on the
// engine's polynomial-time executor: the backtracking one needs exponential
// time for a repeated group such as "(?:(\d+)|until_release)+" on a long
// run of digits followed by something else.
inline std::regex::flag_type flagsFor(const std::string& pattern) {
    std::regex::flag_type flags = std::regex::ECMAScript;
#if defined(__GLIBCXX__)
    if (pattern.size() > 2 && pattern.front() == '^' && pattern.back() == '$') {
        flags |= std::regex_constants::__polynomial;
    }
#endif
    return flags;
}

struct Pattern {
    explicit Pattern(const Form& form)
        : regex(form.match == Match::Pattern ? form.text : "",
                flagsFor(form.match == Match::Pattern ? form.text : "")),
          keyword(keywordOf(form)) {}
    std::regex regex;
    std::string keyword;
};

struct Compiled {
    Pattern editing;
    Pattern running;
};

inline const std::vector<Compiled>& compiled() {
    static const std::vector<Compiled> patterns = [] {
        std::vector<Compiled> result;
        for (const Command& command : kCommands) {
            result.push_back({Pattern(command.editing), Pattern(command.running)});
        }
        return result;
    }();
    return patterns;
}

inline bool accepts(const Form& form, const Pattern& pattern, const std::string& line) {
    switch (form.match) {
        case Match::Never:
            return false;
        case Match::Word:
            return line == form.text;
        case Match::Pattern: {
            if (line.find(pattern.keyword) == std::string::npos) {
                return false;
            }
            std::smatch match;
            return std::regex_search(line, match, pattern.regex) && match.suffix().length() == 0;
        }
    }
    return false;
}

// The first command that takes the line, or -1.
inline int commandFor(const std::string& line, bool editing) {
    for (std::size_t i = 0; i < kCommandCount; ++i) {
        const Command& command = kCommands[i];
        if (editing ? accepts(command.editing, compiled()[i].editing, line)
                    : accepts(command.running, compiled()[i].running, line)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

}  // namespace macrooracle

#endif  // ZUNO_KEYMAPMANAGER_TESTS_MACROORACLE_H
