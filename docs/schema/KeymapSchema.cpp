//
// KeymapSchema.cpp
//
// Writes docs/keymap.schema.json from the library's member tables: every
// member with its type, whether reading requires it, its default (what a
// fresh item holds), the names and range it allows, and for the editor its
// label ("title") and group ("x-group"). Settings blocks that several types
// share are written once under "definitions" and referred to.
//
//   zuno-keymap-schema              print the schema
//   zuno-keymap-schema --check FILE fail when FILE is not what it prints
//

#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <Poco/JSON/Stringifier.h>

#include "model/MemberIO.h"
#include "zuno-keymapmanager/keymapmanager.h"

namespace {

namespace km = zunokeymapmanager;
using Poco::JSON::Array;
using Poco::JSON::Object;

Object::Ptr ordered() {
    return new Object(Poco::JSON_PRESERVE_KEY_ORDER);
}

const void* valueIn(const km::Member& member, const void* owner) {
    return member.at(const_cast<void*>(owner));  // NOLINT: only read
}

// Adds the members of `from` to `into`, in their order, leaving those it has.
void merge(Object::Ptr& into, const Object::Ptr& from) {
    for (const std::string& name : from->getNames()) {
        if (!into->has(name)) {
            into->set(name, from->get(name));
        }
    }
}

bool isShape(const km::MemberTable& table) {
    return &table == &km::PointMembers() || &table == &km::SizeMembers() ||
           &table == &km::KeyMembers();
}

class SchemaWriter {
public:
    SchemaWriter() : definitions_(ordered()) {}

    Object::Ptr definitions() const { return definitions_; }

    /// {"type": "object", "properties", "required", "additionalProperties": false}
    /// of `table`, with the defaults `owner` holds.
    Object::Ptr objectOf(const km::MemberTable& table, const void* owner,
                         const std::string& typeName = "") {
        Object::Ptr properties = ordered();
        Array::Ptr required = new Array();
        addMembers(table, owner, typeName, properties, required);
        Object::Ptr result = ordered();
        result->set("type", "object");
        result->set("properties", properties);
        if (required->size() > 0) {
            result->set("required", required);
        }
        result->set("additionalProperties", false);
        return result;
    }

    /// The members of an item class and of the classes it builds on, base first.
    Object::Ptr itemOf(const km::ItemDeclaration& declaration) {
        std::unique_ptr<km::ConfigItem> fresh(declaration.make());
        Object::Ptr properties = ordered();
        Array::Ptr required = new Array();
        for (const km::MemberTable* table : km::TablesOf(declaration.members())) {
            addMembers(*table, table->owner(*fresh), fresh->type, properties, required);
        }
        Object::Ptr result = ordered();
        result->set("title", fresh->type);
        result->set("description", declaration.members().description);
        result->set("type", "object");
        result->set("properties", properties);
        result->set("required", required);
        result->set("additionalProperties", false);
        return result;
    }

    /// A reference to the shared definition of `table`, written on first use.
    Object::Ptr reference(const km::MemberTable& table, const void* value) {
        if (!definitions_->has(table.shared)) {
            definitions_->set(table.shared, Object::Ptr());  // holds its place
            Object::Ptr definition = ordered();
            definition->set("description", table.description);
            merge(definition, objectOf(table, value));
            if (isShape(table)) {
                // A key or point is given its default where it is used.
                Object::Ptr properties = definition->getObject("properties");
                for (const std::string& name : properties->getNames()) {
                    properties->getObject(name)->remove("default");
                }
            }
            definitions_->set(table.shared, definition);
        }
        Object::Ptr result = ordered();
        result->set("$ref", "#/definitions/" + std::string(table.shared));
        return result;
    }

private:
    void addMembers(const km::MemberTable& table, const void* owner, const std::string& typeName,
                    Object::Ptr& properties, Array::Ptr& required) {
        for (const km::Member& member : table.members) {
            if (member.kind == km::MemberKind::Route) {
                // Read for the owner by another class: its members stand here too.
                std::unique_ptr<km::ConfigItem> reader(
                    km::ConfigFactory::ProduceConfigItem(std::string("Swipehold")));
                const km::MemberTable& routed = member.route->members();
                Object::Ptr more = ordered();
                Array::Ptr ignored = new Array();
                addMembers(routed, routed.owner(*reader), "", more, ignored);
                // The route keeps the settings; keys among them are read and dropped.
                for (const std::string& name : more->getNames()) {
                    Object::Ptr routedMember = more->getObject(name);
                    if (routedMember->optValue<std::string>("$ref", "") == "#/definitions/key") {
                        routedMember->set("description", "read and ignored");
                        routedMember->remove("default");
                        routedMember->remove("title");
                        routedMember->remove("x-group");
                    }
                }
                merge(properties, more);
                continue;
            }
            properties->set(*member.name, memberOf(member, owner, typeName));
            if (member.required) {
                required->add(*member.name);
            }
        }
    }

