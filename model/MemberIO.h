//
// MemberIO.h
//
// The one reader and the one writer of every member table: item classes,
// settings blocks, keys, points, the document's info and parameters.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_MEMBERIO_H
#define ZUNO_KEYMAPMANAGER_MODEL_MEMBERIO_H

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/model/Members.h"

namespace zunokeymapmanager {

/// Reads the members of `table` from `object` into `owner` (an object of the
/// table's class), in the table's order: a required member must be there,
/// an optional one is read only when present. Raises what the readers of
/// model/JsonIO.h raise; members read before keep their new values.
void ReadMembers(const MemberTable& table, void* owner, const Poco::JSON::Object::Ptr& object);

/// Writes the members of `table` from `owner` into `object`, each unless its
/// condition says otherwise.
void WriteMembers(const MemberTable& table, const void* owner, Poco::JSON::Object& object);

/// `item` as JSON: the members of its class's table `own` and of the tables
/// it builds on, base first. Every item class writes itself with this.
Poco::JSON::Object WriteItem(const ConfigItem& item, const MemberTable& own);

/// Reads `item` from `object`: the members of its class's table `own` and of
/// the tables it builds on, base first. Every item class reads itself with this.
void ReadItem(ConfigItem& item, const MemberTable& own, const Poco::JSON::Object::Ptr& object);

/// Defines the JSON overrides of the item class `Class`, each one call into
/// the table walker with the class's own table: an item class's source says
/// ZUNO_KM_ITEM_JSON(Class) once instead of writing them out.
#define ZUNO_KM_ITEM_JSON(Class)                                            \
    Poco::JSON::Object Class::ConvertToJsonObject() const {                 \
        return ::zunokeymapmanager::WriteItem(*this, Members());            \
    }                                                                       \
    void Class::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) { \
        ::zunokeymapmanager::ReadItem(*this, Members(), object);            \
    }

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_MEMBERIO_H
