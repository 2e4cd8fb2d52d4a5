//
// NewCommand.cpp
//
// zuno-keymap new: a fresh item or a blank document to start from.
//

#include <iostream>
#include <memory>
#include <string>

#include <Poco/JSON/Stringifier.h>

#include "CommandLine.h"
#include "Common.h"

namespace zunokeymap {

namespace {

struct NewOptions {
    std::string type;
    bool list = false;
    bool document = false;
    bool joystick = false;
};

int runNew(const NewOptions& options) {
    if (options.list) {
        for (const std::string& type : ItemTypes()) {
            std::cout << type << "\n";
        }
        return kClean;
    }
    if (options.document) {
        const Loaded blank = Load(BlankName(options.joystick), false);
        std::cout << SavedText(blank.doc.get());
        return kClean;
    }
    if (options.type.empty()) {
        return UsageError("new", "no TYPE given");
    }
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(options.type));
    if (!item) {
        return UsageError("new",
                          "no item type '" + options.type + "' (see 'zuno-keymap new --list')");
    }
    Poco::JSON::Stringifier::stringify(item->ConvertToJsonObject(), std::cout, 4, -1,
                                       Poco::JSON_WRAP_STRINGS);
    std::cout << "\n";
    return kClean;
}

}  // namespace

void AddNewCommand(CLI::App& app) {
    auto options = std::make_shared<NewOptions>();
    CLI::App& command = AddSubcommand(
        app, "new", "print a fresh item of a type, or a blank document, as JSON",
        "Prints a fresh item of TYPE, with every member at its default, as the library\n"
        "writes it; --list prints the item types, one a line. --document prints the\n"
        "blank document (the built-in 'blank', or 'blank-gamepad' with --joystick)\n"
        "in the library's saved form, a start for 'zuno-keymap add'. TYPE, --list and\n"
        "--document exclude each other.\n");
    CLI::Option* type = command.add_option("TYPE", options->type, "an item type, e.g. Swipehold");
    CLI::Option* list = command.add_flag("--list", options->list, "list the item types");
    CLI::Option* document =
        command.add_flag("--document", options->document, "print a blank document");
    command.add_flag("--joystick", options->joystick, "with --document: the gamepad one")
        ->needs(document);
    type->excludes(list)->excludes(document);
    list->excludes(document);
    OnRun(command, [options] { return runNew(*options); });
}

}  // namespace zunokeymap
