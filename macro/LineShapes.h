//
// LineShapes.h
//
// The shapes a macro line can take, and the recognisers that tell whether a
// line has one.
//
// A shape is the keyword of a command plus the form of its arguments. Its
// recogniser answers exactly as a search for the shape's pattern would under
// ECMAScript rules: the first match found at the leftmost position where one
// exists must end the line. So a shape that is not anchored at the line start
// accepts any leading text, and one without an end anchor rejects a line where
// its first match stops short of the end, even if a later match would not.
//
// Blanks are the C locale's white space (space, \t, \n, \v, \f, \r); digits
// are 0 to 9; a name is a run of anything else, bytes >= 0x80 included.
//
// Every recogniser reads the line once from left to right (a keyword search
// may look at each position once per keyword byte), with no recursion and no
// backtracking, so even megabyte lines are answered at once.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_LINESHAPES_H
#define ZUNO_KEYMAPMANAGER_MACRO_LINESHAPES_H

#include <optional>
#include <string_view>

namespace zunokeymapmanager {
namespace macro {

enum class Shape {
    /// No line at all.
    Never,
    /// The keyword and nothing else.
    Word,
    /// At line start: the keyword, then one or more points, each after blanks;
    /// a point is "digits,digits" or "mouse". Nothing may follow.
    Points,
    /// At line start: the keyword, then points separated by ";"; a point is
    /// "(number,number)" or "mouse", a number digits with an optional "." and
    /// more digits. Nothing may follow.
    RelativePoints,
    /// At line start: the keyword, then one or more values, each a run of
    /// digits or the shape's word; with a gap every value follows blanks,
    /// without one the values follow each other directly. Nothing may follow.
    Values,
    /// At line start: the keyword, optional blanks, optional digits, then the
    /// line's end.
    OptionalNumber,
    /// At line start: the keyword, blanks and a double quote; the rest of the
    /// line must end in a second double quote and hold no line break.
    Quoted,
    /// At line start: the keyword; the rest holds no line break.
    Rest,
    /// Anywhere: the keyword, blanks when there is a gap, then digits.
    FindNumber,
    /// Anywhere: the keyword, blanks when there is a gap, then a name.
    FindName,
};

struct LineShape {
    Shape shape = Shape::Never;
    std::string_view keyword;
    /// Blanks stand between the keyword and the value(s).
    bool gap = false;
    /// For Values: the word accepted in place of a number; empty for none.
    std::string_view word;

    constexpr LineShape() = default;
    constexpr LineShape(Shape s, std::string_view k, bool g = false, std::string_view w = {})
        : shape(s), keyword(k), gap(g), word(w) {}
};

/// True when `line` has the shape.
bool accepts(const LineShape& shape, std::string_view line);

/// For the Find shapes: the value of the first occurrence of the shape when
/// that occurrence ends the line (that is, when the line is accepted).
std::optional<std::string_view> findValue(const LineShape& shape, std::string_view line);

}  // namespace macro
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_LINESHAPES_H
