//
// SarifReport.h
//
// `check --format sarif`: the findings of a check run as one SARIF 2.1.0 log,
// for code-scanning services and editors that read it.
//

#ifndef ZUNO_KEYMAP_TOOL_SARIFREPORT_H
#define ZUNO_KEYMAP_TOOL_SARIFREPORT_H

#include <string>
#include <vector>

#include <zuno-keymapmanager/api/KeymapCheck.h>

namespace zunokeymap {

/// One checked document as the log lists it.
struct SarifDocument {
    /// Where it is, as SarifArtifactUri gives it; empty when it is no file
    /// (standard input, a built-in), so its results carry no location.
    std::string uri;
    const zunokeymapmanager::CheckReport* report = nullptr;
    /// Each finding's column in UTF-16 code units, SARIF's default unit (the
    /// report counts bytes), as Utf16Columns gives them.
    std::vector<int> columns;
};

/// The column of each of `report`'s findings in UTF-16 code units, counted in
/// `text`, the document the report is of; 0 where the finding has none.
std::vector<int> Utf16Columns(const std::string& text,
                              const zunokeymapmanager::CheckReport& report);

/// The log of one run: the tool (named with `version`) as driver with a rule
/// for each finding kind, and a result for each finding with its level,
/// message, file and region (line and column where the text shows them).
std::string SarifLog(const std::vector<SarifDocument>& documents, const std::string& version);

/// `path` as a URI reference: relative to the current folder when it lies
/// below it, else an absolute file: URI; bytes outside the unreserved set
/// percent-encoded, '/' as the separator on every platform.
std::string SarifArtifactUri(const std::string& path);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_SARIFREPORT_H
