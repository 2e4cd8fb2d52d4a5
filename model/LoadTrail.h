//
// LoadTrail.h
//
// A per-thread record of where the JSON readers are, kept so that a failed
// load can say which member it failed on.
//
// Every read through model/JsonIO.h notes the (object, key) it is about to
// read and clears the note when the read succeeded; every member object it
// hands out is linked to its parent under its key. Nothing is allocated and
// no text is built: a read costs a few pointer stores. Only when a load fails
// does the document reader walk these links back to the root to build the
// JSON path of the failing member.
//
// The keys are kept by address: they are the long-lived kField constants (or
// keys of the parsed tree, which the loader keeps alive until it has looked).
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_LOADTRAIL_H
#define ZUNO_KEYMAPMANAGER_MODEL_LOADTRAIL_H

#include <cstdint>
#include <string>

namespace zunokeymapmanager {
namespace json {

/// What a read expects to find under its key.
enum class Expect : std::uint8_t { String, Integer, Number, Boolean, Object, Array };

struct LoadTrail {
    struct Link {
        const void* child;
        const void* parent;
        const std::string* key;
    };

    /// Enough for the deepest item; older links are overwritten first.
    static constexpr unsigned kLinks = 64;

    Link links[kLinks];
    unsigned linkCount;

    /// The read in progress: null `readKey` when none is. An element read
    /// has the array as its parent, the array's own key and an index >= 0.
    const void* readParent;
    const std::string* readKey;
    long readIndex;
    Expect readExpect;

    /// Forgets every link (the read note is cleared by each successful read).
    void reset() {
        linkCount = 0;
        readKey = nullptr;
    }

    /// The link whose child is `child`, latest first, or null.
    const Link* find(const void* child) const {
        const unsigned kept = linkCount < kLinks ? linkCount : kLinks;
        for (unsigned i = 0; i < kept; ++i) {
            const Link& link = links[(linkCount - 1 - i) % kLinks];
            if (link.child == child) {
                return &link;
            }
        }
        return nullptr;
    }
};

/// This thread's trail.
LoadTrail& trail();

}  // namespace json
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_LOADTRAIL_H
