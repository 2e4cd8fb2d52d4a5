//
// Captions.h
//
// What the picture writes on a marker or a key plate: the key's caption,
// shortened where people shorten it on keycaps, and combinations in the
// order people say them.
//

#ifndef ZUNO_KEYMAP_RENDER_CAPTIONS_H
#define ZUNO_KEYMAP_RENDER_CAPTIONS_H

#include <string>

#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {
namespace render {

/// The caption of a key as written on the picture: its text (arrows and
/// mouse buttons shortened: ↑, LMB), else its code for a key that is set but
/// has no caption; empty for an unset key.
std::string KeyCaption(const zunokeymapmanager::ConfigKey& key);

/// The caption of a key combination, modifier first ("Ctrl+G"); the key
/// alone when `second` is unset.
std::string CombinationCaption(const zunokeymapmanager::ConfigKey& first,
                               const zunokeymapmanager::ConfigKey& second);

/// The caption written on an item's marker: its key, or its combination.
std::string ItemCaption(const zunokeymapmanager::ConfigItem& item);

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_CAPTIONS_H
