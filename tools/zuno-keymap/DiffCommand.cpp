//
// DiffCommand.cpp
//
// zuno-keymap diff: what changed between two keymaps, for reviews.
//

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "CommandLine.h"
#include "Common.h"
#include "JsonWriter.h"
#include "KeymapDiff.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

struct DiffOptions {
    std::string before;
    std::string after;
    bool json = false;
    bool joystick = false;
};

std::string point(const km::PointF& p) {
    char text[64];
    std::snprintf(text, sizeof text, "(%.3f, %.3f)", p.x, p.y);
    return text;
}

// "keymaps[3] Click \"jump\"": the item as a reviewer finds it.
std::string itemName(const KeymapChange& change) {
    const int index = change.newIndex >= 0 ? change.newIndex : change.oldIndex;
    std::string name = "keymaps[" + std::to_string(index) + "] " + ForTerminal(change.type);
    return change.label.empty() ? name : name + " \"" + ForTerminal(change.label) + "\"";
}

// One line for people; every text from the documents made safe on its own.
std::string line(const KeymapChange& change) {
    const std::string before = ForTerminal(change.before);
    const std::string after = ForTerminal(change.after);
    char distance[32];
    std::snprintf(distance, sizeof distance, "%.3f", change.distance);
    switch (change.kind) {
        case KeymapChange::Kind::Added:
            return itemName(change) + " on " + after + " at " + point(change.to);
        case KeymapChange::Kind::Removed:
            return itemName(change) + " on " + before + " at " + point(change.from);
        case KeymapChange::Kind::Reordered:
            return itemName(change) + " was keymaps[" + std::to_string(change.oldIndex) + "]";
        case KeymapChange::Kind::Moved:
            return itemName(change) + ": " + point(change.from) + " -> " + point(change.to) + ", " +
                   distance + " of the screen";
        case KeymapChange::Kind::Rebound:
            return itemName(change) + ": " + before + " -> " + after;
        case KeymapChange::Kind::Changed:
            break;
    }
    return ForTerminal(change.path) + ": " + before + " -> " + after;
}

void writeJson(const DiffOptions& options, const std::vector<KeymapChange>& changes) {
    std::string text;
    JsonWriter out(text, true);
    out.beginObject()
        .key("old")
        .value(options.before)
        .key("new")
        .value(options.after)
        .key("same")
        .value(changes.empty())
        .key("changes")
        .beginArray();
    for (const KeymapChange& change : changes) {
        out.beginObject()
            .key("kind")
            .value(ChangeKindName(change.kind))
            .key("old_index")
            .value(change.oldIndex)
            .key("new_index")
            .value(change.newIndex)
            .key("type")
            .value(change.type)
            .key("label")
            .value(change.label)
            .key("path")
            .value(change.path)
            .key("before")
            .value(change.before)
            .key("after")
            .value(change.after);
        if (change.kind == KeymapChange::Kind::Moved) {
            out.key("from")
                .beginArray()
                .value(change.from.x)
                .value(change.from.y)
                .endArray()
                .key("to")
                .beginArray()
                .value(change.to.x)
                .value(change.to.y)
                .endArray()
                .key("distance")
                .value(change.distance);
        }
        out.endObject();
    }
    out.endArray().endObject();
    std::cout << text << "\n";
}

// git hands a diff driver /dev/null for the missing side of an added or a
// removed file: that side is a document with no items, not a load failure.
Loaded loadSide(const std::string& name, bool joystick) {
    if (name != "/dev/null") {
        return Load(name, joystick);
    }
    Loaded none = Load(BlankName(joystick), joystick);
    none.source = name;
    return none;
}

int runDiff(const DiffOptions& options) {
    Loaded before = loadSide(options.before, options.joystick);
    Loaded after = loadSide(options.after, options.joystick);
    for (const Loaded* loaded : {&before, &after}) {
        if (loaded->diagnostic.failed) {
            ReportLoadFailure(*loaded);
            return kUsage;
        }
    }
    const std::vector<KeymapChange> changes = DiffKeymaps(*before.doc, *after.doc);
    if (options.json) {
        writeJson(options, changes);
    } else {
        std::string text;
        for (const KeymapChange& change : changes) {
            std::string kind = ChangeKindName(change.kind);
            kind.resize(10, ' ');
            text += "  " + kind + line(change) + "\n";
        }
        text = ForTerminal(before.source) + " -> " + ForTerminal(after.source) + ": " +
               (changes.empty() ? std::string("the same keymap")
                                : std::to_string(changes.size()) + " change(s)") +
               "\n" + text;
        std::cout << text;
    }
    return changes.empty() ? kClean : kProblems;
}

}  // namespace

void AddDiffCommand(CLI::App& app) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App& command = AddSubcommand(
        app, "diff", "what changed between two keymaps, in the keymap's terms",
        "Compares OLD and NEW as the library reads them: items added, removed, reordered,\n"
        "moved (from, to, and how far in fractions of the screen), rebound (the old and\n"
        "new key captions), other members changed (JSON path, old and new value), and\n"
        "changes to info and param. Formatting, member order and defaults written out\n"
        "or left out do not count.\n\n"
        "Items are paired first where they are identical (at the same index where one\n"
        "is), then by index where the type is the same, then each new item with the\n"
        "old item of its type that has the same keys or, failing that, is nearest on\n"
        "the screen; what stays unpaired was added or removed, so an inserted or\n"
        "reordered item does not make every later item a change.\n\n"
        "Exit status: 0 when the keymaps mean the same, 1 when they differ, 2 on a\n"
        "usage error or when one does not load.\n");
    command.add_option("OLD", options->before, "the keymap before")->required();
    command.add_option("NEW", options->after, "the keymap after")->required();
    command.add_flag("--json", options->json, "write the changes as JSON");
    command.add_flag("--joystick", options->joystick, "load both as gamepad documents");
    OnRun(command, [options] { return runDiff(*options); });
}

}  // namespace zunokeymap
