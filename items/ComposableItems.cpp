//
// ComposableItems.cpp
//

#include "zuno-keymapmanager/items/ComposableItems.h"

#include <utility>

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// --- ComposableConfigItem ----------------------------------------------------

ComposableConfigItem::ComposableConfigItem(std::string typeName)
    : ConfigItem(std::move(typeName)) {}

ComposableConfigItem::~ComposableConfigItem() = default;

ZUNO_KM_ITEM_JSON(ComposableConfigItem)

const MemberTable& ComposableConfigItem::Members() {
    using M = MembersOf<ComposableConfigItem>;
    static const MemberTable table = M::table(
        "an item that a two-key combination may fire",
        {
            M::field<&ComposableConfigItem::second_key>(kFieldSecondKey)
                .key(KeyRole::SecondKey, "second")
                .when([](const void* owner) {
                    return static_cast<const ComposableConfigItem*>(owner)->second_key.isSet();
                })
                .show("Second key", kGroupKeys,
                      "makes the item a two-key combination: it fires only when both keys are "
                      "pressed; written only when set"),
        },
        &ConfigItem::Members());
    return table;
}

bool ComposableConfigItem::MatchConfigKey(const ConfigKey& a) {
    return key.Match(a) && !second_key.isSet();
}

bool ComposableConfigItem::MatchComposableConfigKey(const ConfigKey& a, const ConfigKey& b) {
    return key.Match(a) && second_key.Match(b);
}

// --- PairConfigItem ------------------------------------------------------------

PairConfigItem::PairConfigItem(std::string typeName) : ComposableConfigItem(std::move(typeName)) {}

PairConfigItem::~PairConfigItem() = default;

ZUNO_KM_ITEM_JSON(PairConfigItem)

const MemberTable& PairConfigItem::Members() {
    using M = MembersOf<PairConfigItem>;
    static const MemberTable table = M::table(
        "an item driven by two opposite inputs",
        {
            M::field<&PairConfigItem::positive_key>(kFieldPositiveKey)
                .require()
                .key(KeyRole::PairKey, "positive")
                .show("Positive key", kGroupKeys,
                      "the key (or combination) that fires the gesture in its positive direction"),
            M::field<&PairConfigItem::negative_key>(kFieldNegativeKey)
                .require()
                .key(KeyRole::PairKey, "negative")
                .show("Negative key", kGroupKeys,
                      "the key (or combination) that fires the gesture in its negative direction"),
        },
        &ConfigItem::Members(), true);
    return table;
}

bool PairConfigItem::IsInvalid() const {
    return false;
}

bool PairConfigItem::MatchConfigKey(const ConfigKey& a) {
    if (positive_key.key.Match(a) && !positive_key.second_key.isSet()) {
        matched_direction = kPositive;
    } else if (negative_key.key.Match(a) && !negative_key.second_key.isSet()) {
        matched_direction = kNegative;
    } else {
        matched_direction = kNoDirection;
    }
    return matched_direction != kNoDirection;
}

bool PairConfigItem::MatchComposableConfigKey(const ConfigKey& a, const ConfigKey& b) {
    if (positive_key.Match(a, b)) {
        matched_direction = kPositive;
    } else if (negative_key.Match(a, b)) {
        matched_direction = kNegative;
    } else {
        matched_direction = kNoDirection;
    }
    return matched_direction != kNoDirection;
}

}  // namespace zunokeymapmanager
