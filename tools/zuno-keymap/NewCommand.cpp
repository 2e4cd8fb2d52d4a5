//
// NewCommand.cpp
//
// zuno-keymap new: a fresh item to paste into a document.
//

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <Poco/JSON/Stringifier.h>

#include "Common.h"

namespace zunokeymap {

const char* const kNewUsage =
    "usage: zuno-keymap new TYPE\n"
    "       zuno-keymap new --list\n\n"
    "Prints a fresh item of TYPE, with every member at its default, as the library\n"
    "writes it. --list prints the item types, one a line.\n";

int NewCommand(const std::vector<std::string>& args) {
    if (args.size() == 1 && args.front() == "--list") {
        for (const std::string& type : ItemTypes()) {
            std::cout << type << "\n";
        }
        return kClean;
    }
    if (args.size() != 1 || (args.front().size() > 1 && args.front()[0] == '-')) {
        return UsageError("new", args.empty() ? "no TYPE given" : "new takes one TYPE");
    }
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(args.front()));
    if (!item) {
        return UsageError("new",
                          "no item type '" + args.front() + "' (see 'zuno-keymap new --list')");
    }
    Poco::JSON::Stringifier::stringify(item->ConvertToJsonObject(), std::cout, 4, -1,
                                       Poco::JSON_WRAP_STRINGS);
    std::cout << "\n";
    return kClean;
}

}  // namespace zunokeymap
