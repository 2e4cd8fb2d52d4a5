//
// NumberText.h
//
// Decimal numbers read from text the same way on every platform: in any
// locale, and with C++ libraries that cannot read floating-point numbers
// themselves. The document reader, the tool and the web editor all read
// numbers through it, so they agree to the last bit.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_NUMBERTEXT_H
#define ZUNO_KEYMAPMANAGER_MODEL_NUMBERTEXT_H

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

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_NUMBERTEXT_H
