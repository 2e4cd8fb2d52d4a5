//
// CheckReport.h
//
// How `zuno-keymap check` shows the library's check of one document, as
// lines for people and as JSON; the editor serves the same JSON.
//

#ifndef ZUNO_KEYMAP_TOOL_CHECKREPORT_H
#define ZUNO_KEYMAP_TOOL_CHECKREPORT_H

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include <zuno-keymapmanager/api/KeymapCheck.h>

#include "JsonWriter.h"

namespace zunokeymap {

/// The JSON of one document as `check --json` prints it: "source", "loaded",
/// "error" (after a failed load), "items", "invalid_items", "collisions",
/// "macro_errors", "problems", then "errors", "warnings" and "findings" (every
/// field of every finding).
void WriteCheckReportJson(JsonWriter& out, const std::string& source,
                          const zunokeymapmanager::CheckReport& report);

/// What a finding is about and what is wrong, as one line for people:
/// "keymaps[3] (Swipehold): ...".
std::string DescribeFinding(const zunokeymapmanager::Finding& finding);

/// What `check` counts over the documents it checks, for its summary.
struct CheckSummary {
    std::size_t files = 0;  ///< documents named, or found in folders
    std::size_t problems = 0;
    std::size_t clean = 0;
    std::size_t withWarnings = 0;
    std::size_t withErrors = 0;
    std::size_t notKeymaps = 0;  ///< JSON files in folders that are not keymaps

    /// Counts one checked document.
    void add(const zunokeymapmanager::CheckReport& report);
};

/// A checked document, named as the user named it.
struct CheckedDocument {
    std::string source;
    const zunokeymapmanager::CheckReport* report;
};

/// All that `check --json` prints, its final newline included: "documents"
/// (each one's object, in order), "problems" and "summary".
std::string CheckJsonText(const std::vector<CheckedDocument>& documents,
                          const CheckSummary& summary);

/// How `check` prints findings as lines.
enum class ReportFormat {
    Text,    ///< "SOURCE: SEVERITY: keymaps[3] (Swipehold): ...", then a summary line
    Gcc,     ///< "SOURCE:LINE:COLUMN: SEVERITY: ... [kind]", as compilers write
    Github,  ///< "::SEVERITY file=SOURCE,line=L,col=C,title=kind::...", workflow commands
};

/// The lines `check` prints for one document, one per finding, with the
/// document's own text made safe for a terminal.
void PrintCheckReport(std::ostream& out, const std::string& source,
                      const zunokeymapmanager::CheckReport& report,
                      ReportFormat format = ReportFormat::Text);

/// Whether `check` fails on this report: on any error or problem, and with
/// `strict` on any warning.
bool CheckFails(const zunokeymapmanager::CheckReport& report, bool strict);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_CHECKREPORT_H
