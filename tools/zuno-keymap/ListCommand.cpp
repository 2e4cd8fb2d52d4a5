//
// ListCommand.cpp
//
// zuno-keymap list: the items of a document, one row each.
//

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "Common.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

std::string keysOf(km::ConfigItem& item) {
    std::string keys;
    for (const Trigger& trigger : TriggersOf(item)) {
        if (!keys.empty()) {
            keys += " ";
        }
        keys += (trigger.role == "key" ? "" : trigger.role + ":") + DescribeTrigger(trigger);
    }
    return keys.empty() ? "-" : keys;
}

std::string position(const km::PointF& point) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f,%.3f", point.x, point.y);
    return text;
}

int runList(const std::string& file, bool joystick) {
    Loaded loaded = Load(file, joystick);
    if (loaded.diagnostic.failed) {
        return ReportLoadFailure(loaded);
    }

    // Types and key names come from the document: each cell is made safe
    // before the columns are measured.
    std::vector<std::vector<std::string>> rows = {{"INDEX", "TYPE", "KEYS", "POSITION", "VALID"}};
    for (std::size_t i = 0; i < loaded.doc->items.size(); ++i) {
        km::ConfigItem& item = *loaded.doc->items[i];
        rows.push_back({std::to_string(i), ForTerminal(item.type), ForTerminal(keysOf(item)),
                        position(item.rel_work_position), item.IsInvalid() ? "no" : "yes"});
    }
    std::vector<std::size_t> widths(rows.front().size(), 0);
    for (const auto& row : rows) {
        for (std::size_t c = 0; c < row.size(); ++c) {
            widths[c] = std::max(widths[c], row[c].size());
        }
    }
    std::cout << ForTerminal(loaded.source) << ": "
              << (loaded.doc->info->is_joystick ? "gamepad" : "keymap") << " document, "
              << loaded.doc->items.size() << " items\n";
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t c = 0; c < row.size(); ++c) {
            line += row[c];
            if (c + 1 < row.size()) {
                line += std::string(widths[c] - row[c].size() + 2, ' ');
            }
        }
        std::cout << line << "\n";
    }
    return kClean;
}

}  // namespace

void AddListCommand(CLI::App& app) {
    auto file = std::make_shared<std::string>();
    auto joystick = std::make_shared<bool>(false);
    CLI::App& command = AddSubcommand(
        app, "list", "show the items of a document as a table",
        "Prints a table of the document's items: index, type, the keys that fire it,\n"
        "its position on the screen (fractions of width and height) and whether it is\n"
        "valid. A document that fails to load is reported with exit status 1.\n");
    command.add_option("FILE", *file, "the document")->required();
    command.add_flag("--joystick", *joystick, "load FILE as a gamepad document");
    OnRun(command, [file, joystick] { return runList(*file, *joystick); });
}

}  // namespace zunokeymap
