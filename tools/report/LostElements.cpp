//
// LostElements.cpp
//

#include "LostElements.h"

#include <memory>
#include <sstream>

#include <Poco/Exception.h>
#include <Poco/JSON/Parser.h>
#include <Poco/JSON/Stringifier.h>
#include <zuno-keymapmanager/api/Functions.h>
#include <zuno-keymapmanager/api/KeymapCheck.h>
#include <zuno-keymapmanager/document/ConfigInfo.h>
#include <zuno-keymapmanager/model/ConfigFactory.h>
#include <zuno-keymapmanager/model/ConfigItem.h>

#include "TerminalText.h"

namespace zunokeymap {

namespace {

using Poco::Dynamic::Var;
using Poco::JSON::Array;
using Poco::JSON::Object;

Var parse(const std::string& text) {
    try {
        Poco::JSON::Parser parser;
        return parser.parse(text);
    } catch (const Poco::Exception&) {
        return Var();
    }
}

bool isObject(const Var& value) {
    return value.type() == typeid(Object::Ptr) && !value.extract<Object::Ptr>().isNull();
}

bool isArray(const Var& value) {
    return value.type() == typeid(Array::Ptr) && !value.extract<Array::Ptr>().isNull();
}

// Whether the library makes an item of the element's type; an element that
// is no object fails the load instead, so it counts as known here.
bool knownItem(const Var& element) {
    if (!isObject(element)) {
        return true;
    }
    const Object::Ptr& object = element.extract<Object::Ptr>();
    if (!object->has("type") || !object->get("type").isString()) {
        return true;
    }
    const std::unique_ptr<zunokeymapmanager::ConfigItem> item(
        zunokeymapmanager::ConfigFactory::ProduceConfigItem(object->get("type").toString()));
    return item != nullptr;
}

void compare(const Var& given, const Var& saved, const Var& other, const std::string& path,
             std::vector<std::string>& lost);

bool isContainer(const Var& value) {
    return isObject(value) || isArray(value);
}

// Whether two values the parser made mean the same: numbers by value (1 and
// 1.0 alike), everything else by type and value. Containers are compared
// member by member elsewhere.
bool sameValue(const Var& a, const Var& b) {
    try {
        if (a.isEmpty() || b.isEmpty()) {
            return a.isEmpty() && b.isEmpty();
        }
        if (isContainer(a) || isContainer(b)) {
            return isObject(a) == isObject(b) && isArray(a) == isArray(b);
        }
        if (a.isNumeric() && b.isNumeric() && !a.isBoolean() && !b.isBoolean()) {
            return a.isInteger() && b.isInteger() ? a.toString() == b.toString()
                                                  : a.convert<double>() == b.convert<double>();
        }
        return a.type() == b.type() && a.toString() == b.toString();
    } catch (const Poco::Exception&) {
        return false;
    }
}

// A value as the file writes it, shortened to what a message line holds.
std::string shown(const Var& value) {
    if (isObject(value)) {
        return "an object";
    }
    if (isArray(value)) {
        return "an array";
    }
    std::ostringstream out;
    try {
        Poco::JSON::Stringifier::stringify(value, out);
    } catch (const Poco::Exception&) {
        return "a value";
    }
    std::string text = out.str();
    constexpr std::size_t kLongest = 40;
    if (text.size() > kLongest) {
        std::size_t cut = kLongest;
        while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) {
            --cut;  // not inside a UTF-8 character
        }
        text = text.substr(0, cut) + "...";
    }
    return text;
}

Var member(const Var& object, const std::string& name) {
    return isObject(object) && object.extract<Object::Ptr>()->has(name)
               ? object.extract<Object::Ptr>()->get(name)
               : Var();
}

Var element(const Var& array, std::size_t index) {
    return isArray(array) && index < array.extract<Array::Ptr>()->size()
               ? array.extract<Array::Ptr>()->get(static_cast<unsigned>(index))
               : Var();
}

void compareItems(const Array::Ptr& given, const Var& saved, const Var& other,
                  std::vector<std::string>& lost) {
    std::size_t next = 0;
    for (std::size_t i = 0; i < given->size(); ++i) {
        const Var item = given->get(static_cast<unsigned>(i));
        const std::string path = "keymaps[" + std::to_string(i) + "]";
        if (!knownItem(item)) {
            lost.push_back(path + " (type \"" +
                           item.extract<Object::Ptr>()->get("type").toString() + "\")");
        } else if (element(saved, next).isEmpty()) {
            lost.push_back(path);
        } else {
            compare(item, element(saved, next), element(other, next), path, lost);
            ++next;
        }
    }
}

void compare(const Var& given, const Var& saved, const Var& other, const std::string& path,
             std::vector<std::string>& lost) {
    if (isObject(given)) {
        for (const auto& entry : *given.extract<Object::Ptr>()) {
            const std::string& name = entry.first;
            std::string memberPath = path;
            memberPath.append(path.empty() ? "" : ".").append(name);
            const Var kept = member(saved, name);
            const Var keptOther = member(other, name);
            if (kept.isEmpty() && keptOther.isEmpty()) {
                lost.push_back(memberPath);
            } else if (path.empty() && name == "keymaps" && isArray(entry.second)) {
                compareItems(entry.second.extract<Array::Ptr>(), kept, keptOther, lost);
            } else {
                compare(entry.second, kept.isEmpty() ? keptOther : kept, keptOther, memberPath,
                        lost);
            }
        }
    } else if (isArray(given)) {
        const Array::Ptr& array = given.extract<Array::Ptr>();
        for (std::size_t i = 0; i < array->size(); ++i) {
            const std::string elementPath = path + "[" + std::to_string(i) + "]";
            if (element(saved, i).isEmpty() && element(other, i).isEmpty()) {
                lost.push_back(elementPath);
            } else {
                compare(array->get(static_cast<unsigned>(i)), element(saved, i), element(other, i),
                        elementPath, lost);
            }
        }
    } else if (!sameValue(given, saved) && !sameValue(given, other)) {
        // Kept, but not as written: a value the library reads as another
        // ("no" as true, 1.5 as 1) is written back as what it read.
        lost.push_back(path + " (" + shown(given) + " would be written as " + shown(saved) + ")");
    }
}

}  // namespace

