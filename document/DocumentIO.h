//
// DocumentIO.h
//
// Reading a keymap document from JSON text and writing it back.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_DOCUMENTIO_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_DOCUMENTIO_H

#include <string>

#include "zuno-keymapmanager/document/KeymapConfig.h"

namespace zunokeymapmanager {
namespace document {

/// Reads the document from `text`, or from the file at `path` when `text` is
/// empty, into `doc`: first the "keymaps" (unknown item types are dropped),
/// then "info", then "param". Raises a Poco exception at the first failure;
/// whatever was read before it stays in `doc`. A path that is not a regular
/// file (a directory, a device, a pipe) counts as unreadable.
void Read(const std::string& text, const std::string& path, KeymapConfig& doc);

/// The document as saved: keys sorted, indentation 4.
std::string Write(const KeymapConfig& doc);

/// Writes `text` to `path`; false when the file could not be written.
bool WriteFile(const std::string& path, const std::string& text);

}  // namespace document
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_DOCUMENTIO_H
