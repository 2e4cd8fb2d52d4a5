//
// TapItems.h
//
// Items that tap one point of the screen: a single tap, a repeated tap, and a
// tip marker that behaves like a single tap.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_TAPITEMS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_TAPITEMS_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/items/ComposableItems.h"

namespace zunokeymapmanager {

class ZUNO_KM_API ClickConfigItem : public ComposableConfigItem
/// One tap at the work position per key press.
{
public:
    ClickConfigItem();
    ~ClickConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API BunchClickConfigItem : public ComposableConfigItem
/// Repeated taps at the work position: "Continue" taps for as long as the key
/// is held, paced by `bunch_click_continue_number`; "One_Off" fires a single
/// burst of `bunch_click_one_off_number` taps. The type is kept as the name
/// it was read with, and the numbers as given: the player interprets them.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::string bunch_click_type = "Continue";
    std::int32_t bunch_click_continue_number = 20;
    std::int32_t bunch_click_one_off_number = 20;
    ///@}

    BunchClickConfigItem();
    ~BunchClickConfigItem() override;

    /// Always writes all three settings.
    Poco::JSON::Object ConvertToJsonObject() const override;

    /// All three settings are required.
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API TipConfigItem : public ComposableConfigItem
/// A tap item under its own type name, so the editor can show it as a tip.
{
public:
    TipConfigItem();
    ~TipConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_TAPITEMS_H
