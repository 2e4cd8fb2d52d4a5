//
// DocumentShape.h
//
// Findings about the document as a whole: elements the load drops and the
// gamepad flag.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_DOCUMENTSHAPE_H
#define ZUNO_KEYMAPMANAGER_CHECK_DOCUMENTSHAPE_H

#include <vector>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/api/KeymapCheck.h"

namespace zunokeymapmanager {
namespace check {

/// Elements of "keymaps" whose type the library drops, with the nearest type
/// name; and an "is_joystick" that disagrees with `joystick`.
void CheckDocumentShape(const Poco::JSON::Object::Ptr& root, bool joystick,
                        std::vector<Finding>& out);

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_DOCUMENTSHAPE_H
