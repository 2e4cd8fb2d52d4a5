//
// DiamondConfigItem.h
//
// The common base of items steered by four direction keys.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_DIAMONDCONFIGITEM_H
#define ZUNO_KEYMAPMANAGER_ITEMS_DIAMONDCONFIGITEM_H

#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"

namespace zunokeymapmanager {

class ZUNO_KM_API DiamondConfigItem : public ConfigItem
/// Holds the four direction keys, all unset by default. It adds no
/// behaviour of its own to ConfigItem; the classes built on it (Swipehold,
/// Eye, Gravity) validate and match through their direction keys.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    ConfigKey top;
    ConfigKey right;
    ConfigKey bottom;
    ConfigKey left;
    ///@}

    /// An item of the type named `typeName`, with its direction keys unset.
    explicit DiamondConfigItem(std::string typeName);
    ~DiamondConfigItem() override;

protected:
    /// Whether any direction key is set, examined top, bottom, left, right.
    bool HasUsableDirectionKey() const;

    /// Whether `other` matches a direction key, tried top, bottom, left, right.
    bool MatchDirectionKey(const ConfigKey& other) const;
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_DIAMONDCONFIGITEM_H
