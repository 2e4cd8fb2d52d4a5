//
// VarRefAdapter.h
//
// A valijson adapter over a parsed Poco document that refers to its values
// instead of copying them. valijson's own Poco adapter holds each value by
// copy, and copying a Var allocates (and copies a string or bumps a count):
// checking a 2,000-item document made millions of such copies, more work
// than loading the document. The values it reads, and so what validation
// finds, are the same; the document must outlive the adapters.
//

#ifndef ZUNO_KEYMAPMANAGER_CHECK_VARREFADAPTER_H
#define ZUNO_KEYMAPMANAGER_CHECK_VARREFADAPTER_H

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>
#include <valijson/exceptions.hpp>
#include <valijson/internal/adapter.hpp>
#include <valijson/internal/basic_adapter.hpp>
#include <valijson/internal/frozen_value.hpp>

namespace zunokeymapmanager {
namespace check {

class VarRefAdapter;
class VarRefArrayIterator;
class VarRefMemberIterator;

using VarRefMember = std::pair<std::string, VarRefAdapter>;

namespace varref {

// What a default-made array, object or value refers to: valijson makes them
// only as placeholders.
inline const Poco::Dynamic::Var& emptyArray() {
    static const Poco::Dynamic::Var value = Poco::JSON::Array::Ptr();
    return value;
}

inline const Poco::Dynamic::Var& emptyObject() {
    static const Poco::Dynamic::Var value = Poco::JSON::Object::Ptr();
    return value;
}

inline bool isArray(const Poco::Dynamic::Var& value) {
    return value.type() == typeid(Poco::JSON::Array::Ptr);
}

inline bool isObject(const Poco::Dynamic::Var& value) {
    return value.type() == typeid(Poco::JSON::Object::Ptr);
}

}  // namespace varref

class VarRefArray {
public:
    using const_iterator = VarRefArrayIterator;
    using iterator = VarRefArrayIterator;

    VarRefArray() : _value(&varref::emptyArray()) {}

    explicit VarRefArray(const Poco::Dynamic::Var& value) : _value(&value) {
        if (!varref::isArray(value)) {
            valijson::throwRuntimeError("Value is not an array.");
        }
    }

    VarRefArrayIterator begin() const;
    VarRefArrayIterator end() const;

    std::size_t size() const { return array()->size(); }

private:
    const Poco::JSON::Array::Ptr& array() const {
        return _value->extract<Poco::JSON::Array::Ptr>();
    }

    const Poco::Dynamic::Var* _value;
};

class VarRefObject {
public:
    using const_iterator = VarRefMemberIterator;
    using iterator = VarRefMemberIterator;

    VarRefObject() : _value(&varref::emptyObject()) {}

    explicit VarRefObject(const Poco::Dynamic::Var& value) : _value(&value) {
        if (!varref::isObject(value)) {
            valijson::throwRuntimeError("Value is not an object.");
        }
    }

    VarRefMemberIterator begin() const;
    VarRefMemberIterator end() const;
    VarRefMemberIterator find(const std::string& name) const;

    std::size_t size() const { return object()->size(); }

private:
    const Poco::JSON::Object::Ptr& object() const {
        return _value->extract<Poco::JSON::Object::Ptr>();
    }

    const Poco::Dynamic::Var* _value;
};

/// A copy of a value, for the schema's constants: it outlives the document.
class VarRefFrozenValue : public valijson::adapters::FrozenValue {
public:
    explicit VarRefFrozenValue(const Poco::Dynamic::Var& source) : _value(source) {}

    FrozenValue* clone() const override { return new VarRefFrozenValue(_value); }

    bool equalTo(const valijson::adapters::Adapter& other, bool strict) const override;

private:
    Poco::Dynamic::Var _value;
};

class VarRefValue {
public:
    VarRefValue() : _value(&varref::emptyObject()) {}

    explicit VarRefValue(const Poco::Dynamic::Var& value) : _value(&value) {}

    valijson::adapters::FrozenValue* freeze() const { return new VarRefFrozenValue(*_value); }

    opt::optional<VarRefArray> getArrayOptional() const {
        return isArray() ? opt::make_optional(VarRefArray(*_value)) : opt::optional<VarRefArray>();
    }

    bool getArraySize(std::size_t& result) const {
        if (!isArray()) {
            return false;
        }
        result = _value->extract<Poco::JSON::Array::Ptr>()->size();
        return true;
    }

    bool getBool(bool& result) const {
        if (!isBool()) {
            return false;
        }
        result = _value->convert<bool>();
        return true;
    }

    bool getDouble(double& result) const {
        if (!isDouble()) {
            return false;
        }
        result = _value->convert<double>();
        return true;
    }

    bool getInteger(std::int64_t& result) const {
        if (!_value->isInteger()) {
            return false;
        }
        result = _value->convert<std::int64_t>();
        return true;
    }

    opt::optional<VarRefObject> getObjectOptional() const {
        return isObject() ? opt::make_optional(VarRefObject(*_value))
                          : opt::optional<VarRefObject>();
    }

    bool getObjectSize(std::size_t& result) const {
        if (!isObject()) {
            return false;
        }
        result = _value->extract<Poco::JSON::Object::Ptr>()->size();
        return true;
    }

    bool getString(std::string& result) const {
        if (!isString()) {
            return false;
        }
        result = _value->convert<std::string>();
        return true;
    }

    static bool hasStrictTypes() { return true; }

