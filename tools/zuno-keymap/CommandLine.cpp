//
// CommandLine.cpp
//

#include "CommandLine.h"

#include <iostream>
#include <map>
#include <memory>
#include <sstream>

#include "Common.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

// The actions of the subcommands. They run after the whole command line has
// been parsed and checked (CLI11's own callbacks run before its last checks).
std::map<const CLI::App*, std::function<int()>>& actions() {
    static std::map<const CLI::App*, std::function<int()>> table;
    return table;
}

// Usage line first, then the summary, the arguments and the details, as
// people expect from a Unix tool.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter() {
        label("Usage", "usage");
        label("REQUIRED", "");
        column_width(22);
    }

    std::string make_help(const CLI::App* app, std::string name,
                          CLI::AppFormatMode mode) const override {
        if (mode == CLI::AppFormatMode::Sub) {
            return make_expanded(app);
        }
        std::ostringstream out;
        out << make_usage(app, name) << "\n"
            << make_description(app) << make_positionals(app) << make_groups(app, mode)
            << make_subcommands(app, mode);
        const std::string footer = make_footer(app);
        if (!footer.empty()) {
            out << "\n" << footer;
        }
        return out.str();
    }

    // "-o,--output OUT", "FILE ...": the names and the value's name; which
    // options exclude each other the descriptions say.
    std::string make_option_opts(const CLI::Option* option) const override {
        std::string out;
        if (option->nonpositional() && option->get_type_size() != 0) {
            out += " " + option->get_type_name();
        }
        if (option->get_expected_max() == CLI::detail::expected_max_vector_size) {
            out += " ...";
        }
        return out;
    }
};

// The innermost subcommand the parse reached, and its name as typed
// ("check", "macro check"; empty for the tool itself).
const CLI::App* reached(const CLI::App& app, std::string& name) {
    const CLI::App* at = &app;
    while (!at->get_subcommands().empty()) {
        at = at->get_subcommands().front();
        name += (name.empty() ? "" : " ") + at->get_name();
    }
    return at;
}

}  // namespace

std::unique_ptr<CLI::App> MakeApp(const std::string& description, const std::string& footer,
                                  const std::string& version) {
    auto app = std::make_unique<CLI::App>(description, "zuno-keymap");
    app->formatter(std::make_shared<HelpFormatter>());
    app->footer(footer);
    app->set_version_flag("-V,--version", "zuno-keymap " + version);
    // On Windows CLI11 would read "/dir/k.json" as an option; the command
    // line means the same on every platform.
    app->allow_windows_style_options(false);
    return app;
}

CLI::App& AddSubcommand(CLI::App& parent, const std::string& name, const std::string& summary,
                        const std::string& details) {
    CLI::App* command = parent.add_subcommand(name, summary);
    command->footer(details);
    return *command;
}

void OnRun(CLI::App& command, std::function<int()> run) {
    actions()[&command] = std::move(run);
}

int RunCommandLine(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForAllHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForVersion& version) {
        return app.exit(version);
    } catch (const CLI::ParseError& error) {
        std::string name;
        reached(app, name);
        if (name.empty()) {
            std::cerr << "zuno-keymap: " << error.what() << "\n"
                      << "Try 'zuno-keymap --help'.\n";
            return kUsage;
        }
        return UsageError(name, error.what());
    }
    std::string name;
    const CLI::App* command = reached(app, name);
    const auto action = actions().find(command);
    if (action != actions().end()) {
        return action->second();
    }
    if (name.empty()) {
        std::cerr << app.help();
        return kUsage;
    }
    std::string choices;
    for (const CLI::App* sub : command->get_subcommands([](const CLI::App*) { return true; })) {
        choices += (choices.empty() ? "" : ", ") + sub->get_name();
    }
    return UsageError(name, "no subcommand given (one of " + choices + ")");
}

int UsageError(const std::string& command, const std::string& message) {
    std::cerr << "zuno-keymap " << command << ": " << ForTerminal(message) << "\n"
              << "Try 'zuno-keymap " << command << " --help'.\n";
    return kUsage;
}

}  // namespace zunokeymap
