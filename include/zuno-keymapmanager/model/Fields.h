//
// Fields.h
//
// The JSON member names of the keymap format, one constant each, shared by
// every reader and writer.
//

#ifndef ZUNO_KEYMAPMANAGER_MODEL_FIELDS_H
#define ZUNO_KEYMAPMANAGER_MODEL_FIELDS_H

#include <string>

namespace zunokeymapmanager {

// Document
inline const std::string kFieldInfo{"info"};
inline const std::string kFieldKeymaps{"keymaps"};
inline const std::string kFieldParam{"param"};

// Document info
inline const std::string kFieldTransparentMouse{"transparent_mouse"};
inline const std::string kFieldBackgroundColor{"background_color"};
inline const std::string kFieldVisibility{"visibility"};
inline const std::string kFieldTransparentESC{"transparent_ESC"};
inline const std::string kFieldTransparentWheel{"transparent_wheel"};
inline const std::string kFieldIsJoystick{"is_joystick"};
inline const std::string kFieldTransparentMouseWindowsRawMovePeriod{
    "transparent_mouse_windows_raw_move_period"};
inline const std::string kFieldTransparentMouseWindowsRawMoveSensitivity{
    "transparent_mouse_windows_raw_move_sensitivity"};
inline const std::string kFieldTransparentKeyboard{"transparent_keyboard"};
inline const std::string kFieldTransparentJoystick{"transparent_joystick"};

// Document parameters
inline const std::string kFieldWheelPolicy{"wheel_policy"};
inline const std::string kFieldTransparentWheelPolicy{"transparent_wheel_policy"};
inline const std::string kFieldZoomFirstPointInterval{"zoom_first_interval"};
inline const std::string kFieldZoomSteps{"zoom_steps"};
inline const std::string kFieldZoomPeriod{"zoom_period"};
inline const std::string kFieldZoomMargin{"zoom_margin"};
inline const std::string kFieldZoomLastPointIdle{"zoom_last_idle"};
inline const std::string kFieldWheelStepDistance{"wheel_step_distance"};
inline const std::string kFieldZoomStepDistance{"zoom_step_distance"};
inline const std::string kFieldSensitivity{"sensitivity"};
inline const std::string kFieldProtocolVersion{"protocol_version"};

// Every item
inline const std::string kFieldType{"type"};
inline const std::string kFieldRelWorkPosition{"rel_work_position"};
inline const std::string kFieldEditorIconScale{"editor_icon_scale"};
inline const std::string kFieldKey{"key"};
inline const std::string kFieldIcon{"icon"};
inline const std::string kFieldRelX{"rel_x"};
inline const std::string kFieldRelY{"rel_y"};
inline const std::string kFieldDevice{"device"};
inline const std::string kFieldText{"text"};
inline const std::string kFieldVirtualKey{"virtual_key"};
inline const std::string kFieldScanCode{"scan_code"};
inline const std::string kFieldRadiusCorrection{"radius_correction"};
inline const std::string kFieldRelPosition{"rel_position"};
inline const std::string kFieldDescription{"description"};

// Key combinations
inline const std::string kFieldSecondKey{"second_key"};
inline const std::string kFieldPositiveKey{"positive_key"};
inline const std::string kFieldNegativeKey{"negative_key"};

// Tap items
inline const std::string kFieldBunchClickType{"bunch_click_type"};
inline const std::string kFieldBunchClickContinueNumber{"bunch_click_continue_number"};
inline const std::string kFieldBunchClickOneOffNumber{"bunch_click_one_off_number"};

// Curve and Macro items
inline const std::string kFieldRelStartPos{"rel_start_pos"};
inline const std::string kFieldRelEndPos{"rel_end_pos"};
inline const std::string kFieldRelAllPointsPos{"rel_all_points_pos"};
inline const std::string kFieldActAsLine{"act_as_line"};
inline const std::string kFieldStartWaitTime{"start_wait_time"};
inline const std::string kFieldPressActions{"press_actions"};
inline const std::string kFieldReleaseActions{"release_actions"};

// Walk and look items
inline const std::string kFieldRelRadius{"rel_radius"};
inline const std::string kFieldStaringRange{"staring_range"};
inline const std::string kFieldRelWidth{"rel_width"};
inline const std::string kFieldRelHeight{"rel_height"};
inline const std::string kFieldResetPolicy{"reset_policy"};
inline const std::string kFieldResetType{"reset_type"};
inline const std::string kFieldResetWaitInterval{"reset_wait_interval"};
inline const std::string kFieldAutoResetPeriod{"auto_reset_period"};
inline const std::string kFieldNeedReset{"need_reset"};
inline const std::string kFieldRelMeasurementPos{"rel_measurement_pos"};
inline const std::string kFieldDurationFactor{"duration_factor"};
inline const std::string kFieldFirstMovePolicy{"first_move_policy"};
inline const std::string kFieldInterval{"interval"};
inline const std::string kFieldSteps{"steps"};
inline const std::string kFieldPeriod{"period"};
inline const std::string kFieldSpeed{"speed"};
inline const std::string kFieldSensitivityX{"sensitivity_x"};
inline const std::string kFieldSensitivityY{"sensitivity_y"};

// Wheel and Zoom items
inline const std::string kFieldDuration{"duration"};
inline const std::string kFieldOrientation{"orientation"};
inline const std::string kFieldOneSideGap{"one_side_gap"};

// Drag items
inline const std::string kFieldFirstPointPolicy{"first_point_policy"};
inline const std::string kFieldHandleType{"handle_type"};
inline const std::string kFieldMoveType{"move_type"};
inline const std::string kFieldWaitForSecond{"wait_for_second"};
inline const std::string kFieldIdleBeforeFirstPress{"idle_before_first_press"};
inline const std::string kFieldNoPressFirstCenterPoint{"no_press_first_center_point"};
inline const std::string kFieldSubsequentPointPolicy{"subsequent_point_policy"};
inline const std::string kFieldTopKey{"top_key"};
inline const std::string kFieldRightKey{"right_key"};
inline const std::string kFieldBottomKey{"bottom_key"};
inline const std::string kFieldLeftKey{"left_key"};
inline const std::string kFieldHoldCenterIntervalAfterRelease{"hold_center_interval_after_release"};
inline const std::string kFieldInLinePolicy{"in_line_policy"};
inline const std::string kFieldTargetPointInputCompensatoryPolicy{
    "target_point_input_compensatory_policy"};
inline const std::string kFieldXPolicy{"x_policy"};
inline const std::string kFieldXPolicySlopePeriod{"x_policy_slope_period"};
inline const std::string kFieldXPolicyInterceptPhaseshift{"x_policy_intercept_phaseshift"};
inline const std::string kFieldYPolicy{"y_policy"};
inline const std::string kFieldYPolicySlopePeriod{"y_policy_slope_period"};
inline const std::string kFieldYPolicyInterceptPhaseshift{"y_policy_intercept_phaseshift"};
inline const std::string kFieldEnable{"enable"};
inline const std::string kFieldDistance{"distance"};
inline const std::string kFieldCount{"count"};

// Skill items
inline const std::string kFieldSpellInfo{"spell_info"};
inline const std::string kFieldRange{"range"};
inline const std::string kFieldSwipeholdInfo{"swipehold_info"};
inline const std::string kFieldInvalidZoneInfo{"invalid_zone_info"};
inline const std::string kFieldInsideInvalidZoneRaidus{"rel_radius_inside_invalid_zone"};
inline const std::string kFieldOutsideInvalidZoneRaidus{"rel_radius_outside_invalid_zone"};
inline const std::string kFieldSpellOption{"spell_option"};
inline const std::string kFieldNeedSpellDirection{"need_spell_direction"};
inline const std::string kFieldStopWalkAfterSpell{"stop_walk_after_spell"};
inline const std::string kFieldWalkWithSpell{"walk_with_spell"};
inline const std::string kFieldIsOccupySwipeholdInput{"is_occupy_swipehold_input"};
inline const std::string kFieldSpellTriggerPolicy{"spell_trigger_policy"};
inline const std::string kFieldSpellTouchLocationPolicy{"spell_touch_location_policy"};
inline const std::string kFieldVpInfo{"tap_info"};
inline const std::string kFieldRelCenterPos{"rel_center_pos"};
inline const std::string kFieldFactor{"factor"};
inline const std::string kFieldDistanceRatio{"distance_ratio"};
inline const std::string kFieldSeq{"seq"};
inline const std::string kFieldIsInUse{"is_in_use"};
inline const std::string kFieldSpellCancelDelayInfo{"spell_cancel_delay_info"};
inline const std::string kFieldDelayTime{"delay_time"};

// Fire item
inline const std::string kFieldNeedFireAndDrag{"need_fire_and_drag"};
inline const std::string kFieldFireOption{"fire_option"};
inline const std::string kFieldFireRangePolicy{"fire_range_policy"};

}  // namespace zunokeymapmanager

#endif  // ZUNO_KEYMAPMANAGER_MODEL_FIELDS_H
