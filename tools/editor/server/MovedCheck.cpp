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

#include "AnswerParts.h"

namespace zunokeymap {
namespace editor {

namespace km = zunokeymapmanager;

namespace {

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
    const TextParts parts = KeymapItemParts(text);
    if (!parts.ok || static_cast<std::size_t>(index) >= parts.items.size()) {
        return nullptr;
    }
    const std::size_t firstStart = parts.items.front().first;
    const auto [start, end] = parts.items[static_cast<std::size_t>(index)];
    // The document's frame around the one item: the item starts where the
    // first one did, so its findings are one line count away from where
    // they lie in the whole text.
    std::string alone = text.substr(0, firstStart);
    alone.append(text, start, end - start);
    alone.append(text, parts.items.back().second, std::string::npos);
    const km::CheckReport single = km::CheckKeymapDocument(alone, joystick, source);
    if (single.diagnostic.failed || single.items != 1) {
        return nullptr;
    }
    const int lines =
        static_cast<int>(std::count(text.begin() + static_cast<std::ptrdiff_t>(firstStart),
                                    text.begin() + static_cast<std::ptrdiff_t>(start), '\n'));
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
