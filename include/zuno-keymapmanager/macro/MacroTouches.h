//
// MacroTouches.h
//
// Where a macro script touches the screen: the points of its click, press,
// release, switch and curve lines, for pictures of a keymap and for the
// document check.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_MACROTOUCHES_H
#define ZUNO_KEYMAPMANAGER_MACRO_MACROTOUCHES_H

#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

/// The screen that the pixel points of editing lines ("click 960,540") are
/// counted on. A script is written once for this screen and plays on every
/// screen size, its points scaled as the items' relative positions are:
/// 960,540 is the centre of any screen.
inline constexpr int kMacroScreenWidth = 1920;
inline constexpr int kMacroScreenHeight = 1080;

/// One line of a script that touches the screen at points.
struct ZUNO_KM_API MacroTouch {
    int line = 0;         ///< one-based number of the line in its script
    std::string command;  ///< "click", "press", "release", "switch" or "curve"
    /// The points in the order written, in pixels of the macro screen;
    /// "mouse" points are left out, and a number too large for an int is
    /// read as INT_MAX.
    std::vector<Point> points;
};

/// The touching lines of `script` (editing form), in order. Lines of any other
/// command, and lines that are no command, are skipped; the numbering counts
/// every line, as MacroKeyEditingTextGrammarCheck's does.
ZUNO_KM_API std::vector<MacroTouch> MacroTouchesOf(const std::vector<std::string>& script);

/// Whether `point` lies on the macro screen: 0 <= x < kMacroScreenWidth and
/// 0 <= y < kMacroScreenHeight.
ZUNO_KM_API bool IsOnMacroScreen(const Point& point);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_MACROTOUCHES_H
