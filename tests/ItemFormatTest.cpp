// Every item type and every member against the format's schema, which is
// written from the member tables: what a fresh item writes, what is read and
// written back, what a document must carry and what it may leave out.

#include <fstream>
#include <sstream>
#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "tests/ItemFormatSupport.h"

namespace {

using namespace testsupport;
using Poco::Dynamic::Var;
using Poco::JSON::Object;

const std::string kKeyRef = "#/definitions/key";

// One member of an item type as the schema has it: its '/'-separated path,
// its node as written and with any reference resolved, and whether it is
// required where it stands.
struct SchemaMember {
    std::string path;
    Object::Ptr raw;
    Object::Ptr node;
    bool required;
    bool isKey;
    bool ignored;  ///< it, or an object holding it, is read and ignored
};

class Schema {
public:
    Schema() {
        std::ifstream file(ZUNO_KM_SCHEMA_FILE, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        definitions_ = parseObject(text.str())->getObject("definitions");
    }

    Object::Ptr resolve(const Object::Ptr& node) const {
        if (!node->has("$ref")) {
            return node;
        }
        const std::string ref = node->getValue<std::string>("$ref");
        return definitions_->getObject(ref.substr(ref.rfind('/') + 1));
    }

    /// Every member of `type`, nested ones after the object that holds them.
    std::vector<SchemaMember> members(const std::string& type) const {
        std::vector<SchemaMember> out;
        const Object::Ptr definition = definitions_->getObject(type);
        if (definition.isNull()) {
            ADD_FAILURE() << "the schema has no definition of " << type;
            return out;
        }
        collect(definition, "", false, out);
        return out;
    }

private:
    void collect(const Object::Ptr& raw, const std::string& prefix, bool ignored,
                 std::vector<SchemaMember>& out) const {
        const Object::Ptr node = resolve(raw);
        if (!node->has("properties")) {
            return;
        }
        const Object::Ptr properties = node->getObject("properties");
        const Poco::JSON::Array::Ptr required = node->getArray("required");
        for (const std::string& name : properties->getNames()) {
            bool isRequired = false;
            for (std::size_t i = 0; required && i < required->size(); ++i) {
                isRequired = isRequired || required->getElement<std::string>(i) == name;
            }
            const Object::Ptr member = properties->getObject(name);
            const bool memberIgnored =
                ignored || member->optValue<std::string>("description", "") == "read and ignored";
            out.push_back({prefix + name, member, resolve(member), isRequired,
                           member->optValue<std::string>("$ref", "") == kKeyRef, memberIgnored});
            collect(member, prefix + name + "/", memberIgnored, out);
        }
    }

    Object::Ptr definitions_;
};

const Schema& schema() {
    static const Schema instance;
    return instance;
}

std::vector<std::string> typeNames() {
    return {km::kDocumentItemTypeNames.begin(), km::kDocumentItemTypeNames.end()};
}

// A value the library counts as set for `node`: a key, non-zero numbers, a line.
Var example(const Object::Ptr& raw) {
    if (raw->optValue<std::string>("$ref", "") == kKeyRef) {
        return parseObject(
            R"({"device": "keyboard", "text": "Ctrl", "virtual_key": 17, "scan_code": 29})");
    }
    const Object::Ptr node = schema().resolve(raw);
    const std::string type = node->optValue<std::string>("type", "");
    if (type == "object") {
        Object::Ptr value = new Object();
        const Object::Ptr properties = node->getObject("properties");
        for (const std::string& name : properties->getNames()) {
            value->set(name, example(properties->getObject(name)));
        }
        return value;
    }
    if (type == "array") {
        return parseObject(R"({"a": ["sleep 10"]})")->get("a");
    }
    return type == "number" ? Var(0.5) : type == "integer" ? Var(3) : Var(std::string("1,2"));
}

// A full item of `type`: every member away from its default, and each
// optional member a fresh item leaves out given a value that is written.
// Of the keys only second keys are left out when unset; a key the schema has
// that is never written (read and ignored) stays out.
Object::Ptr richItem(const std::string& type) {
    Object::Ptr item = mutatedItem(type, type == "Macro" ? R"({"press_actions": ["sleep 10"],
        "release_actions": ["release_all"]})"
                                                         : "{}");
    for (const SchemaMember& member : schema().members(type)) {
        std::string last;
        Object::Ptr parent = parentOf(item, member.path, last);
        if (!parent.isNull() && !parent->has(last) && !member.required &&
            (!member.isKey || last == "second_key")) {
            parent->set(last, example(member.raw));
        }
    }
    return parseObject(text(item));
}

