//
// ItemGeometry.h
//
// What the editor's handles change on each item type, and how a fresh item
// is made to fit a document. The points of an item and its key members are
// the library's (ItemLayout.h); the sizes drawn around them (a drag radius, a
// look area) are named here. The page reads all of it from GET /api/shapes
// and keeps no table of its own.
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

/// A size of an item that a handle changes.
struct Length {
    enum class Kind {
        Radius,  ///< a length, a fraction of the screen's shorter side
        Area,    ///< a {"rel_width", "rel_height"} member centred on the touch point
    };
    Kind kind;
    const char* member;  ///< the member's path inside the item ("spell_info.rel_radius")
    const char* label;   ///< what people call it
    /// For a radius: the point member it is centred on; empty for the touch point.
    const char* centre = "";
    /// Whether a fresh item's value (zero, or as large as the screen) is
    /// replaced by a size people start from.
    bool sized = true;
};

/// The sizes of item type `type` that handles change; empty for none.
const std::vector<Length>& LengthsOf(const std::string& type);

/// Every type's handles, key members, kind and colour as JSON: {"handles":
/// {"TYPE": [{"kind" ("point", "points", "radius", "area"), "member",
/// "label", "moves", "null_is_touch", "centre"}]}, "keys": {"TYPE":
/// [members]}, "kinds": {"TYPE": "gamepad", "keyboard" or "both"},
/// "colours": {"TYPE": "#rrggbb"}, "markers": {"TYPE": marker shape}}, as
/// the picture draws them.
Poco::JSON::Object::Ptr ShapesJson();

/// Moves one point of `item` by (dx, dy), kept on the screen: the point
/// member `member`, or, of a member listing points, its point number
/// `point`. A point that is not set and stands for the touch point starts
/// from it. False when the item has no such point.
bool MovePointBy(km::ConfigItem& item, const std::string& member, int point, double dx, double dy);

/// Places the fresh item `item` in `doc`: at `x`, `y` (fractions of the
/// screen), or, when `x` is negative, at a free spot, never on another item.
void PlaceFreshItem(km::ConfigItem& item, const km::KeymapConfig& doc, double x, double y);

/// Gives the sizes of a fresh item (its JSON object) that would be zero or
/// as large as the screen a size people start from.
void SizeFreshItem(const Poco::JSON::Object::Ptr& item);

/// Unsets every key of `item` that an item of `doc` already fires on;
/// returns their members.
std::vector<std::string> UnsetTakenKeys(km::ConfigItem& item, const km::KeymapConfig& doc);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_ITEMGEOMETRY_H
