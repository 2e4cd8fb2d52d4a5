// Every item type of the type list: made as declared, through a whole
// document, and its member tables as the schema and the check see them.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <Poco/JSON/Array.h>

#include "tests/TestSupport.h"

namespace {

using namespace testsupport;
using Poco::JSON::Array;
using Poco::JSON::Object;

// A table keeps a pointer to each member's name, so a name that does not
// outlive the table (a string literal's temporary) must not compile.
template <typename Name, typename = void>
struct TakesName : std::false_type {};
template <typename Name>
struct TakesName<Name, std::void_t<decltype(km::MembersOf<km::PointF>::field<&km::PointF::x>(
                           std::declval<Name>()))>> : std::true_type {};
static_assert(TakesName<const std::string&>::value);
static_assert(!TakesName<const char (&)[6]>::value);
static_assert(!TakesName<std::string>::value);

TEST(AllItemTypes, EachTypeIsMadeAsDeclaredAndSurvivesADocumentRoundTrip) {
    const std::vector<km::ItemDeclaration>& types = km::ItemDeclarations();
    ASSERT_EQ(types.size(), km::kDocumentItemTypeNames.size());
    CallbackRecorder recorder;
    std::string items;
    for (std::size_t i = 0; i < types.size(); ++i) {
        const std::string name(km::NameOf(types[i].type));
        SCOPED_TRACE(name);
        EXPECT_EQ(name, km::kDocumentItemTypeNames[i]);
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(name));
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item->type, name);
        const km::ConfigItem& made = *item;
        EXPECT_TRUE(typeid(made) == *types[i].typeInfo);
        EXPECT_EQ(km::DeclarationOf(*item), &types[i]);
        const bool pair = dynamic_cast<km::PairConfigItem*>(item.get()) != nullptr;
        EXPECT_FALSE(pair && item->IsInvalid()) << "a fresh pair item is usable";

        std::unique_ptr<km::ConfigItem> copy(km::ConfigFactory::ProduceConfigItem(itemJson(*item)));
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(stringify(copy->ConvertToJsonObject()), stringify(item->ConvertToJsonObject()));

        item->key = km::CreateConfigKey("keyboard", 65, 30);
        item->rel_work_position = {0.125, 0.875};
        items += (items.empty() ? "" : ",") + stringify(item->ConvertToJsonObject());
    }
    DocPtr first = loadText(documentWith(items));
    ASSERT_EQ(first->items.size(), types.size());
    for (std::size_t i = 0; i < types.size(); ++i) {
        EXPECT_EQ(first->items[i]->type, km::NameOf(types[i].type));
    }
    const std::string saved = saveText(first.get());
    DocPtr second = loadText(saved);
    EXPECT_EQ(saveText(second.get()), saved);
    EXPECT_TRUE(recorder.take().empty());
    km::ConfigKey a = km::CreateConfigKey("keyboard", 65, 30), none;
    EXPECT_TRUE(km::isConfigKeyMatch(second.get(), &a, &none));
}

// A value a member's row forbids, put where the member is in a fresh item.
struct Probe {
    std::string type;
    std::string path;  // inside the item, "spell_info.rel_radius"
    Poco::Dynamic::Var value;
};

// Walks a class's tables beside the schema's node of the same object: each
// attribute of a row must be in the schema, which the check and the editor
// read. Gathers a forbidden value for every member that forbids some.
class SchemaWalk {
public:
    explicit SchemaWalk(Object::Ptr definitions) : definitions_(std::move(definitions)) {}

