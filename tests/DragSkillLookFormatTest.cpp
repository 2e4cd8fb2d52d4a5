// JSON form of the drag, skill and look items: what a fresh item writes, what
// survives a save and reload, and which members a document must carry.

#include <gtest/gtest.h>

#include <string>

#include "tests/ItemFormatSupport.h"

namespace {

using namespace testsupport;
using Poco::JSON::Object;

const char* const kTypes[] = {"Swipehold", "Spell", "SpellCancel", "Staring", "Eye", "Gravity"};

/// A full item of `type` with non-default values everywhere; a Spell also
/// gets the optional tap sequence, which a fresh item does not write.
Object::Ptr richItem(const std::string& type) {
    return mutatedItem(type, type != "Spell" ? "{}" : R"({"tap_info": {"seq": "1,2,1",
        "factor": 0.75, "distance_ratio": 1.5, "rel_center_pos": {"rel_x": 0.25, "rel_y": 0.5}}})");
}

TEST(DragSkillLookFormat, FreshItemsWriteTheirDefaults) {
    const std::string arrows =
        R"("top_key": {"device": "keyboard", "text": "Direction_up", "virtual_key": 38, "scan_code": 328},
        "right_key": {"device": "keyboard", "text": "Direction_right", "virtual_key": 39, "scan_code": 333},
        "bottom_key": {"device": "keyboard", "text": "Direction_down", "virtual_key": 40, "scan_code": 336},
        "left_key": {"device": "keyboard", "text": "Direction_left", "virtual_key": 37, "scan_code": 331})";
    const std::string dragBlock = R"(
        "first_point_policy": {"handle_type": "Move", "interval": 32, "steps": 6, "period": 16,
            "speed": 100, "wait_for_second": 8, "move_type": "Constant",
            "idle_before_first_press": 0, "no_press_first_center_point": false},
        "subsequent_point_policy": {"handle_type": "Click", "steps": 6, "period": 16},
        "hold_center_interval_after_release": 0, "in_line_policy": "Use_Both",
        "target_point_input_compensatory_policy": {"enable": false, "count": 3, "distance": 0.01,
            "steps": 3, "period": 8, "x_policy": "Default", "x_policy_slope_period": 1,
            "x_policy_intercept_phaseshift": 0, "y_policy": "Default", "y_policy_slope_period": 1,
            "y_policy_intercept_phaseshift": 0})";
    const std::pair<const char*, std::string> cases[] = {
        {"Swipehold", dragBlock + R"(, "rel_radius": 0,
            "top_key": {"device": "keyboard", "text": "W", "virtual_key": 87, "scan_code": 17},
            "right_key": {"device": "keyboard", "text": "D", "virtual_key": 68, "scan_code": 32},
            "bottom_key": {"device": "keyboard", "text": "S", "virtual_key": 83, "scan_code": 31},
            "left_key": {"device": "keyboard", "text": "A", "virtual_key": 65, "scan_code": 30})"},
        {"Spell", R"("spell_info": {"rel_position": {"rel_x": 0.5, "rel_y": 0.5}, "rel_radius": 0.5,
            "range": 60}, "swipehold_info": {)" +
                      dragBlock + R"(, "rel_radius": 0.1,
            "rel_position": {"rel_x": 0, "rel_y": 0}, "interval": 32, "period": 16, "steps": 6,
            "speed": 100, "invalid_zone_info": {"enable": false,
            "rel_radius_inside_invalid_zone": 0.005, "rel_radius_outside_invalid_zone": 0.01}},
            "spell_option": {"need_spell_direction": true, "stop_walk_after_spell": false,
            "walk_with_spell": true, "is_occupy_swipehold_input": false,
            "spell_trigger_policy": "Spell_Trigger_On_Release_Key",
            "spell_touch_location_policy": "Spell_touch_location_mouse_dependence"})"},
        {"SpellCancel", R"("is_in_use": true, "spell_cancel_delay_info": {"delay_time": 20})"},
        {"Staring", R"("staring_range": {"rel_width": 0.5, "rel_height": 0.5}, "sensitivity_x": 50,
            "sensitivity_y": 50, "reset_policy": {"reset_type": "Range_Window",
            "reset_wait_interval": 8, "auto_reset_period": -1, "need_reset": true})"},
        {"Eye", arrows + R"(, "sensitivity": 100)"},
        {"Gravity", arrows + R"(, "sensitivity": 20)"},
    };
    for (const auto& [type, own] : cases) {
        expectFreshForm(type, own, {"icon", "key", "rel_work_position", "editor_icon_scale"});
    }
}

TEST(DragSkillLookFormat, NonDefaultValuesSurviveSaveAndReload) {
    for (const char* type : kTypes) {
        expectRoundTrip(richItem(type));
    }
}

TEST(DragSkillLookFormat, RequiredMembersFailTheLoadAndOptionalOnesKeepDefaults) {
    const char* const rows[] = {
        "Swipehold first_point_policy? first_point_policy# first_point_policy/speed! "
        "first_point_policy/wait_for_second? subsequent_point_policy/period! top_key? "
        "right_key/virtual_key! "
        "target_point_input_compensatory_policy/distance! "
        "target_point_input_compensatory_policy/y_policy?",
        "Spell spell_info/rel_position! swipehold_info# "
        "swipehold_info/first_point_policy/interval! swipehold_info/invalid_zone_info? "
        "spell_option! tap_info? tap_info/rel_center_pos!",
        "SpellCancel is_in_use! spell_cancel_delay_info# spell_cancel_delay_info/delay_time?",
        "Staring reset_policy!",
        "Eye left_key!",
        "Gravity sensitivity!"};
    expectMemberRules(rows, &richItem);
}

}  // namespace
