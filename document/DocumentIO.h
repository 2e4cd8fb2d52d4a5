//
// DocumentIO.h
//
// Reading a keymap document from JSON text and writing it back.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_DOCUMENTIO_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_DOCUMENTIO_H

#include <memory>
#include <string>

#include <Poco/Dynamic/Var.h>

#include "model/JsonIO.h"
#include "zuno-keymapmanager/document/KeymapConfig.h"
#include "zuno-keymapmanager/document/LoadDiagnostic.h"

namespace zunokeymapmanager {
namespace document {

/// How far a read got. The reader updates it as it goes; after a failure it
/// still holds the parsed tree, so that Describe can look at the failing
/// member.
struct ReadProgress {
    enum class Stage { Opening, Parsing, Root, Keymaps, Info, Param, Done };

    Stage stage = Stage::Opening;
    /// The file's text, when the document came from a file.
    std::string fileText;
    Poco::Dynamic::Var parsed;
    json::ObjectPtr root;
    json::ArrayPtr elements;
    /// The element of "keymaps" being read, -1 before the first.
    int itemIndex = -1;
    json::ObjectPtr item;
    /// Keep every element in `elements` after it is read, for a caller that
    /// looks at the tree afterwards (the check); otherwise each is let go
    /// as soon as its item has read it.
    bool keepElements = false;
};

/// Where a document's text comes from. Which one is always said: the host's
/// rule that empty text means the file belongs to its load alone.
enum class Origin {
    Text,     ///< the text given, even when it is empty
    File,     ///< the file at the path
    BuiltIn,  ///< the document compiled into the library under the path's name
};

/// Reads the document from `origin` (`text`, which for a built-in is the
/// text BuiltInText gives; or the file at `path`) into `doc`: first the "keymaps" (unknown
/// item types are dropped), then "info", then "param", recording its
/// progress in `progress`. Raises a Poco exception at the first failure;
/// whatever was read before it stays in `doc`. A path that is not a regular
/// file (a directory, a device, a pipe) counts as unreadable.
void ReadFrom(Origin origin, const std::string& text, const std::string& path, KeymapConfig& doc,
              ReadProgress& progress);

/// The text of the built-in document `name` of the keymap table, or with
/// `joystick` of the gamepad table; null when that table has none of that name.
const std::string* BuiltInText(const std::string& name, bool joystick);

/// A new document read from `origin`: never null, holding what was read
/// before a failure, which `diagnostic` describes (`path` names the source
/// there). Marked as a gamepad document with `joystick`. Calls no callback
/// and starts no thread: the one load behind the host's load, the check, and
/// the tools' and the editor's loads.
std::unique_ptr<KeymapConfig> Load(Origin origin, const std::string& text, const std::string& path,
                                   bool joystick, LoadDiagnostic& diagnostic);

/// The document as saved: keys sorted, indentation 4.
std::string Write(const KeymapConfig& doc);

}  // namespace document
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_DOCUMENTIO_H