    void walk(const km::MemberTable& table, const Object::Ptr& node, const std::string& type,
              const std::string& prefix, std::vector<Probe>& probes) const {
        const Object::Ptr properties = node->getObject("properties");
        const Array::Ptr required = node->getArray("required");
        ASSERT_FALSE(properties.isNull()) << type << " " << prefix;
        for (const km::Member& member : table.members) {
            if (member.kind == km::MemberKind::Route) {
                walk(member.route->members(), node, type, prefix, probes);
                continue;
            }
            const std::string path = prefix + *member.name;
            SCOPED_TRACE(testing::Message() << type << " " << path);
            const Object::Ptr own = properties->getObject(*member.name);
            ASSERT_FALSE(own.isNull());
            EXPECT_EQ(own->optValue<std::string>("x-unit", ""), member.unit);
            // A member may stand in two tables (its own, and one routed for
            // it); either one requiring it makes it required.
            EXPECT_TRUE(!member.required || listed(required, *member.name));
            if ((member.flags & km::kTypeName) != 0) {
                continue;
            }
            const Object::Ptr shape = resolved(own);
            switch (member.kind) {
                case km::MemberKind::Integer:
                case km::MemberKind::Number:
                    expectBound(own, "minimum", member.minimum);
                    expectBound(own, "maximum", member.maximum);
                    if (member.maximum == member.maximum) {
                        probes.push_back({type, path, member.maximum + 1});
                    }
                    break;
                case km::MemberKind::String:
                    EXPECT_EQ(names(own), expectedNames(member));
                    if (member.names != nullptr || *member.pattern != '\0') {
                        probes.push_back({type, path, std::string("No such name")});
                    }
                    break;
                case km::MemberKind::Object:
                    walk(member.members(), shape, type, path + ".", probes);
                    break;
                default:
                    break;
            }
        }
    }

private:
    Object::Ptr resolved(const Object::Ptr& node) const {
        const std::string ref = node->optValue<std::string>("$ref", "");
        const std::string prefix = "#/definitions/";
        return ref.empty() ? node : definitions_->getObject(ref.substr(prefix.size()));
    }

    static bool listed(const Array::Ptr& list, const std::string& name) {
        for (std::size_t i = 0; !list.isNull() && i < list->size(); ++i) {
            if (list->getElement<std::string>(static_cast<unsigned>(i)) == name) {
                return true;
            }
        }
        return false;
    }

    static void expectBound(const Object::Ptr& node, const char* name, double bound) {
        EXPECT_EQ(node->has(name), bound == bound) << name;
        if (node->has(name) && bound == bound) {
            EXPECT_EQ(node->getValue<double>(name), bound) << name;
        }
    }

    static std::vector<std::string> names(const Object::Ptr& node) {
        std::vector<std::string> result;
        const Array::Ptr list = node->getArray("enum");
        for (std::size_t i = 0; !list.isNull() && i < list->size(); ++i) {
            result.push_back(list->getElement<std::string>(static_cast<unsigned>(i)));
        }
        return result;
    }

    static std::vector<std::string> expectedNames(const km::Member& member) {
        std::vector<std::string> result;
        if (member.names != nullptr && (member.flags & km::kEmptyAllowed) != 0) {
            result.emplace_back();
        }
        for (std::size_t i = 0; i < member.nameCount; ++i) {
            result.emplace_back(member.names[i]);
        }
        return result;
    }

    Object::Ptr definitions_;
};

// Sets `path` in `object` to `value`; false when an object on the way is not written.
bool setAt(Object::Ptr object, const std::string& path, const Poco::Dynamic::Var& value) {
    const std::size_t dot = path.find('.');
    if (dot == std::string::npos) {
        object->set(path, value);
        return true;
    }
    const Object::Ptr inner = object->getObject(path.substr(0, dot));
    return !inner.isNull() && setAt(inner, path.substr(dot + 1), value);
}

TEST(AllItemTypes, EveryAttributeOfEveryMemberReachesTheSchemaAndTheCheck) {
    std::ifstream file(ZUNO_KM_SCHEMA_FILE, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    const Object::Ptr definitions = parseObject(text.str())->getObject("definitions");
    ASSERT_FALSE(definitions.isNull());
    const SchemaWalk walk(definitions);
    std::vector<Probe> probes;
    for (const km::ItemDeclaration& declaration : km::ItemDeclarations()) {
        const std::string type(km::NameOf(declaration.type));
        const Object::Ptr node = definitions->getObject(type);
        ASSERT_FALSE(node.isNull()) << type;
        for (const km::MemberTable* table : km::TablesOf(declaration.members())) {
            walk.walk(*table, node, type, "", probes);
        }
    }
    // The check validates against the schema the build wrote: each forbidden
    // value is found where it stands.
    std::size_t checked = 0;
    for (const Probe& probe : probes) {
        SCOPED_TRACE(testing::Message() << probe.type << " " << probe.path);
        const Object::Ptr item = parseObject(freshItemText(probe.type));
        if (!setAt(item, probe.path, probe.value)) {
            continue;
        }
        ++checked;
        const km::CheckReport report =
            km::CheckKeymapDocument(documentWith(stringify(*item)), false);
        const std::string where = "keymaps[0]." + probe.path;
        EXPECT_TRUE(std::any_of(report.findings.begin(), report.findings.end(),
                                [&](const km::Finding& f) { return f.path == where; }));
    }
    // At least each type's key device and touch point are probed.
    EXPECT_GE(checked, 2 * km::ItemDeclarations().size());
}

}  // namespace
