//
// CurveMacroItems.cpp
//

#include "zuno-keymapmanager/items/CurveMacroItems.h"

#include <cstddef>
#include <utility>

#include "model/JsonIO.h"
#include "zuno-keymapmanager/model/Fields.h"

namespace zunokeymapmanager {

namespace {

json::ArrayPtr linesArray(const std::vector<std::string>& lines) {
    json::ArrayPtr result = new Poco::JSON::Array();
    for (const std::string& line : lines) {
        result->add(line);
    }
    return result;
}

/// Appends the lines of the array `field` when the member is present.
void appendLines(const json::ObjectPtr& object, const std::string& field,
                 std::vector<std::string>& lines) {
    if (!json::has(object, field)) {
        return;
    }
    const json::ArrayPtr elements = json::array(object, field);
    for (std::size_t i = 0; i < elements->size(); ++i) {
        std::string line;
        json::readElement(elements, i, line);
        lines.push_back(std::move(line));
    }
}

}  // namespace

// --- CurveConfigItem -------------------------------------------------------------

CurveConfigItem::CurveConfigItem() : ComposableConfigItem("Curve") {}

CurveConfigItem::~CurveConfigItem() = default;

Poco::JSON::Object CurveConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();
    result.set(kFieldRelStartPos, json::pointObject(rel_start_pos));
    result.set(kFieldRelEndPos, json::pointObject(rel_end_pos));
    result.set(kFieldRelAllPointsPos, rel_all_points_pos);
    result.set(kFieldActAsLine, act_as_line);
    result.set(kFieldStartWaitTime, start_wait_time);
    return result;
}

void CurveConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
    json::readPoint(object, kFieldRelStartPos, rel_start_pos);
    json::readPoint(object, kFieldRelEndPos, rel_end_pos);
    json::read(object, kFieldRelAllPointsPos, rel_all_points_pos);
    json::read(object, kFieldActAsLine, act_as_line);
    json::read(object, kFieldStartWaitTime, start_wait_time);
}

// --- MacroConfigItem -------------------------------------------------------------

MacroConfigItem::MacroConfigItem() : ComposableConfigItem("Macro") {}

MacroConfigItem::~MacroConfigItem() = default;

Poco::JSON::Object MacroConfigItem::ConvertToJsonObject() const {
    Poco::JSON::Object result = ComposableConfigItem::ConvertToJsonObject();
    result.set(kFieldPressActions, linesArray(press_actions));
    result.set(kFieldReleaseActions, linesArray(release_actions));
    return result;
}

void MacroConfigItem::FillFromJsonObject(const Poco::JSON::Object::Ptr& object) {
    ComposableConfigItem::FillFromJsonObject(object);
    appendLines(object, kFieldPressActions, press_actions);
    appendLines(object, kFieldReleaseActions, release_actions);
}

}  // namespace zunokeymapmanager
