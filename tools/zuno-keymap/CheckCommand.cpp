//
// CheckCommand.cpp
//
// zuno-keymap check: everything that keeps a keymap from working as meant.
//

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "CheckReport.h"
#include "CommandLine.h"
#include "Common.h"

namespace zunokeymap {

namespace {

// Reads `source` as the other commands do (a file, a built-in name or "-")
// and lets the library check the text.
km::CheckReport checkOne(const std::string& source, bool joystick, Loaded& loaded) {
    loaded = Load(source, joystick);
    if (loaded.unreadable) {
        km::CheckReport report;
        report.diagnostic = loaded.diagnostic;
        km::Finding finding;
        finding.message = loaded.diagnostic.message;
        report.findings.push_back(finding);
        return report;
    }
    return km::CheckKeymapDocument(loaded.text, loaded.joystick, loaded.source);
}

int runCheck(const std::vector<std::string>& files, const std::string& format, bool joystick,
             bool strict) {
    const bool asJson = format == "json";
    const ReportFormat lines = format == "gcc"      ? ReportFormat::Gcc
                               : format == "github" ? ReportFormat::Github
                                                    : ReportFormat::Text;
    int status = kClean;
    std::size_t total = 0;
    std::string json;
    JsonWriter writer(json, true);
    writer.beginObject().key("documents").beginArray();
    for (const std::string& file : files) {
        Loaded loaded;
        const km::CheckReport report = checkOne(file, joystick, loaded);
        total += report.problems();
        if (loaded.unreadable) {
            status = kUsage;
        } else if (CheckFails(report, strict) && status == kClean) {
            status = kProblems;
        }
        if (asJson) {
            WriteCheckReportJson(writer, loaded.source, report);
        } else {
            PrintCheckReport(std::cout, loaded.source, report, lines);
        }
    }
    if (asJson) {
        writer.endArray().key("problems").value(total).endObject();
        std::cout << json << "\n";
    }
    return status;
}

}  // namespace

void AddCheckCommand(CLI::App& app) {
    struct Options {
        std::vector<std::string> files;
        bool json = false;
        std::string format = "text";
        bool joystick = false;
        bool strict = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App& command = AddSubcommand(
        app, "check",
        "report load failures, invalid items, key collisions, bad macro lines and likely mistakes",
        "Loads each document through the library and reports errors (what keeps it\n"
        "from loading, or an item the load drops) and warnings (what loads but is\n"
        "very likely wrong):\n"
        "  - a failed load, with where it failed (JSON path or line and column), the\n"
        "    failing item's type and what was wrong;\n"
        "  - invalid items (index, type and why);\n"
        "  - key collisions: each key or key combination that fires two or more items,\n"
        "    direction keys and pair keys included, naming all of them;\n"
        "  - Macro items whose press or release lines fail the grammar check;\n"
        "  - items of an unknown type, with the nearest type name;\n"
        "  - every member the format's schema does not allow: missing, unknown,\n"
        "    of the wrong JSON type, outside its names, colour pattern or range;\n"
        "  - key texts that are not the caption of their code, work positions left\n"
        "    at (0, 0), drag radii of 0, and an is_joystick that disagrees with\n"
        "    --joystick;\n"
        "  - members written twice in one object (only the last counts).\n"
        "Every finding names its JSON path and its line and column in the file.\n\n"
        "Exit status: 0 when every document is clean, 1 on an error, an invalid\n"
        "item, a key collision or a bad Macro line (with --strict, on any warning),\n"
        "2 on a usage error or when a file cannot be read.\n");
    command.add_option("FILE", options->files, "documents to check")->required();
    command.add_flag("--json", options->json, "write the report as JSON (--format json)");
    command
        .add_option("--format", options->format,
                    "text (the default); json; gcc: FILE:LINE:COL: error|warning: message "
                    "[kind], as compilers write, for editors' problem matchers; github: "
                    "workflow annotations")
        ->check(CLI::IsMember({"text", "json", "gcc", "github"}));
    command.add_flag("--joystick", options->joystick, "load the documents as gamepad documents");
    command.add_flag("--strict", options->strict, "fail on warnings too");
    OnRun(command, [options] {
        return runCheck(options->files, options->json ? "json" : options->format, options->joystick,
                        options->strict);
    });
}

}  // namespace zunokeymap
