//
// KeyCollisions.cpp
//

#include "api/KeyCollisions.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_set>

#include "api/TriggerRules.h"
#include "zuno-keymapmanager/api/KeyTriggers.h"
#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/DiamondConfigItem.h"

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

// One key of one item in the index. The index is a single sorted array, not
// a map of lists: a large document leaves the allocator fragmented, and tens
// of thousands of small allocations would cost more than the search.
struct Entry {
    std::size_t hash;
    int item;
    const ConfigKey* key;

    bool operator<(const Entry& other) const {
        return hash != other.hash ? hash < other.hash : item < other.item;
    }
};

// Every key whose match can fire the item; a superset is harmless, since the
// item's own rules decide.
template <typename Visit>
void forEachMatchedKey(const ConfigItem& item, Visit visit) {
    visit(item.key);
    if (const auto* pair = dynamic_cast<const PairConfigItem*>(&item)) {
        visit(pair->positive_key.key);
        visit(pair->negative_key.key);
    } else if (const auto* diamond = dynamic_cast<const DiamondConfigItem*>(&item)) {
        visit(diamond->top);
        visit(diamond->right);
        visit(diamond->bottom);
        visit(diamond->left);
    }
}

// The first entry of each hash in the sorted index, found in one or two
// probes: a binary search over a large index misses the cache at every step.
class HashTable {
public:
    explicit HashTable(const std::vector<Entry>& index) : index_(index) {
        std::size_t size = 16;
        while (size < index.size() * 2) {
            size *= 2;
        }
        slots_.assign(size, kEmpty);
        for (std::size_t k = 0; k < index.size(); ++k) {
            if (k == 0 || index[k].hash != index[k - 1].hash) {
                std::size_t slot = index[k].hash & (slots_.size() - 1);
                while (slots_[slot] != kEmpty) {
                    slot = (slot + 1) & (slots_.size() - 1);
                }
                slots_[slot] = k;
            }
        }
    }

    /// The position of the first entry with `hash`, or the index's size.
    std::size_t find(std::size_t hash) const {
        for (std::size_t slot = hash & (slots_.size() - 1); slots_[slot] != kEmpty;
             slot = (slot + 1) & (slots_.size() - 1)) {
            if (index_[slots_[slot]].hash == hash) {
                return slots_[slot];
            }
        }
        return index_.size();
    }

private:
    static constexpr std::size_t kEmpty = ~std::size_t{0};
    const std::vector<Entry>& index_;
    std::vector<std::size_t> slots_;
};

}  // namespace

std::vector<Collision> FindCollisions(const std::vector<ConfigItem*>& items) {
    // One pass over the items (which may lie all over the heap) collects
    // their keys and triggers; the search then reads only these arrays and
    // the few items a trigger may fire.
    struct Trigger {
        int item;
        const ConfigKey* first;
        const ConfigKey* second;
    };
    const int count = static_cast<int>(items.size());
    std::vector<Entry> index;
    index.reserve(items.size() * 2);
    std::vector<Trigger> triggers;
    triggers.reserve(items.size() * 2);
    for (int i = 0; i < count; ++i) {
        if (items[i] == nullptr) {
            continue;
        }
        forEachMatchedKey(*items[i], [&](const ConfigKey& key) {
            index.push_back({hashOf(key), i, &key});
        });
        ForEachTrigger(*items[i],
                       [&](const ConfigKey& first, const ConfigKey& second, const char*) {
                           triggers.push_back({i, &first, &second});
                       });
    }
    std::sort(index.begin(), index.end());
    const HashTable table(index);

    std::vector<Collision> collisions;
    std::unordered_set<std::uint64_t> known;
    for (const Trigger& trigger : triggers) {
        const int i = trigger.item;
        const std::size_t hash = hashOf(*trigger.first);
        // Within one hash the entries run in item order, so the pairs come out
        // as the plain walk finds them; an item listed twice (two of its keys
        // alike) is asked once.
        int previous = -1;
        for (std::size_t k = table.find(hash); k < index.size() && index[k].hash == hash; ++k) {
            const int j = index[k].item;
            if (j == i || j == previous || !sameBucket(*index[k].key, *trigger.first)) {
                continue;
            }
            previous = j;
            if (!Fires(*items[static_cast<std::size_t>(j)], *trigger.first, *trigger.second)) {
                continue;
            }
            const int a = i < j ? i : j;
            const int b = i < j ? j : i;
            const std::uint64_t id =
                (static_cast<std::uint64_t>(a) << 32) | static_cast<std::uint32_t>(b);
            if (known.insert(id).second) {
                KeyTrigger described;
                described.first = *trigger.first;
                described.second = *trigger.second;
                described.combination = trigger.second->isSet();
                collisions.push_back({a, b, DescribeKeyTrigger(described)});
            }
        }
    }
    return collisions;
}

}  // namespace check
}  // namespace zunokeymapmanager
