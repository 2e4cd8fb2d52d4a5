//
// KeyCollisions.cpp
//

#include "api/KeyCollisions.h"

#include <cstdint>
#include <unordered_map>
#include <unordered_set>

#include "zuno-keymapmanager/api/KeyTriggers.h"
#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/DiamondConfigItem.h"

namespace zunokeymapmanager {
namespace check {

namespace {

// What ConfigKey::Match compares: the device, then the control name of a
// gamepad key or the scan code of any other. Two keys match only when
// their buckets are equal.
std::string bucketOf(const ConfigKey& key) {
    std::string bucket = key.device;
    bucket += '\0';
    bucket += key.device == "joystick" ? key.text : std::to_string(key.scan_code);
    return bucket;
}

// Every key whose match can fire the item; a superset is harmless, since the
// item's own rules decide.
std::vector<const ConfigKey*> matchedKeysOf(const ConfigItem& item) {
    std::vector<const ConfigKey*> keys{&item.key};
    if (const auto* pair = dynamic_cast<const PairConfigItem*>(&item)) {
        keys.push_back(&pair->positive_key.key);
        keys.push_back(&pair->negative_key.key);
    } else if (const auto* diamond = dynamic_cast<const DiamondConfigItem*>(&item)) {
        keys.insert(keys.end(), {&diamond->top, &diamond->right, &diamond->bottom, &diamond->left});
    }
    return keys;
}

}  // namespace

std::vector<Collision> FindCollisions(const std::vector<ConfigItem*>& items) {
    const int count = static_cast<int>(items.size());
    std::unordered_map<std::string, std::vector<int>> buckets;
    for (int i = 0; i < count; ++i) {
        if (items[i] == nullptr) {
            continue;
        }
        for (const ConfigKey* key : matchedKeysOf(*items[i])) {
            std::vector<int>& bucket = buckets[bucketOf(*key)];
            if (bucket.empty() || bucket.back() != i) {
                bucket.push_back(i);
            }
        }
    }

    std::vector<Collision> collisions;
    std::unordered_set<std::uint64_t> known;
    for (int i = 0; i < count; ++i) {
        if (items[i] == nullptr) {
            continue;
        }
        for (const KeyTrigger& trigger : KeyTriggersOf(*items[i])) {
            const auto bucket = buckets.find(bucketOf(trigger.first));
            if (bucket == buckets.end()) {
                continue;
            }
            // Items enter a bucket once each, in index order.
            for (const int j : bucket->second) {
                if (j == i || !TriggerFires(*items[j], trigger)) {
                    continue;
                }
                const int a = i < j ? i : j;
                const int b = i < j ? j : i;
                const std::uint64_t id =
                    (static_cast<std::uint64_t>(a) << 32) | static_cast<std::uint32_t>(b);
                if (known.insert(id).second) {
                    collisions.push_back({a, b, DescribeKeyTrigger(trigger)});
                }
            }
        }
    }
    return collisions;
}

}  // namespace check
}  // namespace zunokeymapmanager
