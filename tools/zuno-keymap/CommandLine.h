//
// CommandLine.h
//
// The command line of zuno-keymap: one subcommand a file, each adding itself
// to the CLI11 application with its options, help text and action.
//

#ifndef ZUNO_KEYMAP_TOOL_COMMANDLINE_H
#define ZUNO_KEYMAP_TOOL_COMMANDLINE_H

#include <functional>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

namespace zunokeymap {

/// The tool's application, before its subcommands are added: its help
/// layout, --help and --version.
std::unique_ptr<CLI::App> MakeApp(const std::string& description, const std::string& footer,
                                  const std::string& version);

void AddCheckCommand(CLI::App& app);
void AddDiffCommand(CLI::App& app);
void AddFmtCommand(CLI::App& app);
void AddListCommand(CLI::App& app);
void AddNewCommand(CLI::App& app);
void AddAddCommand(CLI::App& app);
void AddSetCommand(CLI::App& app);
void AddMacroCommand(CLI::App& app);
void AddKeyCommand(CLI::App& app);
void AddRenderCommand(CLI::App& app);
void AddEditCommand(CLI::App& app);

/// A subcommand of `parent` with a one-line `summary` (shown in the parent's
/// command list) and a `details` text shown under its usage line in its help.
CLI::App& AddSubcommand(CLI::App& parent, const std::string& name, const std::string& summary,
                        const std::string& details);

/// Makes `run` the action of `command`: when the command line picks
/// `command`, RunCommandLine returns what `run` returns.
void OnRun(CLI::App& command, std::function<int()> run);

/// Parses the whole command line against `app`, then runs the action of the
/// subcommand it picks. Help and version requests exit 0; a parse error is
/// reported as "zuno-keymap COMMAND: what was wrong" and exits 2, and so does
/// a command line that picks no action.
int RunCommandLine(CLI::App& app, int argc, char** argv);

/// Prints "zuno-keymap COMMAND: MESSAGE" to standard error and returns 2.
int UsageError(const std::string& command, const std::string& message);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_COMMANDLINE_H
