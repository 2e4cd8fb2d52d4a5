//
// MacroCommand.cpp
//
// zuno-keymap macro: the grammar check and the two conversions of macro
// scripts, one macro line per input line.
//

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "Common.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

const std::string kSeparator = "release_actions";

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

int runMacro(const std::string& action, const std::string& source) {
    std::string text;
    if (!ReadInput(source, text)) {
        std::cerr << "zuno-keymap macro " << action << ": cannot read '" << ForTerminal(source)
                  << "'\n";
        return kUsage;
    }
    const std::string shown = source == "-" ? "<stdin>" : ForTerminal(source);
    const std::vector<std::string> lines = splitLines(text);

    if (action == "check") {
        const std::vector<std::uint32_t> bad = km::MacroKeyEditingTextGrammarCheck(lines);
        for (std::uint32_t line : bad) {
            std::cout << shown << ":" << line << ": not a macro command: \""
                      << ForTerminal(lines[line - 1]) << "\"\n";
        }
        if (bad.empty()) {
            std::cout << shown << ": ok (" << lines.size() << " lines)\n";
        }
        return bad.empty() ? kClean : kProblems;
    }

    const bool toRunning = action == "to-running";
    int status = kClean;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (line.empty() || line == kSeparator) {
            std::cout << line << "\n";
            continue;
        }
        const std::vector<std::string> converted =
            toRunning ? km::MacroKeyEditingTextChangeToRunningText({line}, km::Rect())
                      : km::MacroKeyRunningTextChangeToEditingText({line}, km::Rect());
        if (converted.empty()) {
            std::cerr << shown << ":" << i + 1 << ": not a macro command, left out: \""
                      << ForTerminal(line) << "\"\n";
            status = kProblems;
            continue;
        }
        std::cout << converted.front() << "\n";
    }
    return status;
}

// The commands in both forms, as the help lists them.
const char* const kCommands =
    "Macro commands, editing form | running form:\n"
    "  click P...                   | click_rel:Q;...          tap at the points\n"
    "  press P...                   | press_rel:Q;...          touch down at the points\n"
    "  release P...                 | release_rel:Q;...        lift the touches\n"
    "  switch P...                  | switch_rel:Q;...         toggle touches\n"
    "  curve P...                   | curve_rel:Q;...          drag along the points\n"
    "  curve_first_time N           | curve_first_point_sleep_time:N\n"
    "  curve_last_time N|untilcmd   | curve_last_point_sleep_time:N|until_release_cmd\n"
    "  curve_release                | curve_release            end a held curve\n"
    "  default_sleep_time N         | default_sleep_time:N     pause between commands\n"
    "  sleep [N]                    | sleep:N                  pause\n"
    "  loop N|until_release         | start_loop:N|until_release\n"
    "  loop_end                     | stop_loop                end of the repeated block\n"
    "  text \"TEXT\"                  | text_inject:TEXT         type a text\n"
    "  joystick_press NAME          | joystick_press:NAME      (also _release, _switch)\n"
    "  -                            | keyboard_press:CODE      (also _release, _switch)\n"
    "  -                            | mouse_press:CODE         (also _release, _switch)\n"
    "  enter_staring, exit_staring, hold_switch, lock_windows, unlock_windows,\n"
    "  release_all                  the same word in both forms\n"
    "P is X,Y in whole pixels or the word mouse; Q is (x,y) in fractions of the\n"
    "screen or mouse. Keyboard and mouse key commands exist in running form only.\n"
    "A conversion keeps the command's keyword only, never its arguments, as\n"
    "designed: \"click 100,200\" becomes \"click_rel:\". docs/macro.md has the details.\n";

}  // namespace

void AddMacroCommand(CLI::App& app) {
    CLI::App& macro = AddSubcommand(
        app, "macro", "check or convert macro lines",
        "Reads a macro script, one line per input line, from FILE or standard input.\n"
        "Empty lines and the \"release_actions\" line between the press and release\n"
        "actions are kept as they are. A line that no command accepts is reported on\n"
        "standard error and left out of a conversion.\n\n" +
            std::string(kCommands) +
            "\nExit status: 0 when every line is accepted, 1 otherwise, 2 on a usage error\n"
            "or when FILE cannot be read.\n");
    const struct {
        const char* name;
        const char* summary;
    } actions[] = {
        {"check", "report every editing line that no macro command accepts"},
        {"to-running", "convert editing text to running text"},
        {"to-editing", "convert running text to editing text"},
    };
    for (const auto& action : actions) {
        auto file = std::make_shared<std::string>("-");
        CLI::App& command = AddSubcommand(macro, action.name, action.summary, kCommands);
        command.add_option("FILE", *file, "the script; '-' or none for standard input");
        const std::string name = action.name;
        OnRun(command, [name, file] { return runMacro(name, *file); });
    }
}

}  // namespace zunokeymap