    Object::Ptr memberOf(const km::Member& member, const void* owner, const std::string& typeName) {
        const void* value = valueIn(member, owner);
        Object::Ptr result = ordered();
        if (member.kind == km::MemberKind::Object && member.members().shared[0] != '\0') {
            result = reference(member.members(), value);
        }
        if (*member.title != '\0') {
            result->set("title", member.title);
        }
        result->set("description", member.description);
        if (*member.group != '\0') {
            result->set("x-group", member.group);
        }
        if (*member.unit != '\0') {
            result->set("x-unit", member.unit);
        }
        if ((member.flags & km::kTypeName) != 0) {
            result->set("const", typeName);
            return result;
        }
        switch (member.kind) {
            case km::MemberKind::Boolean:
                result->set("type", "boolean");
                result->set("default", *static_cast<const bool*>(value));
                break;
            case km::MemberKind::Integer:
                result->set("type", "integer");
                addRange(member, result);
                result->set("default", *static_cast<const std::int32_t*>(value));
                break;
            case km::MemberKind::Number:
                result->set("type", "number");
                addRange(member, result);
                result->set("default", *static_cast<const double*>(value));
                break;
            case km::MemberKind::String:
                result->set("type", "string");
                addNames(member, result);
                if (*member.pattern != '\0') {
                    result->set("pattern", member.pattern);
                }
                result->set("default", *static_cast<const std::string*>(value));
                break;
            case km::MemberKind::Lines: {
                result->set("type", "array");
                Object::Ptr items = ordered();
                items->set("type", "string");
                result->set("items", items);
                Array::Ptr lines = new Array();
                for (const std::string& line :
                     *static_cast<const std::vector<std::string>*>(value)) {
                    lines->add(line);
                }
                result->set("default", lines);
                break;
            }
            case km::MemberKind::Object:
                if (member.members().shared[0] == '\0') {
                    merge(result, objectOf(member.members(), value));
                } else if (isShape(member.members())) {
                    Object::Ptr written = new Object();
                    km::WriteMembers(member.members(), value, *written);
                    result->set("default", written);
                }
                break;
            case km::MemberKind::Route:
                break;
        }
        return result;
    }

    static void addRange(const km::Member& member, Object::Ptr& result) {
        const auto bound = [&](const char* name, double value) {
            if (value != value) {
                return;
            }
            if (member.kind == km::MemberKind::Integer) {
                result->set(name, static_cast<std::int64_t>(value));
            } else {
                result->set(name, value);
            }
        };
        bound("minimum", member.minimum);
        bound("maximum", member.maximum);
    }

    static void addNames(const km::Member& member, Object::Ptr& result) {
        if (member.names == nullptr) {
            return;
        }
        Array::Ptr names = new Array();
        if ((member.flags & km::kEmptyAllowed) != 0) {
            names->add(std::string());
        }
        for (std::size_t i = 0; i < member.nameCount; ++i) {
            names->add(std::string(member.names[i]));
        }
        result->set("enum", names);
    }

