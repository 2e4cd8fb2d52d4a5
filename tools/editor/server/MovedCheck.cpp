//
// MovedCheck.cpp
//
// The check after a move: the moved item checked alone, its findings spliced
// into the document's check where the whole check would list them.
//

#include "MovedCheck.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zunokeymap {
namespace editor {

namespace km = zunokeymapmanager;

namespace {

/// Where the items of "keymaps" lie in a document's text, in bytes.
struct ItemSpans {
    std::size_t firstStart = 0;  ///< the first item's '{'
    std::size_t start = 0;       ///< the wanted item's '{'
    std::size_t end = 0;         ///< just after the wanted item's '}'
    std::size_t lastEnd = 0;     ///< just after the last item's '}'
    bool found = false;
};

// One pass over the text: strings are skipped whole, so no brace inside one
// counts; the items are the objects directly inside the top-level
// "keymaps" array.
ItemSpans findItem(const std::string& text, int index) {
    ItemSpans spans;
    int depth = 0;
    int item = -1;
    bool inKeymaps = false;
    std::size_t keyStart = 0;
    std::size_t keyEnd = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            const std::size_t open = i;
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                i += text[i] == '\\' ? 1 : 0;
            }
            if (depth == 1) {
                keyStart = open + 1;
                keyEnd = i;
            }
            continue;
        }
        if (c == '{' || c == '[') {
            if (depth == 1 && c == '[' &&
                text.compare(keyStart, keyEnd - keyStart, "keymaps") == 0) {
                inKeymaps = true;
            } else if (depth == 2 && inKeymaps && c == '{') {
                ++item;
                if (item == 0) {
                    spans.firstStart = i;
                }
                if (item == index) {
                    spans.start = i;
                    spans.found = true;
                }
            }
            ++depth;
        } else if (c == '}' || c == ']') {
            --depth;
            if (depth == 2 && inKeymaps && c == '}') {
                spans.lastEnd = i + 1;
                if (item == index) {
                    spans.end = i + 1;
                }
            } else if (depth == 1 && inKeymaps) {
                break;  // the end of "keymaps"
            }
        }
    }
    spans.found = spans.found && spans.end > spans.start;
    return spans;
}

// The check lists the findings of the document's shape and its schema first,
// then those of the loaded items; each part in item order.
bool ofShape(km::FindingKind kind) {
    return kind == km::FindingKind::LoadFailed || kind == km::FindingKind::UnknownType ||
           kind == km::FindingKind::Schema || kind == km::FindingKind::JoystickMismatch ||
           kind == km::FindingKind::DuplicateMember;
}

// Findings of the items part with `ofShape` false, collisions aside.
bool ofItem(km::FindingKind kind) {
    return !ofShape(kind) && kind != km::FindingKind::KeyCollision;
}

}  // namespace

std::shared_ptr<const km::CheckReport> CheckAfterMove(const km::CheckReport& before,
                                                      const std::string& text, int index,
                                                      bool joystick, const std::string& source) {
    if (index < 0 || before.diagnostic.failed) {
        return nullptr;
    }
    const ItemSpans spans = findItem(text, index);
    if (!spans.found || spans.lastEnd < spans.end) {
        return nullptr;
    }
    // The document's frame around the one item: the item starts where the
    // first one did, so its findings are one line count away from where
    // they lie in the whole text.
    std::string alone = text.substr(0, spans.firstStart);
    alone.append(text, spans.start, spans.end - spans.start);
    alone.append(text, spans.lastEnd, std::string::npos);
    const km::CheckReport single = km::CheckKeymapDocument(alone, joystick, source);
    if (single.diagnostic.failed || single.items != 1) {
        return nullptr;
    }
    const int lines =
        static_cast<int>(std::count(text.begin() + static_cast<std::ptrdiff_t>(spans.firstStart),
                                    text.begin() + static_cast<std::ptrdiff_t>(spans.start), '\n'));
    const std::string from = "keymaps[0]";
    const std::string to = "keymaps[" + std::to_string(index) + "]";
    std::vector<km::Finding> shape;
    std::vector<km::Finding> own;
    for (const km::Finding& finding : single.findings) {
        if (finding.item_index != 0 || finding.kind == km::FindingKind::KeyCollision) {
            continue;  // the document's own findings, and collisions, do not move
        }
        km::Finding placed = finding;
        placed.item_index = index;
        if (placed.path.compare(0, from.size(), from) == 0) {
            placed.path = to + placed.path.substr(from.size());
        }
        if (placed.line > 0) {
            placed.line += lines;
        }
        (ofShape(placed.kind) ? shape : own).push_back(std::move(placed));
    }
    auto after = std::make_shared<km::CheckReport>();
    after->diagnostic = before.diagnostic;
    after->items = before.items;
    after->findings.reserve(before.findings.size() + shape.size() + own.size());
    // Each part drops the item's old findings and takes its new ones before
    // the first finding of a later item, or at the part's end.
    bool shapeDone = false;
    bool ownDone = false;
    const auto flush = [&after](std::vector<km::Finding>& fresh, bool& done) {
        if (!done) {
            after->findings.insert(after->findings.end(), fresh.begin(), fresh.end());
            done = true;
        }
    };
    for (const km::Finding& finding : before.findings) {
        const bool inShape = ofShape(finding.kind);
        if (!inShape) {
            flush(shape, shapeDone);
        }
        if (!ofItem(finding.kind) && !inShape) {
            flush(own, ownDone);
        }
        if (finding.item_index == index && finding.kind != km::FindingKind::KeyCollision) {
            continue;
        }
        if (finding.item_index > index) {
            flush(inShape ? shape : own, inShape ? shapeDone : ownDone);
        }
        after->findings.push_back(finding);
    }
    flush(shape, shapeDone);
    flush(own, ownDone);
    return after;
}

}  // namespace editor
}  // namespace zunokeymap
