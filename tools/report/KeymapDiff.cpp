//
// KeymapDiff.cpp
//

#include "KeymapDiff.h"

#include <cmath>
#include <limits>
#include <sstream>

#include <Poco/JSON/Object.h>
#include <Poco/JSON/Stringifier.h>

namespace zunokeymap {

namespace {

namespace km = zunokeymapmanager;
using Poco::Dynamic::Var;
using Poco::JSON::Object;

std::string jsonOf(const Var& value) {
    std::ostringstream out;
    Poco::JSON::Stringifier::stringify(value, out, 0);
    return out.str();
}

std::string itemText(const km::ConfigItem& item) {
    return jsonOf(Object::Ptr(new Object(item.ConvertToJsonObject())));
}

std::string keysOf(const km::ConfigItem& item) {
    std::string keys;
    for (const km::KeyTrigger& trigger : km::KeyTriggersOf(item)) {
        keys += (keys.empty() ? "" : " ") + (trigger.role == "key" ? "" : trigger.role + ":") +
                km::DescribeKeyTrigger(trigger);
    }
    return keys.empty() ? "-" : keys;
}

// `base` as a change of `kind` at `path` from `before` to `after`.
KeymapChange valued(KeymapChange base, KeymapChange::Kind kind, const std::string& path,
                    const std::string& before, const std::string& after) {
    base.kind = kind;
    base.path = path;
    base.before = before;
    base.after = after;
    return base;
}

bool isKeyObject(const Var& value) {
    return value.type() == typeid(Object::Ptr) && value.extract<Object::Ptr>()->has("device");
}

// Every member that differs below `path`, as paths with both values. Key
// objects and the two positions are told apart by the caller.
void members(const Var& before, const Var& after, const std::string& path,
             std::vector<KeymapChange>& out, const KeymapChange& base) {
    if (before.type() == typeid(Object::Ptr) && after.type() == typeid(Object::Ptr) &&
        !isKeyObject(before)) {
        const Object::Ptr& a = before.extract<Object::Ptr>();
        const Object::Ptr& b = after.extract<Object::Ptr>();
        std::vector<std::string> names;
        a->getNames(names);
        for (const std::string& name : b->getNames()) {
            if (!a->has(name)) {
                names.push_back(name);
            }
        }
        for (const std::string& name : names) {
            std::string below = path;
            below.append(path.empty() ? "" : ".").append(name);
            members(a->has(name) ? a->get(name) : Var(), b->has(name) ? b->get(name) : Var(), below,
                    out, base);
        }
        return;
    }
    const std::string was = before.isEmpty() ? std::string("(none)") : jsonOf(before);
    const std::string is = after.isEmpty() ? std::string("(none)") : jsonOf(after);
    if (was != is) {
        out.push_back(valued(base, KeymapChange::Kind::Changed, path, was, is));
    }
}

// The changes of one paired item.
void compareItems(const km::ConfigItem& a, int oldIndex, const km::ConfigItem& b, int newIndex,
                  bool reordered, std::vector<KeymapChange>& out) {
    KeymapChange base;
    base.oldIndex = oldIndex;
    base.newIndex = newIndex;
    base.type = b.type;
    base.label = b.icon.description;
    const std::string prefix = "keymaps[" + std::to_string(newIndex) + "]";
    if (reordered) {
        KeymapChange change = base;
        change.kind = KeymapChange::Kind::Reordered;
        out.push_back(change);
    }
    if (a.icon.rel_position != b.icon.rel_position) {
        KeymapChange change = base;
        change.kind = KeymapChange::Kind::Moved;
        change.path = prefix + ".icon.rel_position";
        change.from = a.icon.rel_position;
        change.to = b.icon.rel_position;
        change.distance = std::hypot(b.icon.rel_position.x - a.icon.rel_position.x,
                                     b.icon.rel_position.y - a.icon.rel_position.y);
        out.push_back(change);
    }
    const std::string keysBefore = keysOf(a);
    const std::string keysAfter = keysOf(b);
    if (keysBefore != keysAfter) {
        out.push_back(valued(base, KeymapChange::Kind::Rebound, prefix, keysBefore, keysAfter));
    }
    // The rest, member by member; what is told above is left out here, and
    // so is a touch point that moved along with its marker.
    Object::Ptr before = new Object(a.ConvertToJsonObject());
    Object::Ptr after = new Object(b.ConvertToJsonObject());
    const bool together =
        b.rel_work_position - a.rel_work_position == b.icon.rel_position - a.icon.rel_position;
    for (Object::Ptr object : {before, after}) {
        Object::Ptr icon = object->getObject("icon");
        if (!icon.isNull()) {
            icon->remove("rel_position");
        }
        if (together) {
            object->remove("rel_work_position");
        }
        std::vector<std::string> names;
        object->getNames(names);
        for (const std::string& name : names) {
            if (isKeyObject(object->get(name))) {
                object->remove(name);
            }
        }
    }
    members(before, after, prefix, out, base);
}

// The left over old item of `item`'s type with the same keys, or else the
// nearest, or -1.
int bestMatch(const km::ConfigItem& item, const std::vector<km::ConfigItem*>& old,
              const std::vector<bool>& taken) {
    int best = -1;
    double bestScore = std::numeric_limits<double>::max();
    const std::string keys = keysOf(item);
    for (std::size_t j = 0; j < old.size(); ++j) {
        if (taken[j] || old[j]->type != item.type) {
            continue;
        }
        const double score = (keysOf(*old[j]) == keys ? 0.0 : 10.0) +
                             std::hypot(old[j]->icon.rel_position.x - item.icon.rel_position.x,
                                        old[j]->icon.rel_position.y - item.icon.rel_position.y);
        if (score < bestScore) {
            bestScore = score;
            best = static_cast<int>(j);
        }
    }
    return best;
}

// An item added (at `index` of the new document) or removed (of the old).
KeymapChange whole(KeymapChange::Kind kind, const km::ConfigItem& item, int index) {
    const bool added = kind == KeymapChange::Kind::Added;
    KeymapChange change;
    change.kind = kind;
    (added ? change.newIndex : change.oldIndex) = index;
    change.type = item.type;
    change.label = item.icon.description;
    (added ? change.to : change.from) = item.icon.rel_position;
    (added ? change.after : change.before) = keysOf(item);
    return change;
}

// Marks the entries of `sequence` (-1 for none) that lie on one longest
// strictly increasing run, found in n log n.
std::vector<bool> longestIncreasing(const std::vector<int>& sequence) {
    std::vector<std::size_t> tails;  // where the best run of each length ends
    std::vector<std::size_t> before(sequence.size(), sequence.size());
    for (std::size_t i = 0; i < sequence.size(); ++i) {
        if (sequence[i] < 0) {
            continue;
        }
        std::size_t low = 0;
        std::size_t high = tails.size();
        while (low < high) {
            const std::size_t mid = (low + high) / 2;
            if (sequence[tails[mid]] < sequence[i]) {
                low = mid + 1;
            } else {
                high = mid;
            }
        }
        before[i] = low > 0 ? tails[low - 1] : sequence.size();
        if (low == tails.size()) {
            tails.push_back(i);
        } else {
            tails[low] = i;
        }
    }
    std::vector<bool> on(sequence.size(), false);
    for (std::size_t i = tails.empty() ? sequence.size() : tails.back(); i < sequence.size();
         i = before[i]) {
        on[i] = true;
    }
    return on;
}

}  // namespace

const char* ChangeKindName(KeymapChange::Kind kind) {
    switch (kind) {
        case KeymapChange::Kind::Added:
            return "added";
        case KeymapChange::Kind::Removed:
            return "removed";
        case KeymapChange::Kind::Reordered:
            return "reordered";
        case KeymapChange::Kind::Moved:
            return "moved";
        case KeymapChange::Kind::Rebound:
            return "rebound";
        case KeymapChange::Kind::Changed:
            break;
    }
    return "changed";
}

std::vector<KeymapChange> DiffKeymaps(const km::KeymapConfig& before,
                                      const km::KeymapConfig& after) {
    const std::vector<km::ConfigItem*>& old = before.items;
    const std::vector<km::ConfigItem*>& now = after.items;
    std::vector<std::string> oldText;
    std::vector<std::string> newText;
    oldText.reserve(old.size());
    newText.reserve(now.size());
    for (const km::ConfigItem* item : old) {
        oldText.push_back(itemText(*item));
    }
    for (const km::ConfigItem* item : now) {
        newText.push_back(itemText(*item));
    }
    std::vector<int> pairOf(now.size(), -1);
    std::vector<bool> taken(old.size(), false);
    const auto pair = [&](std::size_t n, std::size_t o) {
        pairOf[n] = static_cast<int>(o);
        taken[o] = true;
    };
    // Identical items, at the same index where they can be.
    for (std::size_t n = 0; n < now.size(); ++n) {
        if (n < old.size() && newText[n] == oldText[n]) {
            pair(n, n);
        }
    }
    for (std::size_t n = 0; n < now.size(); ++n) {
        for (std::size_t o = 0; pairOf[n] < 0 && o < old.size(); ++o) {
            if (!taken[o] && newText[n] == oldText[o]) {
                pair(n, o);
            }
        }
    }
    // The same index and type, then the best of the type.
    for (std::size_t n = 0; n < now.size(); ++n) {
        if (pairOf[n] < 0 && n < old.size() && !taken[n] && old[n]->type == now[n]->type) {
            pair(n, n);
        }
    }
    for (std::size_t n = 0; n < now.size(); ++n) {
        if (pairOf[n] < 0) {
            const int o = bestMatch(*now[n], old, taken);
            if (o >= 0) {
                pair(n, static_cast<std::size_t>(o));
            }
        }
    }

    // An item inserted or removed shifts the others without reordering
    // them: only pairs off the longest run in the old order were reordered.
    const std::vector<bool> inOrder = longestIncreasing(pairOf);

    std::vector<KeymapChange> changes;
    for (std::size_t n = 0; n < now.size(); ++n) {
        const int o = pairOf[n];
        if (o < 0) {
            changes.push_back(whole(KeymapChange::Kind::Added, *now[n], static_cast<int>(n)));
        } else if (newText[n] != oldText[static_cast<std::size_t>(o)] || !inOrder[n]) {
            compareItems(*old[static_cast<std::size_t>(o)], o, *now[n], static_cast<int>(n),
                         !inOrder[n], changes);
        }
    }
    for (std::size_t o = 0; o < old.size(); ++o) {
        if (!taken[o]) {
            changes.push_back(whole(KeymapChange::Kind::Removed, *old[o], static_cast<int>(o)));
        }
    }
    const bool joystick = after.info != nullptr && after.info->is_joystick;
    if (before.info != nullptr && after.info != nullptr) {
        members(Object::Ptr(new Object(before.info->ConvertToJsonObject())),
                Object::Ptr(new Object(after.info->ConvertToJsonObject())), "info", changes, {});
    }
    if (before.param != nullptr && after.param != nullptr) {
        members(Object::Ptr(new Object(before.param->ConvertToJsonObject(joystick))),
                Object::Ptr(new Object(after.param->ConvertToJsonObject(joystick))), "param",
                changes, {});
    }
    return changes;
}

}  // namespace zunokeymap
