//
// ItemChecks.cpp
//
// What is wrong with one loaded item: the library's own validity rule and
// macro grammar, and values that load but are very likely mistakes.
//

#include "check/ItemChecks.h"

#include <algorithm>
#include <cstdint>
#include <functional>

#include "check/CheckFindings.h"
#include "zuno-keymapmanager/api/Functions.h"
#include "zuno-keymapmanager/api/KeyTriggers.h"
#include "zuno-keymapmanager/items/ComposableItems.h"
#include "zuno-keymapmanager/items/CurveMacroItems.h"
#include "zuno-keymapmanager/items/FireItem.h"
#include "zuno-keymapmanager/items/ItemLayout.h"
#include "zuno-keymapmanager/items/SpellItems.h"
#include "zuno-keymapmanager/items/SwipeholdItem.h"
#include "zuno-keymapmanager/items/WalkItems.h"
#include "zuno-keymapmanager/macro/MacroTouches.h"

namespace zunokeymapmanager {
namespace check {

namespace {

std::string captionOf(const std::string& device, int code) {
    ConfigKey key;
    key.setText(device, code);
    return key.text;
}

// The caption the library gives a key built from its code. A key built from
// a right-hand modifier keeps that modifier's caption on the folded code.
bool captionFits(const ConfigKey& key, std::string& expected) {
    expected = captionOf(key.device, key.scan_code);
    if (key.text == expected) {
        return true;
    }
    static const std::pair<std::int32_t, std::int32_t> kFolded[] = {{56, 312}, {29, 285}, {42, 54}};
    for (const auto& [folded, original] : kFolded) {
        if (key.device == "keyboard" && key.scan_code == folded &&
            key.text == captionOf(key.device, original)) {
            return true;
        }
    }
    return false;
}

void checkKeyTexts(const ConfigItem& item, int element, std::vector<Finding>& out) {
    for (const KeySlot& slot : KeySlotsOf(item)) {
        const ConfigKey& key = slot.in(item);
        if ((key.device != "keyboard" && key.device != "mouse") || key.scan_code == kUnsetKeyCode) {
            continue;
        }
        std::string expected;
        if (captionFits(key, expected)) {
            continue;
        }
        const std::string path = ElementPath(element) + "." + slot.path + ".text";
        out.push_back(MakeFinding(FindingKind::KeyText, FindingSeverity::Warning, path, element,
                                  item.type,
                                  "text \"" + key.text + "\" is not the caption of " + key.device +
                                      " scan code " + std::to_string(key.scan_code) + " (\"" +
                                      expected + "\"); the key fires on the code",
                                  expected));
    }
}

// Drag radii, where 0 leaves no room to drag.
struct Radius {
    const char* path;
    std::function<const double*(const ConfigItem&)> of;
};

template <typename Item, typename Member>
std::function<const double*(const ConfigItem&)> member(Member member) {
    return [member](const ConfigItem& item) -> const double* {
        const auto* typed = dynamic_cast<const Item*>(&item);
        return typed == nullptr ? nullptr : &(typed->*member);
    };
}

const std::vector<Radius>& radii() {
    static const std::vector<Radius> table{
        {"rel_radius", member<SwipeholdConfigItem>(&SwipeholdConfigItem::rel_radius)},
        {"rel_radius", member<JoystickLeftWalkConfigItem>(&JoystickLeftWalkConfigItem::rel_radius)},
        {"swipehold_info.rel_radius",
         [](const ConfigItem& item) -> const double* {
             const auto* spell = dynamic_cast<const SpellConfigItem*>(&item);
             return spell == nullptr ? nullptr : &spell->swipehold_info.rel_radius;
         }},
        {"swipehold_info.rel_radius",
         [](const ConfigItem& item) -> const double* {
             const auto* fire = dynamic_cast<const FireConfigItem*>(&item);
             return fire == nullptr ? nullptr : &fire->swipehold_info.rel_radius;
         }},
    };
    return table;
}

void checkMacroLines(const ConfigItem& item, int element, std::vector<Finding>& out) {
    const auto* macro = dynamic_cast<const MacroConfigItem*>(&item);
    if (macro == nullptr) {
        return;
    }
    const std::pair<const char*, const std::vector<std::string>*> lists[] = {
        {"press_actions", &macro->press_actions}, {"release_actions", &macro->release_actions}};
    for (const auto& [name, lines] : lists) {
        for (const std::uint32_t line : MacroKeyEditingTextGrammarCheck(*lines)) {
            if (line == 0 || line > lines->size()) {
                continue;
            }
            const std::string& text = (*lines)[line - 1];
            Finding finding = MakeFinding(
                FindingKind::MacroLine, FindingSeverity::Warning,
                ElementPath(element) + "." + name + "[" + std::to_string(line - 1) + "]", element,
                item.type,
                std::string(name) + " line " + std::to_string(line) + ": not a macro command: \"" +
                    text + "\"");
            finding.script_line = static_cast<int>(line);
            finding.script_text = text;
            out.push_back(std::move(finding));
        }
        // One finding per line, for its first point off the screen.
        for (const MacroTouch& touch : MacroTouchesOf(*lines)) {
            const auto off = std::find_if(touch.points.begin(), touch.points.end(),
                                          [](const Point& p) { return !IsOnMacroScreen(p); });
            if (off == touch.points.end()) {
                continue;
            }
            const std::string& text = (*lines)[static_cast<std::size_t>(touch.line - 1)];
            Finding finding = MakeFinding(
                FindingKind::OffScreenPoint, FindingSeverity::Warning,
                ElementPath(element) + "." + name + "[" + std::to_string(touch.line - 1) + "]",
                element, item.type,
                std::string(name) + " line " + std::to_string(touch.line) + ": the point " +
                    std::to_string(off->x) + "," + std::to_string(off->y) +
                    " is off the macro screen, whose pixels run from 0,0 to 1919,1079");
            finding.script_line = touch.line;
            finding.script_text = text;
            out.push_back(std::move(finding));
        }
    }
}

}  // namespace

void CheckItem(const ConfigItem& item, int element, std::vector<Finding>& out) {
    const std::string why = WhyItemInvalid(item);
    if (!why.empty()) {
        out.push_back(MakeFinding(FindingKind::InvalidItem, FindingSeverity::Warning,
                                  ElementPath(element), element, item.type, "invalid: " + why));
    }
    checkMacroLines(item, element, out);
    checkKeyTexts(item, element, out);
    if (item.rel_work_position.isNull()) {
        out.push_back(MakeFinding(FindingKind::UnsetPosition, FindingSeverity::Warning,
                                  ElementPath(element) + ".rel_work_position", element, item.type,
                                  "rel_work_position is (0, 0), which means not set: the gesture "
                                  "would touch the screen's top left corner"));
    }
    for (const Radius& radius : radii()) {
        const double* value = radius.of(item);
        if (value != nullptr && *value == 0.0) {
            out.push_back(
                MakeFinding(FindingKind::ZeroRadius, FindingSeverity::Warning,
                            ElementPath(element) + "." + radius.path, element, item.type,
                            std::string(radius.path) + " is 0: the drag has no room to move"));
        }
    }
}

}  // namespace check
}  // namespace zunokeymapmanager
