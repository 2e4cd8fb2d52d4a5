//
// Members.cpp
//

#include "model/MemberIO.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

namespace {

template <typename T>
T& valueOf(const Member& member, void* owner) {
    return *static_cast<T*>(member.at(owner));
}

template <typename T>
void readValue(const Member& member, void* owner, const json::ObjectPtr& object) {
    if (member.required) {
        json::read(object, *member.name, valueOf<T>(member, owner));
    } else {
        json::readOptional(object, *member.name, valueOf<T>(member, owner));
    }
}

// Lines are appended to: reading an object twice doubles them.
void readLines(const Member& member, void* owner, const json::ObjectPtr& object) {
    if (!member.required && !json::has(object, *member.name)) {
        return;
    }
    const json::ArrayPtr elements = json::array(object, *member.name);
    auto& lines = valueOf<std::vector<std::string>>(member, owner);
    for (std::size_t i = 0; i < elements->size(); ++i) {
        std::string line;
        json::readElement(elements, i, line);
        lines.push_back(std::move(line));
    }
}

void readMember(const Member& member, void* owner, const json::ObjectPtr& object);

void readObject(const Member& member, void* owner, const json::ObjectPtr& object) {
    json::ObjectPtr inner = member.required ? json::object(object, *member.name)
                                            : json::optionalObject(object, *member.name);
    if (inner.isNull()) {
        return;
    }
    const MemberTable& table = member.members();
    void* value = member.at(owner);
    if ((member.flags & kReadTwice) != 0) {
        // Looked up again and its leading required members read twice: the
        // established order, kept so that a faulty document fails exactly
        // where hosts expect it to.
        const json::ObjectPtr first = json::object(object, *member.name);
        for (const Member& leading : table.members) {
            if (!leading.required) {
                break;
            }
            readMember(leading, value, first);
        }
        inner = json::object(object, *member.name);
    }
    ReadMembers(table, value, inner);
}

void readMember(const Member& member, void* owner, const json::ObjectPtr& object) {
    switch (member.kind) {
        case MemberKind::Boolean:
            readValue<bool>(member, owner, object);
            break;
        case MemberKind::Integer:
            readValue<std::int32_t>(member, owner, object);
            break;
        case MemberKind::Number:
            readValue<double>(member, owner, object);
            break;
        case MemberKind::String:
            readValue<std::string>(member, owner, object);
            break;
        case MemberKind::Lines:
            readLines(member, owner, object);
            break;
        case MemberKind::Object:
            readObject(member, owner, object);
            break;
        case MemberKind::Route:
            member.route->read(member.at(owner), object);
            break;
    }
}

json::ArrayPtr linesArray(const std::vector<std::string>& lines) {
    json::ArrayPtr result = new Poco::JSON::Array();
    for (const std::string& line : lines) {
        result->add(line);
    }
    return result;
}

// The accessors serve reading and writing alike; writing only reads.
const void* constAt(const Member& member, const void* owner) {
    return member.at(const_cast<void*>(owner));  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

template <typename T>
const T& constValueOf(const Member& member, const void* owner) {
    return *static_cast<const T*>(constAt(member, owner));
}

}  // namespace

void ReadMembers(const MemberTable& table, void* owner, const json::ObjectPtr& object) {
    for (const Member& member : table.members) {
        readMember(member, owner, object);
    }
}

void WriteMembers(const MemberTable& table, const void* owner, Poco::JSON::Object& object) {
    for (const Member& member : table.members) {
        if (member.written != nullptr && !member.written(owner)) {
            continue;
        }
        switch (member.kind) {
            case MemberKind::Boolean:
                object.set(*member.name, constValueOf<bool>(member, owner));
                break;
            case MemberKind::Integer:
                object.set(*member.name, constValueOf<std::int32_t>(member, owner));
                break;
            case MemberKind::Number:
                object.set(*member.name, constValueOf<double>(member, owner));
                break;
            case MemberKind::String:
                object.set(*member.name, constValueOf<std::string>(member, owner));
                break;
            case MemberKind::Lines:
                object.set(*member.name,
                           linesArray(constValueOf<std::vector<std::string>>(member, owner)));
                break;
            case MemberKind::Object: {
                json::ObjectPtr inner = json::newObject();
                WriteMembers(member.members(), constAt(member, owner), *inner);
                object.set(*member.name, inner);
                break;
            }
            case MemberKind::Route:
                member.route->write(constAt(member, owner), object);
                break;
        }
    }
}

// --- The shapes ---------------------------------------------------------------

const MemberTable& PointMembers() {
    using M = MembersOf<PointF>;
    static const MemberTable table = M::part(
        "point",
        "a position as fractions of the screen's width and height, so one keymap fits every "
        "window",
        {
            M::field<&PointF::x>(kFieldRelX)
                .require()
                .range(0, 1)
                .show("X", "",
                      "horizontal position as a fraction of the screen's width, 0 (left) to 1 "
                      "(right)"),
            M::field<&PointF::y>(kFieldRelY)
                .require()
                .range(0, 1)
                .show("Y", "",
                      "vertical position as a fraction of the screen's height, 0 (top) to 1 "
                      "(bottom)"),
        });
    return table;
}

const MemberTable& SizeMembers() {
    using M = MembersOf<SizeF>;
    static const MemberTable table =
        M::part("size", "a size as fractions of the screen's width and height",
                {
                    M::field<&SizeF::width>(kFieldRelWidth)
                        .require()
                        .range(0, 1)
                        .show("Width", "", "width as a fraction of the screen's width, 0 to 1"),
                    M::field<&SizeF::height>(kFieldRelHeight)
                        .require()
                        .range(0, 1)
                        .show("Height", "", "height as a fraction of the screen's height, 0 to 1"),
                });
    return table;
}

const MemberTable& KeyMembers() {
    using M = MembersOf<ConfigKey>;
    static const MemberTable table = M::part(
        "key",
        "one input: a keyboard key, a mouse button or a gamepad control; gamepad keys match on "
        "device and text, all others on device and scan code",
        {
            M::field<&ConfigKey::device>(kFieldDevice)
                .require()
                .oneOf(kDeviceNames)
                .flag(kEmptyAllowed)
                .show("Device", "", "keyboard, mouse or joystick; empty means no key is assigned"),
            M::field<&ConfigKey::text>(kFieldText)
                .require()
                .show("Caption", "",
                      "the key's caption as the library computes it from the scan code (keyboard, "
                      "mouse), or the control's name (joystick), which is what gamepad keys match "
                      "on"),
            M::field<&ConfigKey::scan_code>(kFieldScanCode)
                .require()
                .show("Scan code", "",
                      "PC set-1 scan code (256 added for extended keys, right Ctrl 285) or mouse "
                      "button code; keyboard and mouse keys match on it; 2147483647 means unset"),
            M::field<&ConfigKey::virtual_key>(kFieldVirtualKey)
                .require()
                .show("Virtual key", "", "the key's virtual-key code; 2147483647 means unset"),
        });
    return table;
}

const MemberTable& ComposableKeyMembers() {
    using M = MembersOf<ComposableKey>;
    static const MemberTable table =
        M::table("a key, or a combination of two keys pressed together",
                 {
                     M::field<&ComposableKey::key>(kFieldKey)
                         .require()
                         .key(KeyRole::PairKey, "")
                         .show("Key", kGroupKeys, "the first key of the combination"),
                     M::field<&ComposableKey::second_key>(kFieldSecondKey)
                         .key(KeyRole::PairSecondKey, "second")
                         .when([](const void* owner) {
                             return static_cast<const ComposableKey*>(owner)->second_key.isSet();
                         })
                         .show("Second key", kGroupKeys,
                               "the second key of the combination; written only when set"),
                 });
    return table;
}

Poco::JSON::Object WriteItem(const ConfigItem& item, const MemberTable& own) {
    Poco::JSON::Object result;
    // The owners serve reading and writing alike; writing only reads.
    auto& owner = const_cast<ConfigItem&>(item);  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    for (const MemberTable* table : TablesOf(own)) {
        WriteMembers(*table, table->owner(owner), result);
    }
    return result;
}

void ReadItem(ConfigItem& item, const MemberTable& own, const json::ObjectPtr& object) {
    for (const MemberTable* table : TablesOf(own)) {
        ReadMembers(*table, table->owner(item), object);
    }
}

std::vector<const MemberTable*> TablesOf(const MemberTable& own) {
    std::vector<const MemberTable*> chain;
    for (const MemberTable* table = &own; table != nullptr; table = table->base) {
        chain.insert(chain.begin(), table);
    }
    return chain;
}

}  // namespace zunokeymapmanager
