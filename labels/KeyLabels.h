//
// KeyLabels.h
//
// Captions of keyboard keys and mouse buttons. The tables are built once and
// are immutable afterwards, so lookups are safe from any thread.
//
// This module depends on nothing else in the library: the key model and the
// macro language both use it.
//

#ifndef ZUNO_KEYMAPMANAGER_LABELS_KEYLABELS_H
#define ZUNO_KEYMAPMANAGER_LABELS_KEYLABELS_H

#include <string>
#include <string_view>

namespace zunokeymapmanager {
namespace labels {

/// The label key of `code` on `device`: "key.esc", "key.pageUp", "btn.left",
/// ...; "key.unknown" or "btn.unknown" for a code without a name, and empty
/// for a device other than "keyboard" and "mouse". The view stays valid for
/// the life of the process.
std::string_view LabelKey(std::string_view device, int code);

/// The caption of `code` on `device` ("keyboard" or "mouse"): "Esc", "Ctrl",
/// "left_mouse", ... Empty for an unknown code or device.
std::string Caption(std::string_view device, int code);

/// The code whose caption on `device` is exactly `caption`, or -1 when there
/// is none. Where several codes share a caption ("Enter" is both 28 and the
/// keypad's 284) the lowest code is returned.
int CodeOf(std::string_view device, std::string_view caption);

}  // namespace labels
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_LABELS_KEYLABELS_H
