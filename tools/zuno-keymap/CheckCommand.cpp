//
// CheckCommand.cpp
//
// zuno-keymap check: everything that keeps a keymap from working as meant.
//

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <Poco/JSON/Stringifier.h>

#include "CommandLine.h"
#include "Common.h"

namespace zunokeymap {

namespace {

using Poco::JSON::Array;
using Poco::JSON::Object;

struct Invalid {
    int index;
    std::string type;
    std::string reason;
};

struct Collision {
    int first;
    std::string firstType;
    int second;
    std::string secondType;
    std::string keys;
};

struct MacroError {
    int index;
    std::string list;
    std::vector<std::uint32_t> lines;
    std::vector<std::string> texts;
};

struct Report {
    Loaded loaded;
    std::vector<Invalid> invalid;
    std::vector<Collision> collisions;
    std::vector<MacroError> macroErrors;

    std::size_t problems() const {
        return (loaded.diagnostic.failed ? 1 : 0) + invalid.size() + collisions.size() +
               macroErrors.size();
    }
};

std::vector<std::string> macroLines(const km::ConfigItem& item, const std::string& list) {
    std::vector<std::string> lines;
    const Object written = item.ConvertToJsonObject();
    Array::Ptr array = written.getArray(list);
    if (!array.isNull()) {
        for (std::size_t i = 0; i < array->size(); ++i) {
            lines.push_back(array->get(i).convert<std::string>());
        }
    }
    return lines;
}

Report checkOne(const std::string& source, bool joystick) {
    Report report{Load(source, joystick), {}, {}, {}};
    if (report.loaded.diagnostic.failed) {
        return report;
    }
    std::vector<km::ConfigItem*>& items = report.loaded.doc->items;
    const int count = static_cast<int>(items.size());

    for (int i = 0; i < count; ++i) {
        const std::string why = WhyInvalid(*items[i]);
        if (!why.empty()) {
            report.invalid.push_back({i, items[i]->type, why});
        }
    }

    for (int i = 0; i < count; ++i) {
        for (const Trigger& trigger : TriggersOf(*items[i])) {
            for (int j = 0; j < count; ++j) {
                if (j == i || !Fires(*items[j], trigger)) {
                    continue;
                }
                const int a = i < j ? i : j;
                const int b = i < j ? j : i;
                bool known = false;
                for (const Collision& c : report.collisions) {
                    known = known || (c.first == a && c.second == b);
                }
                if (!known) {
                    report.collisions.push_back(
                        {a, items[a]->type, b, items[b]->type, DescribeTrigger(trigger)});
                }
            }
        }
    }

    for (int i = 0; i < count; ++i) {
        if (items[i]->type != "Macro") {
            continue;
        }
        for (const std::string list : {"press_actions", "release_actions"}) {
            const std::vector<std::string> lines = macroLines(*items[i], list);
            const std::vector<std::uint32_t> bad = km::MacroKeyEditingTextGrammarCheck(lines);
            if (!bad.empty()) {
                MacroError error{i, list, bad, {}};
                for (std::uint32_t line : bad) {
                    error.texts.push_back(lines[line - 1]);
                }
                report.macroErrors.push_back(error);
            }
        }
    }
    return report;
}

void printText(const Report& report) {
    const std::string& source = report.loaded.source;
    const km::LoadDiagnostic& diagnostic = report.loaded.diagnostic;
    if (diagnostic.failed) {
        std::cout << source << ": error: " << diagnostic.message << "\n";
        return;
    }
    for (const Invalid& item : report.invalid) {
        std::cout << source << ": keymaps[" << item.index << "] (" << item.type
                  << "): invalid: " << item.reason << "\n";
    }
    for (const Collision& c : report.collisions) {
        std::cout << source << ": keymaps[" << c.first << "] (" << c.firstType << ") and keymaps["
                  << c.second << "] (" << c.secondType << ") collide: both fire on " << c.keys
                  << "\n";
    }
    for (const MacroError& error : report.macroErrors) {
        for (std::size_t k = 0; k < error.lines.size(); ++k) {
            std::cout << source << ": keymaps[" << error.index << "] (Macro): " << error.list
                      << " line " << error.lines[k] << ": not a macro command: \"" << error.texts[k]
                      << "\"\n";
        }
    }
    const std::size_t problems = report.problems();
    std::cout << source << ": " << (problems == 0 ? "ok" : std::to_string(problems) + " problem(s)")
              << " (" << report.loaded.doc->items.size() << " items)\n";
}

Object::Ptr toJson(const Report& report) {
    Object::Ptr result = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
    const km::LoadDiagnostic& diagnostic = report.loaded.diagnostic;
    result->set("source", report.loaded.source);
    result->set("loaded", !diagnostic.failed);
    if (diagnostic.failed) {
        Object::Ptr error = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
        error->set("problem", std::string(km::ProblemName(diagnostic.problem)));
        error->set("path", diagnostic.path);
        error->set("item_index", diagnostic.item_index);
        error->set("item_type", diagnostic.item_type);
        error->set("expected", diagnostic.expected);
        error->set("line", diagnostic.line);
        error->set("column", diagnostic.column);
        error->set("message", diagnostic.message);
        result->set("error", error);
    }
    result->set("items", static_cast<int>(report.loaded.doc->items.size()));
    Array::Ptr invalid = new Array();
    for (const Invalid& item : report.invalid) {
        Object::Ptr entry = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
        entry->set("index", item.index);
        entry->set("type", item.type);
        entry->set("reason", item.reason);
        invalid->add(entry);
    }
    result->set("invalid_items", invalid);
    Array::Ptr collisions = new Array();
    for (const Collision& c : report.collisions) {
        Object::Ptr entry = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
        entry->set("first", c.first);
        entry->set("first_type", c.firstType);
        entry->set("second", c.second);
        entry->set("second_type", c.secondType);
        entry->set("keys", c.keys);
        collisions->add(entry);
    }
    result->set("collisions", collisions);
    Array::Ptr macros = new Array();
    for (const MacroError& error : report.macroErrors) {
        Object::Ptr entry = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
        entry->set("index", error.index);
        entry->set("list", error.list);
        Array::Ptr lines = new Array();
        for (std::uint32_t line : error.lines) {
            lines->add(static_cast<int>(line));
        }
        entry->set("lines", lines);
        Array::Ptr texts = new Array();
        for (const std::string& text : error.texts) {
            texts->add(text);
        }
        entry->set("texts", texts);
        macros->add(entry);
    }
    result->set("macro_errors", macros);
    result->set("problems", static_cast<int>(report.problems()));
    return result;
}

int runCheck(const std::vector<std::string>& files, bool asJson, bool joystick) {
    int status = kClean;
    std::size_t total = 0;
    Array::Ptr documents = new Array();
    for (const std::string& file : files) {
        const Report report = checkOne(file, joystick);
        total += report.problems();
        if (report.loaded.unreadable) {
            status = kUsage;
        } else if (report.problems() > 0 && status == kClean) {
            status = kProblems;
        }
        if (asJson) {
            documents->add(toJson(report));
        } else {
            printText(report);
        }
    }
    if (asJson) {
        Object::Ptr root = new Object(Poco::JSON_PRESERVE_KEY_ORDER);
        root->set("documents", documents);
        root->set("problems", static_cast<int>(total));
        Poco::JSON::Stringifier::stringify(root, std::cout, 2, -1, Poco::JSON_WRAP_STRINGS);
        std::cout << "\n";
    }
    return status;
}

}  // namespace

void AddCheckCommand(CLI::App& app) {
    struct Options {
        std::vector<std::string> files;
        bool json = false;
        bool joystick = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App& command = AddSubcommand(
        app, "check", "report load failures, invalid items, key collisions and bad macro lines",
        "Loads each document through the library and reports:\n"
        "  - a failed load, with where it failed (JSON path or line and column), the\n"
        "    failing item's type and what was wrong;\n"
        "  - invalid items (index, type and why);\n"
        "  - key collisions: pairs of items that the same key or key combination fires,\n"
        "    direction keys and pair keys included;\n"
        "  - Macro items whose press or release lines fail the grammar check.\n\n"
        "Exit status: 0 when every document is clean, 1 when problems were found,\n"
        "2 on a usage error or when a file cannot be read.\n");
    command.add_option("FILE", options->files, "documents to check")->required();
    command.add_flag("--json", options->json, "write the report as JSON");
    command.add_flag("--joystick", options->joystick, "load the documents as gamepad documents");
    OnRun(command,
          [options] { return runCheck(options->files, options->json, options->joystick); });
}

}  // namespace zunokeymap
