//
// ItemGeometry.h
//
// What the editor's handles change on each item type, and how a fresh item
// is made to fit a document. The points, sizes and key members of an item
// are the library's (ItemLayout.h), read from its member tables. The page
// reads all of it from GET /api/shapes and keeps no table of its own.
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
