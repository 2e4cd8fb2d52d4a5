//
// DocumentShape.cpp
//

#include "check/DocumentShape.h"

#include "check/CheckFindings.h"
#include "zuno-keymapmanager/model/Fields.h"
#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {
namespace check {

namespace {

std::vector<std::string> itemTypeNames() {
    return {kDocumentItemTypeNames.begin(), kDocumentItemTypeNames.end()};
}

bool isItemType(const std::string& type) {
    return IndexOfName(kDocumentItemTypeNames, type) >= 0;
}

void checkUnknownTypes(const Poco::JSON::Array::Ptr& elements, std::vector<Finding>& out) {
    static const std::vector<std::string> names = itemTypeNames();
    for (std::size_t i = 0; i < elements->size(); ++i) {
        const Poco::JSON::Object::Ptr element = elements->getObject(i);
        if (element.isNull() || !element->has(kFieldType)) {
            continue;  // the schema, or the load, says what is wrong
        }
        std::string type;
        try {
            type = element->get(kFieldType).convert<std::string>();
        } catch (const Poco::Exception&) {
            continue;
        }
        if (isItemType(type)) {
            continue;
        }
        const int index = static_cast<int>(i);
        const std::string nearest = NearestName(type, names);
        out.push_back(
            MakeFinding(FindingKind::UnknownType, FindingSeverity::Error,
                        ElementPath(index) + ".type", index, type,
                        type + ": unknown type, dropped on load" +
                            (nearest.empty() ? std::string() : "; did you mean " + nearest + "?"),
                        nearest));
    }
}

void checkJoystickFlag(const Poco::JSON::Object::Ptr& root, bool joystick,
                       std::vector<Finding>& out) {
    const Poco::JSON::Object::Ptr info = root->getObject(kFieldInfo);
    bool written = false;
    if (!info.isNull() && info->has(kFieldIsJoystick)) {
        try {
            written = info->get(kFieldIsJoystick).convert<bool>();
        } catch (const Poco::Exception&) {
            return;  // a value of the wrong type is the schema's finding
        }
    }
    if (written == joystick) {
        return;
    }
    out.push_back(MakeFinding(
        FindingKind::JoystickMismatch, FindingSeverity::Warning, "info.is_joystick", -1,
        std::string(),
        joystick ? "checked as a gamepad document, but is_joystick is not true: a keyboard "
                   "keymap? (check it without --joystick)"
                 : "is_joystick is true, but the document is checked as a keyboard keymap "
                   "(check it with --joystick)",
        joystick ? "true" : "false"));
}

}  // namespace

void CheckDocumentShape(const Poco::JSON::Object::Ptr& root, bool joystick,
                        std::vector<Finding>& out) {
    const Poco::JSON::Array::Ptr elements = root->getArray(kFieldKeymaps);
    if (!elements.isNull()) {
        checkUnknownTypes(elements, out);
    }
    checkJoystickFlag(root, joystick, out);
}

}  // namespace check
}  // namespace zunokeymapmanager
