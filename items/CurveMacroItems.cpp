//
// CurveMacroItems.cpp
//

#include "zuno-keymapmanager/items/CurveMacroItems.h"

#include <utility>

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- CurveConfigItem -------------------------------------------------------------

CurveConfigItem::CurveConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<CurveConfigItem>())) {}

CurveConfigItem::~CurveConfigItem() = default;

ZUNO_KM_ITEM_JSON(CurveConfigItem)

const MemberTable& CurveConfigItem::Members() {
    using M = MembersOf<CurveConfigItem>;
    static const MemberTable table = M::table(
        "Draws a stroke from a start point to an end point.",
        {
            M::field<&CurveConfigItem::rel_start_pos>(kFieldRelStartPos)
                .require()
                .point("start", kMoves)
                .show("Start", kGroupPosition, "where the stroke starts"),
            M::field<&CurveConfigItem::rel_end_pos>(kFieldRelEndPos)
                .require()
                .point("end", kMoves)
                .show("End", kGroupPosition, "where the stroke ends"),
            M::field<&CurveConfigItem::rel_all_points_pos>(kFieldRelAllPointsPos)
                .require()
                .point("points", kMoves | kPointText)
                .show("Points between", kGroupPosition,
                      "the points between start and end, kept as text"),
            M::field<&CurveConfigItem::act_as_line>(kFieldActAsLine)
                .require()
                .show("Straight line", kGroupBehaviour,
                      "whether the stroke goes straight from start to end, ignoring the points "
                      "between"),
            M::field<&CurveConfigItem::start_wait_time>(kFieldStartWaitTime)
                .require()
                .in("ms")
                .show("Start delay", kGroupAdvanced,
                      "pause before the stroke starts, in milliseconds"),
        },
        &ComposableConfigItem::Members());
    return table;
}

// --- MacroConfigItem -------------------------------------------------------------

MacroConfigItem::MacroConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<MacroConfigItem>())) {}

MacroConfigItem::~MacroConfigItem() = default;

ZUNO_KM_ITEM_JSON(MacroConfigItem)

const MemberTable& MacroConfigItem::Members() {
    using M = MembersOf<MacroConfigItem>;
    static const MemberTable table = M::table(
        "Runs a macro script: `press_actions` when the key goes down, `release_actions` when it "
        "comes up. Lines are editing text of the macro language (see `zuno-keymap macro "
        "--help`).",
        {
            M::field<&MacroConfigItem::press_actions>(kFieldPressActions)
                .show("On press", kGroupBehaviour,
                      "macro lines run when the key goes down, one line each in editing text (see "
                      "docs/macro.md)"),
            M::field<&MacroConfigItem::release_actions>(kFieldReleaseActions)
                .show("On release", kGroupBehaviour,
                      "macro lines run when the key comes up, one line each in editing text"),
        },
        &ComposableConfigItem::Members());
    return table;
}

}  // namespace zunokeymapmanager
