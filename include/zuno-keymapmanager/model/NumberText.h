//
// NumberText.h
//
// Decimal numbers read from and written to text the same way on every
// platform: in any locale, and with C++ libraries that cannot read or write
// floating-point numbers themselves. The document reader, the item texts,
// the tool and the web editor all go through it, so they agree to the last
// bit and the last character.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_NUMBERTEXT_H
#define ZUNO_KEYMAPMANAGER_MODEL_NUMBERTEXT_H

#include <string>

#include "zuno-keymapmanager/Export.h"

namespace zunokeymapmanager {

/// Reads the decimal number that starts at `first` and ends at or before
/// `last`, written as C and JSON write numbers: an optional '-', digits with
/// an optional fraction (or a '.' and digits alone), and an optional exponent
/// ('e' or 'E', an optional sign, digits). The longest such number is read and
/// rounded to the nearest double. Returns the end of the number with `value`
/// set, or `first` (and `value` untouched) when no number starts there or it
/// lies beyond the range of a double.
ZUNO_KM_API const char* ReadNumber(const char* first, const char* last, double& value);

/// The shortest text that reads back as `value`, written as std::to_chars
/// writes a double with no format given: the fewest digits, in fixed or
/// scientific notation, whichever is shorter (fixed on a tie), such as
/// "0.5", "1e-06", "123456", "1e+22", "-0"; "inf", "-inf" or "nan" for what
/// is not finite.
ZUNO_KM_API std::string WriteNumber(double value);

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_NUMBERTEXT_H