std::vector<std::string> LostElements(const std::string& given, const std::string& saved,
                                      const std::string& alsoKept) {
    std::vector<std::string> lost;
    const Var before = parse(given);
    const Var after = parse(saved);
    if (isObject(before) && isObject(after)) {
        compare(before, after, alsoKept.empty() ? Var() : parse(alsoKept), "", lost);
    }
    return lost;
}

std::vector<std::string> LostOnSave(const std::string& given,
                                    zunokeymapmanager::KeymapConfig& doc) {
    namespace km = zunokeymapmanager;
    const std::string saved = km::SaveKeymapConfigAndInfoToText(&doc);
    std::vector<std::string> lost;
    if (doc.info == nullptr) {
        lost = LostElements(given, saved);
    } else {
        doc.info->is_joystick = !doc.info->is_joystick;
        const std::string other = km::SaveKeymapConfigAndInfoToText(&doc);
        doc.info->is_joystick = !doc.info->is_joystick;
        lost = LostElements(given, saved, other);
    }
    // The parser keeps the last of two members of one name: the check's own
    // scan names the others, which a save drops.
    const bool joystick = doc.info != nullptr && doc.info->is_joystick;
    for (const km::Finding& finding : km::CheckKeymapDocument(given, joystick).findings) {
        if (finding.kind == km::FindingKind::DuplicateMember) {
            lost.push_back(finding.path + " (written twice: only the last is kept)");
        }
    }
    return lost;
}

std::string LostElementsMessage(const std::string& command, const std::string& file,
                                const std::vector<std::string>& lost) {
    std::string message = "zuno-keymap " + command + ": writing '" + ForTerminal(file) +
                          "' would lose or change " + std::to_string(lost.size()) +
                          (lost.size() == 1 ? " element" : " elements") + " of it:\n";
    for (const std::string& path : lost) {
        message += "  " + ForTerminal(path) + "\n";
    }
    message += "nothing was written; run again with --force to write it as the library keeps it\n";
    return message;
}

}  // namespace zunokeymap
