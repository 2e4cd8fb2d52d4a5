//
// SarifReport.cpp
//

#include "SarifReport.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "CheckReport.h"
#include "JsonWriter.h"

namespace zunokeymap {

namespace km = zunokeymapmanager;

namespace {

struct Rule {
    km::FindingKind kind;
    const char* text;
};

// One rule for each finding kind, in the order of the kinds.
const Rule kRules[] = {
    {km::FindingKind::LoadFailed, "The document does not load."},
    {km::FindingKind::UnknownType,
     "An element of \"keymaps\" has a type the library does not know, and the load drops it."},
    {km::FindingKind::Schema,
     "A member is missing, unknown, of the wrong JSON type or out of range."},
    {km::FindingKind::InvalidItem, "An item loads, but the library calls it invalid."},
    {km::FindingKind::KeyCollision, "Two or more items fire on the same key or key combination."},
    {km::FindingKind::MacroLine, "A Macro line fails the grammar check."},
    {km::FindingKind::KeyText, "A key's text is not the caption of its code."},
    {km::FindingKind::UnsetPosition, "A position is left at (0, 0), which means not set."},
    {km::FindingKind::ZeroRadius, "A drag radius is 0."},
    {km::FindingKind::JoystickMismatch,
     "\"is_joystick\" disagrees with how the document is loaded."},
    {km::FindingKind::DuplicateMember,
     "A member is written twice in one object; only the last counts."},
};

int ruleIndex(km::FindingKind kind) {
    for (std::size_t i = 0; i < std::size(kRules); ++i) {
        if (kRules[i].kind == kind) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void writeResult(JsonWriter& out, const std::string& uri, const km::Finding& finding, int column) {
    const int rule = ruleIndex(finding.kind);
    out.beginObject().key("ruleId").value(km::FindingKindName(finding.kind));
    if (rule >= 0) {
        out.key("ruleIndex").value(rule);
    }
    out.key("level")
        .value(km::FindingSeverityName(finding.severity))
        .key("message")
        .beginObject()
        .key("text")
        .value(DescribeFinding(finding))
        .endObject();
    if (!uri.empty()) {
        out.key("locations").beginArray().beginObject().key("physicalLocation").beginObject();
        out.key("artifactLocation").beginObject().key("uri").value(uri).endObject();
        if (finding.line > 0) {
            out.key("region").beginObject().key("startLine").value(finding.line);
            if (column > 0) {
                out.key("startColumn").value(column);
            }
            out.endObject();
        }
        out.endObject().endObject().endArray();
    }
    out.endObject();
}

bool unreserved(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

}  // namespace

std::vector<int> Utf16Columns(const std::string& text, const km::CheckReport& report) {
    std::vector<std::size_t> lineStarts{0};
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
        lineStarts.push_back(at + 1);
    }
    std::vector<int> columns;
    columns.reserve(report.findings.size());
    for (const km::Finding& finding : report.findings) {
        if (finding.line <= 0 || finding.column <= 0 ||
            static_cast<std::size_t>(finding.line) > lineStarts.size()) {
            columns.push_back(0);
            continue;
        }
        const std::size_t start = lineStarts[finding.line - 1];
        const std::size_t end = std::min(text.size(), start + finding.column - 1);
        int units = 1;
        for (std::size_t i = start; i < end; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            // A lead byte starts a code point; four-byte ones need a surrogate pair.
            if ((byte & 0xC0U) != 0x80U) {
                units += byte >= 0xF0U ? 2 : 1;
            }
        }
        columns.push_back(units);
    }
    return columns;
}

std::string SarifLog(const std::vector<SarifDocument>& documents, const std::string& version) {
    std::string text;
    JsonWriter out(text, true);
    out.beginObject()
        .key("$schema")
        .value(
            "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
            "sarif-schema-2.1.0.json")
        .key("version")
        .value("2.1.0")
        .key("runs")
        .beginArray()
        .beginObject()
        .key("tool")
        .beginObject()
        .key("driver")
        .beginObject()
        .key("name")
        .value("zuno-keymap")
        .key("version")
        .value(version)
        .key("rules")
        .beginArray();
    for (const Rule& rule : kRules) {
        out.beginObject()
            .key("id")
            .value(km::FindingKindName(rule.kind))
            .key("shortDescription")
            .beginObject()
            .key("text")
            .value(rule.text)
            .endObject()
            .endObject();
    }
    out.endArray().endObject().endObject().key("results").beginArray();
    for (const SarifDocument& document : documents) {
        if (document.report == nullptr) {
            continue;
        }
        const std::vector<km::Finding>& findings = document.report->findings;
        for (std::size_t k = 0; k < findings.size(); ++k) {
            const int column = k < document.columns.size() ? document.columns[k] : 0;
            writeResult(out, document.uri, findings[k], column);
        }
    }
    out.endArray().endObject().endArray().endObject();
    return text;
}

std::string SarifArtifactUri(const std::string& path) {
    namespace fs = std::filesystem;
    std::string plain;
    bool inside = false;
    try {
        std::error_code code;
        const fs::path absolute = fs::absolute(fs::u8path(path), code).lexically_normal();
        const fs::path here = fs::current_path(code).lexically_normal();
        const fs::path relative = absolute.lexically_relative(here);
        inside = !code && !relative.empty() && *relative.begin() != "..";
        plain = (inside ? relative : absolute).generic_u8string();
    } catch (const std::exception&) {
        plain = path;  // not a name this system can hold: leave it as given
    }
    std::string uri = inside ? "" : plain.rfind('/', 0) == 0 ? "file://" : "file:///";
    static const char kHex[] = "0123456789ABCDEF";
    for (const char c : plain) {
        // A drive's colon stays in an absolute URI; in a relative one a colon
        // would read as a scheme.
        if (unreserved(c) || c == '/' || (c == ':' && !inside)) {
            uri += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            uri += '%';
            uri += kHex[byte >> 4];
            uri += kHex[byte & 15];
        }
    }
    return uri;
}

}  // namespace zunokeymap
