//
// JsonIO.cpp
//

#include "model/JsonIO.h"

#include <Poco/Exception.h>

#include "model/LoadTrail.h"
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

void readPoint(const ObjectPtr& parent, const std::string& key, PointF& out) {
    ObjectPtr point = object(parent, key);
    read(point, kFieldRelX, out.x);
    read(point, kFieldRelY, out.y);
}

void readSize(const ObjectPtr& parent, const std::string& key, SizeF& out) {
    ObjectPtr size = object(parent, key);
    read(size, kFieldRelWidth, out.width);
    read(size, kFieldRelHeight, out.height);
}

void readKey(const ObjectPtr& keyObject, ConfigKey& out) {
    if (keyObject.isNull()) {
        throw Poco::NullPointerException();
    }
    read(keyObject, kFieldDevice, out.device);
    read(keyObject, kFieldText, out.text);
    read(keyObject, kFieldScanCode, out.scan_code);
    read(keyObject, kFieldVirtualKey, out.virtual_key);
}

void readKey(const ObjectPtr& parent, const std::string& key, ConfigKey& out) {
    readKey(object(parent, key), out);
}

ObjectPtr newObject() {
    return new Poco::JSON::Object();
}

ObjectPtr pointObject(const PointF& point) {
    ObjectPtr result = newObject();
    result->set(kFieldRelX, point.x);
    result->set(kFieldRelY, point.y);
    return result;
}

ObjectPtr sizeObject(const SizeF& size) {
    ObjectPtr result = newObject();
    result->set(kFieldRelWidth, size.width);
    result->set(kFieldRelHeight, size.height);
    return result;
}

ObjectPtr keyObject(const ConfigKey& key) {
    ObjectPtr result = newObject();
    result->set(kFieldDevice, key.device);
    result->set(kFieldText, key.text);
    result->set(kFieldVirtualKey, key.virtual_key);
    result->set(kFieldScanCode, key.scan_code);
    return result;
}

}  // namespace json
}  // namespace zunokeymapmanager
