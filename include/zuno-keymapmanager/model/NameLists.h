//
// NameLists.h
//
// The names under which enumerated settings are written to JSON. The numeric
// value of a setting is the position of its name in its own list.
//
// Items keep their enumerated settings as the name strings themselves and
// never check them against these lists, so a document carrying a name the
// library does not know keeps it through a read and a write.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_NAMELISTS_H
#define ZUNO_KEYMAPMANAGER_MODEL_NAMELISTS_H

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "zuno-keymapmanager/model/ItemTypes.h"

namespace zunokeymapmanager {

/// \cond INTERNAL
#define ZUNO_KM_ITEM_ENUM(name, ...) name,
#define ZUNO_KM_ITEM_NAME(name, ...) #name,
// NOLINTNEXTLINE(bugprone-macro-parentheses): a term of the sum that counts the rows
#define ZUNO_KM_ITEM_COUNT(...) +1
#define ZUNO_KM_ITEM_CLASS(name, itemClass, ...) class itemClass;
/// \endcond

/// Every item type, and Unknown for none.
enum class ItemType { Unknown, ZUNO_KM_ITEM_TYPES(ZUNO_KM_ITEM_ENUM) };

/// The type names, in the order of ItemType.
inline constexpr std::array<std::string_view, 1 ZUNO_KM_ITEM_TYPES(ZUNO_KM_ITEM_COUNT)>
    kItemTypeNames{"Unknown", ZUNO_KM_ITEM_TYPES(ZUNO_KM_ITEM_NAME)};

namespace detail {
template <std::size_t... I>
constexpr std::array<std::string_view, sizeof...(I)> itemTypesAfterUnknown(
    std::index_sequence<I...> /*unused*/) {
    return {kItemTypeNames[I + 1]...};
}
}  // namespace detail

/// The types an item in a document can have, in the order of the type list:
/// kItemTypeNames without the "Unknown" placeholder at its start, which no
/// item has.
inline constexpr std::array<std::string_view, kItemTypeNames.size() - 1> kDocumentItemTypeNames =
    detail::itemTypesAfterUnknown(std::make_index_sequence<kItemTypeNames.size() - 1>());

enum class DeviceType { Keyboard, Mouse, Joystick };

inline constexpr std::array<std::string_view, 3> kDeviceNames{"keyboard", "mouse", "joystick"};

// Drag items (first and subsequent touch point policies).
inline constexpr std::array<std::string_view, 3> kHandleTypeNames{"Transparent", "Click", "Move"};
inline constexpr std::array<std::string_view, 3> kMoveTypeNames{"Constant", "Big_Variable",
                                                                "Small_Variable"};
inline constexpr std::array<std::string_view, 2> kInLinePolicyNames{"Use_Both", "Just_Use_Last"};
inline constexpr std::array<std::string_view, 6> kAxisPolicyNames{"Default", "Sin", "Cos",
                                                                  "X",       "X2",  "Infinite"};

// Look items.
inline constexpr std::array<std::string_view, 4> kResetTypeNames{
    "Range_Window", "Range_Have_Padding_To_Window", "Range_User", "Range_User_Allow_Outside"};

// Tap items.
inline constexpr std::array<std::string_view, 2> kBunchClickTypeNames{"Continue", "One_Off"};

// Skill items.
inline constexpr std::array<std::string_view, 3> kSpellTouchLocationPolicyNames{
    "Spell_touch_location_mouse_dependence", "Spell_touch_location_swipehold_dependence",
    "Spell_touch_location_inner_swipehold_dependence"};
inline constexpr std::array<std::string_view, 4> kSpellTriggerPolicyNames{
    "Spell_Trigger_On_Release_Key", "Spell_Trigger_On_Press_Key", "Spell_Trigger_On_Next_Key",
    "Spell_Trigger_Immedaite"};

// Document info.
inline constexpr std::array<std::string_view, 3> kTransparentMouseNames{
    "Mouse_OtherButton_Transparent", "Mouse_AllButton_Transparent", "Mouse_No_Transparent"};

// Gamepad controls with a name of their own.
inline constexpr std::array<std::string_view, 3> kStickNames{"Left_Stick", "Right_Stick", "Space"};

// Fire item.
inline constexpr std::array<std::string_view, 2> kFireRangePolicyNames{
    "Fire_range_dependent_swipehold", "Fire_range_unlimited"};

// Wheel and Zoom items.
inline constexpr std::array<std::string_view, 2> kOrientationNames{"horizontal", "vertical"};

// Captions of the mouse buttons.
inline constexpr std::array<std::string_view, 11> kMouseButtonCaptions{
    "left_mouse",      "right_mouse",     "middle_mouse",      "back_mouse",
    "forward_mouse",   "roller_up_mouse", "roller_down_mouse", "side_up_mouse",
    "side_down_mouse", "wheel_up_mouse",  "wheel_down_mouse"};

/// The position of `name` in `list`, or -1 when the list does not hold it.
template <std::size_t N>
constexpr int IndexOfName(const std::array<std::string_view, N>& list, std::string_view name) {
    for (std::size_t i = 0; i < N; ++i) {
        if (list[i] == name) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

/// The type name of `type`.
constexpr std::string_view NameOf(ItemType type) {
    return kItemTypeNames[static_cast<std::size_t>(type)];
}

/// \cond INTERNAL
ZUNO_KM_ITEM_TYPES(ZUNO_KM_ITEM_CLASS)
template <typename Item>
struct ItemTypeOf;
#define ZUNO_KM_ITEM_TRAIT(name, itemClass, ...)          \
    template <>                                           \
    struct ItemTypeOf<itemClass> {                        \
        static constexpr ItemType value = ItemType::name; \
    };
ZUNO_KM_ITEM_TYPES(ZUNO_KM_ITEM_TRAIT)
/// \endcond

/// The type name of the item class `Item`, as its row in the type list gives it.
template <typename Item>
constexpr std::string_view TypeNameOf() {
    return NameOf(ItemTypeOf<Item>::value);
}

/// The device name of `device`.
constexpr std::string_view NameOf(DeviceType device) {
    return kDeviceNames[static_cast<std::size_t>(device)];
}

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_NAMELISTS_H
