//
// ItemGeometry.h
//
// Where each item type puts things on the screen, for the editor: the points
// that move when the item is moved, the points and lengths that its handles
// change, and how a fresh item is placed so that it checks clean. The page
// reads the handles from GET /api/shapes; it keeps no table of its own.
//

#ifndef ZUNO_KEYMAP_EDITOR_ITEMGEOMETRY_H
#define ZUNO_KEYMAP_EDITOR_ITEMGEOMETRY_H

#include <string>
#include <vector>

#include <Poco/JSON/Object.h>
#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {
namespace editor {

namespace km = zunokeymapmanager;

/// One thing on the screen that a handle changes.
struct Handle {
    enum class Kind {
        Point,      ///< a {"rel_x", "rel_y"} member
        Radius,     ///< a length, a fraction of the screen's shorter side
        Area,       ///< a {"rel_width", "rel_height"} member centred on `centre`
        PointList,  ///< a text of "(x,y);(x,y)" points
    };
    Kind kind;
    const char* member;  ///< the member's path inside the item ("spell_info.rel_position")
    const char* label;   ///< what people call it
    /// Point members that move with the item; lists always do.
    bool moves = false;
    /// For a point: (0, 0) stands for the touch point (the member is "not set").
    bool nullIsTouch = false;
    /// For a radius or an area: the point member it is centred on; empty for
    /// the touch point.
    const char* centre = "";
};

/// The handles of item type `type` beyond the marker and the touch point
/// (which every type has); empty for a type with none.
const std::vector<Handle>& HandlesOf(const std::string& type);

/// The members of item type `type` that hold the keys firing it, in the
/// order they are bound ("key", "second_key"; "top_key", ...).
std::vector<std::string> KeyMembersOf(const std::string& type);

/// Every type's handles and key members as JSON: {"handles": {"TYPE":
/// [{"kind", "member", "label", "moves", "null_is_touch", "centre"}]},
/// "keys": {"TYPE": [members]}, "kinds": {"TYPE": "gamepad", "keyboard" or
/// "both"}, "colours": {"TYPE": "#rrggbb"}}, the marker and the touch point
/// first.
Poco::JSON::Object::Ptr ShapesJson();

/// Moves the item `item` (its JSON object) by (dx, dy), fractions of the
/// screen: the marker, the touch point and every point that moves with it, as
/// far as all of them stay on the screen. Points that are not set stay unset.
void MoveItemBy(Poco::JSON::Object::Ptr item, double dx, double dy);

/// Moves one point of the item `item` by (dx, dy), kept on the screen: the
/// point member `member`, or, for a point-list member, its point number
/// `point`. A point that is not set and stands for the touch point starts
/// from it. False when the item has no such point.
bool MovePointBy(Poco::JSON::Object::Ptr item, const std::string& member, int point, double dx,
                 double dy);

/// Makes the fresh item `item` (as the library writes it) fit into the
/// document `items`: placed at `x`, `y` (fractions of the screen), or, when
/// `x` is negative, at a free spot; sizes that would be zero or cover the
/// screen set to a sensible fraction; and every key that another item
/// already fires on unset. Returns the members whose keys were unset.
std::vector<std::string> FitFreshItem(Poco::JSON::Object::Ptr item, const km::KeymapConfig& doc,
                                      double x, double y);

/// Unsets every key of `item` (its JSON object) that an item of `doc` other
/// than `skip` (an index, or -1) already fires on; returns their members.
std::vector<std::string> UnsetTakenKeys(const Poco::JSON::Object::Ptr& item,
                                        const km::KeymapConfig& doc, int skip = -1);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_ITEMGEOMETRY_H
