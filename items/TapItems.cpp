//
// TapItems.cpp
//

#include "zuno-keymapmanager/items/TapItems.h"

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// Click and Tip carry nothing beyond the composable base; their own overrides
// keep each item class's reading and writing in one place for subclasses.

// --- ClickConfigItem -----------------------------------------------------------

ClickConfigItem::ClickConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<ClickConfigItem>())) {}

ClickConfigItem::~ClickConfigItem() = default;

ZUNO_KM_ITEM_JSON(ClickConfigItem)

const MemberTable& ClickConfigItem::Members() {
    static const MemberTable table = MembersOf<ClickConfigItem>::table(
        "A single tap at `rel_work_position`.", {}, &ComposableConfigItem::Members());
    return table;
}

// --- BunchClickConfigItem ------------------------------------------------------

BunchClickConfigItem::BunchClickConfigItem()
    : ComposableConfigItem(std::string(TypeNameOf<BunchClickConfigItem>())) {}

BunchClickConfigItem::~BunchClickConfigItem() = default;

ZUNO_KM_ITEM_JSON(BunchClickConfigItem)

const MemberTable& BunchClickConfigItem::Members() {
    using M = MembersOf<BunchClickConfigItem>;
    static const MemberTable table = M::table(
        "Repeated taps: continuously while the key is held, or a burst of a fixed number.",
        {
            M::field<&BunchClickConfigItem::bunch_click_type>(kFieldBunchClickType)
                .require()
                .oneOf(kBunchClickTypeNames)
                .show("Repeat", kGroupBehaviour,
                      "Continue taps while the key is held; One_Off taps a fixed number of times"),
            M::field<&BunchClickConfigItem::bunch_click_continue_number>(
                kFieldBunchClickContinueNumber)
                .require()
                .in("taps/s")
                .show("Taps per second", kGroupBehaviour,
                      "taps per second while the key is held (Continue)"),
            M::field<&BunchClickConfigItem::bunch_click_one_off_number>(
                kFieldBunchClickOneOffNumber)
                .require()
                .show("Taps per burst", kGroupBehaviour, "number of taps of one burst (One_Off)"),
        },
        &ComposableConfigItem::Members());
    return table;
}

// --- TipConfigItem -------------------------------------------------------------

TipConfigItem::TipConfigItem() : ComposableConfigItem(std::string(TypeNameOf<TipConfigItem>())) {}

TipConfigItem::~TipConfigItem() = default;

ZUNO_KM_ITEM_JSON(TipConfigItem)

const MemberTable& TipConfigItem::Members() {
    static const MemberTable table = MembersOf<TipConfigItem>::table(
        "A single tap, like Click, under its own type name.", {}, &ComposableConfigItem::Members());
    return table;
}

}  // namespace zunokeymapmanager
