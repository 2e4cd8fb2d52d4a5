//
// ConfigIcon.h
//
// The marker that shows an item on the editor's screen.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_CONFIGICON_H
#define ZUNO_KEYMAPMANAGER_MODEL_CONFIGICON_H

#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

struct MemberTable;

/// How an item's icon is drawn over the touch screen ("icon").
struct ConfigIcon {
    /// Kept in the JSON members of the same names.
    ///@{
    bool visibility = true;
    double radius_correction = 1.0;
    PointF rel_position;
    std::string description;
    ///@}
    /// Eight hexadecimal digits, RRGGBBAA; not validated.
    std::string background_color = "00000066";

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_CONFIGICON_H
