//
// ItemPartsIO.cpp
//

#include "items/ItemPartsIO.h"

namespace zunokeymapmanager {
namespace parts {

void readInvalidZone(const json::ObjectPtr& parent, InvalidZoneInfo& out) {
    json::ObjectPtr zone = json::optionalObject(parent, kFieldInvalidZoneInfo);
    if (zone.isNull()) {
        return;
    }
    json::read(zone, kFieldEnable, out.enable);
    json::read(zone, kFieldInsideInvalidZoneRaidus, out.rel_radius_inside_invalid_zone);
    json::read(zone, kFieldOutsideInvalidZoneRaidus, out.rel_radius_outside_invalid_zone);
}

json::ObjectPtr invalidZoneObject(const InvalidZoneInfo& zone) {
    json::ObjectPtr result = json::newObject();
    result->set(kFieldEnable, zone.enable);
    result->set(kFieldInsideInvalidZoneRaidus, zone.rel_radius_inside_invalid_zone);
    result->set(kFieldOutsideInvalidZoneRaidus, zone.rel_radius_outside_invalid_zone);
    return result;
}

}  // namespace parts
}  // namespace zunokeymapmanager