// The written member at `path`, or "absent".
std::string writtenAt(const km::ConfigItem& item, const std::string& path) {
    return valueAt(new Object(item.ConvertToJsonObject()), path);
}

TEST(ItemFormat, FreshItemsWriteTheSchemaDefaults) {
    std::size_t compared = 0;
    for (const std::string& type : typeNames()) {
        const Object::Ptr fresh = parseObject(freshItemText(type));
        for (const SchemaMember& member : schema().members(type)) {
            const std::string written = valueAt(fresh, member.path);
            if (written == "absent" || !member.raw->has("default")) {
                continue;  // written only when set, or compared member by member
            }
            ++compared;
            EXPECT_EQ(written, text(member.raw->get("default"))) << type << " " << member.path;
        }
    }
    EXPECT_GT(compared, 250u);
}

TEST(ItemFormat, EveryMemberIsReadAndWrittenBack) {
    for (const std::string& type : typeNames()) {
        SCOPED_TRACE(type);
        const Object::Ptr rich = richItem(type);
        expectRoundTrip(rich);
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
        item->FillFromJsonObject(rich);
        for (const SchemaMember& member : schema().members(type)) {
            EXPECT_EQ(writtenAt(*item, member.path) == "absent", member.ignored) << member.path;
        }
    }
}

TEST(ItemFormat, RequiredMembersRaiseAndOptionalOnesKeepTheirDefaults) {
    for (const std::string& type : typeNames()) {
        for (const SchemaMember& member : schema().members(type)) {
            SCOPED_TRACE(type + " " + member.path);
            Object::Ptr object = richItem(type);
            std::string last;
            Object::Ptr parent = parentOf(object, member.path, last);
            if (parent.isNull() || !parent->has(last)) {
                continue;
            }
            parent->remove(last);
            std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
            const bool isObject = member.node->optValue<std::string>("type", "") == "object";
            if (!member.required) {
                EXPECT_NO_THROW(item->FillFromJsonObject(object));
                std::unique_ptr<km::ConfigItem> fresh(km::CreateConfigItem(type));
                EXPECT_EQ(writtenAt(*item, member.path), writtenAt(*fresh, member.path));
            } else if (isObject) {
                EXPECT_THROW(item->FillFromJsonObject(object), Poco::NullPointerException);
            } else {
                EXPECT_THROW(item->FillFromJsonObject(object), Poco::InvalidAccessException);
            }
        }
    }
}

// An object or a list given as a number is no object: the read raises, be the
// member required or not. Whole numbers are taken where a number may have a
// fraction, and written back as floating-point numbers.
TEST(ItemFormat, ValuesOfAnotherKind) {
    for (const std::string& type : typeNames()) {
        for (const SchemaMember& member : schema().members(type)) {
            SCOPED_TRACE(type + " " + member.path);
            const std::string kind = member.node->optValue<std::string>("type", "");
            if (kind != "object" && kind != "array" && kind != "number") {
                continue;
            }
            Object::Ptr object = richItem(type);
            std::string last;
            Object::Ptr parent = parentOf(object, member.path, last);
            if (parent.isNull() || !parent->has(last)) {
                continue;
            }
            parent->set(last, kind == "number" ? 1 : 5);
            std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
            if (kind != "number") {
                EXPECT_THROW(item->FillFromJsonObject(object), Poco::NullPointerException);
                continue;
            }
            item->FillFromJsonObject(object);
            const Object::Ptr written = new Object(item->ConvertToJsonObject());
            const Var value = parentOf(written, member.path, last)->get(last);
            EXPECT_EQ(value.type(), typeid(double));
            EXPECT_EQ(value.convert<double>(), 1.0);
        }
    }
}

TEST(ItemFormat, MacroLinesAreAppendedAsText) {
    km::MacroConfigItem item;
    const Object::Ptr object = mutatedItem("Macro", R"({"press_actions": ["a", 5, 2.5, true],
        "release_actions": ["b"]})");
    item.FillFromJsonObject(object);
    item.FillFromJsonObject(object);
    const std::vector<std::string> press{"a", "5", "2.5", "true", "a", "5", "2.5", "true"};
    EXPECT_EQ(item.press_actions, press);
    EXPECT_EQ(item.release_actions, std::vector<std::string>({"b", "b"}));
}

}  // namespace
