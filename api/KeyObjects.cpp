//
// KeyObjects.cpp
//

#include "zuno-keymapmanager/api/KeyObjects.h"

#include "labels/VirtualKeys.h"
#include "model/JsonIO.h"
#include "zuno-keymapmanager/api/Functions.h"

namespace zunokeymapmanager {

int VirtualKeyOf(const std::string& device, int code) {
    return labels::VirtualKeyOf(device, code).value_or(kUnsetKeyCode);
}

ConfigKey KeyOfCode(const std::string& device, int code) {
    return CreateConfigKey(device, VirtualKeyOf(device, code), code);
}

Poco::JSON::Object::Ptr KeyToJson(const ConfigKey& key) {
    return json::keyObject(key);
}

}  // namespace zunokeymapmanager
