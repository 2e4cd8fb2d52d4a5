//
// ConfigItem.cpp
//

#include "zuno-keymapmanager/model/ConfigItem.h"

#include <utility>

#include "model/MemberIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

ConfigItem::ConfigItem(std::string typeName) : type(std::move(typeName)) {}

ConfigItem::~ConfigItem() = default;

Poco::JSON::Object ConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result;
    WriteMembers(Members(), this, result);
    return result;
}

void ConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ReadMembers(Members(), this, object);
}

bool ConfigItem::IsInvalid() const {
    return !key.isSet();
}

bool ConfigItem::MatchConfigKey(const ConfigKey& other) {
    return key.Match(other);
}

const MemberTable& ConfigItem::Members() {
    using M = MembersOf<ConfigItem>;
    static const MemberTable table = M::table(
        "what every item has",
        {
            M::field<&ConfigItem::type>(kFieldType)
                .require()
                .flag(kTypeName)
                .show("Type", "", "the item type; an element of any other type is dropped on load"),
            M::field<&ConfigItem::rel_work_position>(kFieldRelWorkPosition)
                .require()
                .point("touch point", kMoves)
                .show("Touch point", kGroupPosition,
                      "where the gesture touches the screen; (0, 0) means not set, and check "
                      "warns about it"),
            M::field<&ConfigItem::editor_icon_scale>(kFieldEditorIconScale)
                .require()
                .show("Marker scale", kGroupAdvanced,
                      "size factor of the item's marker in the editor (1.0: normal)"),
            M::field<&ConfigItem::key>(kFieldKey)
                .require()
                .key(KeyRole::Key, "key")
                .show("Key", kGroupKeys, "the key that fires the item"),
            M::block<&ConfigItem::icon>(kFieldIcon, &ConfigIcon::Members)
                .require()
                .show("Marker", kGroupPosition, "the item's marker in the editor"),
        });
    return table;
}

const MemberTable& ConfigIcon::Members() {
    using M = MembersOf<ConfigIcon>;
    static const MemberTable table = M::part(
        "icon", "the item's marker in the editor",
        {
            M::field<&ConfigIcon::visibility>(kFieldVisibility)
                .require()
                .show("Visible", kGroupAdvanced, "whether the editor shows the marker"),
            M::field<&ConfigIcon::radius_correction>(kFieldRadiusCorrection)
                .require()
                .show("Marker radius", kGroupAdvanced,
                      "size factor of the marker's circle (1.0: normal)"),
            M::field<&ConfigIcon::background_color>(kFieldBackgroundColor)
                .require()
                .matching(kColourPattern)
                .show("Marker colour", kGroupAdvanced,
                      "the marker's colour, RRGGBBAA (eight hexadecimal digits, alpha last)"),
            M::field<&ConfigIcon::rel_position>(kFieldRelPosition)
                .require()
                .point("marker", kMoves)
                .show("Marker position", kGroupPosition, "where the marker is drawn"),
            M::field<&ConfigIcon::description>(kFieldDescription)
                .require()
                .show("Description", kGroupBehaviour, "free text shown with the marker"),
        });
    return table;
}

}  // namespace zunokeymapmanager
