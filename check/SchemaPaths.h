//
// SchemaPaths.h
//
// Follows a JSON path through a document and the format's schema side by
// side, so that a validator's raw error can be told in the schema's words:
// which member, of what type, which names or range it allows.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_SCHEMAPATHS_H
#define ZUNO_KEYMAPMANAGER_CHECK_SCHEMAPATHS_H

#include <string>
#include <vector>

#include <Poco/Dynamic/Var.h>
#include <Poco/JSON/Object.h>

namespace zunokeymapmanager {
namespace check {

/// A place in a document: its value and the schema node that describes it
/// (null where the schema says nothing, such as under an unknown member).
struct SchemaPlace {
    Poco::Dynamic::Var value;
    Poco::JSON::Object::Ptr schema;
    /// The schema node as written, before "$ref" was followed.
    Poco::JSON::Object::Ptr written;
};

class SchemaPaths
/// Walks the document `document` and the schema `root` together.
{
public:
    SchemaPaths(Poco::JSON::Object::Ptr root, const Poco::Dynamic::Var& document);

    /// The place reached through `tokens` (member names and array indices,
    /// as the validator lists them, without brackets); `path` receives the
    /// JSON path in the style of load diagnostics ("keymaps[2].key.text").
    SchemaPlace find(const std::vector<std::string>& tokens, std::string& path) const;

    /// The schema of the member `name` of the object at `place` (null when
    /// unknown), as written and resolved.
    SchemaPlace member(const SchemaPlace& place, const std::string& name) const;

    /// Every member name the schema allows for the object at `place`.
    std::vector<std::string> memberNames(const SchemaPlace& place) const;

    /// The schema nodes that hold for `place`: its own, then the branch its
    /// value selects (an item's type), outermost first.
    std::vector<Poco::JSON::Object::Ptr> nodes(const SchemaPlace& place) const;

    /// "integer", "number", "string", "boolean", "array of strings", "object",
    /// "key object", "point object", "size object"; empty when unknown.
    static std::string typeOf(const SchemaPlace& place);

private:
    Poco::JSON::Object::Ptr resolve(const Poco::JSON::Object::Ptr& node) const;
    /// The branch of an "allOf" of if/then pairs whose "if" holds for the value.
    Poco::JSON::Object::Ptr branch(const Poco::JSON::Object::Ptr& node,
                                   const Poco::Dynamic::Var& value) const;

    Poco::JSON::Object::Ptr _root;
    Poco::Dynamic::Var _document;
};

}  // namespace check
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_CHECK_SCHEMAPATHS_H
