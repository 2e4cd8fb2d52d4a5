//
// LoadDiagnostic.h
//
// Why a document failed to load: where, in which item, and what was wrong.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_LOADDIAGNOSTIC_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_LOADDIAGNOSTIC_H

#include <string>

#include "zuno-keymapmanager/Export.h"

namespace zunokeymapmanager {

class ZUNO_KM_API LoadDiagnostic
/// The outcome of one load, filled by the load functions that take a
/// LoadDiagnostic pointer. A successful load leaves `failed` false and
/// `problem` None; a failed one says where reading stopped:
///
///   - `path` is the JSON path of the failing member, such as
///     "keymaps[3].swipehold_info.steps" or "info.background_color"; it is
///     empty when the document as a whole failed (unreadable, malformed, or
///     not an object);
///   - `item_index` and `item_type` name the element of "keymaps" being read
///     (-1 and empty outside the items; `item_type` is empty when the element
///     has no readable "type");
///   - `line` and `column` (both from 1) point at the first syntax error of
///     malformed JSON, 0 otherwise;
///   - `message` says all of it in one line, for people.
{
public:
    /// What went wrong, by kind.
    enum class Problem {
        None,         ///< the load succeeded
        Unreadable,   ///< the file could not be opened or read
        Malformed,    ///< the text is not valid JSON (or is empty)
        NotAnObject,  ///< the document, an element or a member is not a JSON object
        NotAnArray,   ///< a member that must be an array is not one
        Missing,      ///< a required member is absent
        WrongType,    ///< a member's value cannot be read as the required type
    };

    bool failed = false;              ///< whether the load failed
    Problem problem = Problem::None;  ///< why
    /// The path or built-in name that was loaded.
    std::string source;
    std::string path;       ///< JSON path of the failing member (see above)
    int item_index = -1;    ///< element of "keymaps" being read, or -1
    std::string item_type;  ///< that element's "type", or empty
    /// What the failing member must be: "object", "array", "string",
    /// "integer", "number" or "boolean"; empty when not about a member.
    std::string expected;
    int line = 0;         ///< line of the first syntax error, or 0
    int column = 0;       ///< its column, or 0
    std::string message;  ///< all of it in one line, for people
};

/// A short name of `problem` ("missing", "wrong-type", ...), for reports.
ZUNO_KM_API const char* ProblemName(LoadDiagnostic::Problem problem);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_LOADDIAGNOSTIC_H
