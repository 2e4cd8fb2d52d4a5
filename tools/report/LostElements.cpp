//
// LostElements.cpp
//

#include "LostElements.h"

#include <memory>

#include <Poco/Exception.h>
#include <Poco/JSON/Parser.h>
#include <zuno-keymapmanager/api/Functions.h>
#include <zuno-keymapmanager/model/ConfigFactory.h>
#include <zuno-keymapmanager/model/ConfigItem.h>

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
    const std::string saved = zunokeymapmanager::SaveKeymapConfigAndInfoToText(&doc);
    if (doc.info == nullptr) {
        return LostElements(given, saved);
    }
    doc.info->is_joystick = !doc.info->is_joystick;
    const std::string other = zunokeymapmanager::SaveKeymapConfigAndInfoToText(&doc);
    doc.info->is_joystick = !doc.info->is_joystick;
    return LostElements(given, saved, other);
}

std::string LostElementsMessage(const std::string& command, const std::string& file,
                                const std::vector<std::string>& lost) {
    std::string message = "zuno-keymap " + command + ": writing '" + file + "' would lose " +
                          std::to_string(lost.size()) +
                          (lost.size() == 1 ? " element" : " elements") +
                          " the library does not keep:\n";
    for (const std::string& path : lost) {
        message += "  " + path + "\n";
    }
    message += "nothing was written; run again with --force to write without them\n";
    return message;
}

}  // namespace zunokeymap
