//
// CheckFindings.h
//
// The parts of the document check, each adding its findings to a report.
//

#ifndef ZUNO_KEYMAPMANAGER_API_CHECKFINDINGS_H
#define ZUNO_KEYMAPMANAGER_API_CHECKFINDINGS_H

#include <string>
#include <vector>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/api/KeymapCheck.h"
#include "zuno-keymapmanager/model/ConfigItem.h"

namespace zunokeymapmanager {
namespace check {

/// A finding about the element `index` of "keymaps" (-1 for none).
Finding MakeFinding(FindingKind kind, FindingSeverity severity, std::string path, int index,
                    std::string type, std::string message, std::string suggestion = std::string());

/// CheckKeymapDocument; with `located` false, every finding's line and
/// column stay 0 (the benchmarks weigh locating against this).
CheckReport CheckText(const std::string& text, bool joystick, const std::string& source,
                      bool located);

/// "keymaps[3]".
std::string ElementPath(int index);

/// Invalid items, Macro lines that fail the grammar check, key texts that
/// are not their code's caption, (0, 0) work positions and zero drag radii.
/// `element` is the index in "keymaps" that `item` was read from.
void CheckItem(const ConfigItem& item, int element, std::vector<Finding>& out);

/// Elements of "keymaps" whose type the library drops, with the nearest type
/// name; and an "is_joystick" that disagrees with `joystick`.
void CheckDocumentShape(const Poco::JSON::Object::Ptr& root, bool joystick,
                        std::vector<Finding>& out);

/// Every member of `root` that the format's schema does not allow: missing,
/// unknown (with the nearest member name), of the wrong JSON type, outside
/// its list of names, its pattern or its range. Items of an unknown type are
/// left to CheckDocumentShape.
void CheckSchema(const Poco::JSON::Object::Ptr& root, std::vector<Finding>& out);

/// The name in `names` closest to `word` by edit distance (case differences
/// count little), or empty when none is close enough to be a likely typo.
std::string NearestName(const std::string& word, const std::vector<std::string>& names);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_CHECKFINDINGS_H
