//
// CheckReport.cpp
//

#include "CheckReport.h"

#include <Poco/JSON/Array.h>

namespace zunokeymap {

namespace km = zunokeymapmanager;
using Poco::JSON::Array;
using Poco::JSON::Object;

namespace {

Object::Ptr newObject() {
    return new Object(Poco::JSON_PRESERVE_KEY_ORDER);
}

// "press_actions" from "keymaps[3].press_actions[1]".
std::string listOf(const std::string& path) {
    const std::size_t dot = path.find("].");
    const std::size_t bracket = path.find('[', dot == std::string::npos ? 0 : dot);
    return dot == std::string::npos || bracket == std::string::npos
               ? std::string()
               : path.substr(dot + 2, bracket - dot - 2);
}

Object::Ptr errorJson(const km::LoadDiagnostic& diagnostic) {
    Object::Ptr error = newObject();
    error->set("problem", std::string(km::ProblemName(diagnostic.problem)));
    error->set("path", diagnostic.path);
    error->set("item_index", diagnostic.item_index);
    error->set("item_type", diagnostic.item_type);
    error->set("expected", diagnostic.expected);
    error->set("line", diagnostic.line);
    error->set("column", diagnostic.column);
    error->set("message", diagnostic.message);
    return error;
}

Object::Ptr findingJson(const km::Finding& finding) {
    Object::Ptr entry = newObject();
    entry->set("kind", std::string(km::FindingKindName(finding.kind)));
    entry->set("severity", std::string(km::FindingSeverityName(finding.severity)));
    entry->set("path", finding.path);
    entry->set("item_index", finding.item_index);
    entry->set("item_type", finding.item_type);
    entry->set("other_index", finding.other_index);
    entry->set("other_type", finding.other_type);
    entry->set("line", finding.line);
    entry->set("line_text", finding.line_text);
    entry->set("keys", finding.keys);
    entry->set("message", finding.message);
    entry->set("suggestion", finding.suggestion);
    return entry;
}

// The three lists the report has always had, kept for readers of old.
void addClassicLists(const km::CheckReport& report, Object& result) {
    Array::Ptr invalid = new Array();
    Array::Ptr collisions = new Array();
    Array::Ptr macros = new Array();
    Object::Ptr lastMacro;
    for (const km::Finding& finding : report.findings) {
        if (finding.kind == km::FindingKind::InvalidItem) {
            Object::Ptr entry = newObject();
            entry->set("index", finding.item_index);
            entry->set("type", finding.item_type);
            const std::string prefix = "invalid: ";
            entry->set("reason", finding.message.compare(0, prefix.size(), prefix) == 0
                                     ? finding.message.substr(prefix.size())
                                     : finding.message);
            invalid->add(entry);
        } else if (finding.kind == km::FindingKind::KeyCollision) {
            Object::Ptr entry = newObject();
            entry->set("first", finding.item_index);
            entry->set("first_type", finding.item_type);
            entry->set("second", finding.other_index);
            entry->set("second_type", finding.other_type);
            entry->set("keys", finding.keys);
            collisions->add(entry);
        } else if (finding.kind == km::FindingKind::MacroLine) {
            const std::string list = listOf(finding.path);
            if (lastMacro.isNull() || lastMacro->getValue<int>("index") != finding.item_index ||
                lastMacro->getValue<std::string>("list") != list) {
                lastMacro = newObject();
                lastMacro->set("index", finding.item_index);
                lastMacro->set("list", list);
                lastMacro->set("lines", Array::Ptr(new Array()));
                lastMacro->set("texts", Array::Ptr(new Array()));
                macros->add(lastMacro);
            }
            lastMacro->getArray("lines")->add(finding.line);
            lastMacro->getArray("texts")->add(finding.line_text);
        }
    }
    result.set("invalid_items", invalid);
    result.set("collisions", collisions);
    result.set("macro_errors", macros);
}

}  // namespace

Object::Ptr CheckReportJson(const std::string& source, const km::CheckReport& report) {
    Object::Ptr result = newObject();
    result->set("source", source);
    result->set("loaded", !report.diagnostic.failed);
    if (report.diagnostic.failed) {
        result->set("error", errorJson(report.diagnostic));
    }
    result->set("items", static_cast<int>(report.items));
    addClassicLists(report, *result);
    result->set("problems", static_cast<int>(report.problems()));
    result->set("errors", static_cast<int>(report.errors()));
    result->set("warnings", static_cast<int>(report.warnings()));
    Array::Ptr findings = new Array();
    for (const km::Finding& finding : report.findings) {
        findings->add(findingJson(finding));
    }
    result->set("findings", findings);
    return result;
}

void PrintCheckReport(std::ostream& out, const std::string& source, const km::CheckReport& report) {
    for (const km::Finding& finding : report.findings) {
        out << source << ": " << km::FindingSeverityName(finding.severity) << ": ";
        // A failed load's message and a collision's name their places themselves.
        if (finding.kind != km::FindingKind::LoadFailed &&
            finding.kind != km::FindingKind::KeyCollision) {
            const bool whole =
                finding.item_index >= 0 && (finding.kind == km::FindingKind::InvalidItem ||
                                            finding.kind == km::FindingKind::MacroLine);
            if (whole) {
                out << "keymaps[" << finding.item_index << "]";
            } else if (!finding.path.empty()) {
                out << finding.path;
            }
            if (!finding.item_type.empty() && finding.kind != km::FindingKind::UnknownType) {
                out << " (" << finding.item_type << ")";
            }
            if (whole || !finding.path.empty()) {
                out << ": ";
            }
        }
        out << finding.message << "\n";
    }
    const std::size_t errors = report.errors();
    const std::size_t warnings = report.warnings();
    const std::size_t problems = report.problems();
    out << source << ": ";
    if (problems == 0) {
        out << "ok";
        if (warnings > 0) {
            out << ", " << warnings << " warning(s)";
        }
    } else {
        out << problems << " problem(s): " << errors << " error(s), " << warnings << " warning(s)";
    }
    out << " (" << report.items << " items)\n";
}

bool CheckFails(const km::CheckReport& report, bool strict) {
    return report.problems() > 0 || (strict && !report.findings.empty());
}

}  // namespace zunokeymap
