//
// ItemPartsIO.h
//
// Readers and writers of the settings blocks that several item types share.
// Each block has exactly one reader and one writer, used by every item that
// carries it.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTSIO_H
#define ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTSIO_H

#include "model/JsonIO.h"
#include "zuno-keymapmanager/items/ItemParts.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {
namespace parts {

/// Reads "invalid_zone_info" from `parent` when present; its three members
/// are then required.
void readInvalidZone(const json::ObjectPtr& parent, InvalidZoneInfo& out);

/// {"enable", "rel_radius_inside_invalid_zone", "rel_radius_outside_invalid_zone"}.
json::ObjectPtr invalidZoneObject(const InvalidZoneInfo& zone);

/// Reads the required "reset_policy" object into an item's `reset_type`,
/// `reset_wait_interval`, `auto_reset_period` and `need_reset`.
template <typename Item>
void readResetPolicy(const json::ObjectPtr& parent, Item& item) {
    json::ObjectPtr policy = json::object(parent, kFieldResetPolicy);
    json::read(policy, kFieldResetType, item.reset_type);
    json::read(policy, kFieldResetWaitInterval, item.reset_wait_interval);
    json::read(policy, kFieldAutoResetPeriod, item.auto_reset_period);
    json::read(policy, kFieldNeedReset, item.need_reset);
}

/// The "reset_policy" object of an item.
template <typename Item>
json::ObjectPtr resetPolicyObject(const Item& item) {
    json::ObjectPtr policy = json::newObject();
    policy->set(kFieldResetType, item.reset_type);
    policy->set(kFieldResetWaitInterval, item.reset_wait_interval);
    policy->set(kFieldAutoResetPeriod, item.auto_reset_period);
    policy->set(kFieldNeedReset, item.need_reset);
    return policy;
}

}  // namespace parts
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_ITEMPARTSIO_H
