//
// SchemaCheck.h
//
// The document against the format's schema.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_SCHEMACHECK_H
#define ZUNO_KEYMAPMANAGER_CHECK_SCHEMACHECK_H

#include <vector>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/api/KeymapCheck.h"

namespace zunokeymapmanager {
namespace check {

/// Every member of `root` that the format's schema does not allow: missing,
/// unknown (with the nearest member name), of the wrong JSON type, outside
/// its list of names, its pattern or its range. Items of an unknown type are
/// left to CheckDocumentShape.
void CheckSchema(const Poco::JSON::Object::Ptr& root, std::vector<Finding>& out);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_SCHEMACHECK_H
