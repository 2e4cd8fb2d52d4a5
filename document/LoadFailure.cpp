//
// LoadFailure.cpp
//
// Turns the reader's progress and the per-thread read trail into a
// LoadDiagnostic. Runs only after a load has failed.
//

#include "document/LoadFailure.h"

#include <typeinfo>
#include <vector>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>

#include "document/FileSystem.h"
#include "document/JsonSyntax.h"
#include "model/LoadTrail.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {
namespace document {

namespace {

using Problem = LoadDiagnostic::Problem;
using Stage = ReadProgress::Stage;

// The parser's own nesting limit.
constexpr std::size_t kParserDepth = 128;

const char* expectedName(json::Expect expect) {
    switch (expect) {
        case json::Expect::String:
            return "string";
        case json::Expect::Integer:
            return "integer";
        case json::Expect::Number:
            return "number";
        case json::Expect::Boolean:
            return "boolean";
        case json::Expect::Object:
            return "object";
        case json::Expect::Array:
            return "array";
    }
    return "value";
}

std::string withArticle(const std::string& noun) {
    const bool vowel = !noun.empty() && std::string("aeiou").find(noun[0]) != std::string::npos;
    return (vowel ? "an " : "a ") + noun;
}

std::string inQuotes(const std::string& text) {
    constexpr std::size_t kShown = 40;
    return "\"" + (text.size() > kShown ? text.substr(0, kShown) + "..." : text) + "\"";
}

/// What kind of JSON value `value` is, with a short sample for scalars.
std::string describeValue(const Poco::Dynamic::Var& value) {
    if (value.isEmpty()) {
        return "null";
    }
    if (value.type() == typeid(Poco::JSON::Object::Ptr)) {
        return "an object";
    }
    if (value.type() == typeid(Poco::JSON::Array::Ptr)) {
        return "an array";
    }
    if (value.isString()) {
        return "a string " + inQuotes(value.extract<std::string>());
    }
    if (value.isBoolean()) {
        return "a boolean";
    }
    if (value.isNumeric()) {
        return "a number";
    }
    return "a value of another kind";
}

/// The kind of the value a top-level character starts.
const char* describeTopLevel(char first) {
    switch (first) {
        case '[':
            return "an array";
        case '"':
            return "a string";
        case 't':
        case 'f':
            return "a boolean";
        case 'n':
            return "null";
        default:
            return "a number";
    }
}

std::string whyUnreadable(const std::string& path) {
    switch (KindOf(path)) {
        case FileKind::Missing:
            return "no such file";
        case FileKind::Other:
            return "not a regular file";
        case FileKind::Regular:
            break;
    }
    return "it cannot be opened or read";
}

std::string itemPrefix(int index) {
    return kFieldKeymaps + "[" + std::to_string(index) + "]";
}

/// The JSON path of the member object `object`, walked back through the trail.
std::string pathOf(const ReadProgress& progress, const void* object) {
    const json::LoadTrail& trail = json::trail();
    std::vector<const json::TrailKey*> names;
    std::string prefix;
    for (unsigned guard = 0; guard <= json::LoadTrail::kLinks; ++guard) {
        if (object == nullptr || object == progress.root.get()) {
            break;
        }
        if (object == progress.item.get() && progress.itemIndex >= 0) {
            prefix = itemPrefix(progress.itemIndex);
            break;
        }
        const json::LoadTrail::Link* link = trail.find(object);
        if (link == nullptr) {
            prefix = "?";
            break;
        }
        names.push_back(&link->key);
        object = link->parent;
    }
    std::string path = prefix;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        path += (path.empty() ? "" : ".") + (*name)->str();
    }
    return path;
}

std::string join(const std::string& path, const std::string& key) {
    return path.empty() ? key : path + "." + key;
}

void describeMember(const ReadProgress& progress, const Poco::Exception& error, LoadDiagnostic& out,
                    std::string& what) {
    const json::LoadTrail& trail = json::trail();
    if (!trail.reading) {
        // Not a member read: an element of "keymaps" that is not an object,
        // or a failure the trail did not see.
        if (progress.stage == Stage::Keymaps && progress.itemIndex >= 0 && progress.item.isNull()) {
            out.problem = Problem::NotAnObject;
            out.path = itemPrefix(progress.itemIndex);
            out.expected = "object";
            what = "must be an object, found " +
                   describeValue(progress.elements->get(progress.itemIndex));
            return;
        }
        out.problem = Problem::WrongType;
        out.path = progress.itemIndex >= 0 ? itemPrefix(progress.itemIndex) : "";
        what = error.displayText();
        return;
    }

    if (trail.readIndex >= 0) {
        const auto* array = static_cast<const Poco::JSON::Array*>(trail.readParent);
        const auto index = static_cast<unsigned>(trail.readIndex);
        out.path = pathOf(progress, array) + "[" + std::to_string(index) + "]";
        out.expected = expectedName(trail.readExpect);
        out.problem = Problem::WrongType;
        what =
            "must be " + withArticle(out.expected) + ", found " + describeValue(array->get(index));
        return;
    }

    const auto* parent = static_cast<const Poco::JSON::Object*>(trail.readParent);
    const std::string key = trail.readKey.str();
    out.path = join(pathOf(progress, parent), key);
    out.expected = expectedName(trail.readExpect);
    const std::string expected = withArticle(out.expected);

    if (parent == nullptr || !parent->has(key)) {
        out.problem = Problem::Missing;
        what = "required " + out.expected + " is missing";
        return;
    }
    const Poco::Dynamic::Var value = parent->get(key);
    if (trail.readExpect == json::Expect::Object) {
        out.problem = Problem::NotAnObject;
    } else if (trail.readExpect == json::Expect::Array) {
        out.problem = Problem::NotAnArray;
    } else {
        out.problem = Problem::WrongType;
    }
    what = "must be " + expected + ", found " + describeValue(value);
    if (out.problem == Problem::WrongType && value.isNumeric() &&
        trail.readExpect == json::Expect::Integer) {
        what = "must be a 32-bit integer, found a number out of range";
    }
}

}  // namespace

