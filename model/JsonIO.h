//
// JsonIO.h
//
// The one place where the library reads and writes JSON members. Every item,
// info and parameter reader goes through these functions, so that the rules
// for required and optional members, and the exceptions a failed read raises,
// are the same everywhere.
//
// Required reads raise exactly what the JSON library raises:
// Poco::NullPointerException for a member object that is missing or is not an
// object, Poco::InvalidAccessException ("Can not convert empty value.") for a
// missing value, and the conversion's own exception for a value of the wrong
// kind. Optional reads leave their target untouched when the member is absent.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_JSONIO_H
#define ZUNO_KEYMAPMANAGER_MODEL_JSONIO_H

#include <cstddef>
#include <cstdint>
#include <string>

#include <Poco/JSON/Array.h>
#include <Poco/JSON/Object.h>

#include "zuno-keymapmanager/model/ConfigKey.h"

namespace zunokeymapmanager {
namespace json {

using ObjectPtr = Poco::JSON::Object::Ptr;
using ArrayPtr = Poco::JSON::Array::Ptr;

// --- Reading -------------------------------------------------------------

/// The member object `key`; raises Poco::NullPointerException when it is
/// missing or not an object.
ObjectPtr object(const ObjectPtr& parent, const std::string& key);

/// The member object `key`, or null when absent; raises
/// Poco::NullPointerException when present but not an object.
ObjectPtr optionalObject(const ObjectPtr& parent, const std::string& key);

/// The member array `key`; raises Poco::NullPointerException when it is
/// missing or not an array.
ArrayPtr array(const ObjectPtr& parent, const std::string& key);

/// Element `index` of `array`, converted to a string with the JSON library's
/// own conversion (numbers give their text form).
void readElement(const ArrayPtr& array, std::size_t index, std::string& out);

/// Whether `parent` has a member `key` (of any kind, null included).
bool has(const ObjectPtr& parent, const std::string& key);

/// Required values: converted with the JSON library's own conversions.
void read(const ObjectPtr& parent, const std::string& key, std::string& out);
void read(const ObjectPtr& parent, const std::string& key, std::int32_t& out);
void read(const ObjectPtr& parent, const std::string& key, double& out);
void read(const ObjectPtr& parent, const std::string& key, bool& out);

/// Optional values: read only when the member is present.
template <typename T>
void readOptional(const ObjectPtr& parent, const std::string& key, T& out) {
    if (has(parent, key)) {
        read(parent, key, out);
    }
}

// --- Writing -------------------------------------------------------------

/// {"device", "text", "virtual_key", "scan_code"}, the codes as integers, as the
/// key's member table writes it (model/Members.h).
ObjectPtr keyObject(const ConfigKey& key);

/// A new object without insertion-order preservation (keys come out sorted).
ObjectPtr newObject();

}  // namespace json
}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_JSONIO_H
