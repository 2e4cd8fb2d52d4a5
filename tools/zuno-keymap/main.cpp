//
// main.cpp
//
// zuno-keymap: check, tidy and inspect keymap documents from the shell.
//

#include <iostream>
#include <string>
#include <vector>

#include "Common.h"

namespace zunokeymap {

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {"check", "report load failures, invalid items, key collisions and bad macro lines",
         kCheckUsage, &CheckCommand},
        {"fmt", "rewrite a document in the library's saved form", kFmtUsage, &FmtCommand},
        {"list", "show the items of a document as a table", kListUsage, &ListCommand},
        {"new", "print a fresh item of a type as JSON", kNewUsage, &NewCommand},
        {"macro", "check or convert macro lines", kMacroUsage, &MacroCommand},
        {"key", "show the caption and folded scan code of a key", kKeyUsage, &KeyCommand},
        {"render", "draw a document as an SVG picture of the screen", kRenderUsage, &RenderCommand},
        {"edit", "edit a document in the browser", kEditUsage, &EditCommand},
    };
    return commands;
}

namespace {

void printOverview(std::ostream& out) {
    out << "usage: zuno-keymap [--version] [--help] COMMAND [ARGS...]\n\n"
           "Checks, tidies and inspects keymap documents. Where a FILE is taken, it may be\n"
           "a path, the name of a built-in document, or '-' for standard input; --joystick\n"
           "loads it as a gamepad document.\n\n"
           "Commands:\n";
    for (const Command& command : Commands()) {
        out << "  " << command.name << std::string(8 - std::string(command.name).size(), ' ')
            << command.summary << "\n";
    }
    out << "\nExit status: 0 clean, 1 problems found, 2 usage or I/O error.\n"
           "Run 'zuno-keymap COMMAND --help' for a command's options.\n";
}

}  // namespace

}  // namespace zunokeymap

int main(int argc, char** argv) {
    using namespace zunokeymap;
    std::ios::sync_with_stdio(false);
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) {
        printOverview(std::cerr);
        return kUsage;
    }
    const std::string& first = args.front();
    if (first == "--version" || first == "-V") {
        std::cout << "zuno-keymap " << ZUNO_KEYMAP_VERSION << "\n";
        return kClean;
    }
    if (first == "--help" || first == "-h") {
        printOverview(std::cout);
        return kClean;
    }
    if (first == "help") {
        if (args.size() == 1) {
            printOverview(std::cout);
            return kClean;
        }
        for (const Command& command : Commands()) {
            if (args[1] == command.name) {
                std::cout << command.usage;
                return kClean;
            }
        }
        std::cerr << "zuno-keymap: no such command '" << args[1] << "'\n";
        return kUsage;
    }
    for (const Command& command : Commands()) {
        if (first == command.name) {
            const std::vector<std::string> rest(args.begin() + 1, args.end());
            if (WantsHelp(rest, command.usage)) {
                return kClean;
            }
            const int status = command.run(rest);
            std::cout.flush();
            return std::cout ? status : kUsage;
        }
    }
    std::cerr << "zuno-keymap: no such command '" << first << "'\n";
    printOverview(std::cerr);
    return kUsage;
}
