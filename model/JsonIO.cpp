//
// JsonIO.cpp
//

#include "model/JsonIO.h"

#include <Poco/Exception.h>

#include "model/LoadTrail.h"
#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {
namespace json {

namespace {

inline void noteRead(const ObjectPtr& parent, const std::string& key, Expect expect) {
    trail().noteRead(parent.get(), key, expect);
}

inline void readDone() {
    trail().readDone();
}

inline void noteLink(const void* child, const ObjectPtr& parent, const std::string& key) {
    trail().noteLink(child, parent.get(), key);
}

Poco::Dynamic::Var member(const ObjectPtr& parent, const std::string& key) {
    if (parent.isNull()) {
        throw Poco::NullPointerException();
    }
    return parent->get(key);
}

}  // namespace

ObjectPtr object(const ObjectPtr& parent, const std::string& key) {
    ObjectPtr child = optionalObject(parent, key);
    if (child.isNull()) {
        noteRead(parent, key, Expect::Object);
        throw Poco::NullPointerException();
    }
    return child;
}

ObjectPtr optionalObject(const ObjectPtr& parent, const std::string& key) {
    if (parent.isNull()) {
        throw Poco::NullPointerException();
    }
    noteRead(parent, key, Expect::Object);
    if (!parent->has(key)) {
        readDone();
        return {};
    }
    ObjectPtr child = parent->getObject(key);
    if (child.isNull()) {
        throw Poco::NullPointerException();
    }
    noteLink(child.get(), parent, key);
    readDone();
    return child;
}

ArrayPtr array(const ObjectPtr& parent, const std::string& key) {
    if (parent.isNull()) {
        throw Poco::NullPointerException();
    }
    noteRead(parent, key, Expect::Array);
    ArrayPtr result = parent->getArray(key);
    if (result.isNull()) {
        throw Poco::NullPointerException();
    }
    noteLink(result.get(), parent, key);
    readDone();
    return result;
}

void readElement(const ArrayPtr& array, std::size_t index, std::string& out) {
    if (array.isNull()) {
        throw Poco::NullPointerException();
    }
    trail().noteElement(array.get(), index);
    out = array->get(static_cast<unsigned int>(index)).convert<std::string>();
    readDone();
}

bool has(const ObjectPtr& parent, const std::string& key) {
    if (parent.isNull()) {
        throw Poco::NullPointerException();
    }
    return parent->has(key);
}

void read(const ObjectPtr& parent, const std::string& key, std::string& out) {
    noteRead(parent, key, Expect::String);
    out = member(parent, key).convert<std::string>();
    readDone();
}

void read(const ObjectPtr& parent, const std::string& key, std::int32_t& out) {
    noteRead(parent, key, Expect::Integer);
    out = member(parent, key).convert<std::int32_t>();
    readDone();
}

void read(const ObjectPtr& parent, const std::string& key, double& out) {
    noteRead(parent, key, Expect::Number);
    out = member(parent, key).convert<double>();
    readDone();
}

void read(const ObjectPtr& parent, const std::string& key, bool& out) {
    noteRead(parent, key, Expect::Boolean);
    out = member(parent, key).convert<bool>();
    readDone();
}

ObjectPtr newObject() {
    return new Poco::JSON::Object();
}

ObjectPtr keyObject(const ConfigKey& key) {
    ObjectPtr result = newObject();
    WriteMembers(KeyMembers(), &key, *result);
    return result;
}

}  // namespace json
}  // namespace zunokeymapmanager