    bool isArray() const { return varref::isArray(*_value); }
    bool isBool() const { return _value->isBoolean(); }
    bool isDouble() const { return _value->isNumeric() && !_value->isInteger(); }
    bool isInteger() const { return !isBool() && _value->isInteger(); }
    bool isNull() const { return _value->isEmpty(); }
    bool isNumber() const { return _value->isNumeric(); }
    bool isObject() const { return varref::isObject(*_value); }
    bool isString() const { return _value->isString(); }

private:
    const Poco::Dynamic::Var* _value;
};

class VarRefAdapter
    : public valijson::adapters::BasicAdapter<VarRefAdapter, VarRefArray, VarRefMember,
                                              VarRefObject, VarRefValue> {
public:
    VarRefAdapter() = default;

    explicit VarRefAdapter(const Poco::Dynamic::Var& value) : BasicAdapter(VarRefValue(value)) {}
};

class VarRefArrayIterator {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = VarRefAdapter;
    using difference_type = VarRefAdapter;
    using pointer = VarRefAdapter*;
    using reference = VarRefAdapter&;

    explicit VarRefArrayIterator(Poco::JSON::Array::ConstIterator at) : _at(at) {}

    VarRefAdapter operator*() const { return VarRefAdapter(*_at); }

    valijson::adapters::DerefProxy<VarRefAdapter> operator->() const {
        return valijson::adapters::DerefProxy<VarRefAdapter>(**this);
    }

    bool operator==(const VarRefArrayIterator& other) const { return _at == other._at; }
    bool operator!=(const VarRefArrayIterator& other) const { return _at != other._at; }

    const VarRefArrayIterator& operator++() {
        ++_at;
        return *this;
    }

    VarRefArrayIterator operator++(int) {
        VarRefArrayIterator before(_at);
        ++_at;
        return before;
    }

    const VarRefArrayIterator& operator--() {
        --_at;
        return *this;
    }

    void advance(std::ptrdiff_t n) { _at += n; }

private:
    Poco::JSON::Array::ConstIterator _at;
};

class VarRefMemberIterator {
public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = VarRefMember;
    using difference_type = VarRefMember;
    using pointer = VarRefMember*;
    using reference = VarRefMember&;

    explicit VarRefMemberIterator(Poco::JSON::Object::ConstIterator at) : _at(at) {}

    /// A member found by name in a large object, which `end` follows.
    VarRefMemberIterator(std::shared_ptr<const Poco::JSON::Object::ValueType> found,
                         Poco::JSON::Object::ConstIterator end)
        : _at(end), _found(std::move(found)) {}

    VarRefMember operator*() const {
        return _found ? VarRefMember(_found->first, VarRefAdapter(_found->second))
                      : VarRefMember(_at->first, VarRefAdapter(_at->second));
    }

    valijson::adapters::DerefProxy<VarRefMember> operator->() const {
        return valijson::adapters::DerefProxy<VarRefMember>(**this);
    }

    bool operator==(const VarRefMemberIterator& other) const {
        return _at == other._at && _found == other._found;
    }
    bool operator!=(const VarRefMemberIterator& other) const { return !(*this == other); }

    // A found member is a range of one: stepping from it reaches the end.
    const VarRefMemberIterator& operator++() {
        if (_found) {
            _found.reset();
        } else {
            ++_at;
        }
        return *this;
    }

    VarRefMemberIterator operator++(int) {
        VarRefMemberIterator before(*this);
        ++*this;
        return before;
    }

    const VarRefMemberIterator& operator--() {
        _found.reset();
        --_at;
        return *this;
    }

private:
    Poco::JSON::Object::ConstIterator _at;
    // Poco's object offers a lookup by name only as a copy of the value, so
    // a found member owns that copy; iterators over the map leave it null.
    std::shared_ptr<const Poco::JSON::Object::ValueType> _found;
};

inline VarRefArrayIterator VarRefArray::begin() const {
    return VarRefArrayIterator(array()->begin());
}

inline VarRefArrayIterator VarRefArray::end() const {
    return VarRefArrayIterator(array()->end());
}

inline VarRefMemberIterator VarRefObject::begin() const {
    return VarRefMemberIterator(object()->begin());
}

inline VarRefMemberIterator VarRefObject::end() const {
    return VarRefMemberIterator(object()->end());
}

inline VarRefMemberIterator VarRefObject::find(const std::string& name) const {
    const Poco::JSON::Object::Ptr& members = object();
    // valijson looks up each property the schema names. Poco's object gives
    // no iterator for a name, and a walk through a map of many thousands of
    // members for each one made a wide object cost far more than its size.
    constexpr std::size_t kWalked = 32;
    if (members->size() > kWalked) {
        if (!members->has(name)) {
            return end();
        }
        return VarRefMemberIterator(
            std::make_shared<const Poco::JSON::Object::ValueType>(name, members->get(name)),
            members->end());
    }
    return VarRefMemberIterator(std::find_if(
        members->begin(), members->end(),
        [&name](const Poco::JSON::Object::ValueType& member) { return member.first == name; }));
}

inline bool VarRefFrozenValue::equalTo(const valijson::adapters::Adapter& other,
                                       bool strict) const {
    return VarRefAdapter(_value).equalTo(other, strict);
}

}  // namespace check
}  // namespace zunokeymapmanager

namespace valijson {
namespace adapters {

template <>
struct AdapterTraits<zunokeymapmanager::check::VarRefAdapter> {
    using DocumentType = Poco::Dynamic::Var;
    static std::string adapterName() { return "VarRefAdapter"; }
};

}  // namespace adapters
}  // namespace valijson

#endif  // ZUNO_KEYMAPMANAGER_CHECK_VARREFADAPTER_H