void Describe(const ReadProgress& progress, const Poco::Exception& error, const std::string& source,
              const std::string& text, LoadDiagnostic& out) {
    out = LoadDiagnostic();
    out.failed = true;
    out.source = source;

    switch (progress.stage) {
        case Stage::Opening:
            out.problem = Problem::Unreadable;
            out.message = "cannot read the file " + inQuotes(source) + ": " + whyUnreadable(source);
            return;
        case Stage::Parsing: {
            const SyntaxReport syntax =
                ScanJson(text.empty() ? progress.fileText : text, kParserDepth);
            if (!syntax.error && syntax.topLevel != 0 && syntax.topLevel != '{') {
                out.problem = Problem::NotAnObject;
                out.expected = "object";
                out.message = std::string("the document must be a JSON object, found ") +
                              describeTopLevel(syntax.topLevel);
                return;
            }
            out.problem = Problem::Malformed;
            out.line = syntax.line;
            out.column = syntax.column;
            out.message = syntax.error ? "malformed JSON at line " + std::to_string(syntax.line) +
                                             ", column " + std::to_string(syntax.column) + ": " +
                                             syntax.reason
                                       : "malformed JSON: " + error.message();
            return;
        }
        case Stage::Root:
            out.problem = Problem::NotAnObject;
            out.expected = "object";
            out.message = "the document must be a JSON object, found " +
                          (progress.root.isNull() && progress.parsed.isEmpty()
                               ? std::string("null")
                               : describeValue(progress.parsed));
            return;
        default:
            break;
    }

    std::string what;
    describeMember(progress, error, out, what);
    if (progress.stage == Stage::Keymaps && progress.itemIndex >= 0) {
        out.item_index = progress.itemIndex;
        if (!progress.item.isNull()) {
            const Poco::Dynamic::Var type = progress.item->get(kFieldType);
            if (type.isString()) {
                out.item_type = type.extract<std::string>();
            }
        }
    }
    out.message = out.path.empty() ? what : out.path + ": " + what;
    if (out.item_index >= 0) {
        out.message += " (item " + std::to_string(out.item_index) +
                       (out.item_type.empty() ? std::string(", no type")
                                              : ", type " + inQuotes(out.item_type)) +
                       ")";
    }
}

}  // namespace document
}  // namespace zunokeymapmanager
