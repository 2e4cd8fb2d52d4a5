//
// ComposableItems.cpp
//

#include "zuno-keymapmanager/items/ComposableItems.h"

#include <utility>

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

namespace {

json::ObjectPtr composableKeyObject(const ComposableKey& pair) {
    json::ObjectPtr result = json::newObject();
    result->set(kFieldKey, json::keyObject(pair.key));
    if (pair.second_key.isSet()) {
        result->set(kFieldSecondKey, json::keyObject(pair.second_key));
    }
    return result;
}

void readComposableKey(const json::ObjectPtr& parent, const std::string& field,
                       ComposableKey& out) {
    json::ObjectPtr pair = json::object(parent, field);
    json::readKey(pair, kFieldKey, out.key);
    if (json::has(pair, kFieldSecondKey)) {
        json::readKey(pair, kFieldSecondKey, out.second_key);
    }
}

}  // namespace

// --- ComposableConfigItem ----------------------------------------------------

ComposableConfigItem::ComposableConfigItem(std::string typeName)
    : ConfigItem(std::move(typeName)) {}

ComposableConfigItem::~ComposableConfigItem() = default;

Poco::JSON::Object ComposableConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ConfigItem::ConvertToJsonObject();
    if (second_key.isSet()) {
        result.set(kFieldSecondKey, json::keyObject(second_key));
    }
    return result;
}

void ComposableConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ConfigItem::FillFromJsonObject(object);
    if (json::has(object, kFieldSecondKey)) {
        json::readKey(object, kFieldSecondKey, second_key);
    }
}

bool ComposableConfigItem::MatchConfigKey(const ConfigKey& a) {
    return key.Match(a) && !second_key.isSet();
}

bool ComposableConfigItem::MatchComposableConfigKey(const ConfigKey& a, const ConfigKey& b) {
    return key.Match(a) && second_key.Match(b);
}

// --- PairConfigItem ------------------------------------------------------------

PairConfigItem::PairConfigItem(std::string typeName) : ComposableConfigItem(std::move(typeName)) {}

PairConfigItem::~PairConfigItem() = default;

Poco::JSON::Object PairConfigItem::ConvertToJsonObject() const {
    // The pair's own keys replace the top-level second key of its base.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): a pair has no top-level second key.
    Poco::JSON::Object result = ConfigItem::ConvertToJsonObject();
    result.set(kFieldPositiveKey, composableKeyObject(positive_key));
    result.set(kFieldNegativeKey, composableKeyObject(negative_key));
    return result;
}

void PairConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): a pair reads no top-level second key.
    ConfigItem::FillFromJsonObject(object);
    readComposableKey(object, kFieldPositiveKey, positive_key);
    readComposableKey(object, kFieldNegativeKey, negative_key);
}

bool PairConfigItem::IsInvalid() const {
    return false;
}

bool PairConfigItem::MatchConfigKey(const ConfigKey& a) {
    if (positive_key.key.Match(a) && !positive_key.second_key.isSet()) {
        matched_direction = kPositive;
    } else if (negative_key.key.Match(a) && !negative_key.second_key.isSet()) {
        matched_direction = kNegative;
    } else {
        matched_direction = kNoDirection;
    }
    return matched_direction != kNoDirection;
}

bool PairConfigItem::MatchComposableConfigKey(const ConfigKey& a, const ConfigKey& b) {
    if (positive_key.Match(a, b)) {
        matched_direction = kPositive;
    } else if (negative_key.Match(a, b)) {
        matched_direction = kNegative;
    } else {
        matched_direction = kNoDirection;
    }
    return matched_direction != kNoDirection;
}

}  // namespace zunokeymapmanager
