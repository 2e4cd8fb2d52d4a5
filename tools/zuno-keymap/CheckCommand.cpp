//
// CheckCommand.cpp
//
// zuno-keymap check: everything that keeps a keymap from working as meant.
//

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "CheckReport.h"
#include "CommandLine.h"
#include "Common.h"
#include "SarifReport.h"
#include "TerminalText.h"

namespace zunokeymap {

namespace {

// What check looks at: a document as the user named it, or one found in a
// folder, or a file or folder there that could not be read (`error`).
struct Source {
    std::string name;
    bool fromFolder = false;
    std::string error;
};

// Reads `source` as the other commands do (a file, a built-in name or "-")
// and lets the library check the text.
km::CheckReport checkOne(const Source& source, bool joystick, Loaded& loaded) {
    if (source.error.empty()) {
        loaded = Load(source.name, joystick);
    } else {
        loaded.source = source.name;
        loaded.unreadable = true;
        loaded.diagnostic.failed = true;
        loaded.diagnostic.problem = km::LoadDiagnostic::Problem::Unreadable;
        loaded.diagnostic.source = source.name;
        loaded.diagnostic.message = source.error;
    }
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

// The *.json files below `top`, and every file or folder there that
// cannot be read, which is reported rather than passed over. Links to
// folders are not followed, so no loop of links is walked for ever.
void walk(const std::filesystem::path& top, std::vector<Source>& found) {
    namespace fs = std::filesystem;
    std::vector<fs::path> folders = {top};
    while (!folders.empty()) {
        const fs::path folder = std::move(folders.back());
        folders.pop_back();
        std::error_code code;
        fs::directory_iterator entry(folder, code);
        for (const fs::directory_iterator end; !code && entry != end; entry.increment(code)) {
            const fs::path& path = entry->path();
            std::error_code kind;
            if (entry->is_directory(kind) && !entry->is_symlink(kind)) {
                folders.push_back(path);
                continue;
            }
            if (path.extension() != ".json") {
                continue;
            }
            const fs::file_status status = entry->status(kind);
            if (fs::is_regular_file(status)) {
                found.push_back({path.u8string(), true, std::string()});
            } else if (!fs::is_directory(status)) {
                found.push_back({path.u8string(), true,
                                 kind ? "cannot read it: " + kind.message()
                                      : std::string("cannot read it: not a regular file")});
            }
        }
        if (code) {
            found.push_back(
                {folder.u8string(), false, "cannot read the folder: " + code.message()});
        }
    }
}

// The documents to check: each FILE as given, each folder's *.json files
// (recursively, in name order).
std::vector<Source> collect(const std::vector<std::string>& given) {
    namespace fs = std::filesystem;
    std::vector<Source> sources;
    for (const std::string& name : given) {
        std::error_code code;
        fs::path native;
        try {
            native = fs::u8path(name);
        } catch (const std::exception&) {
        }
        if (name == "-" || !fs::is_directory(native, code)) {
            sources.push_back({name, false, std::string()});
            continue;
        }
        std::vector<Source> found;
        walk(native, found);
        std::sort(found.begin(), found.end(),
                  [](const Source& a, const Source& b) { return a.name < b.name; });
        sources.insert(sources.end(), found.begin(), found.end());
    }
    return sources;
}

// What a folder may hold besides keymaps: JSON with neither member. A file
// that cannot be read may be anything.
bool notAKeymap(const Loaded& loaded) {
    const std::string& text = loaded.text;
    return loaded.diagnostic.failed && !loaded.unreadable &&
           text.find("\"keymaps\"") == std::string::npos &&
           text.find("\"info\"") == std::string::npos;
}

struct Checked {
    Loaded loaded;  ///< without its document and text, once checked
    km::CheckReport report;
    bool notAKeymap = false;
    std::vector<int> utf16Columns;  ///< for SARIF only
};

// Checks every file on all cores; the results stay in file order.
std::vector<Checked> checkAll(const std::vector<Source>& files, bool joystick, bool sarif) {
    std::vector<Checked> results(files.size());
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t i = next++; i < files.size(); i = next++) {
            Checked& result = results[i];
            result.report = checkOne(files[i], joystick, result.loaded);
            result.notAKeymap = notAKeymap(result.loaded);
            if (sarif) {
                result.utf16Columns = Utf16Columns(result.loaded.text, result.report);
            }
            // A folder of large keymaps need not be held whole.
            result.loaded.doc.reset();
            std::string().swap(result.loaded.text);
        }
    };
    std::vector<std::thread> workers;
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    try {
        for (std::size_t k = 1; k < std::min(cores, files.size()); ++k) {
            workers.emplace_back(work);
        }
    } catch (const std::system_error&) {
        // No more threads: the ones there are (and this one) do the rest.
    }
    work();
    for (std::thread& worker : workers) {
        worker.join();
    }
    return results;
}

int runCheck(const std::vector<std::string>& given, const std::string& format, bool joystick,
             bool strict) {
    const bool asJson = format == "json";
    const bool asSarif = format == "sarif";
    const ReportFormat lines = format == "gcc"      ? ReportFormat::Gcc
                               : format == "github" ? ReportFormat::Github
                                                    : ReportFormat::Text;
    const std::vector<Source> files = collect(given);
    const bool summarize = files.size() != given.size() || given.size() > 1;

    int status = kClean;
    CheckSummary summary;
    summary.files = files.size();
    std::vector<CheckedDocument> documents;
    std::vector<SarifDocument> sarif;
    std::vector<Checked> results = checkAll(files, joystick, asSarif);
    for (std::size_t i = 0; i < results.size(); ++i) {
        const Loaded& loaded = results[i].loaded;
        const km::CheckReport& report = results[i].report;
        if (files[i].fromFolder && results[i].notAKeymap) {
            ++summary.notKeymaps;
            if (!asJson && !asSarif && lines == ReportFormat::Text) {
                std::cout << ForTerminal(loaded.source) << ": not a keymap document, skipped\n";
            }
            continue;
        }
        summary.add(report);
        if (loaded.unreadable) {
            status = kUsage;
        } else if (CheckFails(report, strict) && status == kClean) {
            status = kProblems;
        }
        if (asJson) {
            documents.push_back({loaded.source, &report});
        } else if (asSarif) {
            const std::string& name = files[i].name;
            const bool file = name != "-" && !IsBuiltIn(name, joystick);
            sarif.push_back({file ? SarifArtifactUri(name) : std::string(), &report,
                             std::move(results[i].utf16Columns)});
        } else {
            PrintCheckReport(std::cout, loaded.source, report, lines);
        }
    }
    if (asJson) {
        std::cout << CheckJsonText(documents, summary);
    } else if (asSarif) {
        std::cout << SarifLog(sarif, ZUNO_KEYMAP_VERSION) << "\n";
    } else if (summarize && lines == ReportFormat::Text) {
        std::cout << summary.files << " files: " << summary.clean << " clean, "
                  << summary.withWarnings << " with warnings, " << summary.withErrors
                  << " with errors";
        if (summary.notKeymaps > 0) {
            std::cout << ", " << summary.notKeymaps << " not keymaps";
        }
        std::cout << "\n";
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
        "Every finding names its JSON path and its line and column in the file.\n"
        "A folder is checked file by file (every *.json below it, on all cores); JSON\n"
        "files there with neither \"keymaps\" nor \"info\" are not keymaps and are\n"
        "skipped; a file or folder there that cannot be read is an error (exit status\n"
        "2), and the walk goes on past it. Several files end with a summary: files,\n"
        "clean, with warnings, with errors.\n\n"
        "Exit status: 0 when every document is clean, 1 on an error, an invalid\n"
        "item, a key collision or a bad Macro line (with --strict, on any warning),\n"
        "2 on a usage error or when a file cannot be read.\n");
    command.add_option("FILE", options->files, "documents to check, or folders of them (*.json)")
        ->required();
    command.add_flag("--json", options->json, "write the report as JSON (--format json)");
    command
        .add_option("--format", options->format,
                    "text (the default); json; gcc: FILE:LINE:COL: error|warning: message "
                    "[kind], as compilers write, for editors' problem matchers; github: "
                    "workflow annotations; sarif: one SARIF 2.1.0 log for code-scanning "
                    "services, file names relative to the current folder")
        ->check(CLI::IsMember({"text", "json", "gcc", "github", "sarif"}));
    command.add_flag("--joystick", options->joystick, "load the documents as gamepad documents");
    command.add_flag("--strict", options->strict, "fail on warnings too");
    OnRun(command, [options] {
        return runCheck(options->files, options->json ? "json" : options->format, options->joystick,
                        options->strict);
    });
}

}  // namespace zunokeymap
