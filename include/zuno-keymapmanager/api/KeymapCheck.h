//
// KeymapCheck.h
//
// One check of a keymap document for hosts, editors and tools: everything
// that keeps a document from loading, and everything that loads but is very
// likely not what its author meant, each as a structured finding.
//

#ifndef ZUNO_KEYMAPMANAGER_API_KEYMAPCHECK_H
#define ZUNO_KEYMAPMANAGER_API_KEYMAPCHECK_H

#include <cstddef>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/document/KeymapConfig.h"
#include "zuno-keymapmanager/document/LoadDiagnostic.h"

namespace zunokeymapmanager {

/// What a finding is about.
enum class FindingKind {
    LoadFailed,        ///< the document does not load; see CheckReport::diagnostic
    UnknownType,       ///< an element of "keymaps" whose type the library drops on load
    Schema,            ///< a member missing, unknown, of the wrong JSON type or out of range
    InvalidItem,       ///< an item the library loads but calls invalid
    KeyCollision,      ///< two or more items fired by the same key or key combination
    MacroLine,         ///< a Macro line that fails the grammar check
    KeyText,           ///< a key whose "text" is not the caption of its code
    UnsetPosition,     ///< a (0, 0) position, which means "not set"
    ZeroRadius,        ///< a drag radius of 0
    JoystickMismatch,  ///< "is_joystick" disagrees with how the document is loaded
    DuplicateMember,   ///< a member named twice in one object: only the last counts
    OffScreenPoint,    ///< a Macro line touching a point beyond the macro screen (1920x1080)
};

/// How bad a finding is.
enum class FindingSeverity {
    Error,    ///< the library will not load the document (or drops the element)
    Warning,  ///< it loads, but is very likely wrong
};

/// One finding of CheckKeymapDocument.
struct ZUNO_KM_API Finding {
    FindingKind kind = FindingKind::LoadFailed;         ///< what was found
    FindingSeverity severity = FindingSeverity::Error;  ///< how bad it is
    /// JSON path of the member concerned, such as "keymaps[3].key.text";
    /// empty when the finding is about the whole document.
    std::string path;
    /// Index in "keymaps" of the element concerned, -1 for none.
    int item_index = -1;
    /// Its "type" as written, empty for none.
    std::string item_type;
    /// For a collision: the second item's index and type (item_index < other_index).
    int other_index = -1;
    std::string other_type;  ///< the other item's "type"
    /// For a Macro line: its one-based number in its script and its text.
    int script_line = 0;
    std::string script_text;  ///< the Macro line as written
    /// One line for people, without the source name.
    std::string message;
    /// What to write instead ("Swipehold", "rel_x"), empty when nothing fits.
    std::string suggestion;
    /// For a collision: the key or combination the items fire on ("Ctrl+Q").
    std::string keys;
    /// Where in the document's text the value `path` names starts (for a
    /// missing member, the object that lacks it; for a malformed document,
    /// the syntax error): one-based line, and column in bytes; 0 when the
    /// text does not show it.
    int line = 0;
    int column = 0;  ///< see line
    /// For a collision: the index in "keymaps" of every item the key fires,
    /// ascending (item_index and other_index are the first two). One finding
    /// names them all, however many share the key.
    std::vector<int> items;
};

/// The outcome of CheckKeymapDocument.
struct ZUNO_KM_API CheckReport {
    /// The load's own diagnostic (failed, path, line, column, message).
    LoadDiagnostic diagnostic;
    /// Items the document loads to (0 when the load failed).
    std::size_t items = 0;
    /// In document order: load and schema findings first, then item findings
    /// by item index, then collisions.
    std::vector<Finding> findings;

    std::size_t errors() const;    ///< the number of error findings
    std::size_t warnings() const;  ///< the number of warning findings
    /// Errors, plus the warnings that the plain check has always counted as
    /// problems (invalid items, key collisions, Macro lines).
    std::size_t problems() const;
};

/// A short stable name of `kind` ("load-failed", "unknown-type", "schema",
/// "invalid-item", "key-collision", "macro-line", "key-text",
/// "unset-position", "zero-radius", "joystick-mismatch", "duplicate-member",
/// "off-screen-point").
ZUNO_KM_API const char* FindingKindName(FindingKind kind);

/// "error" or "warning".
ZUNO_KM_API const char* FindingSeverityName(FindingSeverity severity);

/// Checks the document `text` as LoadKeymapConfigAndInfo (or, with
/// `joystick`, LoadJoystickConfigAndInfo) would load it; `source` names it in
/// the diagnostic. Never calls the host's failure callback and never throws
/// for any text.
ZUNO_KM_API CheckReport CheckKeymapDocument(const std::string& text, bool joystick,
                                            const std::string& source = std::string());

/// Where ReadKeymapDocument takes a document from.
enum class DocumentOrigin {
    Text,     ///< the JSON text given, even when it is empty
    File,     ///< the file at the path
    BuiltIn,  ///< the document compiled into the library under that name
};

/// Reads a keymap as LoadKeymapConfigAndInfo would (with `joystick`, as
/// LoadJoystickConfigAndInfo would), but from the one origin named, and
/// without the host's failure callback: it starts no thread, and a document
/// that does not read is reported, not thrown. For checkers and editors, which report a failure
/// themselves. `path` names the file or built-in, and the source in
/// `diagnostic`, which says whether and where the read failed. Never null;
/// holds what was read before a failure; the caller deletes it.
ZUNO_KM_API KeymapConfig* ReadKeymapDocument(DocumentOrigin origin, const std::string& path,
                                             const std::string& text, bool joystick,
                                             LoadDiagnostic& diagnostic);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_API_KEYMAPCHECK_H
