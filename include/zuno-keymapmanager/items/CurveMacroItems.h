//
// CurveMacroItems.h
//
// Items whose gesture is more than one touch: a drawn stroke and a scripted
// macro.
//

#ifndef ZUNO_KEYMAPMANAGER_ITEMS_CURVEMACROITEMS_H
#define ZUNO_KEYMAPMANAGER_ITEMS_CURVEMACROITEMS_H

#include <cstdint>
#include <string>
#include <vector>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/model/Geometry.h"

namespace zunokeymapmanager {

class ZUNO_KM_API CurveConfigItem : public ComposableConfigItem
/// Draws a stroke from `rel_start_pos` to `rel_end_pos`, through the points
/// listed in `rel_all_points_pos`. The point list, `act_as_line` and
/// `start_wait_time` belong to the player of the stroke and are kept as they
/// are. Every member is required on reading.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    PointF rel_start_pos;
    PointF rel_end_pos;
    std::string rel_all_points_pos;
    bool act_as_line = false;
    std::int32_t start_wait_time = 0;
    ///@}

    CurveConfigItem();
    ~CurveConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

class ZUNO_KM_API MacroConfigItem : public ComposableConfigItem
/// Runs one list of macro lines when its key is pressed and another when it
/// is released. Lines are stored as given; checking them is the macro
/// language's business.
///
/// Reading appends to the lists rather than replacing them, so filling the
/// same item twice doubles them. Each list is read only when present, and
/// both are always written, empty or not.
{
public:
    /// Kept in the JSON members of the same names.
    ///@{
    std::vector<std::string> press_actions;
    std::vector<std::string> release_actions;
    ///@}

    MacroConfigItem();
    ~MacroConfigItem() override;

    Poco::JSON::Object ConvertToJsonObject() const override;
    void FillFromJsonObject(const Poco::JSON::Object::Ptr& object) override;

    /// The class's own members, in reading order (model/Members.h).
    static const MemberTable& Members();
};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_ITEMS_CURVEMACROITEMS_H
