//
// VirtualKeys.h
//
// The Windows virtual-key code the host records with each keyboard scan code
// and mouse button code, so that every tool builds a key the same way.
//

#ifndef ZUNO_KEYMAPMANAGER_LABELS_VIRTUALKEYS_H
#define ZUNO_KEYMAPMANAGER_LABELS_VIRTUALKEYS_H

#include <optional>
#include <string_view>

namespace zunokeymapmanager {
namespace labels {

/// The virtual-key code of `code` on `device` ("keyboard" or "mouse"), or
/// nothing for a code the table does not hold or another device.
std::optional<int> VirtualKeyOf(std::string_view device, int code);

}  // namespace labels
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_LABELS_VIRTUALKEYS_H
