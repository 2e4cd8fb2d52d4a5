//
// AnswerParts.h
//
// The parts of an edit's answer that hold one piece per item: the document's
// items, the picture's item groups, the captions. An answer given after an
// edit of a few items carries only the pieces that differ from the answer
// the page holds, and the page puts them in place. The snapshot answer
// itself, whole or in such pieces, is written here too.
//

#ifndef ZUNO_KEYMAP_EDITOR_ANSWERPARTS_H
#define ZUNO_KEYMAP_EDITOR_ANSWERPARTS_H

#include <cstddef>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "EditOperations.h"
#include "EditorSession.h"

namespace zunokeymap {
namespace editor {

/// A text cut into what comes before its first piece, one piece per item,
/// and what comes after the last (as byte ranges of the text).
struct TextParts {
    bool ok = false;
    std::vector<std::pair<std::size_t, std::size_t>> items;  ///< [start, end) of each item
    std::size_t head = 0;  ///< where the first item starts (or the tail, for none)
    std::size_t tail = 0;  ///< where the text after the last item starts
};

/// The objects of the top-level "keymaps" array of a JSON document.
TextParts KeymapItemParts(const std::string& text);
/// The elements of a JSON text that is an array.
TextParts ArrayParts(const std::string& text);
/// The item groups of the renderer's picture: the groups directly inside its
/// <g class="items">, whose text escapes every '<' that is not a tag.
TextParts PictureParts(const std::string& text);

/// The indexes of the items whose pieces differ between `before` and `after`
/// (cut into `was` and `is`); false when they differ elsewhere too, or in
/// their number, and the whole text must be sent.
bool ChangedItems(const std::string& before, const TextParts& was, const std::string& after,
                  const TextParts& is, std::vector<std::size_t>& changed);

/// What an edit's answer may leave out: the pieces of the items that are as
/// they were in the answer of version `since`, which the page holds.
struct AnswerDelta {
    long since = 0;
    TextParts document, svg, captions;
    std::vector<std::size_t> documentChanged, svgChanged, captionsChanged;
    bool sameReport = false;
};

/// What the page shows, with the outcome of its edits when it sent some:
/// {"version", "unsaved", "undo", "redo", "ids", "document", "report", "svg",
/// "results"}. The document is the held text itself, not copied through a
/// tree. With `delta`, the answer since that version: only the changed
/// items' pieces. `written` is the report already written as JSON, if it is.
std::string SnapshotJson(const EditorSession::Snapshot& shot, const std::string& file,
                         const std::vector<EditResult>* results, const AnswerDelta* delta = nullptr,
                         const std::string* written = nullptr);

/// The parts of the last answer given, by the version of the document it
/// showed: what the next answer is told apart from.
class AnswerBasis {
public:
    struct Shown {
        const void* session = nullptr;  ///< the document's session, of several
        long version = 0;
        std::vector<long> ids;
        std::string document;
        std::string svg;
        std::string captions;
        std::string report;
    };
    /// Keeps `shown` as the basis, and gives the one before in its place.
    void swap(Shown& shown);

private:
    std::mutex mutex_;
    Shown shown_;
};

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_ANSWERPARTS_H
