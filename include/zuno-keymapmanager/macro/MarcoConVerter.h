//
// MarcoConVerter.h
//
// The converter base of the macro language: one object per script line.
//

#ifndef ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTER_H
#define ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTER_H

#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

class ZUNO_KM_API MarcoConVerter
/// Holds one macro line in editing form (what the user types) or running form
/// (what the player executes) and converts it to the other form.
///
/// A converter is made per line by MarcoConVerterFactory, initialised once and
/// asked for one conversion. The command classes override the two conversions
/// only; the base conversions below are what a class without overrides gets.
/// Each command class also has two static, non-virtual predicates,
/// isEditingTextMatch and isRunningTextMatch, which tell whether a line is one
/// of its lines; the factory asks them in its fixed order.
///
/// The class has no virtual destructor on purpose: converters are always owned
/// through std::shared_ptr made with their concrete type, which deletes them
/// correctly without one.
{
public:
    MarcoConVerter() = default;

    /// Stores the running text and the screen rectangle.
    virtual void initRunningText(const std::string& text, Rect rect);

    /// Stores the editing text and the screen rectangle.
    virtual void initEditingText(const std::string& text, Rect rect);

    /// Stores the editing text and keeps the rectangle; always succeeds.
    virtual bool converterFromEditingText(const std::string& text);

    /// The line in editing form. The base reads the first "(a,b)" of the running
    /// text: "press a b" when that group ends the text, else "press".
    virtual std::string converterToEditingText();

    /// The line in running form. The base reads the first "a,b" (two runs of
    /// digits) of the editing text: "press_rel:a;b;" when that pair ends the
    /// text, else "press_rel:".
    virtual std::string converterToRunningText();

    /// The stored editing text.
    const std::string& editingText() const { return editing_text_; }
    /// The stored running text.
    const std::string& runningText() const { return running_text_; }

    /// The rectangle handed in with the script. No conversion reads it.
    const Rect& screenRect() const { return rect_; }

    /// The caption of a keyboard key or mouse button code on `device`
    /// ("keyboard" or "mouse"); empty for an unknown code or another device.
    static std::string scancodeToText(const std::string& device, int code);

    /// The code of the caption `text` on `device`, or -1 when there is none.
    static int textToScancode(const std::string& device, const std::string& text);

protected:
    std::string editing_text_;  ///< the line in editing form, as stored
    std::string running_text_;  ///< the line in running form, as stored
    Rect rect_;                 ///< the screen rectangle, as stored
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MACRO_MARCOCONVERTER_H
