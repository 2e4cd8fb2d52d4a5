// Helpers for tests of the items' JSON form: reaching members by path,
// filling an item with non-default values, and reading back what a document
// saved.

#ifndef ZUNO_KEYMAPMANAGER_TESTS_ITEMFORMATSUPPORT_H
#define ZUNO_KEYMAPMANAGER_TESTS_ITEMFORMATSUPPORT_H

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

/// The object holding the member at a '/'-separated path, and its name; null
/// when the path leaves the objects.
inline Poco::JSON::Object::Ptr parentOf(Poco::JSON::Object::Ptr object, const std::string& path,
                                        std::string& last) {
    std::istringstream parts(path);
    std::getline(parts, last, '/');
    for (std::string next; object && std::getline(parts, next, '/'); last = next) {
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

/// Checks that `item` survives a load and a save unchanged.
inline void expectRoundTrip(const Poco::JSON::Object::Ptr& item) {
    CallbackRecorder recorder;
    DocPtr doc = loadText(documentWith(text(item)));
    ASSERT_EQ(doc->items.size(), 1u);
    EXPECT_EQ(text(savedItem(doc.get())), text(item));
    EXPECT_TRUE(recorder.take().empty());
}

}  // namespace testsupport

#endif  // ZUNO_KEYMAPMANAGER_TESTS_ITEMFORMATSUPPORT_H
