//
// ItemParts.h
//
// Settings blocks that several item types share.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTS_H

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/Members.h"

namespace zunokeymapmanager {

struct InvalidZoneInfo
/// A dead zone around the centre of a drag, written as "invalid_zone_info".
{
    /// Kept in the JSON members of the same names.
    ///@{
    bool enable = false;
    double rel_radius_outside_invalid_zone = 0.01;
    double rel_radius_inside_invalid_zone = 0.005;
    ///@}

    /// Its members, in reading order (model/Members.h).
    ZUNO_KM_API static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTS_H
