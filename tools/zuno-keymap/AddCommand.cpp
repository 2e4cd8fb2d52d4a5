//
// AddCommand.cpp
//
// zuno-keymap add: a new item appended to a document file.
//

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <Poco/JSON/Array.h>

#include "CommandLine.h"
#include "Common.h"
#include "DocumentEdit.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

struct AddOptions {
    std::string file;
    std::string type;
    std::vector<std::string> keys;
    std::string at;
    bool joystick = false;
    bool force = false;
};

// The members that --key fills, in the order the keys are given: the keys
// that fire the item, and a combination's second key, but not the second
// keys of a pair's sides.
std::vector<std::string> keySlots(const km::ConfigItem& item) {
    std::vector<std::string> paths;
    for (const km::KeySlot& slot : km::KeySlotsOf(item)) {
        if (slot.fires() || slot.role == km::KeyRole::SecondKey) {
            paths.emplace_back(slot.path);
        }
    }
    return paths;
}

// The --key order of every type, types of one order on one line.
std::string keyOrders() {
    std::vector<std::pair<std::string, std::string>> orders;  // slot names, types
    for (const km::ItemDeclaration& declaration : km::ItemDeclarations()) {
        std::unique_ptr<km::ConfigItem> item(declaration.make());
        std::string slots;
        for (const km::KeySlot& slot : km::KeySlotsOf(*item)) {
            if (slot.fires() || slot.role == km::KeyRole::SecondKey) {
                slots.append(slots.empty() ? "" : ", ").append(slot.name);
            }
        }
        const auto same = [&slots](const auto& order) { return order.first == slots; };
        const auto found = std::find_if(orders.begin(), orders.end(), same);
        if (found == orders.end()) {
            orders.emplace_back(slots, item->type);
        } else {
            found->second.append(", ").append(item->type);
        }
    }
    std::string text;
    for (const auto& [slots, types] : orders) {
        text.append("  ").append(types).append(":\n    ").append(slots).append("\n");
    }
    return text;
}

int runAdd(const AddOptions& options) {
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(options.type));
    if (!item) {
        return UsageError("add",
                          "no item type '" + options.type + "' (see 'zuno-keymap new --list')");
    }
    const std::vector<std::string> slots = keySlots(*item);
    if (options.keys.size() > slots.size()) {
        return UsageError(
            "add", options.type + " takes at most " + std::to_string(slots.size()) + " --key");
    }
    km::PointF at;
    if (!options.at.empty()) {
        if (!ParseScreenPoint(options.at, at)) {
            return UsageError("add", "--at takes X,Y, each a fraction of the screen from 0 to 1");
        }
        km::PlaceItem(*item, at);
    }
    std::size_t index = 0;
    const int status = EditDocument(
        "add", options.file, options.joystick, true, options.force,
        [&](const Poco::JSON::Object::Ptr& root) {
            Poco::JSON::Object::Ptr object = new Poco::JSON::Object(item->ConvertToJsonObject());
            Poco::JSON::Object::Ptr wrapper = new Poco::JSON::Object();
            wrapper->set("item", object);
            for (std::size_t k = 0; k < options.keys.size(); ++k) {
                if (const int keyStatus = SetMember("add", wrapper, "item." + slots[k],
                                                    options.keys[k], options.joystick)) {
                    return keyStatus;
                }
            }
            Poco::JSON::Array::Ptr items = root->getArray("keymaps");
            index = items->size();
            items->add(object);
            return 0;
        });
    if (status == kClean) {
        std::cout << ForTerminal(options.file) << ": added keymaps[" << index << "] ("
                  << options.type << ")\n";
    }
    return status;
}

}  // namespace

void AddAddCommand(CLI::App& app) {
    auto options = std::make_shared<AddOptions>();
    CLI::App& command = AddSubcommand(
        app, "add", "append a new item to a document file",
        "Appends a fresh item of TYPE to the document in FILE and saves it; a FILE that\n"
        "does not exist starts as the blank document. Prints the new item's place,\n"
        "keymaps[N], for 'zuno-keymap set'. The document must still load through the\n"
        "library, or FILE is left as it was.\n\n"
        "--key names the keys that fire the item, as 'zuno-keymap key' reads them\n"
        "(Q, Space, mouse:left, joystick:A), in this order:\n" +
            keyOrders() +
            "--at places the item's marker, its touch point and the points that go with\n"
            "them (a skill's cast point, a stroke's start and end) together.\n");
    command.add_option("FILE", options->file, "the document file")->required();
    command.add_option("TYPE", options->type, "the item type (see 'new --list')")->required();
    command.add_option("--key", options->keys, "a key of the item; give it once per key")
        ->type_name("NAME")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_option("--at", options->at, "the position, fractions of the screen (0.5,0.5)")
        ->type_name("X,Y");
    command.add_flag("--joystick", options->joystick,
                     "a gamepad document: bare key names are gamepad controls");
    command.add_flag("--force", options->force,
                     "write even what leaves out or changes elements of FILE the library does\n"
                     "not keep as written (unknown item types and members, values it reads as\n"
                     "others, members written twice); without it they are named and nothing\n"
                     "is written");
    OnRun(command, [options] { return runAdd(*options); });
}

}  // namespace zunokeymap
