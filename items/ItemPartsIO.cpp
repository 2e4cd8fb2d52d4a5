//
// ItemPartsIO.cpp
//

#include "items/ItemPartsIO.h"

#include "zuno-keymapmanager/items/ItemParts.h"

namespace zunokeymapmanager {

const MemberTable& InvalidZoneInfo::Members() {
    using M = MembersOf<InvalidZoneInfo>;
    static const MemberTable table =
        M::part("invalid_zone_info", "a ring around the centre where small moves are ignored",
                {
                    M::field<&InvalidZoneInfo::enable>(kFieldEnable)
                        .require()
                        .show("Dead zone", kGroupAdvanced, "whether this block is in effect"),
                    M::field<&InvalidZoneInfo::rel_radius_inside_invalid_zone>(
                        kFieldInsideInvalidZoneRaidus)
                        .require()
                        .in("screen")
                        .show("Dead zone inner radius", kGroupAdvanced,
                              "inner radius of the ignored ring, as a fraction of the screen"),
                    M::field<&InvalidZoneInfo::rel_radius_outside_invalid_zone>(
                        kFieldOutsideInvalidZoneRaidus)
                        .require()
                        .in("screen")
                        .show("Dead zone outer radius", kGroupAdvanced,
                              "outer radius of the ignored ring, as a fraction of the screen"),
                });
    return table;
}

}  // namespace zunokeymapmanager
