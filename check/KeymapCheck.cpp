//
// KeymapCheck.cpp
//

#include "zuno-keymapmanager/api/KeymapCheck.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string_view>

#include "check/CheckFindings.h"
#include "check/DocumentShape.h"
#include "check/ItemChecks.h"
#include "check/KeyCollisions.h"
#include "check/SchemaCheck.h"
#include "document/DocumentIO.h"
#include "document/JsonSyntax.h"
#include "document/LoadFailure.h"
#include "zuno-keymapmanager/document/ConfigInfo.h"
#include "zuno-keymapmanager/document/ConfigParam.h"
#include "zuno-keymapmanager/document/KeymapConfig.h"
#include "zuno-keymapmanager/model/Fields.h"
#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {

std::size_t CheckReport::errors() const {
    std::size_t count = 0;
    for (const Finding& finding : findings) {
        count += finding.severity == FindingSeverity::Error ? 1 : 0;
    }
    return count;
}

std::size_t CheckReport::warnings() const {
    return findings.size() - errors();
}

std::size_t CheckReport::problems() const {
    std::size_t count = 0;
    for (const Finding& finding : findings) {
        const bool counted = finding.severity == FindingSeverity::Error ||
                             finding.kind == FindingKind::InvalidItem ||
                             finding.kind == FindingKind::KeyCollision ||
                             finding.kind == FindingKind::MacroLine;
        count += counted ? 1 : 0;
    }
    return count;
}

const char* FindingKindName(FindingKind kind) {
    switch (kind) {
        case FindingKind::LoadFailed:
            return "load-failed";
        case FindingKind::UnknownType:
            return "unknown-type";
        case FindingKind::Schema:
            return "schema";
        case FindingKind::InvalidItem:
            return "invalid-item";
        case FindingKind::KeyCollision:
            return "key-collision";
        case FindingKind::MacroLine:
            return "macro-line";
        case FindingKind::KeyText:
            return "key-text";
        case FindingKind::UnsetPosition:
            return "unset-position";
        case FindingKind::ZeroRadius:
            return "zero-radius";
        case FindingKind::DuplicateMember:
            return "duplicate-member";
        case FindingKind::OffScreenPoint:
            return "off-screen-point";
        case FindingKind::JoystickMismatch:
            return "joystick-mismatch";
    }
    return "unknown";
}

const char* FindingSeverityName(FindingSeverity severity) {
    return severity == FindingSeverity::Error ? "error" : "warning";
}

namespace {

// As deep as the parser nests.
constexpr std::size_t kParserDepth = 128;

// The index in "keymaps" of each loaded item: the elements the load kept,
// which are those of a known type.
std::vector<int> elementsOfItems(const json::ArrayPtr& elements, std::size_t items) {
    std::vector<int> indices;
    for (std::size_t i = 0; !elements.isNull() && i < elements->size(); ++i) {
        const json::ObjectPtr element = elements->getObject(i);
        if (element.isNull() || !element->has(kFieldType)) {
            continue;
        }
        try {
            const std::string type = element->get(kFieldType).convert<std::string>();
            if (IndexOfName(kDocumentItemTypeNames, type) >= 0) {
                indices.push_back(static_cast<int>(i));
            }
        } catch (const Poco::Exception&) {
        }
    }
    if (indices.size() != items) {  // cannot happen after a successful load
        indices.resize(items);
        for (std::size_t i = 0; i < items; ++i) {
            indices[i] = static_cast<int>(i);
        }
    }
    return indices;
}

// A crowded keymap has tens of thousands of collisions, dozens for each
// item: each item's path and its "keymaps[3] (type)" are built once, and a
// finding copies them rather than formatting numbers again.
struct ItemNames {
    std::string path;
    std::string label;
};

std::vector<ItemNames> namesOfItems(const KeymapConfig& doc, const std::vector<int>& element) {
    std::vector<ItemNames> names(doc.items.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i].path = check::ElementPath(element[i]);
        if (doc.items[i] != nullptr) {
            names[i].label.reserve(names[i].path.size() + doc.items[i]->type.size() + 3);
            names[i].label.append(names[i].path).append(" (").append(doc.items[i]->type) += ')';
        }
    }
    return names;
}

void addCollisions(const KeymapConfig& doc, const std::vector<int>& element,
                   std::vector<check::Collision> collisions, CheckReport& report) {
    // A message names a few items; the finding's list holds them all.
    constexpr std::size_t kNamed = 5;
    const std::vector<ItemNames> names = namesOfItems(doc, element);
    report.findings.reserve(report.findings.size() + collisions.size());
    for (check::Collision& collision : collisions) {
        const std::vector<int>& group = collision.items;
        const std::size_t first = static_cast<std::size_t>(group[0]);
        const std::size_t second = static_cast<std::size_t>(group[1]);
        report.findings.emplace_back();
        Finding& finding = report.findings.back();
        finding.kind = FindingKind::KeyCollision;
        finding.severity = FindingSeverity::Warning;
        finding.item_index = element[first];
        finding.item_type = doc.items[first]->type;
        finding.path = names[first].path;
        finding.other_index = element[second];
        finding.other_type = doc.items[second]->type;
        finding.keys = std::move(collision.keys);
        finding.items.reserve(group.size());
        for (const int i : group) {
            finding.items.push_back(element[static_cast<std::size_t>(i)]);
        }
        std::string& message = finding.message;
        const std::size_t named = group.size() <= kNamed ? group.size() : kNamed - 1;
        for (std::size_t k = 0; k < named; ++k) {
            if (k > 0) {
                message += k + 1 == group.size() ? " and " : ", ";
            }
            message += names[static_cast<std::size_t>(group[k])].label;
        }
        if (named < group.size()) {
            message += " and " + std::to_string(group.size() - named) + " more";
        }
        message += group.size() == 2 ? " collide: both fire on " : " collide: all fire on ";
        message += finding.keys;
    }
}

