// Helpers for tests of the items' JSON form: reaching members by path,
// filling an item with non-default values, and reading back what a document
// saved.

#ifndef ZUNO_KEYMAPMANAGER_TESTS_ITEMFORMATSUPPORT_H
#define ZUNO_KEYMAPMANAGER_TESTS_ITEMFORMATSUPPORT_H

#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/TestSupport.h"

namespace testsupport {

/// A JSON value as compact text.
inline std::string text(const Poco::Dynamic::Var& value) {
    std::ostringstream out;
    Poco::JSON::Stringifier::stringify(value, out);
    return out.str();
}

/// The object holding the member at a '/'-separated path, and its name.
inline Poco::JSON::Object::Ptr parentOf(Poco::JSON::Object::Ptr object, const std::string& path,
                                        std::string& last) {
    std::istringstream parts(path);
    std::getline(parts, last, '/');
    for (std::string next; std::getline(parts, next, '/'); last = next) {
        object = object->getObject(last);
    }
    return object;
}

/// Gives every member a value no default has: numbers count up (doubles keep
/// a fraction), strings become names no list knows, booleans flip.
inline void mutate(Poco::JSON::Object::Ptr object, int& n) {
    for (const std::string& name : object->getNames()) {
        const Poco::Dynamic::Var value = object->get(name);
        if (name == "type") {
            continue;
        } else if (value.type() == typeid(Poco::JSON::Object::Ptr)) {
            mutate(value.extract<Poco::JSON::Object::Ptr>(), n);
        } else if (value.isBoolean()) {
            object->set(name, !value.convert<bool>());
        } else if (value.isString()) {
            object->set(name, "Unknown_Name_" + std::to_string(++n));
        } else if (value.type() == typeid(double)) {
            object->set(name, ++n + 0.25);
        } else if (value.isInteger()) {
            object->set(name, ++n);
        }
    }
}

/// A full item of `type` with non-default values everywhere, plus the members
/// of the JSON object text `extra`.
inline Poco::JSON::Object::Ptr mutatedItem(const std::string& type,
                                           const std::string& extra = "{}") {
    std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
    Poco::JSON::Object::Ptr object = new Poco::JSON::Object(item->ConvertToJsonObject());
    int n = 1000;
    mutate(object, n);
    const Poco::JSON::Object::Ptr more = parseObject(extra);
    for (const std::string& name : more->getNames()) {
        object->set(name, more->get(name));
    }
    return parseObject(stringify(*object));
}

/// The saved JSON of the item at `index` of `doc`, or its member at `path`
/// as JSON text ("absent" when missing).
inline Poco::JSON::Object::Ptr savedItem(km::KeymapConfig* doc, unsigned index = 0) {
    return parseObject(saveText(doc))->getArray("keymaps")->getObject(index);
}
inline std::string valueAt(Poco::JSON::Object::Ptr object, const std::string& path) {
    std::string last;
    object = parentOf(object, path, last);
    return object && object->has(last) ? text(object->get(last)) : "absent";
}

/// Checks that a fresh item of `type` writes `own` besides the members every
/// item shares (`dropped` lists the shared members the comparison leaves out).
inline void expectFreshForm(const std::string& type, const std::string& own,
                            std::initializer_list<const char*> dropped) {
    Poco::JSON::Object::Ptr written = parseObject(freshItemText(type));
    for (const char* common : dropped) {
        written->remove(common);
    }
    const std::string expected = R"({"type": ")" + type + "\", " + own + "}";
    EXPECT_EQ(text(written), text(parseObject(expected))) << type;
}

/// Checks that `item` survives a load and a save unchanged.
inline void expectRoundTrip(const Poco::JSON::Object::Ptr& item) {
    CallbackRecorder recorder;
    DocPtr doc = loadText(documentWith(text(item)));
    ASSERT_EQ(doc->items.size(), 1u);
    EXPECT_EQ(text(savedItem(doc.get())), text(item));
    EXPECT_TRUE(recorder.take().empty());
}

/// How the reader treats one member of an item.
enum MemberRule {
    kOptional,   // absent: the load goes on and the default stays
    kRequired,   // absent: the load fails at this element
    kWrongKind,  // given as a number where an object or array belongs: the load fails
};

/// Breaks the member at `path` of the full item `item` as `rule` says, loads it
/// between two good items, and checks what the document kept.
inline void expectMemberRule(const std::string& type, Poco::JSON::Object::Ptr item,
                             const std::string& path, MemberRule rule) {
    SCOPED_TRACE(type + " " + path + " rule " + std::to_string(rule));
    std::string last;
    Poco::JSON::Object::Ptr parent = parentOf(item, path, last);
    if (rule == kWrongKind) {
        parent->set(last, 5);
    } else {
        parent->remove(last);
    }
    const std::string neighbour = freshItemText("Observe");
    CallbackRecorder recorder;
    DocPtr doc = loadText(documentWith(neighbour + "," + text(item) + "," + neighbour));
    if (rule == kOptional) {
        EXPECT_TRUE(recorder.take().empty());
        ASSERT_EQ(doc->items.size(), 3u);
        EXPECT_EQ(valueAt(savedItem(doc.get(), 1), path),
                  valueAt(parseObject(freshItemText(type)), path));
    } else {
        // The failing element and everything after it are dropped.
        EXPECT_EQ(recorder.take().size(), 1u);
        ASSERT_EQ(doc->items.size(), 1u);
        EXPECT_EQ(doc->items[0]->type, "Observe");
    }
}

/// expectMemberRule for each row "Type path1R path2R ...", with each path
/// ending in its rule: '!' required, '?' optional, '#' wrong kind.
template <std::size_t N>
void expectMemberRules(const char* const (&rows)[N],
                       Poco::JSON::Object::Ptr (*rich)(const std::string&)) {
    for (const char* row : rows) {
        std::istringstream in(row);
        std::string type, path;
        in >> type;
        while (in >> path) {
            const char rule = path.back();
            path.pop_back();
            expectMemberRule(type, rich(type), path,
                             rule == '!'   ? kRequired
                             : rule == '?' ? kOptional
                                           : kWrongKind);
        }
    }
}

}  // namespace testsupport

#endif  // ZUNO_KEYMAPMANAGER_TESTS_ITEMFORMATSUPPORT_H
