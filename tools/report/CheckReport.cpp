//
// CheckReport.cpp
//

#include "CheckReport.h"

#include "TerminalText.h"

namespace zunokeymap {

namespace km = zunokeymapmanager;

namespace {

// "press_actions" from "keymaps[3].press_actions[1]".
std::string listOf(const std::string& path) {
    const std::size_t dot = path.find("].");
    const std::size_t bracket = path.find('[', dot == std::string::npos ? 0 : dot);
    return dot == std::string::npos || bracket == std::string::npos
               ? std::string()
               : path.substr(dot + 2, bracket - dot - 2);
}

void writeError(JsonWriter& out, const km::LoadDiagnostic& diagnostic) {
    out.beginObject()
        .key("problem")
        .value(km::ProblemName(diagnostic.problem))
        .key("path")
        .value(diagnostic.path)
        .key("item_index")
        .value(diagnostic.item_index)
        .key("item_type")
        .value(diagnostic.item_type)
        .key("expected")
        .value(diagnostic.expected)
        .key("line")
        .value(diagnostic.line)
        .key("column")
        .value(diagnostic.column)
        .key("message")
        .value(diagnostic.message)
        .endObject();
}

// Every item a collision involves, in both the finding and the classic list.
void writeItems(JsonWriter& out, const km::Finding& finding) {
    out.key("items").beginArray();
    for (const int index : finding.items) {
        out.value(index);
    }
    out.endArray();
}

void writeFinding(JsonWriter& out, const km::Finding& finding) {
    out.beginObject()
        .key("kind")
        .value(km::FindingKindName(finding.kind))
        .key("severity")
        .value(km::FindingSeverityName(finding.severity))
        .key("path")
        .value(finding.path)
        .key("item_index")
        .value(finding.item_index)
        .key("item_type")
        .value(finding.item_type)
        .key("other_index")
        .value(finding.other_index)
        .key("other_type")
        .value(finding.other_type)
        .key("line")
        .value(finding.line)
        .key("column")
        .value(finding.column)
        .key("script_line")
        .value(finding.script_line)
        .key("script_text")
        .value(finding.script_text)
        .key("keys")
        .value(finding.keys);
    writeItems(out, finding);
    out.key("message")
        .value(finding.message)
        .key("suggestion")
        .value(finding.suggestion)
        .endObject();
}

std::string_view reasonOf(const km::Finding& finding) {
    static const std::string_view kPrefix = "invalid: ";
    std::string_view reason = finding.message;
    if (reason.substr(0, kPrefix.size()) == kPrefix) {
        reason.remove_prefix(kPrefix.size());
    }
    return reason;
}

// The three lists the report has always had, kept for readers of old.
void writeClassicLists(JsonWriter& out, const std::vector<km::Finding>& findings) {
    out.key("invalid_items").beginArray();
    for (const km::Finding& finding : findings) {
        if (finding.kind == km::FindingKind::InvalidItem) {
            out.beginObject()
                .key("index")
                .value(finding.item_index)
                .key("type")
                .value(finding.item_type)
                .key("reason")
                .value(reasonOf(finding))
                .endObject();
        }
    }
    out.endArray().key("collisions").beginArray();
    for (const km::Finding& finding : findings) {
        if (finding.kind == km::FindingKind::KeyCollision) {
            out.beginObject()
                .key("first")
                .value(finding.item_index)
                .key("first_type")
                .value(finding.item_type)
                .key("second")
                .value(finding.other_index)
                .key("second_type")
                .value(finding.other_type)
                .key("keys")
                .value(finding.keys);
            writeItems(out, finding);
            out.endObject();
        }
    }
    // One entry for each run of failing lines in the same list of an item.
    out.endArray().key("macro_errors").beginArray();
    std::vector<const km::Finding*> macros;
    for (const km::Finding& finding : findings) {
        if (finding.kind == km::FindingKind::MacroLine) {
            macros.push_back(&finding);
        }
    }
    for (std::size_t first = 0, last = 0; first < macros.size(); first = last) {
        const std::string list = listOf(macros[first]->path);
        last = first + 1;
        while (last < macros.size() && macros[last]->item_index == macros[first]->item_index &&
               listOf(macros[last]->path) == list) {
            ++last;
        }
        out.beginObject().key("index").value(macros[first]->item_index).key("list").value(list);
        out.key("lines").beginArray();
        for (std::size_t i = first; i < last; ++i) {
            out.value(macros[i]->script_line);
        }
        out.endArray().key("texts").beginArray();
        for (std::size_t i = first; i < last; ++i) {
            out.value(macros[i]->script_text);
        }
        out.endArray().endObject();
    }
    out.endArray();
}

}  // namespace

void WriteCheckReportJson(JsonWriter& out, const std::string& source,
                          const km::CheckReport& report) {
    out.beginObject().key("source").value(source).key("loaded").value(!report.diagnostic.failed);
    if (report.diagnostic.failed) {
        out.key("error");
        writeError(out, report.diagnostic);
    }
    out.key("items").value(report.items);
    writeClassicLists(out, report.findings);
    out.key("problems")
        .value(report.problems())
        .key("errors")
        .value(report.errors())
        .key("warnings")
        .value(report.warnings());
    out.key("findings").beginArray();
    for (const km::Finding& finding : report.findings) {
        writeFinding(out, finding);
    }
    out.endArray().endObject();
}

std::string DescribeFinding(const km::Finding& finding) {
    std::string out;
    // A failed load's message and a collision's name their places themselves.
    if (finding.kind != km::FindingKind::LoadFailed &&
        finding.kind != km::FindingKind::KeyCollision) {
        const bool whole =
            finding.item_index >= 0 && (finding.kind == km::FindingKind::InvalidItem ||
                                        finding.kind == km::FindingKind::MacroLine ||
                                        finding.kind == km::FindingKind::OffScreenPoint);
        if (whole) {
            out += "keymaps[" + std::to_string(finding.item_index) + "]";
        } else {
            out += finding.path;
        }
        if (!finding.item_type.empty() && finding.kind != km::FindingKind::UnknownType) {
            out += " (" + finding.item_type + ")";
        }
        if (whole || !finding.path.empty()) {
            out += ": ";
        }
    }
    return out + finding.message;
}

namespace {

// A workflow command's text and property escapes (%, CR, LF; in a property
// also : and ,).
std::string githubEscaped(const std::string& text, bool property) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '%':
                out += "%25";
                break;
            case '\r':
                out += "%0D";
                break;
            case '\n':
                out += "%0A";
                break;
            case ':':
                out += property ? "%3A" : ":";
                break;
            case ',':
                out += property ? "%2C" : ",";
                break;
            default:
                out += c;
        }
    }
    return out;
}

}  // namespace