void checkLoaded(const KeymapConfig& doc, const json::ArrayPtr& elements, CheckReport& report) {
    const std::vector<int> element = elementsOfItems(elements, doc.items.size());
    std::vector<Finding> items;
    for (std::size_t i = 0; i < doc.items.size(); ++i) {
        if (doc.items[i] != nullptr) {
            check::CheckItem(*doc.items[i], element[i], items);
        }
    }
    check::SortByItem(items);
    report.findings.insert(report.findings.end(), std::make_move_iterator(items.begin()),
                           std::make_move_iterator(items.end()));
    addCollisions(doc, element, check::FindCollisions(doc.items), report);
}

// Gives every finding the line and column its path names in the text, in
// one scan whatever their number.
void locate(const std::string& text, CheckReport& report) {
    if (report.findings.empty()) {
        return;
    }
    std::vector<std::string_view> paths;
    paths.reserve(report.findings.size());
    for (const Finding& finding : report.findings) {
        paths.emplace_back(finding.path);
    }
    const std::vector<document::TextPosition> at = document::LocatePaths(text, paths, kParserDepth);
    for (std::size_t k = 0; k < report.findings.size(); ++k) {
        Finding& finding = report.findings[k];
        const bool syntax = finding.kind == FindingKind::LoadFailed && report.diagnostic.line > 0;
        finding.line = syntax ? report.diagnostic.line : at[k].line;
        finding.column = syntax ? report.diagnostic.column : at[k].column;
    }
}

void checkText(const std::string& text, bool joystick, const std::string& source, bool located,
               CheckReport& report) {
    KeymapConfig doc;
    doc.info = new ConfigInfo();
    doc.param = new ConfigParam();
    document::ReadProgress progress;
    progress.keepElements = true;
    bool loaded = false;
    try {
        document::ReadFrom(document::Origin::Text, text, source, doc, progress);
        report.items = doc.items.size();
        loaded = true;
    } catch (const Poco::Exception& error) {
        document::Describe(progress, error, source, text, report.diagnostic);
        report.findings.push_back(check::MakeFinding(
            FindingKind::LoadFailed, FindingSeverity::Error, report.diagnostic.path,
            report.diagnostic.item_index, report.diagnostic.item_type, report.diagnostic.message));
    }
    if (!progress.root.isNull()) {
        std::vector<Finding> shape;
        // The parser keeps the last of two members of one name in silence.
        for (const std::string& path : document::DuplicateMembers(text, kParserDepth)) {
            int item = -1;
            if (path.compare(0, 8, "keymaps[") == 0) {
                item = std::atoi(path.c_str() + 8);
            }
            const std::string name = path.substr(path.find_last_of(".]") + 1);
            shape.push_back(check::MakeFinding(
                FindingKind::DuplicateMember, FindingSeverity::Warning, path, item, std::string(),
                "\"" + name + "\" is written twice in one object: only the last one counts"));
        }
        check::CheckDocumentShape(progress.root, joystick, shape);
        check::CheckSchema(progress.root, shape);
        check::SortByItem(shape);
        // The load's own finding already names the member it stopped at.
        const std::string& failedAt = report.diagnostic.path;
        if (report.findings.empty() && failedAt.empty()) {
            // Taken whole: a document of many thousands of findings is not
            // moved a second time.
            report.findings = std::move(shape);
        } else {
            report.findings.reserve(report.findings.size() + shape.size());
            for (Finding& finding : shape) {
                if (failedAt.empty() || finding.path != failedAt) {
                    report.findings.push_back(std::move(finding));
                }
            }
        }
    }
    if (loaded) {
        checkLoaded(doc, progress.elements, report);
    }
    if (located) {
        locate(text, report);
    }
}

}  // namespace

namespace check {

CheckReport CheckText(const std::string& text, bool joystick, const std::string& source,
                      bool located) {
    CheckReport report;
    report.diagnostic.source = source;
    try {
        checkText(text, joystick, source, located, report);
    } catch (const std::exception& error) {
        // Only exhaustion gets here; the report says so rather than the host dying.
        report.findings.push_back(MakeFinding(FindingKind::LoadFailed, FindingSeverity::Error,
                                              std::string(), -1, std::string(), error.what()));
    }
    return report;
}

}  // namespace check

KeymapConfig* ReadKeymapDocument(DocumentOrigin origin, const std::string& path,
                                 const std::string& text, bool joystick,
                                 LoadDiagnostic& diagnostic) {
    const document::Origin from = origin == DocumentOrigin::File      ? document::Origin::File
                                  : origin == DocumentOrigin::BuiltIn ? document::Origin::BuiltIn
                                                                      : document::Origin::Text;
    return document::Load(from, text, path, joystick, diagnostic).release();
}

CheckReport CheckKeymapDocument(const std::string& text, bool joystick, const std::string& source) {
    return check::CheckText(text, joystick, source, true);
}

}  // namespace zunokeymapmanager
