//
// Members.h
//
// The declaration of the keymap format. Every item class, every settings
// block and the document's info and parameters have one table of their JSON
// members: name, where the value lives, kind, whether reading requires it,
// when it is written, and for people a label, a group, a description, the
// names and range it allows. The readers and writers walk these tables; the
// key slots and screen points of an item, the format's schema and the
// benchmark documents are derived from them.
//
// A member's default is what a freshly made owner holds: the constructors
// set the defaults, and everything that shows a default reads it from a
// fresh object.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_MEMBERS_H
#define ZUNO_KEYMAPMANAGER_MODEL_MEMBERS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/Export.h"
#include "zuno-keymapmanager/model/ConfigKey.h"
#include "zuno-keymapmanager/model/Geometry.h"
#include "zuno-keymapmanager/model/NameLists.h"

namespace zunokeymapmanager {

class ConfigItem;

/// What a key member does for its item.
enum class KeyRole : std::uint8_t {
    Key,            ///< fires the item, alone or with its second key
    SecondKey,      ///< the other key of a combination with a Key
    Direction,      ///< one of four direction keys, each firing the item alone
    PairKey,        ///< one side of a pair, alone or with its second key
    PairSecondKey,  ///< the other key of a side's combination
    Carried,        ///< kept and written, but the item's own keys replace it
};

/// How a member's value is held and written.
enum class MemberKind : std::uint8_t {
    Boolean,  ///< bool, a JSON boolean
    Integer,  ///< std::int32_t, a JSON integer
    Number,   ///< double, a JSON number
    String,   ///< std::string, a JSON string
    Lines,    ///< std::vector<std::string>, an array of strings appended to on reading
    Object,   ///< a JSON object holding the members of another table
    Route,    ///< members another class reads and writes for the owner (see Member::route)
};

/// Particulars of a member, or'ed together.
enum MemberFlag : std::uint16_t {
    kReadTwice = 1U << 0,     ///< an object whose leading required members are read twice
    kMoves = 1U << 1,         ///< a point, or a text of points, that goes along when its item moves
    kNullIsUnset = 1U << 2,   ///< a point whose (0, 0) stands for "not set"
    kPointText = 1U << 3,     ///< a string that lists points
    kTypeName = 1U << 4,      ///< the item's type name
    kEmptyAllowed = 1U << 5,  ///< the empty string is allowed besides the listed names
    kRadius = 1U << 6,        ///< a length drawn as a circle, a fraction of the shorter side
    kArea = 1U << 7,          ///< a size drawn as a rectangle around the touch point
    kZeroMeans = 1U << 8,     ///< a size whose zero means something: a fresh item keeps it
};

struct MemberTable;

/// Members another class reads and writes for their owner: the owner's
/// reading and writing of them, and the table of what they are.
struct ZUNO_KM_API MemberRoute {
    /// Reads them from the owner's object.
    void (*read)(void* owner, const Poco::JSON::Object::Ptr& object);
    /// Writes them into the owner's object.
    void (*write)(const void* owner, Poco::JSON::Object& object);
    /// What they are, for the schema.
    const MemberTable& (*members)();
};

struct ZUNO_KM_API Member
/// One JSON member. Made by MembersOf<Owner> and completed with the setters.
{
    const std::string* name = nullptr;          ///< a kField constant, so it outlives every read
    MemberKind kind = MemberKind::Boolean;      ///< how the value is held and written
    bool required = false;                      ///< read without a presence test
    std::uint16_t flags = 0;                    ///< MemberFlag values
    void* (*at)(void* owner) = nullptr;         ///< the value in its owner
    const MemberTable& (*members)() = nullptr;  ///< Object: the members inside
    const MemberRoute* route = nullptr;         ///< Route: who reads and writes them
    /// Written only when this says so of the owner; always when null.
    bool (*written)(const void* owner) = nullptr;

    KeyRole role = KeyRole::Key;  ///< a key: what it does for its item
    const char* slot = "";  ///< a key, point or size: its name in KeySlot, PointSlot, SizeSlot

    const char* title = "";  ///< a short label for people
    const char* group = "";  ///< the editor's group: "Position", "Keys", "Behaviour", "Advanced"
    const char* description = "";  ///< one line on what it is
    const char* unit = "";         ///< the unit of a number ("ms", "%", "screen"), if any
    /// The names a string allows (one of the shared name lists), if any.
    const std::string_view* names = nullptr;
    std::size_t nameCount = 0;  ///< how many `names` there are
    /// The range a number or integer allows; NaN where it is open.
    double minimum = std::numeric_limits<double>::quiet_NaN();
    double maximum = std::numeric_limits<double>::quiet_NaN();  ///< see `minimum`
    const char* pattern = "";  ///< a regular expression a string must match, if any

    /// Setters, for tables that read like the format's documentation.
    ///@{
    Member& require() {
        required = true;
        return *this;
    }
    Member& flag(std::uint16_t more) {
        flags = static_cast<std::uint16_t>(flags | more);
        return *this;
    }
    Member& when(bool (*predicate)(const void* owner)) {
        written = predicate;
        return *this;
    }
    Member& key(KeyRole keyRole, const char* slotName) {
        role = keyRole;
        slot = slotName;
        return *this;
    }
    Member& point(const char* slotName, std::uint16_t pointFlags) {
        slot = slotName;
        return flag(pointFlags);
    }
    /// A size drawn around a point (kRadius or kArea, maybe kZeroMeans),
    /// which the editor's handles change; `slotName` is how people call it.
    Member& size(const char* slotName, std::uint16_t sizeFlags) {
        slot = slotName;
        return flag(sizeFlags);
    }
    Member& show(const char* label, const char* inGroup, const char* line) {
        title = label;
        group = inGroup;
        description = line;
        return *this;
    }
    Member& in(const char* unitName) {
        unit = unitName;
        return *this;
    }
    template <std::size_t N>
    Member& oneOf(const std::array<std::string_view, N>& list) {
        names = list.data();
        nameCount = N;
        return *this;
    }
    Member& range(double low, double high) {
        minimum = low;
        maximum = high;
        return *this;
    }
    Member& matching(const char* regex) {
        pattern = regex;
        return *this;
    }
    ///@}
};

/// What a colour member's text must match: RRGGBBAA, eight hexadecimal
/// digits. The only pattern the tables use, so the check names it a colour.
inline constexpr const char* kColourPattern = "^[0-9A-Fa-f]{8}$";

struct ZUNO_KM_API MemberTable
/// The members of one class or settings block, in reading order.
{
    /// The name under which the schema shares it ("icon", "key"), or empty
    /// for a class's own members.
    const char* shared = "";
    /// One line on what it is (for an item class: what the item does).
    const char* description = "";
    std::vector<Member> members;  ///< in reading order
    /// An item class's table: the table of the class whose reading and
    /// writing come first, or null.
    const MemberTable* base = nullptr;
    /// An item class's table: the owner of its members, from the item.
    void* (*owner)(ConfigItem& item) = nullptr;
    /// Whether its keys fire the item in place of the base class's key.
    bool ownKeys = false;
};

/// One item type: its name, its class and the table of the class.
struct ZUNO_KM_API ItemDeclaration {
    ItemType type;                    ///< the type
    ConfigItem* (*make)();            ///< a new item with every default
    const MemberTable& (*members)();  ///< the class's own table; its bases follow `base`
    const std::type_info* typeInfo;   ///< the class
};

/// Every item type, in the order of the type names, without "Unknown".
ZUNO_KM_API const std::vector<ItemDeclaration>& ItemDeclarations();

/// The declaration of `item`'s class, or null for a class the library does not make.
ZUNO_KM_API const ItemDeclaration* DeclarationOf(const ConfigItem& item);

/// An item class's table `own` and those of the classes it builds on, base
/// first: the order in which an item is read and written.
ZUNO_KM_API std::vector<const MemberTable*> TablesOf(const MemberTable& own);

/// The shapes every table uses.
///@{
ZUNO_KM_API const MemberTable& PointMembers();
ZUNO_KM_API const MemberTable& SizeMembers();
ZUNO_KM_API const MemberTable& KeyMembers();
ZUNO_KM_API const MemberTable& ComposableKeyMembers();
///@}

/// \cond INTERNAL
namespace members {

template <typename T>
struct MemberPointer;
template <typename Class, typename T>
struct MemberPointer<T Class::*> {
    using Type = T;
};

template <typename Owner, auto M>
void* valueAt(void* owner) {
    return &(static_cast<Owner*>(owner)->*M);
}

template <typename Owner>
void* itself(void* owner) {
    return owner;
}

template <typename Owner>
void* ownerOf(ConfigItem& item) {
    if constexpr (std::is_base_of_v<ConfigItem, Owner>) {
        return static_cast<Owner*>(&item);
    } else {
        return nullptr;
    }
}

}  // namespace members
/// \endcond

template <typename Owner>
struct MembersOf
/// Makes the members of `Owner`'s table.
{
    /// The member `M` of `Owner` (or of one of its bases), kept under `name`,
    /// a name that lives as long as the program (a kField constant): the table
    /// keeps a pointer to it. Its kind follows from its type.
    template <auto M>
    static Member field(const std::string& name) {
        using T = typename members::MemberPointer<decltype(M)>::Type;
        Member member;
        member.name = &name;
        member.at = &members::valueAt<Owner, M>;
        if constexpr (std::is_same_v<T, bool>) {
            member.kind = MemberKind::Boolean;
        } else if constexpr (std::is_same_v<T, std::int32_t>) {
            member.kind = MemberKind::Integer;
        } else if constexpr (std::is_same_v<T, double>) {
            member.kind = MemberKind::Number;
        } else if constexpr (std::is_same_v<T, std::string>) {
            member.kind = MemberKind::String;
        } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
            member.kind = MemberKind::Lines;
        } else {
            member.kind = MemberKind::Object;
            if constexpr (std::is_same_v<T, PointF>) {
                member.members = &PointMembers;
            } else if constexpr (std::is_same_v<T, SizeF>) {
                member.members = &SizeMembers;
            } else if constexpr (std::is_same_v<T, ConfigKey>) {
                member.members = &KeyMembers;
            } else if constexpr (std::is_same_v<T, ComposableKey>) {
                member.members = &ComposableKeyMembers;
            }
        }
        return member;
    }

