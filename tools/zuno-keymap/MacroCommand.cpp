//
// MacroCommand.cpp
//
// zuno-keymap macro: the grammar check and the two conversions of macro
// scripts, one macro line per input line.
//

#include <iostream>
#include <string>
#include <vector>

#include "Common.h"

namespace zunokeymap {

const char* const kMacroUsage =
    "usage: zuno-keymap macro check [FILE|-]\n"
    "       zuno-keymap macro to-running [FILE|-]\n"
    "       zuno-keymap macro to-editing [FILE|-]\n\n"
    "Reads a macro script, one line per input line, from FILE or standard input.\n"
    "  check        reports every editing line that no macro command accepts\n"
    "  to-running   converts editing text to running text\n"
    "  to-editing   converts running text to editing text\n"
    "Empty lines and the \"release_actions\" line between the press and release\n"
    "actions are kept as they are. A line that no command accepts is reported on\n"
    "standard error and left out of the conversion.\n\n"
    "Exit status: 0 when every line is accepted, 1 otherwise, 2 on a usage error\n"
    "or when FILE cannot be read.\n";

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

}  // namespace

int MacroCommand(const std::vector<std::string>& args) {
    if (args.empty()) {
        return UsageError("macro", "no action given (check, to-running or to-editing)");
    }
    const std::string& action = args.front();
    if (action != "check" && action != "to-running" && action != "to-editing") {
        return UsageError("macro", "unknown action '" + action + "'");
    }
    if (args.size() > 2) {
        return UsageError("macro", "macro takes at most one FILE");
    }
    const std::string source = args.size() == 2 ? args[1] : "-";
    std::string text;
    if (!ReadInput(source, text)) {
        std::cerr << "zuno-keymap macro: cannot read '" << source << "'\n";
        return kUsage;
    }
    const std::string shown = source == "-" ? "<stdin>" : source;
    const std::vector<std::string> lines = splitLines(text);

    if (action == "check") {
        const std::vector<std::uint32_t> bad = km::MacroKeyEditingTextGrammarCheck(lines);
        for (std::uint32_t line : bad) {
            std::cout << shown << ":" << line << ": not a macro command: \"" << lines[line - 1]
                      << "\"\n";
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
            std::cerr << shown << ":" << i + 1 << ": not a macro command, left out: \"" << line
                      << "\"\n";
            status = kProblems;
            continue;
        }
        std::cout << converted.front() << "\n";
    }
    return status;
}

}  // namespace zunokeymap