void PrintCheckReport(std::ostream& out, const std::string& source, const km::CheckReport& report,
                      ReportFormat format) {
    // The file name and the findings hold the document's own text: each is
    // made safe on its own, so that none can end its line early.
    const std::string shown = ForTerminal(source);
    for (const km::Finding& finding : report.findings) {
        const char* severity = km::FindingSeverityName(finding.severity);
        const char* kind = km::FindingKindName(finding.kind);
        const std::string described = ForTerminal(DescribeFinding(finding));
        const bool placed = finding.line > 0;
        switch (format) {
            case ReportFormat::Gcc:
                out << shown;
                if (placed) {
                    out << ':' << finding.line << ':' << finding.column;
                }
                out << ": " << severity << ": " << described << " [" << kind << "]\n";
                break;
            case ReportFormat::Github:
                out << "::" << severity << " file=" << githubEscaped(shown, true);
                if (placed) {
                    out << ",line=" << finding.line << ",col=" << finding.column;
                }
                out << ",title=" << kind << "::" << githubEscaped(described, false) << "\n";
                break;
            case ReportFormat::Text:
                out << shown << ": " << severity << ": " << described << "\n";
                break;
        }
    }
    if (format == ReportFormat::Text) {
        const std::size_t errors = report.errors();
        const std::size_t warnings = report.warnings();
        const std::size_t problems = report.problems();
        out << shown << ": ";
        if (problems == 0) {
            out << "ok";
            if (warnings > 0) {
                out << ", " << warnings << " warning(s)";
            }
        } else {
            out << problems << " problem(s): " << errors << " error(s), " << warnings
                << " warning(s)";
        }
        out << " (" << report.items << " items)\n";
    }
}

void CheckSummary::add(const km::CheckReport& report) {
    problems += report.problems();
    ++(report.errors() > 0 ? withErrors : report.findings.empty() ? clean : withWarnings);
}

std::string CheckJsonText(const std::vector<CheckedDocument>& documents,
                          const CheckSummary& summary) {
    std::string json;
    JsonWriter writer(json, true);
    writer.beginObject().key("documents").beginArray();
    for (const CheckedDocument& document : documents) {
        WriteCheckReportJson(writer, document.source, *document.report);
    }
    writer.endArray().key("problems").value(summary.problems);
    writer.key("summary")
        .beginObject()
        .key("files")
        .value(summary.files)
        .key("clean")
        .value(summary.clean)
        .key("with_warnings")
        .value(summary.withWarnings)
        .key("with_errors")
        .value(summary.withErrors)
        .key("not_keymaps")
        .value(summary.notKeymaps)
        .endObject();
    writer.endObject();
    return json + "\n";
}

bool CheckFails(const km::CheckReport& report, bool strict) {
    return report.problems() > 0 || (strict && !report.findings.empty());
}

}  // namespace zunokeymap
