//
// ConfigItem.h
//
// The base of every mapping item.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_CONFIGITEM_H
#define ZUNO_KEYMAPMANAGER_MODEL_CONFIGITEM_H

#include <string>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigIcon.h"
#include "zuno-keymapmanager/model/ConfigKey.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

struct MemberTable;

class ZUNO_KM_API ConfigItem
/// A rule that ties one input key to a gesture on the touch screen.
///
/// Items are made by ConfigFactory, filled from a JSON object, edited
/// through their public fields and written back to JSON. Every item class
/// reads and writes its base class's members first, then its own.
///
/// Reading raises the JSON library's exceptions: Poco::NullPointerException
/// for a missing or non-object member object, Poco::InvalidAccessException
/// ("Can not convert empty value.") for a missing value, and whatever the
/// value conversion raises for a value of the wrong kind. Members read
/// before the failure keep their new values.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::string type;
    ConfigIcon icon;
    ConfigKey key;
    PointF rel_work_position;
    double editor_icon_scale = 1.0;
    ///@}

    /// An item of the type named `typeName`, with every base member at its default.
    explicit ConfigItem(std::string typeName);
    virtual ~ConfigItem();

    /// Items copy member by member.
    ///@{
    ConfigItem(const ConfigItem&) = default;
    ConfigItem& operator=(const ConfigItem&) = default;
    ///@}

    /// Returns the item as a JSON object; keys come out sorted when written.
    virtual Poco::JSON::Object ConvertToJsonObject() const;

    /// Reads the item from `object`. Every base member is required.
    virtual void FillFromJsonObject(const Poco::JSON::Object::Ptr& object);

    /// True when the item cannot be used: its key is not set.
    virtual bool IsInvalid() const;

    /// True when `other` triggers this item.
    virtual bool MatchConfigKey(const ConfigKey& other);

    /// The members every item has, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_CONFIGITEM_H
