//
// KeyCollisions.cpp
//

#include "check/KeyCollisions.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "check/TriggerRules.h"
#include "zuno-keymapmanager/api/KeyTriggers.h"

namespace zunokeymapmanager {
namespace check {

namespace {

bool isJoystick(const ConfigKey& key) {
    return key.device == "joystick";
}

// What ConfigKey::Match compares: the device, then the control name of a
// gamepad key or the scan code of any other. Keys that match hash alike.
std::size_t hashOf(const ConfigKey& key) {
    const std::size_t device = std::hash<std::string_view>()(key.device);
    const std::size_t what = isJoystick(key) ? std::hash<std::string_view>()(key.text)
                                             : std::hash<std::int32_t>()(key.scan_code);
    return device * 1000003u ^ what;
}

bool sameBucket(const ConfigKey& a, const ConfigKey& b) {
    return a.device == b.device && (isJoystick(a) ? a.text == b.text : a.scan_code == b.scan_code);
}

// Items of a large document lie all over the heap, and reading one at a time
// waits on memory for each; asking for the ones a little ahead lets the waits
// overlap. An item's keys sit in its first few hundred bytes.
constexpr std::size_t kPrefetchDistance = 8;

void prefetchItem(const std::vector<ConfigItem*>& items, std::size_t i) {
#if defined(__GNUC__)
    if (i < items.size() && items[i] != nullptr) {
        const char* item = reinterpret_cast<const char*>(items[i]);
        for (int offset = 0; offset < 512; offset += 64) {
            __builtin_prefetch(item + offset);
        }
    }
#else
    (void)items;
    (void)i;
#endif
}

// A key or combination that fires an item. Its first key is also what the
// item matches on: a key that is not set matches no trigger, and every item
// matches only on the first keys of its own triggers, which TriggerFires
// then confirms by the item's rules.
struct Trigger {
    int item;
    std::size_t hash;  // of `first`, taken while the item is at hand
    const ConfigKey* first;
    const ConfigKey* second;
};

// The triggers by hash: a table from each hash to the first of its triggers,
// each trigger linked to the next of the same hash, in item order. Built in
// one pass, so the whole search stays linear; sorting the triggers instead
// grew with n log n and dominated a large document.
class TriggerIndex {
public:
    explicit TriggerIndex(const std::vector<Trigger>& triggers)
        : triggers_(triggers), next_(triggers.size(), kNone) {
        std::size_t size = 16;
        while (size < triggers.size() * 2) {
            size *= 2;
        }
        slots_.assign(size, Slot{0, kNone});
        // Walked backwards, each hash's chain comes out in item order.
        for (std::size_t k = triggers.size(); k-- > 0;) {
            Slot& slot = slots_[slotOf(triggers[k].hash)];
            slot.hash = triggers[k].hash;
            next_[k] = slot.first;
            slot.first = static_cast<std::uint32_t>(k);
        }
    }

    /// Calls `visit(trigger)` for every trigger with `hash`, in item order.
    template <typename Visit>
    void forEach(std::size_t hash, Visit visit) const {
        for (std::uint32_t k = slots_[slotOf(hash)].first; k != kNone; k = next_[k]) {
            visit(triggers_[k]);
        }
    }

private:
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    struct Slot {
        std::size_t hash;
        std::uint32_t first;
    };

    // The slot holding `hash`, or the empty one where it would go.
    std::size_t slotOf(std::size_t hash) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = hash & mask;
        while (slots_[slot].first != kNone && slots_[slot].hash != hash) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    const std::vector<Trigger>& triggers_;
    std::vector<std::uint32_t> next_;
    std::vector<Slot> slots_;
};

// Two triggers are the same when their first and second keys match alike
// (the second of a single key is unset in both).
bool sameKey(const ConfigKey& a, const ConfigKey& b) {
    return a.isSet() == b.isSet() && (!a.isSet() || sameBucket(a, b));
}

bool sameTrigger(const Trigger& a, const Trigger& b) {
    return a.hash == b.hash && sameKey(*a.first, *b.first) && sameKey(*a.second, *b.second);
}

}  // namespace

std::vector<Collision> FindCollisions(const std::vector<ConfigItem*>& items) {
    // One pass over the items collects their triggers; the search then reads
    // only this array and the few items a trigger may fire.
    std::vector<Trigger> triggers;
    triggers.reserve(items.size() * 2);
    for (std::size_t i = 0; i < items.size(); ++i) {
        prefetchItem(items, i + kPrefetchDistance);
        if (items[i] != nullptr) {
            ForEachTrigger(
                *items[i], [&](const ConfigKey& first, const ConfigKey& second, const char*) {
                    triggers.push_back({static_cast<int>(i), hashOf(first), &first, &second});
                });
        }
    }
    const TriggerIndex index(triggers);

    // Each distinct trigger asks its bucket once, in item order; the repeats
    // of it met there (the same key or combination) join its group and ask
    // nothing themselves. A bucket holds only keys alike in device and code,
    // so a crowded one has few distinct triggers (combinations of a key and a
    // modifier) and the work stays linear in the items. Nothing but this
    // flag is kept per trigger: a large document's search otherwise waits on
    // tables the small one keeps in cache.
    std::vector<char> repeat(triggers.size(), 0);
    std::vector<Collision> collisions;
    std::vector<int> group;
    for (std::size_t k = 0; k < triggers.size(); ++k) {
        if (repeat[k] != 0) {
            continue;  // in the group of the first trigger like it
        }
        const Trigger& trigger = triggers[k];
        group.assign(1, trigger.item);
        int previous = -1;  // an item listed twice (two of its keys alike) is asked once
        index.forEach(trigger.hash, [&](const Trigger& other) {
            const auto o = static_cast<std::size_t>(&other - triggers.data());
            const int j = other.item;
            if (o == k) {
                return;
            }
            if (sameTrigger(other, trigger)) {
                repeat[o] = 1;
                group.push_back(j);
                return;
            }
            if (j == trigger.item || j == previous || !sameBucket(*other.first, *trigger.first)) {
                return;
            }
            previous = j;
            if (Fires(*items[static_cast<std::size_t>(j)], *trigger.first, *trigger.second)) {
                group.push_back(j);
            }
        });
        std::sort(group.begin(), group.end());
        group.erase(std::unique(group.begin(), group.end()), group.end());
        if (group.size() < 2) {
            continue;
        }
        KeyTrigger described;
        described.first = *trigger.first;
        described.second = *trigger.second;
        described.combination = trigger.second->isSet();
        collisions.push_back({group, DescribeKeyTrigger(described)});
    }
    return collisions;
}

}  // namespace check
}  // namespace zunokeymapmanager
