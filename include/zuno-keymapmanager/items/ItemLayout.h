//
// ItemLayout.h
//
// Where an item keeps its keys and its points on the screen. Every tool that
// binds keys, finds the keys that fire an item, draws it or moves it reads
// these lists, so a type's keys and points are named in one place.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_ITEMLAYOUT_H
#define ZUNO_KEYMAPMANAGER_ITEMS_ITEMLAYOUT_H

#include <cstddef>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

/// What a key member does for its item.
enum class KeyRole {
    Key,            ///< fires the item, alone or with its second key
    SecondKey,      ///< the other key of a combination with a Key
    Direction,      ///< one of four direction keys, each firing the item alone
    PairKey,        ///< one side of a pair, alone or with its second key
    PairSecondKey,  ///< the other key of a side's combination
    Carried,        ///< kept and written, but the item's own keys replace it
};

struct ZUNO_KM_API KeySlot
/// One key member of an item.
{
    const char* path;  ///< the member's path in the item's JSON object ("positive_key.key")
    /// How people name it: "key", "top", "right", "bottom", "left", "positive",
    /// "negative" for the keys that fire the item; "second", "positive second",
    /// "negative second" for second keys.
    const char* name;
    KeyRole role;                        ///< what the key does for the item
    int second;                          ///< the slot of this key's second key, or -1
    ConfigKey& (*at)(ConfigItem& item);  ///< the member in `item`

    /// The member in `item`, which must be of a type this slot belongs to.
    ///@{
    ConfigKey& in(ConfigItem& item) const { return at(item); }
    const ConfigKey& in(const ConfigItem& item) const {
        // Only reads through the reference: the accessor is shared by both.
        return at(const_cast<ConfigItem&>(item));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }
    ///@}

    /// Whether the key fires the item by itself or as the first of a combination.
    bool fires() const {
        return role == KeyRole::Key || role == KeyRole::Direction || role == KeyRole::PairKey;
    }
};

struct ZUNO_KM_API PointSlot
/// One point of an item on the screen, in relative coordinates: a point
/// member, or a text member that lists points ("(x,y);(x,y)").
{
    const char* path;  ///< the member's path in the item's JSON object ("spell_info.rel_position")
    /// How people name it: "marker", "touch point", "cast point", "drag centre", ...
    const char* name;
    /// Whether it goes along when the item is moved. A point that does not
    /// (a measurement point on the screen) belongs to the screen, not the item.
    bool moves;
    /// Whether (0, 0) stands for "not set" (a drag centre then means the
    /// touch point): such a point is left alone while it is not set.
    bool nullIsUnset;
    PointF* (*point)(ConfigItem& item);      ///< the point member, or null for a text
    std::string* (*text)(ConfigItem& item);  ///< the text member, or null for a point
};

/// The key members of `item`, in the order people name them: the key before
/// its second key, the positive side before the negative one, the direction
/// keys clockwise from the top.
ZUNO_KM_API const std::vector<KeySlot>& KeySlotsOf(const ConfigItem& item);

/// The points of `item`: its marker and its touch point first, then the
/// points of its own type.
ZUNO_KM_API const std::vector<PointSlot>& PointSlotsOf(const ConfigItem& item);

/// Moves the whole item by (dx, dy), in fractions of the screen: every point
/// that moves with it (marker, touch point, cast point, drag centre, curve
/// points, ...), so that it keeps its shape. Areas drawn around the touch
/// point (a look range, a drag radius) go with it. The move is shortened
/// where it would take a point that is on the screen off it; a
/// non-finite delta is taken as 0. Returns the move made.
ZUNO_KM_API PointF MoveItem(ConfigItem& item, double dx, double dy);

/// Puts `item` at `at`: an item whose touch point is set is moved (MoveItem)
/// so that its touch point lands there; one whose touch point is not set yet
/// (a fresh item) has every point that moves with it put at `at`.
ZUNO_KM_API void PlaceItem(ConfigItem& item, PointF at);

/// The points of a text that lists them ("(0.2,0.3);(0.4,0.5)"), at most
/// `limit`: its numbers taken two by two, whatever stands between them, so
/// that odd text gives fewer points and never an error.
ZUNO_KM_API std::vector<PointF> PointsOfText(const std::string& text, std::size_t limit);

/// `text` with every point moved by (dx, dy), read as PointsOfText reads it;
/// everything but the numbers is kept as it is.
ZUNO_KM_API std::string MovePointText(const std::string& text, double dx, double dy);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_ITEMLAYOUT_H
