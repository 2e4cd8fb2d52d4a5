//
// KeyObjects.h
//
// Keys as tools and editors build and write them: one table of virtual keys
// and one writer, so that every program gives one answer for one key.
//

#ifndef ZUNO_KEYMAPMANAGER_API_KEYOBJECTS_H
#define ZUNO_KEYMAPMANAGER_API_KEYOBJECTS_H

#include <string>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigKey.h"

namespace zunokeymapmanager {

/// The Windows virtual-key code the host records with `code` on `device`:
/// keyboard scan codes (set 1, extended keys + 256) on a US layout, mouse
/// button codes (-1 for the wheel's two directions). kUnsetKeyCode for a code
/// the table does not hold, and for any other device.
ZUNO_KM_API int VirtualKeyOf(const std::string& device, int code);

/// The key `code` on `device` ("keyboard" or "mouse") as the host records
/// it: CreateConfigKey with the virtual key of VirtualKeyOf.
ZUNO_KM_API ConfigKey KeyOfCode(const std::string& device, int code);

/// `key` as a document writes it: "device", "text", "virtual_key" and
/// "scan_code".
ZUNO_KM_API Poco::JSON::Object::Ptr KeyToJson(const ConfigKey& key);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_KEYOBJECTS_H
