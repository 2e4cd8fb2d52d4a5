//
// ComposableItems.h
//
// Items that a key combination may trigger, and items driven by a pair of
// opposite inputs.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_COMPOSABLEITEMS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_COMPOSABLEITEMS_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigItem.h"
#include "zuno-keymapmanager/model/ConfigKey.h"

namespace zunokeymapmanager {

class ZUNO_KM_API ComposableConfigItem : public ConfigItem
/// An item with an optional second key. With a set second key the item
/// fires only for the combination of both keys, never for its key alone.
/// The second key is written as "second_key" only when it is set.
{
public:
    /// Kept in the JSON member of the same name.
    ///@{
    ConfigKey second_key;
    ///@}

    /// An item of the type named `typeName`, without a second key.
    explicit ComposableConfigItem(std::string typeName);
    ~ComposableConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();

    /// True when the item key matches `a` and no second key is set.
    bool MatchConfigKey(const ConfigKey& a) override;

    /// True when the item key matches `a` and the second key matches `b`.
    virtual bool MatchComposableConfigKey(const ConfigKey& a, const ConfigKey& b);
};

class ZUNO_KM_API PairConfigItem : public ComposableConfigItem
/// An item driven by two opposite inputs, each a key or a key combination.
/// Every match records which side matched in `matched_direction`; the
/// positive side wins when both would. A pair item is never invalid.
///
/// Matching writes `matched_direction`, so one pair item must not be
/// matched from two threads at once.
{
public:
    /// Which side matched last.
    enum Direction : std::int32_t { kNoDirection = 0, kPositive = 1, kNegative = 2 };

    /// Kept in the JSON members of the same names.
    ///@{
    ComposableKey positive_key;
    ComposableKey negative_key;
    ///@}
    /// Run-time state, not written to JSON.
    std::int32_t matched_direction = kNoDirection;

    /// An item of the type named `typeName`, with both sides unset.
    explicit PairConfigItem(std::string typeName);
    ~PairConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
    bool IsInvalid() const override;
    bool MatchConfigKey(const ConfigKey& a) override;
    bool MatchComposableConfigKey(const ConfigKey& a, const ConfigKey& b) override;
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_COMPOSABLEITEMS_H
