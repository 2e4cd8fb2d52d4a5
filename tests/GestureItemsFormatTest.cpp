// JSON form of the stroke, macro, walk, wheel, zoom, observe and fire items:
// what a fresh item writes, what survives a save and reload, which members a
// document must carry, and how numbers and macro lines are taken in.

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include "tests/ItemFormatSupport.h"

namespace {

using namespace testsupport;
using Poco::JSON::Object;

const char* const kTypes[] = {"Curve", "Macro", "LeftStickWalk", "RightStickEye", "RightWalk",
                              "Wheel", "Zoom",  "Observe",       "Fire"};

const std::string kMacroLines =
    R"({"press_actions": ["KeyDown A", "Sleep 16", ""], "release_actions": ["KeyUp A"]})";

Object::Ptr richItem(const std::string& type) {
    return mutatedItem(type, type == "Macro" ? kMacroLines : "{}");
}

std::string keyText(const char* device, const char* name, int vk, int sc) {
    return std::string(R"({"device": ")") + device + R"(", "text": ")" + name +
           R"(", "virtual_key": )" + std::to_string(vk) + R"(, "scan_code": )" +
           std::to_string(sc) + "}";
}

TEST(GestureItemsFormat, FreshItemsWriteTheirDefaults) {
    const std::string unset = keyText("", "", 2147483647, 2147483647);
    const std::string pair = R"(, "positive_key": {"key": )";
    const std::pair<const char*, std::string> cases[] = {
        {"Curve", R"("key": )" + unset + R"(, "rel_start_pos": {"rel_x": 0, "rel_y": 0},
            "rel_end_pos": {"rel_x": 0, "rel_y": 0}, "rel_all_points_pos": "",
            "act_as_line": false, "start_wait_time": 0)"},
        {"Macro", R"("key": )" + unset + R"(, "press_actions": [], "release_actions": [])"},
        {"LeftStickWalk", R"("key": )" + keyText("joystick", "Left_Stick", 2147483647, 2147483647) +
                              R"(, "rel_radius": 0)"},
        {"RightStickEye", R"("key": )" +
                              keyText("joystick", "Right_Stick", 2147483647, 2147483647) +
                              R"(, "sensitivity": 100,
            "staring_range": {"rel_width": 0.5, "rel_height": 0.5},
            "reset_policy": {"reset_type": "Range_Window", "reset_wait_interval": 8,
            "auto_reset_period": -1, "need_reset": true})"},
        {"RightWalk", R"("key": )" + keyText("mouse", "right_mouse", 2, 2) +
                          R"(, "rel_measurement_pos": {"rel_x": 0.5, "rel_y": 0.5},
            "duration_factor": 0.5, "first_move_policy": {"interval": 32, "steps": 6,
            "period": 16, "speed": 100, "rel_radius": 0})"},
        {"Wheel", R"("key": )" + unset + pair + keyText("keyboard", "Direction_up", 38, 328) +
                      R"(}, "negative_key": {"key": )" +
                      keyText("keyboard", "Direction_down", 40, 336) +
                      R"(}, "sensitivity": 50, "duration": 200, "orientation": "vertical")"},
        {"Zoom", R"("key": )" + unset + pair + keyText("mouse", "wheel_up_mouse", -1, 548) +
                     R"(}, "negative_key": {"key": )" +
                     keyText("mouse", "wheel_down_mouse", -1, 549) +
                     R"(}, "sensitivity": 100, "orientation": "vertical", "duration": 300,
            "one_side_gap": 0.01)"},
        {"Observe", R"("key": )" + keyText("keyboard", "Alt", 18, 56) +
                        R"(, "sensitivity_x": 30, "sensitivity_y": 30, "sensitivity": 1)"},
        {"Fire", R"("key": )" + keyText("mouse", "left_mouse", 1, 1) +
                     R"(, "need_fire_and_drag": false,
            "fire_option": {"fire_range_policy": "Fire_range_unlimited"},
            "swipehold_info": {"rel_position": {"rel_x": 0, "rel_y": 0}, "rel_radius": 0.1,
            "steps": 6, "invalid_zone_info": {"enable": false,
            "rel_radius_inside_invalid_zone": 0.005, "rel_radius_outside_invalid_zone": 0.01}})"},
    };
    for (const auto& [type, own] : cases) {
        expectFreshForm(type, own, {"icon", "rel_work_position", "editor_icon_scale"});
    }
}

TEST(GestureItemsFormat, NonDefaultValuesSurviveSaveAndReload) {
    for (const char* type : kTypes) {
        expectRoundTrip(richItem(type));
    }
}

TEST(GestureItemsFormat, RequiredMembersFailTheLoadAndOptionalOnesKeepDefaults) {
    const char* const rows[] = {
        "Curve rel_start_pos! rel_end_pos/rel_y! rel_all_points_pos! start_wait_time!",
        "Macro press_actions? press_actions# release_actions?",
        "LeftStickWalk rel_radius!",
        "RightStickEye staring_range# reset_policy/need_reset!",
        "RightWalk rel_measurement_pos/rel_x! duration_factor! first_move_policy/rel_radius!",
        "Wheel orientation! negative_key!",
        "Zoom negative_key/key!",
        "Observe sensitivity!",
        "Fire need_fire_and_drag! swipehold_info? swipehold_info# "
        "swipehold_info/rel_position! swipehold_info/steps! swipehold_info/invalid_zone_info? "
        "swipehold_info/invalid_zone_info/enable! fire_option? fire_option# "
        "fire_option/fire_range_policy!"};
    expectMemberRules(rows, &richItem);
}

// Whole numbers are taken where floating-point members are expected, and are
// written back as floating-point values.
TEST(GestureItemsFormat, IntegersReadIntoFloatingPointMembers) {
    std::istringstream cases(
        "Curve rel_start_pos/rel_x LeftStickWalk rel_radius RightStickEye staring_range/rel_height "
        "RightWalk duration_factor RightWalk first_move_policy/rel_radius Zoom one_side_gap "
        "Observe sensitivity Fire swipehold_info/rel_radius "
        "Fire swipehold_info/invalid_zone_info/rel_radius_inside_invalid_zone");
    for (std::string type, path; cases >> type >> path;) {
        SCOPED_TRACE(std::string(type) + " " + path);
        Object::Ptr item = richItem(type);
        std::string last;
        parentOf(item, path, last)->set(last, 1);
        DocPtr doc = loadText(documentWith(text(item)));
        ASSERT_EQ(doc->items.size(), 1u);
        const Object::Ptr written = new Object(doc->items[0]->ConvertToJsonObject());
        const Poco::Dynamic::Var value = parentOf(written, path, last)->get(last);
        EXPECT_EQ(value.type(), typeid(double));
        EXPECT_EQ(value.convert<double>(), 1.0);
    }
}

TEST(GestureItemsFormat, MacroLinesAreAppendedAsText) {
    km::MacroConfigItem item;
    const Object::Ptr object = mutatedItem("Macro", R"({"press_actions": ["a", 5, 2.5, true],
        "release_actions": ["b"]})");
    item.FillFromJsonObject(object);
    item.FillFromJsonObject(object);
    const std::vector<std::string> press{"a", "5", "2.5", "true", "a", "5", "2.5", "true"};
    EXPECT_EQ(item.press_actions, press);
    EXPECT_EQ(item.release_actions, std::vector<std::string>({"b", "b"}));
}

}  // namespace
