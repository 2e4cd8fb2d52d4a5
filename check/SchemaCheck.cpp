//
// SchemaCheck.cpp
//
// The document against the format's schema, with valijson. Its raw errors
// are turned into findings that name the member, its type, the names or
// range it allows, and the nearest right spelling.
//

#define VALIJSON_USE_EXCEPTIONS 1

#include "check/SchemaCheck.h"

#include <map>

#include <Poco/JSON/Parser.h>
#include <valijson/adapters/poco_json_adapter.hpp>
#include <valijson/schema.hpp>
#include <valijson/schema_parser.hpp>
#include <valijson/validator.hpp>

#include "check/CheckFindings.h"
#include "check/SchemaPaths.h"
#include "check/VarRefAdapter.h"

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

// The name between the last pair of single quotes of a valijson message.
std::string quoted(const std::string& text) {
    const std::size_t close = text.rfind('\'');
    const std::size_t open =
        close == std::string::npos || close == 0 ? std::string::npos : text.rfind('\'', close - 1);
    return open == std::string::npos ? std::string() : text.substr(open + 1, close - open - 1);
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

class Translator
/// Turns one valijson error into a finding, or into nothing for the
/// summaries valijson adds above the errors that caused them.
{
public:
    Translator(const SchemaPaths& paths, const Object::Ptr& document)
        : _paths(paths), _document(document) {}

    bool translate(const valijson::ValidationResults::Error& error, Finding& out) const {
        std::vector<std::string> tokens;
        for (std::size_t i = 1; i < error.context.size(); ++i) {
            const std::string& token = error.context[i];
            tokens.push_back(token.size() >= 2 ? token.substr(1, token.size() - 2) : token);
        }
        std::string path;
        const SchemaPlace place = _paths.find(tokens, path);
        const std::string& what = error.description;
        if (startsWith(what, "Missing required property")) {
            const std::string name = quoted(what);
            const std::string type = SchemaPaths::typeOf(_paths.member(place, name));
            return finish(out, FindingSeverity::Error, join(path, name),
                          "required " + (type.empty() ? "member" : type) + " is missing");
        }
        if (startsWith(what, "Object contains a property that could not be validated")) {
            const std::string name = quoted(what);
            const std::string nearest = NearestName(name, _paths.memberNames(place));
            return finish(out, FindingSeverity::Warning, join(path, name),
                          "unknown member, ignored on load" +
                              (nearest.empty() ? "" : "; did you mean " + nearest + "?"),
                          nearest);
        }
        if (startsWith(what, "Value type not permitted")) {
            const std::string type = SchemaPaths::typeOf(place);
            const bool loads = converts(place.value, type);
            return finish(out, loads ? FindingSeverity::Warning : FindingSeverity::Error, path,
                          "is " + jsonTypeOf(place.value) + ", should be " +
                              (type.empty() ? "something else" : type) +
                              (loads ? " (the load converts it)" : ""));
        }
        if (startsWith(what, "Failed to match against any enum values") && !place.schema.isNull()) {
            return enumFinding(place, path, out);
        }
        if (startsWith(what, "Failed to match regex")) {
            return finish(
                out, FindingSeverity::Warning, path,
                shown(place.value) + " is not a colour: RRGGBBAA, eight hexadecimal digits");
        }
        if (startsWith(what, "Expected number") && !place.schema.isNull()) {
            const Object::Ptr node = place.schema;
            return finish(out, FindingSeverity::Warning, path,
                          shown(place.value) + " is outside " + number(node->get("minimum")) +
                              ".." + number(node->get("maximum")) + " (" +
                              node->optValue<std::string>("description", "") + ")");
        }
        return false;
    }

private:
    static std::string join(const std::string& path, const std::string& name) {
        return path.empty() ? name : path + "." + name;
    }

    bool enumFinding(const SchemaPlace& place, const std::string& path, Finding& out) const {
        // An unknown item type is a finding of its own, with its consequence.
        if (startsWith(path, "keymaps[") && path.size() > 5 &&
            path.compare(path.size() - 5, 5, ".type") == 0) {
            return false;
        }
        std::vector<std::string> names;
        const std::string allowed = joined(place.schema->getArray("enum"), names);
        const std::string written =
            place.value.isString() ? place.value.extract<std::string>() : "";
        const std::string nearest = NearestName(written, names);
        return finish(out, FindingSeverity::Warning, path,
                      shown(place.value) + " is not one of " + allowed +
                          (nearest.empty() ? "" : "; did you mean " + nearest + "?"),
                      nearest);
    }

    bool finish(Finding& out, FindingSeverity severity, const std::string& path,
                const std::string& message, const std::string& suggestion = std::string()) const {
        int index = -1;
        std::string type;
        if (startsWith(path, "keymaps[")) {
            index = std::atoi(path.c_str() + 8);
            const Poco::JSON::Array::Ptr elements = _document->getArray("keymaps");
            const Object::Ptr element = elements.isNull()
                                            ? Object::Ptr()
                                            : elements->getObject(static_cast<unsigned>(index));
            const Var written = element.isNull() ? Var() : element->get("type");
            type = written.isString() ? written.extract<std::string>() : std::string();
        }
        out = MakeFinding(FindingKind::Schema, severity, path, index, type, message, suggestion);
        return true;
    }

    const SchemaPaths& _paths;
    Object::Ptr _document;
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
    const Translator translator(paths, root);
    valijson::ValidationResults::Error error;
    while (results.popError(error)) {
        Finding finding;
        if (translator.translate(error, finding)) {
            out.push_back(std::move(finding));
        }
    }
}

}  // namespace check
}  // namespace zunokeymapmanager