    /// A temporary name (a string literal included) would be gone before the
    /// first read.
    ///@{
    template <auto M>
    static Member field(std::string&& name) = delete;
    template <auto M>
    static Member block(std::string&& name, const MemberTable& (*table)()) = delete;
    static Member group(std::string&& name, const MemberTable& (*table)()) = delete;
    ///@}

    /// The settings block `M`, kept as an object under `name`.
    template <auto M>
    static Member block(const std::string& name, const MemberTable& (*table)()) {
        Member member = field<M>(name);
        member.members = table;
        return member;
    }

    /// An object under `name` whose members `table` are the owner's own.
    static Member group(const std::string& name, const MemberTable& (*table)()) {
        Member member;
        member.name = &name;
        member.kind = MemberKind::Object;
        member.at = &members::itself<Owner>;
        member.members = table;
        return member;
    }

    /// Members that `route` reads and writes for the owner.
    static Member routed(const MemberRoute& route) {
        Member member;
        member.kind = MemberKind::Route;
        member.at = &members::itself<Owner>;
        member.route = &route;
        return member;
    }

    /// A table of `Owner`'s members; an item class names the table it builds
    /// on, and whether its own keys fire it in place of the base class's key.
    static MemberTable table(const char* description, std::vector<Member> list,
                             const MemberTable* base = nullptr, bool ownKeys = false) {
        MemberTable result;
        result.description = description;
        result.members = std::move(list);
        result.base = base;
        result.owner = &members::ownerOf<Owner>;
        result.ownKeys = ownKeys;
        return result;
    }

    /// A settings block the schema shares under `name`.
    static MemberTable part(const char* name, const char* description, std::vector<Member> list) {
        MemberTable result = table(description, std::move(list));
        result.shared = name;
        return result;
    }
};

/// The editor's groups.
///@{
inline constexpr const char* kGroupPosition = "Position";
inline constexpr const char* kGroupKeys = "Keys";
inline constexpr const char* kGroupBehaviour = "Behaviour";
inline constexpr const char* kGroupAdvanced = "Advanced";
///@}

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_MEMBERS_H
