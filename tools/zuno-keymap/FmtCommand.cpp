//
// FmtCommand.cpp
//
// zuno-keymap fmt: a document in the form the library saves it.
//

#include <iostream>
#include <memory>
#include <string>

#include "CommandLine.h"
#include "Common.h"
#include "DocumentEdit.h"
#include "LineDiff.h"
#include "LostElements.h"

namespace zunokeymap {

namespace {

struct FmtOptions {
    std::string file;
    std::string output;
    bool inPlace = false;
    bool check = false;
    bool joystick = false;
    bool force = false;
};

int runFmt(const FmtOptions& options) {
    const std::string& file = options.file;
    // Another tool rewriting the file meanwhile would lose its change.
    FileLock lock(file);
    if (options.inPlace) {
        if (const int status = LockForRewrite("fmt", file, options.joystick, lock)) {
            return status;
        }
    }
    Loaded loaded = Load(file, options.joystick);
    if (loaded.diagnostic.failed) {
        return ReportLoadFailure(loaded);
    }
    const std::string saved = SavedText(loaded.doc.get());
    if (options.check) {
        if (saved == loaded.text) {
            return kClean;
        }
        std::cout << UnifiedDiff(loaded.text, saved, loaded.source,
                                 loaded.source + " (saved form)");
        return kProblems;
    }
    const std::string target = options.inPlace ? file : options.output;
    if (!options.force) {
        const std::vector<std::string> lost = LostOnSave(loaded.text, *loaded.doc);
        if (!lost.empty()) {
            std::cerr << LostElementsMessage("fmt", target.empty() ? "-" : target, lost);
            return kProblems;
        }
    }
    return WriteOutput("fmt", target.empty() ? "-" : target, saved) ? kClean : kUsage;
}

}  // namespace

void AddFmtCommand(CLI::App& app) {
    auto options = std::make_shared<FmtOptions>();
    CLI::App& command = AddSubcommand(
        app, "fmt", "rewrite a document in the library's saved form",
        "Loads the document through the library and writes it as the library saves it:\n"
        "keys sorted, indented by 4, every member written. A document that fails to load\n"
        "is reported and never written. With --check, the difference to the saved form\n"
        "is shown as a unified diff. -o, --in-place and --check exclude each other.\n"
        "Elements of FILE the library does not keep as written (unknown item types and\n"
        "members, values it reads as others, the first of two members of one name)\n"
        "would be lost: they are named and nothing is written, unless --force.\n"
        "--in-place replaces FILE in one step (a hard link to it keeps the old text),\n"
        "locked against other tools editing it (a lock file beside it).\n");
    command.add_option("FILE", options->file, "the document")->required();
    CLI::Option* output =
        command
            .add_option("-o,--output", options->output,
                        "write to OUT instead of standard output ('-' is standard output)")
            ->type_name("OUT");
    CLI::Option* inPlace = command.add_flag("--in-place", options->inPlace,
                                            "rewrite FILE itself (not for '-' or a built-in name)");
    CLI::Option* check = command.add_flag(
        "--check", options->check,
        "write nothing; show what would change and exit 1 when FILE is not in that form");
    output->excludes(inPlace)->excludes(check);
    inPlace->excludes(check);
    command.add_flag("--joystick", options->joystick, "load FILE as a gamepad document");
    command.add_flag("--force", options->force,
                     "write even when elements of FILE the library does not keep are lost or "
                     "changed");
    OnRun(command, [options] { return runFmt(*options); });
}

}  // namespace zunokeymap
