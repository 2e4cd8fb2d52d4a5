//
// SchemaCheck.cpp
//
// The document against the format's schema, with valijson. Where valijson
// finds an error, the schema's keywords at that place give findings that
// name the member, its type, the names or range it allows, and the nearest
// right spelling.
//

#define VALIJSON_USE_EXCEPTIONS 1

#include "check/SchemaCheck.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <unordered_set>
#include <utility>

#include <Poco/JSON/Parser.h>
#include <valijson/adapters/poco_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "check/CheckFindings.h"
#include "check/SchemaPaths.h"
#include "check/VarRefAdapter.h"
#include "zuno-keymapmanager/model/Members.h"

namespace zunokeymapmanager {
namespace check {

extern const char* const kKeymapSchemaParts[];
extern const std::size_t kKeymapSchemaPartCount;

namespace {

using Poco::Dynamic::Var;
using Poco::JSON::Object;

// Parsed once, on first use; read-only after that, so threads may share it.
// An element of "keymaps" is checked against its own type's definition
// directly: through the schema's if/then chain every element would try all
// eighteen, which made the schema most of the check.
struct CompiledSchema {
    CompiledSchema() {
        std::string text;
        for (std::size_t i = 0; i < kKeymapSchemaPartCount; ++i) {
            text += kKeymapSchemaParts[i];
        }
        root = Poco::JSON::Parser().parse(text).extract<Object::Ptr>();
        // The document without the per-type rules: an item's own members
        // are each checked below.
        const Var shell = Poco::JSON::Parser().parse(text);
        Object::Ptr item =
            shell.extract<Object::Ptr>()->getObject("definitions")->getObject("item");
        item->remove("allOf");
        valijson::SchemaParser schemaParser(valijson::SchemaParser::kDraft7);
        schemaParser.populateSchema(valijson::adapters::PocoJsonAdapter(shell), document);
        const Object::Ptr definitions = root->getObject("definitions");
        const Poco::JSON::Array::Ptr names = definitions->getObject("item")
                                                 ->getObject("properties")
                                                 ->getObject("type")
                                                 ->getArray("enum");
        for (std::size_t i = 0; i < names->size(); ++i) {
            const std::string name = names->getElement<std::string>(static_cast<unsigned>(i));
            Object::Ptr one = new Object();
            one->set("$ref", "#/definitions/" + name);
            one->set("definitions", definitions);
            valijson::SchemaParser parser(valijson::SchemaParser::kDraft7);
            parser.populateSchema(valijson::adapters::PocoJsonAdapter(Var(one)), items[name]);
        }
    }
    Object::Ptr root;
    valijson::Schema document;
    std::map<std::string, valijson::Schema> items;
};

const CompiledSchema& compiled() {
    static const CompiledSchema instance;
    return instance;
}

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

std::string jsonTypeOf(const Var& value) {
    if (value.isEmpty()) {
        return "null";
    }
    if (value.type() == typeid(Object::Ptr)) {
        return "an object";
    }
    if (value.type() == typeid(Poco::JSON::Array::Ptr)) {
        return "an array";
    }
    if (value.isString()) {
        return "a string";
    }
    if (value.isBoolean()) {
        return "a boolean";
    }
    return value.isInteger() ? "an integer" : "a number";
}

std::string shown(const Var& value) {
    try {
        const std::string text = value.convert<std::string>();
        return value.isString() ? "\"" + text + "\"" : text;
    } catch (const Poco::Exception&) {
        return jsonTypeOf(value);
    }
}

// Whether the library's lenient reading converts `value` to `type`.
bool converts(const Var& value, const std::string& type) {
    if (value.isEmpty() || value.type() == typeid(Object::Ptr) ||
        value.type() == typeid(Poco::JSON::Array::Ptr)) {
        return false;
    }
    try {
        if (type == "integer") {
            (void)value.convert<Poco::Int32>();
        } else if (type == "number") {
            (void)value.convert<double>();
        } else if (type == "boolean") {
            (void)value.convert<bool>();
        } else if (type != "string") {
            return false;
        }
        return true;
    } catch (const Poco::Exception&) {
        return false;
    }
}

std::string joined(const Poco::JSON::Array::Ptr& names, std::vector<std::string>& out) {
    std::string text;
    for (std::size_t i = 0; !names.isNull() && i < names->size(); ++i) {
        const std::string name = names->getElement<std::string>(static_cast<unsigned>(i));
        out.push_back(name);
        text += (i == 0 ? "" : ", ") + (name.empty() ? std::string("\"\"") : name);
    }
    return text;
}

std::string number(const Var& value) {
    return value.isEmpty() ? std::string("") : value.convert<std::string>();
}

// Whether `value` is of the JSON type `type`, as the validator sees it.
bool hasType(const Var& value, const std::string& type) {
    const VarRefValue seen(value);
    return type == "object"    ? seen.isObject()
           : type == "array"   ? seen.isArray()
           : type == "string"  ? seen.isString()
           : type == "boolean" ? seen.isBool()
           : type == "integer" ? seen.isInteger()
           : type == "number"  ? seen.isNumber()
           : type == "null"    ? seen.isNull()
                               : true;
}

Object::Ptr objectOf(const Var& value) {
    return value.type() == typeid(Object::Ptr) ? value.extract<Object::Ptr>() : Object::Ptr();
}

class Translator
/// Says what is wrong at each place the validator names, in the schema's
/// words. The validator tells where; what is wrong there is read from the
/// schema's keywords at that place, each place once, in the order the
/// validator checks them: enum, range, pattern, members, required, type.
{
public:
    Translator(const SchemaPaths& paths, const Object::Ptr& document)
        : _paths(paths), _document(document) {}

    void translate(const valijson::ValidationResults::Error& error, std::vector<Finding>& out) {
        std::vector<std::string> tokens;
        for (std::size_t i = 1; i < error.context.size(); ++i) {
            const std::string& token = error.context[i];
            tokens.push_back(token.size() >= 2 ? token.substr(1, token.size() - 2) : token);
        }
        std::string path;
        const SchemaPlace place = _paths.find(tokens, path);
        if (!_described.insert(path).second) {
            return;
        }
        const std::vector<Object::Ptr> nodes = _paths.nodes(place);
        for (const Object::Ptr& node : nodes) {
            valueFindings(node, place, path, out);
        }
        memberFindings(nodes, place, path, out);
        for (const Object::Ptr& node : nodes) {
            typeFinding(node, place, path, out);
        }
    }

private:
    static std::string join(const std::string& path, const std::string& name) {
        return path.empty() ? name : path + "." + name;
    }

    void valueFindings(const Object::Ptr& node, const SchemaPlace& place, const std::string& path,
                       std::vector<Finding>& out) const {
        const Var& value = place.value;
        const Poco::JSON::Array::Ptr names = node->getArray("enum");
        if (!names.isNull() && !inEnum(value, names)) {
            enumFinding(names, value, path, out);
        }
        if (VarRefValue(value).isNumber() && outside(node, value.convert<double>())) {
            add(out, FindingSeverity::Warning, path,
                shown(value) + " is outside " + number(node->get("minimum")) + ".." +
                    number(node->get("maximum")) + " (" +
                    node->optValue<std::string>("description", "") + ")");
        }
        // Made once: the tables' one pattern is the colour's.
        static const std::regex colour(kColourPattern);
        if (value.isString() && node->has("pattern") &&
            !std::regex_search(value.extract<std::string>(), colour)) {
            add(out, FindingSeverity::Warning, path,
                shown(value) + " is not a colour: RRGGBBAA, eight hexadecimal digits");
        }
    }

    // Members the object lacks or should not have.
    void memberFindings(const std::vector<Object::Ptr>& nodes, const SchemaPlace& place,
                        const std::string& path, std::vector<Finding>& out) const {
        const Object::Ptr object = objectOf(place.value);
        if (object.isNull()) {
            return;
        }
        const bool closed = std::any_of(nodes.begin(), nodes.end(), [](const Object::Ptr& node) {
            const Var extra = node->get("additionalProperties");
            return extra.isBoolean() && !extra.extract<bool>();
        });
        if (closed) {
            const std::vector<std::string> allowed = _paths.memberNames(place);
            std::vector<const std::string*> unknown;
            for (const auto& member : *object) {
                if (std::find(allowed.begin(), allowed.end(), member.first) == allowed.end()) {
                    unknown.push_back(&member.first);
                }
            }
            // Room for them all at once, still growing geometrically: an
            // object of many thousands of unknown members is not moved
            // through every doubling.
            if (out.capacity() - out.size() < unknown.size()) {
                out.reserve(std::max(out.size() + unknown.size(), 2 * out.capacity()));
            }
            for (const std::string* const member : unknown) {
                const std::string& name = *member;
                const std::string nearest = NearestName(name, allowed);
                add(out, FindingSeverity::Warning, join(path, name),
                    "unknown member, ignored on load" +
                        (nearest.empty() ? "" : "; did you mean " + nearest + "?"),
                    nearest);
            }
        }
        std::set<std::string> missing;
        for (const Object::Ptr& node : nodes) {
            const Poco::JSON::Array::Ptr required = node->getArray("required");
            for (std::size_t i = 0; !required.isNull() && i < required->size(); ++i) {
                const std::string name =
                    required->getElement<std::string>(static_cast<unsigned>(i));
                if (object->has(name) || !missing.insert(name).second) {
                    continue;
                }
                const std::string type = SchemaPaths::typeOf(_paths.member(place, name));
                add(out, FindingSeverity::Error, join(path, name),
                    "required " + (type.empty() ? "member" : type) + " is missing");
            }
        }
    }

    void typeFinding(const Object::Ptr& node, const SchemaPlace& place, const std::string& path,
                     std::vector<Finding>& out) const {
        const Var type = node->get("type");
        if (!type.isString() || hasType(place.value, type.extract<std::string>())) {
            return;
        }
        const std::string expected = SchemaPaths::typeOf(place);
        const bool loads = converts(place.value, expected);
        add(out, loads ? FindingSeverity::Warning : FindingSeverity::Error, path,
            "is " + jsonTypeOf(place.value) + ", should be " +
                (expected.empty() ? "something else" : expected) +
                (loads ? " (the load converts it)" : ""));
    }

    static bool inEnum(const Var& value, const Poco::JSON::Array::Ptr& names) {
        if (!value.isString()) {
            return false;
        }
        const std::string& written = value.extract<std::string>();
        for (std::size_t i = 0; i < names->size(); ++i) {
            const Var name = names->get(static_cast<unsigned>(i));
            if (name.isString() && name.extract<std::string>() == written) {
                return true;
            }
        }
        return false;
    }

    static bool outside(const Object::Ptr& node, double value) {
        return (node->has("minimum") && value < node->getValue<double>("minimum")) ||
               (node->has("maximum") && value > node->getValue<double>("maximum"));
    }

    void enumFinding(const Poco::JSON::Array::Ptr& allowedNames, const Var& value,
                     const std::string& path, std::vector<Finding>& out) const {
        // An unknown item type is a finding of its own, with its consequence.
        if (startsWith(path, "keymaps[") && path.size() > 5 &&
            path.compare(path.size() - 5, 5, ".type") == 0) {
            return;
        }
        std::vector<std::string> names;
        const std::string allowed = joined(allowedNames, names);
        const std::string written = value.isString() ? value.extract<std::string>() : "";
        const std::string nearest = NearestName(written, names);
        add(out, FindingSeverity::Warning, path,
            shown(value) + " is not one of " + allowed +
                (nearest.empty() ? "" : "; did you mean " + nearest + "?"),
            nearest);
    }

    // By value: most callers hand over strings made for the finding.
    void add(std::vector<Finding>& out, FindingSeverity severity, std::string path,
             std::string message, std::string suggestion = std::string()) const {
        int index = -1;
        if (startsWith(path, "keymaps[")) {
            index = std::atoi(path.c_str() + 8);
        }
        const std::string& type = typeOf(index);
        out.push_back(MakeFinding(FindingKind::Schema, severity, std::move(path), index, type,
                                  std::move(message), std::move(suggestion)));
    }

    // An element's "type" as written; asked for again and again while the
    // findings of one element are made, so the last answer is kept.
    const std::string& typeOf(int index) const {
        if (index < 0 || index == _typeIndex) {
            return index < 0 ? _noType : _type;
        }
        const Poco::JSON::Array::Ptr elements = _document->getArray("keymaps");
        const Object::Ptr element =
            elements.isNull() ? Object::Ptr() : elements->getObject(static_cast<unsigned>(index));
        const Var written = element.isNull() ? Var() : element->get("type");
        _type = written.isString() ? written.extract<std::string>() : std::string();
        _typeIndex = index;
        return _type;
    }

    const SchemaPaths& _paths;
    Object::Ptr _document;
    std::unordered_set<std::string> _described;  // the places already told about
    const std::string _noType;
    mutable int _typeIndex = -1;
    mutable std::string _type;
};

}  // namespace

void CheckSchema(const Object::Ptr& root, std::vector<Finding>& out) {
    const CompiledSchema& schema = compiled();
    const Var document(root);
    valijson::Validator validator;
    valijson::ValidationResults results;
    validator.validate(schema.document, VarRefAdapter(document), &results);

    // Each element against its type, its errors placed under its path.
    const Poco::JSON::Array::Ptr elements = root->getArray("keymaps");
    const std::size_t count = elements.isNull() ? 0 : elements->size();
    for (std::size_t i = 0; i < count; ++i) {
        const Var element = elements->get(static_cast<unsigned>(i));
        if (element.type() != typeid(Object::Ptr)) {
            continue;
        }
        const Object::Ptr& item = element.extract<Object::Ptr>();
        const Var type = item.isNull() ? Var() : item->get("type");
        const auto found =
            type.isString() ? schema.items.find(type.extract<std::string>()) : schema.items.end();
        if (found == schema.items.end()) {
            continue;
        }
        valijson::ValidationResults itemResults;
        validator.validate(found->second, VarRefAdapter(element), &itemResults);
        valijson::ValidationResults::Error error;
        while (itemResults.popError(error)) {
            std::vector<std::string> context = {"<root>", "[keymaps]",
                                                "[" + std::to_string(i) + "]"};
            context.insert(context.end(), error.context.begin() + (error.context.empty() ? 0 : 1),
                           error.context.end());
            results.pushError(context, error.description);
        }
    }

    const SchemaPaths paths(schema.root, document);
    Translator translator(paths, root);
    valijson::ValidationResults::Error error;
    while (results.popError(error)) {
        translator.translate(error, out);
    }
}

}  // namespace check
}  // namespace zunokeymapmanager
