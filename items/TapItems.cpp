//
// TapItems.cpp
//

#include "zuno-keymapmanager/items/TapItems.h"

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

// Click and Tip carry nothing beyond the composable base; their own overrides
// keep each item class's reading and writing in one place for subclasses.

// --- ClickConfigItem -----------------------------------------------------------

ClickConfigItem::ClickConfigItem() : ComposableConfigItem("Click") {}

ClickConfigItem::~ClickConfigItem() = default;

Poco::JSON::Object ClickConfigItem::ConvertToJsonObject() const {
    return ComposableConfigItem::ConvertToJsonObject();
}

void ClickConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
}

// --- BunchClickConfigItem ------------------------------------------------------

BunchClickConfigItem::BunchClickConfigItem() : ComposableConfigItem("BunchClick") {}

BunchClickConfigItem::~BunchClickConfigItem() = default;

Poco::JSON::Object BunchClickConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();
    result.set(kFieldBunchClickType, bunch_click_type);
    result.set(kFieldBunchClickContinueNumber, bunch_click_continue_number);
    result.set(kFieldBunchClickOneOffNumber, bunch_click_one_off_number);
    return result;
}

void BunchClickConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
    json::read(object, kFieldBunchClickType, bunch_click_type);
    json::read(object, kFieldBunchClickContinueNumber, bunch_click_continue_number);
    json::read(object, kFieldBunchClickOneOffNumber, bunch_click_one_off_number);
}

// --- TipConfigItem -------------------------------------------------------------

TipConfigItem::TipConfigItem() : ComposableConfigItem("Tip") {}

TipConfigItem::~TipConfigItem() = default;

Poco::JSON::Object TipConfigItem::ConvertToJsonObject() const {
    return ComposableConfigItem::ConvertToJsonObject();
}

void TipConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
}

}  // namespace zunokeymapmanager
