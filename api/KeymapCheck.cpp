//
// KeymapCheck.cpp
//

#include "zuno-keymapmanager/api/KeymapCheck.h"

#include <memory>

#include "document/DocumentIO.h"
#include "zuno-keymapmanager/document/ConfigInfo.h"
#include "zuno-keymapmanager/document/ConfigParam.h"
#include "zuno-keymapmanager/document/KeymapConfig.h"

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
        case FindingKind::JoystickMismatch:
            return "joystick-mismatch";
    }
    return "unknown";
}

const char* FindingSeverityName(FindingSeverity severity) {
    return severity == FindingSeverity::Error ? "error" : "warning";
}

// First cut: the load alone. The item, schema and collision findings come next.
CheckReport CheckKeymapDocument(const std::string& text, bool joystick, const std::string& source) {
    (void)joystick;
    CheckReport report;
    KeymapConfig doc;
    doc.info = new ConfigInfo();
    doc.param = new ConfigParam();
    document::ReadProgress progress;
    report.diagnostic.source = source;
    try {
        document::Read(text.empty() ? std::string(" ") : text, source, doc, progress);
        report.items = doc.items.size();
    } catch (const Poco::Exception& error) {
        document::Describe(progress, error, source, text, report.diagnostic);
        Finding finding;
        finding.path = report.diagnostic.path;
        finding.item_index = report.diagnostic.item_index;
        finding.item_type = report.diagnostic.item_type;
        finding.message = report.diagnostic.message;
        report.findings.push_back(finding);
    }
    return report;
}

}  // namespace zunokeymapmanager
