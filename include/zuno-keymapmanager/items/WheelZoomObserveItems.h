//
// WheelZoomObserveItems.h
//
// Items driven by paired or held input: scrolling, pinch zoom and a free
// look while a key is held.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_WHEELZOOMOBSERVEITEMS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_WHEELZOOMOBSERVEITEMS_H

#include <cstdint>
#include <string>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/items/ComposableItems.h"

namespace zunokeymapmanager {

class ZUNO_KM_API WheelConfigItem : public PairConfigItem
/// A scroll gesture driven by two opposite inputs, the Up and Down arrow
/// keys by default. `orientation` is "vertical" or "horizontal" in practice,
/// but any text is kept as written. Every member is required on reading.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::int32_t sensitivity = 50;
    std::int32_t duration = 200;
    std::string orientation = "vertical";
    ///@}

    WheelConfigItem();
    ~WheelConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API ZoomConfigItem : public PairConfigItem
/// A zoom gesture driven by two opposite inputs, the mouse wheel by default.
/// Every member is required on reading.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::int32_t sensitivity = 100;
    std::string orientation = "vertical";
    std::int32_t duration = 300;
    double one_side_gap = 0.01;
    ///@}

    ZoomConfigItem();
    ~ZoomConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API ObserveConfigItem : public ComposableConfigItem
/// A free look while its key (Alt by default) is held, with separate
/// horizontal and vertical sensitivities and an overall factor. Every member
/// is required on reading.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::int32_t sensitivity_x = 30;
    std::int32_t sensitivity_y = 30;
    double sensitivity = 1.0;
    ///@}

    ObserveConfigItem();

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_WHEELZOOMOBSERVEITEMS_H
