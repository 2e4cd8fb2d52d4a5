//
// main.cpp
//
// zuno-keymap: check, tidy, build and inspect keymap documents from the shell.
//
// Each subcommand lives in a file of its own (CheckCommand.cpp, ...) that
// exposes one function, void AddXCommand(CLI::App& app), which adds the
// subcommand with its options, help text and action (see CommandLine.h).
// A new subcommand is one more line in the list below, in the order the
// overview shows them.
//

#include <exception>
#include <iostream>

#include "CommandLine.h"
#include "Common.h"
#include "Platform.h"

int main(int argc, char** argv) {
    using namespace zunokeymap;
    std::ios::sync_with_stdio(false);
    PrepareStandardStreams();
    Utf8CommandLine line(argc, argv);
    const std::unique_ptr<CLI::App> app = MakeApp(
        "Checks, tidies, builds and inspects keymap documents. Where a FILE is taken, it\n"
        "may be a path, '-' for standard input, or the name of a built-in document:\n" +
            BuiltInsHelp() + "--joystick loads it as a gamepad document.",
        "Exit status: 0 clean, 1 problems found, 2 usage or I/O error.\n"
        "Run 'zuno-keymap COMMAND --help' for a command's options.\n",
        ZUNO_KEYMAP_VERSION);
    AddCheckCommand(*app);
    AddDiffCommand(*app);
    AddFmtCommand(*app);
    AddListCommand(*app);
    AddNewCommand(*app);
    AddAddCommand(*app);
    AddSetCommand(*app);
    AddMacroCommand(*app);
    AddKeyCommand(*app);
    AddRenderCommand(*app);
    AddEditCommand(*app);
    int status = kUsage;
    try {
        status = RunCommandLine(*app, line.argc(), line.argv());
    } catch (const std::exception& error) {
        // Out of memory or threads: a message and an exit status, not an abort.
        std::cerr << "zuno-keymap: " << error.what() << "\n";
        return kUsage;
    }
    std::cout.flush();
    return std::cout ? status : kUsage;
}