    Object::Ptr definitions_;
};

// The item dispatcher: an element is checked against its type's definition.
Object::Ptr itemDispatch() {
    Object::Ptr item = ordered();
    item->set("type", "object");
    Array::Ptr required = new Array();
    required->add("type");
    item->set("required", required);
    Array::Ptr names = new Array();
    Array::Ptr all = new Array();
    for (const km::ItemDeclaration& declaration : km::ItemDeclarations()) {
        const std::string name(km::NameOf(declaration.type));
        names->add(name);
        Object::Ptr type = ordered();
        type->set("const", name);
        Object::Ptr typeProperties = ordered();
        typeProperties->set("type", type);
        Object::Ptr condition = ordered();
        condition->set("properties", typeProperties);
        Object::Ptr then = ordered();
        then->set("$ref", "#/definitions/" + name);
        Object::Ptr branch = ordered();
        branch->set("if", condition);
        branch->set("then", then);
        all->add(branch);
    }
    Object::Ptr type = ordered();
    type->set("description", "the item type; an element of any other type is dropped on load");
    type->set("enum", names);
    Object::Ptr properties = ordered();
    properties->set("type", type);
    item->set("properties", properties);
    item->set("allOf", all);
    return item;
}

std::string schemaText() {
    SchemaWriter writer;
    Object::Ptr definitions = writer.definitions();
    const km::ConfigInfo info;
    const km::ConfigParam param;

    Object::Ptr properties = ordered();
    Object::Ptr self = ordered();
    self->set("type", "string");
    self->set("description", "the URI of this schema, for editors; the library ignores it");
    properties->set("$schema", self);
    Object::Ptr infoRef = writer.reference(km::ConfigInfo::Members(), &info);
    infoRef->set("description", km::ConfigInfo::Members().description);
    properties->set("info", infoRef);
    Object::Ptr keymaps = ordered();
    keymaps->set("description", "the mapping items, in the order the host handles them");
    keymaps->set("type", "array");
    Object::Ptr items = ordered();
    items->set("$ref", "#/definitions/item");
    keymaps->set("items", items);
    properties->set("keymaps", keymaps);
    Object::Ptr paramRef = writer.reference(km::ConfigParam::Members(), &param);
    paramRef->set("description", km::ConfigParam::Members().description);
    properties->set("param", paramRef);

    // The shared parts first, as the types come upon them; then the types.
    std::vector<Object::Ptr> types;
    for (const km::ItemDeclaration& declaration : km::ItemDeclarations()) {
        types.push_back(writer.itemOf(declaration));
    }
    definitions->set("item", itemDispatch());
    for (std::size_t i = 0; i < types.size(); ++i) {
        definitions->set(std::string(km::NameOf(km::ItemDeclarations()[i].type)), types[i]);
    }

    Object::Ptr root = ordered();
    root->set("$schema", "http://json-schema.org/draft-07/schema#");
    root->set("title", "Keymap document");
    root->set("description",
              "A keymap document as libzuno-keymapmanager saves it. The library itself is more "
              "lenient on reading: it converts values between JSON types and ignores members it "
              "does not know; this schema flags both, since they are usually mistakes. Generated "
              "from the library's member tables by zuno-keymap-schema: edit those, not this "
              "file.");
    root->set("type", "object");
    Array::Ptr required = new Array();
    required->add("info");
    root->set("required", required);
    root->set("properties", properties);
    root->set("additionalProperties", false);
    root->set("definitions", definitions);
    std::ostringstream out;
    Poco::JSON::Stringifier::stringify(root, out, 2);
    out << '\n';
    return out.str();
}

}  // namespace

int main(int argc, char** argv) {
    const std::string text = schemaText();
    if (argc == 3 && std::string(argv[1]) == "--check") {
        std::ifstream file(argv[2], std::ios::binary);
        std::ostringstream committed;
        committed << file.rdbuf();
        if (committed.str() != text) {
            std::cerr << argv[2]
                      << " is not what the member tables say; regenerate it with\n"
                         "  zuno-keymap-schema > docs/keymap.schema.json\n"
                         "and docs/format.md with node scripts/gen-format-doc.js\n";
            return 1;
        }
        return 0;
    }
    if (argc != 1) {
        std::cerr << "usage: zuno-keymap-schema [--check FILE]\n";
        return 2;
    }
    std::cout << text;
    return 0;
}
