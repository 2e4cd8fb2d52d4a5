//
// ItemLayout.h
//
// Where an item keeps its keys and its points on the screen, as its class's
// member tables declare them (model/Members.h). Every tool that binds keys,
// finds the keys that fire an item, draws it or moves it reads these lists.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_ITEMLAYOUT_H
#define ZUNO_KEYMAPMANAGER_ITEMS_ITEMLAYOUT_H

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"
#include "zuno-keymapmanager/model/Geometry.h"
#include "zuno-keymapmanager/model/Members.h"

namespace zunokeymapmanager {

struct ZUNO_KM_API MemberPath
/// Where a member lives in an item: from the item to the owner of the
/// member's table, then through the members that hold it.
{
    void* (*owner)(ConfigItem& item) = nullptr;  ///< the owner of the first table
    std::array<void* (*)(void*), 4> steps{};     ///< from one member to the next
    std::size_t depth = 0;                       ///< how many `steps` there are

    /// The member in `item`.
    void* in(ConfigItem& item) const {
        void* at = owner(item);
        for (std::size_t i = 0; i < depth; ++i) {
            at = steps[i](at);
        }
        return at;
    }
};

struct ZUNO_KM_API KeySlot
/// One key member of an item.
{
    std::string path;  ///< the member's path in the item's JSON object ("positive_key.key")
    /// How people name it: "key", "top", "right", "bottom", "left", "positive",
    /// "negative" for the keys that fire the item; "second", "positive second",
    /// "negative second" for second keys.
    std::string name;
    KeyRole role = KeyRole::Key;  ///< what the key does for the item
    int second = -1;              ///< the slot of this key's second key, or -1
    MemberPath at;                ///< where the key lives in the item

    /// The member in `item`, which must be of the type the slot was listed for.
    ///@{
    ConfigKey& in(ConfigItem& item) const { return *static_cast<ConfigKey*>(at.in(item)); }
    const ConfigKey& in(const ConfigItem& item) const {
        // Only reads through the reference: the path serves both.
        return in(const_cast<ConfigItem&>(item));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
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
    std::string path;  ///< the member's path in the item's JSON object ("spell_info.rel_position")
    /// How people name it: "marker", "touch point", "cast point", "drag centre", ...
    std::string name;
    /// Whether it goes along when the item is moved. A point that does not
    /// (a measurement point on the screen) belongs to the screen, not the item.
    bool moves = false;
    /// Whether (0, 0) stands for "not set" (a drag centre then means the
    /// touch point): such a point is left alone while it is not set.
    bool nullIsUnset = false;
    bool isText = false;  ///< a text that lists points, not a point
    MemberPath at;        ///< where the member lives in the item

    /// The member in `item`: the point, or null for a text; the text, or null for a point.
    ///@{
    PointF* point(ConfigItem& item) const {
        return isText ? nullptr : static_cast<PointF*>(at.in(item));
    }
    std::string* text(ConfigItem& item) const {
        return isText ? static_cast<std::string*>(at.in(item)) : nullptr;
    }
    ///@}
};

struct ZUNO_KM_API SizeSlot
/// One size of an item drawn around a point: a radius (a fraction of the
/// screen's shorter side) or an area ({"rel_width", "rel_height"} centred on
/// the touch point).
{
    std::string path;     ///< the member's path in the item's JSON object ("spell_info.rel_radius")
    std::string name;     ///< how people name it: "drag radius", "look area", ...
    bool isArea = false;  ///< an area, not a radius
    /// The path of the point a radius is centred on: the point beside it in
    /// its settings block, or empty for the touch point.
    std::string centre;
    /// Whether zero means something (no first move, no gap), so a fresh
    /// item keeps it rather than being given a size people start from.
    bool zeroMeans = false;
};

/// The key members of `item`, in the order people name them: the key before
/// its second key, the positive side before the negative one, the direction
/// keys clockwise from the top.
ZUNO_KM_API const std::vector<KeySlot>& KeySlotsOf(const ConfigItem& item);

/// The points of `item`, in reading order: its touch point and marker first,
/// then the points of its own type.
ZUNO_KM_API const std::vector<PointSlot>& PointSlotsOf(const ConfigItem& item);

/// The sizes of `item` drawn around its points, in reading order.
ZUNO_KM_API const std::vector<SizeSlot>& SizeSlotsOf(const ConfigItem& item);

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
