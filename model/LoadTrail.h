//
// LoadTrail.h
//
// A per-thread record of where the JSON readers are, kept so that a failed
// load can say which member it failed on.
//
// Every read through model/JsonIO.h notes the (object, key) it is about to
// read and clears the note when the read succeeded; every member object it
// hands out is linked to its parent under its key. Nothing is allocated and
// no text is built: a read costs a few stores and a copy of its key's bytes.
// Only when a load fails does the document reader walk these links back to
// the root to build the JSON path of the failing member.
//
// The trail keeps copies of the keys, never their addresses: a reader may
// name a member with any string, one that is gone long before the failure
// is described included. The objects are kept by address; the loader holds
// the parsed tree until it has looked.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_LOADTRAIL_H
#define ZUNO_KEYMAPMANAGER_MODEL_LOADTRAIL_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace zunokeymapmanager {
namespace json {

/// What a read expects to find under its key.
enum class Expect : std::uint8_t { String, Integer, Number, Boolean, Object, Array };

/// A member name, copied. The format's names are far shorter than the room
/// kept; a longer key (no reader uses one) is kept cut short.
class TrailKey {
public:
    static constexpr std::size_t kBytes = 63;

    void assign(const std::string& key) {
        size_ = static_cast<std::uint8_t>(key.size() < kBytes ? key.size() : kBytes);
        std::memcpy(bytes_, key.data(), size_);
    }

    std::string str() const { return std::string(bytes_, size_); }

private:
    char bytes_[kBytes];
    std::uint8_t size_;
};

class LoadTrail {
public:
    struct Link {
        const void* child;
        const void* parent;
        TrailKey key;
    };

    /// Enough for the deepest item; older links are overwritten first.
    static constexpr unsigned kLinks = 64;

    /// Notes a read of member `key` of `parent`, expecting `expect`.
    void noteRead(const void* parent, const std::string& key, Expect expect) {
        readParent = parent;
        readKey.assign(key);
        readIndex = -1;
        readExpect = expect;
        reading = true;
    }

    /// Notes a read of element `index` of `array` as a string; the array is
    /// already linked under its own key.
    void noteElement(const void* array, std::size_t index) {
        readParent = array;
        readIndex = static_cast<long>(index);
        readExpect = Expect::String;
        reading = true;
    }

    /// Clears the note of a read that succeeded.
    void readDone() { reading = false; }

    /// Links `child` to `parent`, under `key`.
    void noteLink(const void* child, const void* parent, const std::string& key) {
        Link& link = links[linkCount++ % kLinks];
        link.child = child;
        link.parent = parent;
        link.key.assign(key);
    }

    /// Forgets every link and the read note.
    void reset() {
        linkCount = 0;
        reading = false;
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

    Link links[kLinks];
    unsigned linkCount;

    /// The read in progress, when `reading`. An element read has the array
    /// as its parent and an index >= 0; a member read has index -1.
    bool reading;
    const void* readParent;
    TrailKey readKey;
    long readIndex;
    Expect readExpect;
};

/// This thread's trail.
LoadTrail& trail();

}  // namespace json
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_LOADTRAIL_H
