//
// SchemaPaths.cpp
//

#include "check/SchemaPaths.h"

#include <Poco/JSON/Array.h>

namespace zunokeymapmanager {
namespace check {

using Poco::Dynamic::Var;
using Poco::JSON::Array;
using Poco::JSON::Object;

namespace {

const std::string kDefinitions = "#/definitions/";

Object::Ptr objectOf(const Var& value) {
    return value.type() == typeid(Object::Ptr) ? value.extract<Object::Ptr>() : Object::Ptr();
}

Array::Ptr arrayOf(const Var& value) {
    return value.type() == typeid(Array::Ptr) ? value.extract<Array::Ptr>() : Array::Ptr();
}

std::string refOf(const Object::Ptr& node) {
    if (node.isNull() || !node->has("$ref")) {
        return std::string();
    }
    const std::string ref = node->getValue<std::string>("$ref");
    return ref.compare(0, kDefinitions.size(), kDefinitions) == 0 ? ref.substr(kDefinitions.size())
                                                                  : std::string();
}

}  // namespace

SchemaPaths::SchemaPaths(Object::Ptr root, const Var& document)
    : _root(std::move(root)), _document(document) {}

Object::Ptr SchemaPaths::resolve(const Object::Ptr& node) const {
    const std::string name = refOf(node);
    if (name.empty()) {
        return node;
    }
    const Object::Ptr definitions = _root->getObject("definitions");
    return definitions.isNull() ? Object::Ptr() : definitions->getObject(name);
}

Object::Ptr SchemaPaths::branch(const Object::Ptr& node, const Var& value) const {
    const Object::Ptr object = objectOf(value);
    const Array::Ptr all = node.isNull() ? Array::Ptr() : node->getArray("allOf");
    if (object.isNull() || all.isNull()) {
        return Object::Ptr();
    }
    // The branches tell item types apart by a "const" on one member.
    for (std::size_t i = 0; i < all->size(); ++i) {
        const Object::Ptr entry = all->getObject(i);
        const Object::Ptr condition = entry.isNull() ? Object::Ptr() : entry->getObject("if");
        const Object::Ptr properties =
            condition.isNull() ? Object::Ptr() : condition->getObject("properties");
        if (properties.isNull()) {
            continue;
        }
        bool holds = true;
        for (const auto& [name, test] : *properties) {
            const Object::Ptr constraint = objectOf(test);
            const Var value = object->get(name);
            holds = holds && !constraint.isNull() && constraint->has("const") &&
                    value.type() == typeid(std::string) &&
                    value.extract<std::string>() == constraint->getValue<std::string>("const");
        }
        if (holds) {
            return resolve(entry->getObject("then"));
        }
    }
    return Object::Ptr();
}

SchemaPlace SchemaPaths::member(const SchemaPlace& place, const std::string& name) const {
    SchemaPlace result;
    const Object::Ptr object = objectOf(place.value);
    if (!object.isNull() && object->has(name)) {
        result.value = object->get(name);
    }
    for (Object::Ptr node = place.schema; !node.isNull(); node = branch(node, place.value)) {
        const Object::Ptr properties = node->getObject("properties");
        if (!properties.isNull() && properties->has(name)) {
            result.written = properties->getObject(name);
            result.schema = resolve(result.written);
            return result;
        }
    }
    return result;
}

std::vector<Object::Ptr> SchemaPaths::nodes(const SchemaPlace& place) const {
    std::vector<Object::Ptr> found;
    for (Object::Ptr node = place.schema; !node.isNull(); node = branch(node, place.value)) {
        found.push_back(node);
    }
    return found;
}

std::vector<std::string> SchemaPaths::memberNames(const SchemaPlace& place) const {
    std::vector<std::string> names;
    for (const Object::Ptr& node : nodes(place)) {
        const Object::Ptr properties = node->getObject("properties");
        if (properties.isNull()) {
            continue;
        }
        for (const auto& property : *properties) {
            names.push_back(property.first);
        }
    }
    return names;
}

SchemaPlace SchemaPaths::find(const std::vector<std::string>& tokens, std::string& path) const {
    SchemaPlace place{_document, _root, _root};
    for (const std::string& token : tokens) {
        const Array::Ptr array = arrayOf(place.value);
        if (array.isNull()) {
            path += (path.empty() ? "" : ".") + token;
            place = member(place, token);
            continue;
        }
        path += "[" + token + "]";
        SchemaPlace element;
        try {
            element.value = array->get(static_cast<unsigned>(std::stoul(token)));
        } catch (const std::exception&) {
        }
        element.written = place.schema.isNull() ? Object::Ptr() : place.schema->getObject("items");
        element.schema = resolve(element.written);
        place = element;
    }
    return place;
}

std::string SchemaPaths::typeOf(const SchemaPlace& place) {
    const std::string name = refOf(place.written);
    if (name == "key" || name == "point" || name == "size") {
        return name + " object";
    }
    const Object::Ptr node = place.schema;
    if (node.isNull() || !node->has("type") || node->get("type").type() != typeid(std::string)) {
        return std::string();
    }
    std::string type = node->getValue<std::string>("type");
    if (type == "array") {
        const Object::Ptr items = node->getObject("items");
        const SchemaPlace element{Var(), items, items};
        const std::string of = typeOf(element);
        return of.empty() ? type : "array of " + of + "s";
    }
    return type;
}

}  // namespace check
}  // namespace zunokeymapmanager
