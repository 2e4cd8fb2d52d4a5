// Macro language: the input is a script, one line per input line. The three
// script operations must agree with each other line by line, and every line
// short enough for the standard regular expression engine is also judged by
// the command patterns themselves, compiled once with the ECMAScript grammar.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>
#include <vector>

#include "tests/MacroOracle.h"
#include "zuno-keymapmanager/keymapmanager.h"

namespace km = zunokeymapmanager;
using namespace macrooracle;

namespace {

using Lines = std::vector<std::string>;

// Longer lines are left out of the comparison: the standard engine recurses
// per character and would overflow the stack long before the library does.
constexpr std::size_t kLongestJudgedLine = 64;

bool isInteger(const std::string& text) {
    static const std::regex integer("-?[0-9]+");
    return std::regex_match(text, integer);
}

std::string show(const Lines& lines) {
    std::string text = "[";
    for (const std::string& line : lines) {
        text += "\n  \"" + line + "\"";
    }
    return text + "\n]";
}

[[noreturn]] void fail(const char* what, const std::string& line, const Lines& got,
                       const std::string& expected) {
    std::fprintf(stderr, "%s\nline: \"%s\"\ngot: %s\nexpected: %s\n", what, line.c_str(),
                 show(got).c_str(), expected.c_str());
    std::abort();
}

void judge(const std::string& line, const km::Rect& rect) {
    const Lines one{line};
    const bool skipped = line.empty() || line == "release_actions";
    const int editing = skipped ? -1 : commandFor(line, true);
    const int running = skipped ? -1 : commandFor(line, false);

    const std::vector<std::uint32_t> grammar = km::MacroKeyEditingTextGrammarCheck(one);
    const bool grammarRight = skipped || editing >= 0;
    if (grammar != (grammarRight ? std::vector<std::uint32_t>{} : std::vector<std::uint32_t>{1})) {
        fail("grammar check disagrees", line, {}, grammarRight ? "no error" : "error on line 1");
    }

    const Lines toRunning = km::MacroKeyEditingTextChangeToRunningText(one, rect);
    if (editing < 0) {
        if (!toRunning.empty()) {
            fail("editing line that no command takes was converted", line, toRunning, "nothing");
        }
    } else {
        const Command& command = kCommands[editing];
        const std::string prefix = command.runningOut;
        const bool right =
            toRunning.size() == 1 &&
            (command.runningOutEndsInNumber ? toRunning[0].compare(0, prefix.size(), prefix) == 0 &&
                                                  isInteger(toRunning[0].substr(prefix.size()))
                                            : toRunning[0] == prefix);
        if (!right) {
            fail("running text of an editing line", line, toRunning,
                 prefix + " (" + command.name + ")");
        }
    }

    const Lines toEditing = km::MacroKeyRunningTextChangeToEditingText(one, rect);
    const Lines expected = running < 0 ? Lines{} : Lines{kCommands[running].editingOut};
    if (toEditing != expected) {
        fail("editing text of a running line", line, toEditing,
             running < 0 ? "nothing" : std::string(kCommands[running].name));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Lines lines;
    std::string line;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') {
            lines.push_back(line);
            line.clear();
        } else {
            line.push_back(static_cast<char>(data[i]));
        }
    }
    lines.push_back(line);
    const km::Rect rect(0, 0, 1920, 1080);

    // The whole script is what the lines give one by one.
    std::vector<std::uint32_t> grammar;
    Lines running;
    Lines editing;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Lines one{lines[i]};
        if (!km::MacroKeyEditingTextGrammarCheck(one).empty()) {
            grammar.push_back(static_cast<std::uint32_t>(i + 1));
        }
        for (std::string& text : km::MacroKeyEditingTextChangeToRunningText(one, rect)) {
            running.push_back(std::move(text));
        }
        for (std::string& text : km::MacroKeyRunningTextChangeToEditingText(one, rect)) {
            editing.push_back(std::move(text));
        }
        if (lines[i].size() <= kLongestJudgedLine) {
            judge(lines[i], rect);
        }
    }
    if (km::MacroKeyEditingTextGrammarCheck(lines) != grammar) {
        fail("grammar check of the script differs from its lines'", "", {}, "");
    }
    if (km::MacroKeyEditingTextChangeToRunningText(lines, rect) != running) {
        fail("running text of the script differs from its lines'", "", running, "");
    }
    if (km::MacroKeyRunningTextChangeToEditingText(lines, rect) != editing) {
        fail("editing text of the script differs from its lines'", "", editing, "");
    }
    return 0;
}
