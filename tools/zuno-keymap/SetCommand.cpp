//
// SetCommand.cpp
//
// zuno-keymap set: members of a document file set from the command line.
//

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CommandLine.h"
#include "Common.h"
#include "DocumentEdit.h"

namespace zunokeymap {

namespace {

struct SetOptions {
    std::string file;
    std::vector<std::string> assignments;
    std::vector<std::string> places;
    bool joystick = false;
    bool force = false;
};

int runSet(const SetOptions& options) {
    for (const std::string& assignment : options.assignments) {
        if (assignment.find('=') == std::string::npos) {
            return UsageError("set", "'" + assignment + "' is not PATH=VALUE");
        }
    }
    std::vector<std::pair<std::string, km::PointF>> places;
    for (const std::string& place : options.places) {
        const std::size_t equals = place.find('=');
        km::PointF at;
        if (equals == std::string::npos || !ParseScreenPoint(place.substr(equals + 1), at)) {
            return UsageError("set",
                              "--at takes ITEM=X,Y (keymaps[0]=0.5,0.5), X and Y each a "
                              "fraction of the screen from 0 to 1");
        }
        places.emplace_back(place.substr(0, equals), at);
    }
    if (options.assignments.empty() && places.empty()) {
        return UsageError("set", "nothing to set: give PATH=VALUE or --at");
    }
    std::vector<std::string> paths;
    for (const std::string& assignment : options.assignments) {
        const std::size_t equals = assignment.find('=');
        if (equals + 1 < assignment.size()) {  // an unset key is not written at all
            paths.push_back(assignment.substr(0, equals));
        }
    }
    return EditDocument(
        "set", options.file, options.joystick, false, options.force,
        [&options, &places](const Poco::JSON::Object::Ptr& root) {
            for (const std::string& assignment : options.assignments) {
                const std::size_t equals = assignment.find('=');
                if (const int status = SetMember("set", root, assignment.substr(0, equals),
                                                 assignment.substr(equals + 1), options.joystick)) {
                    return status;
                }
            }
            for (const auto& [path, at] : places) {
                if (const int status = PlaceMember("set", root, path, at)) {
                    return status;
                }
            }
            return 0;
        },
        paths);
}

}  // namespace

void AddSetCommand(CLI::App& app) {
    auto options = std::make_shared<SetOptions>();
    CLI::App& command = AddSubcommand(
        app, "set", "set members of a document file",
        "Sets each member PATH of the document in FILE to VALUE and saves it, e.g.\n"
        "  zuno-keymap set my.json 'keymaps[0].swipehold_info.rel_radius=0.1'\n"
        "  zuno-keymap set my.json 'keymaps[2].key=Q' 'keymaps[2].icon.description=jump'\n"
        "PATH is a member path of the document as saved (see 'zuno-keymap fmt'); a\n"
        "member the library does not keep is an error. VALUE is JSON when it reads as\n"
        "JSON (0.1, true, [\"sleep 50\"], {...}), else a string. A key member (key,\n"
        "second_key, top_key, ...) also takes a key as 'zuno-keymap add --key' reads\n"
        "it, and nothing ('keymaps[1].second_key=') unsets it. The edited document\n"
        "must load through the library, or FILE is left as it was and the load's error\n"
        "is shown (exit status 1).\n\n"
        "--at ITEM=X,Y moves a whole item, after the assignments: its touch point goes\n"
        "to X,Y and its marker and the points that go with it (a skill's cast point, a\n"
        "stroke's points, ...) keep their places around it, e.g.\n"
        "  zuno-keymap set my.json --at 'keymaps[2]=0.4,0.6'\n");
    command.add_option("FILE", options->file, "the document file")->required();
    command.add_option("PATH=VALUE", options->assignments, "the members to set");
    command.add_option("--at", options->places, "move item ITEM to X,Y; give it once per item")
        ->type_name("ITEM=X,Y")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command.add_flag("--joystick", options->joystick,
                     "a gamepad document: bare key names are gamepad controls");
    command.add_flag("--force", options->force,
                     "write even what leaves out or changes elements of FILE the library does\n"
                     "not keep as written (unknown item types and members, values it reads as\n"
                     "others, members written twice); without it they are named and nothing\n"
                     "is written");
    OnRun(command, [options] { return runSet(*options); });
}

}  // namespace zunokeymap
