//
// JsonSyntax.h
//
// Finds where JSON text stops being valid. The JSON library says why a parse
// failed but not where; this scanner, run only after a failed parse, finds
// the line and column of the first error by the same rules.
//

#ifndef ZUNO_KEYMAPMANAGER_DOCUMENT_JSONSYNTAX_H
#define ZUNO_KEYMAPMANAGER_DOCUMENT_JSONSYNTAX_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zunokeymapmanager {
namespace document {

struct SyntaxReport {
    /// False when the text is valid JSON.
    bool error = false;
    /// From 1; the column counts bytes.
    int line = 0;
    int column = 0;
    std::string reason;
    /// The first character of the top-level value ('{', '[', '"', 't', ...),
    /// or 0 when there is none.
    char topLevel = 0;
    /// The JSON paths of members named twice in one object, when asked for.
    std::vector<std::string> duplicates;
};

/// Scans `text`; containers nested deeper than `maxDepth` are an error, as
/// they are for the parser.
SyntaxReport ScanJson(const std::string& text, std::size_t maxDepth);

/// A place in a text: one-based line, and column in bytes; 0 for none.
struct TextPosition {
    int line = 0;
    int column = 0;
};

/// Where the value each of `paths` ("keymaps[2].key.text", "" for the whole
/// document) starts in `text`; for a path that names nothing (a missing
/// member), where the nearest value it lies under starts. One scan, however
/// many paths.
std::vector<TextPosition> LocatePaths(const std::string& text,
                                      const std::vector<std::string_view>& paths,
                                      std::size_t maxDepth);

/// The JSON paths ("keymaps[2].type") of the members that `text` names a
/// second time in one object, in text order. The parser keeps the last of
/// them in silence; the check reports them. Stops at a syntax error.
std::vector<std::string> DuplicateMembers(const std::string& text, std::size_t maxDepth);

}  // namespace document
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_DOCUMENT_JSONSYNTAX_H
