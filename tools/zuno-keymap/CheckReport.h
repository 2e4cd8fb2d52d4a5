//
// CheckReport.h
//
// How `zuno-keymap check` shows the library's check of one document, as
// lines for people and as JSON; the editor serves the same JSON.
//

#ifndef ZUNO_KEYMAP_TOOL_CHECKREPORT_H
#define ZUNO_KEYMAP_TOOL_CHECKREPORT_H

#include <ostream>
#include <string>

#include <zuno-keymapmanager/api/KeymapCheck.h>

#include "JsonWriter.h"

namespace zunokeymap {

/// The JSON of one document as `check --json` prints it: "source", "loaded",
/// "error" (after a failed load), "items", "invalid_items", "collisions",
/// "macro_errors", "problems", then "errors", "warnings" and "findings" (every
/// field of every finding).
void WriteCheckReportJson(JsonWriter& out, const std::string& source,
                          const zunokeymapmanager::CheckReport& report);

/// The lines `check` prints for one document: one per finding,
/// "SOURCE: SEVERITY: keymaps[3] (Swipehold): ...", then a summary line.
void PrintCheckReport(std::ostream& out, const std::string& source,
                      const zunokeymapmanager::CheckReport& report);

/// Whether `check` fails on this report: on any error or problem, and with
/// `strict` on any warning.
bool CheckFails(const zunokeymapmanager::CheckReport& report, bool strict);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_CHECKREPORT_H
