//
// ItemLayout.cpp
//

#include "zuno-keymapmanager/items/ItemLayout.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "zuno-keymapmanager/model/NumberText.h"

namespace zunokeymapmanager {

namespace {

// The key slots, points and sizes of one class, gathered from its member tables.
struct Layout {
    std::vector<KeySlot> keys;
    std::vector<PointSlot> points;
    std::vector<SizeSlot> sizes;
};

std::string joined(const std::string& a, const char* b, const char* separator) {
    if (a.empty() || *b == '\0') {
        return a.empty() ? std::string(b) : a;
    }
    return a + separator + b;
}

// Direction keys are listed clockwise from the top, as people name them.
int compassRank(const KeySlot& slot) {
    static const char* const kClockwise[] = {"top", "right", "bottom", "left"};
    if (slot.role != KeyRole::Direction) {
        return 0;
    }
    for (int k = 0; k < 4; ++k) {
        if (slot.name == kClockwise[k]) {
            return k + 1;
        }
    }
    return 5;
}

void gather(const MemberTable& table, const MemberPath& path, const std::string& prefix,
            const std::string& slotPrefix, Layout& out) {
    for (const Member& member : table.members) {
        if (member.name == nullptr) {
            continue;  // members another class reads for this one
        }
        MemberPath at = path;
        if (at.depth < at.steps.size()) {
            at.steps[at.depth++] = member.at;
        }
        const std::string name = prefix + *member.name;
        const std::string slot = joined(slotPrefix, member.slot, " ");
        if ((member.flags & (kRadius | kArea)) != 0) {
            SizeSlot size;
            size.path = name;
            size.name = member.slot;
            size.isArea = (member.flags & kArea) != 0;
            size.zeroMeans = (member.flags & kZeroMeans) != 0;
            out.sizes.push_back(std::move(size));
        } else if (member.kind == MemberKind::String && (member.flags & kPointText) != 0) {
            out.points.push_back({name, slot, (member.flags & kMoves) != 0, false, true, at});
        } else if (member.kind != MemberKind::Object) {
            continue;
        } else if (member.members == &KeyMembers) {
            KeySlot key;
            key.path = name;
            key.name = slot;
            key.role = member.role;
            key.at = at;
            out.keys.push_back(std::move(key));
        } else if (member.members == &PointMembers) {
            out.points.push_back({name, slot, (member.flags & kMoves) != 0,
                                  (member.flags & kNullIsUnset) != 0, false, at});
        } else {
            gather(member.members(), at, name + ".", slot, out);
        }
    }
}

Layout layoutOf(const MemberTable& own) {
    Layout layout;
    bool ownKeys = false;
    for (const MemberTable* table : TablesOf(own)) {
        MemberPath path;
        path.owner = table->owner;
        gather(*table, path, "", "", layout);
        ownKeys = ownKeys || table->ownKeys;
    }
    // A radius inside a settings block is centred on that block's point.
    for (SizeSlot& size : layout.sizes) {
        const std::size_t dot = size.path.rfind('.');
        if (size.isArea || dot == std::string::npos) {
            continue;
        }
        for (const PointSlot& point : layout.points) {
            if (!point.isText && point.path.compare(0, dot + 1, size.path, 0, dot + 1) == 0 &&
                point.path.find('.', dot + 1) == std::string::npos) {
                size.centre = point.path;
                break;
            }
        }
    }
    for (KeySlot& key : layout.keys) {
        if (ownKeys && key.role == KeyRole::Key) {
            key.role = KeyRole::Carried;
        }
    }
    std::stable_sort(
        layout.keys.begin(), layout.keys.end(),
        [](const KeySlot& a, const KeySlot& b) { return compassRank(a) < compassRank(b); });
    // A key that fires takes the second key listed right after it.
    for (std::size_t k = 0; k + 1 < layout.keys.size(); ++k) {
        const KeyRole next = layout.keys[k + 1].role;
        if ((layout.keys[k].role == KeyRole::Key && next == KeyRole::SecondKey) ||
            (layout.keys[k].role == KeyRole::PairKey && next == KeyRole::PairSecondKey)) {
            layout.keys[k].second = static_cast<int>(k + 1);
        }
    }
    return layout;
}

// One layout per item type, in the order of ItemDeclarations(), and the base
// class's for items of a class the library does not make.
const Layout& layoutFor(const ConfigItem& item) {
    static const std::vector<Layout> layouts = [] {
        std::vector<Layout> all;
        for (const ItemDeclaration& declaration : ItemDeclarations()) {
            all.push_back(layoutOf(declaration.members()));
        }
        all.push_back(layoutOf(ConfigItem::Members()));
        return all;
    }();
    const ItemDeclaration* declaration = DeclarationOf(item);
    const std::vector<ItemDeclaration>& types = ItemDeclarations();
    return layouts[declaration == nullptr ? types.size()
                                          : static_cast<std::size_t>(declaration - types.data())];
}

// A point moving with the item, not one left alone while unset.
bool takesPart(const PointSlot& slot, const PointF& point) {
    return slot.moves && !(slot.nullIsUnset && point.isNull());
}

// Shortens `delta` so that `at`, if on the screen, stays on it.
void keepOnScreen(double at, double& delta) {
    if (at >= 0.0 && at <= 1.0) {
        delta = std::min(std::max(delta, -at), 1.0 - at);
    }
}

// Calls `visit(number, begin, end)` for every number of a point text, in
// order; [begin, end) is where it stands in `text`.
template <typename Visit>
void forEachNumber(const std::string& text, Visit visit) {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* p = begin;
    while (p < end) {
        if (!(std::isdigit(static_cast<unsigned char>(*p)) != 0 || *p == '-' || *p == '.')) {
            ++p;
            continue;
        }
        double value = 0;
        const char* next = ReadNumber(p, end, value);
        if (next == p) {
            ++p;
            continue;
        }
        if (!visit(value, static_cast<std::size_t>(p - begin),
                   static_cast<std::size_t>(next - begin))) {
            return;
        }
        p = next;
    }
}

// A coordinate as a point text writes it: six decimals at most.
std::string coordinateText(double value) {
    const double rounded = std::round(value * 1e6) / 1e6;
    return WriteNumber(rounded == 0.0 ? 0.0 : rounded);
}

}  // namespace

const std::vector<KeySlot>& KeySlotsOf(const ConfigItem& item) {
    return layoutFor(item).keys;
}

const std::vector<PointSlot>& PointSlotsOf(const ConfigItem& item) {
    return layoutFor(item).points;
}

const std::vector<SizeSlot>& SizeSlotsOf(const ConfigItem& item) {
    return layoutFor(item).sizes;
}

std::vector<PointF> PointsOfText(const std::string& text, std::size_t limit) {
    std::vector<PointF> points;
    double pending = 0;
    bool half = false;
    forEachNumber(text, [&](double value, std::size_t, std::size_t) {
        if (half) {
            if (points.size() >= limit) {
                return false;
            }
            points.emplace_back(pending, value);
        }
        pending = value;
        half = !half;
        return true;
    });
    return points;
}

std::string MovePointText(const std::string& text, double dx, double dy) {
    std::string moved;
    std::size_t copied = 0;
    bool isY = false;
    forEachNumber(text, [&](double value, std::size_t begin, std::size_t end) {
        moved.append(text, copied, begin - copied);
        moved += coordinateText(value + (isY ? dy : dx));
        copied = end;
        isY = !isY;
        return true;
    });
    moved.append(text, copied, std::string::npos);
    return moved;
}

PointF MoveItem(ConfigItem& item, double dx, double dy) {
    PointF delta{std::isfinite(dx) ? dx : 0.0, std::isfinite(dy) ? dy : 0.0};
    const std::vector<PointSlot>& slots = PointSlotsOf(item);
    for (const PointSlot& slot : slots) {
        if (!slot.isText && takesPart(slot, *slot.point(item))) {
            keepOnScreen(slot.point(item)->x, delta.x);
            keepOnScreen(slot.point(item)->y, delta.y);
        } else if (slot.isText && slot.moves) {
            for (const PointF& point : PointsOfText(*slot.text(item), slot.text(item)->size())) {
                keepOnScreen(point.x, delta.x);
                keepOnScreen(point.y, delta.y);
            }
        }
    }
    if (delta.isNull()) {
        return delta;
    }
    for (const PointSlot& slot : slots) {
        if (!slot.isText && takesPart(slot, *slot.point(item))) {
            *slot.point(item) += delta;
        } else if (slot.isText && slot.moves) {
            *slot.text(item) = MovePointText(*slot.text(item), delta.x, delta.y);
        }
    }
    return delta;
}

void PlaceItem(ConfigItem& item, PointF at) {
    if (!item.rel_work_position.isNull()) {
        MoveItem(item, at.x - item.rel_work_position.x, at.y - item.rel_work_position.y);
        return;
    }
    for (const PointSlot& slot : PointSlotsOf(item)) {
        if (!slot.isText && takesPart(slot, *slot.point(item))) {
            *slot.point(item) = at;
        }
    }
}

}  // namespace zunokeymapmanager
