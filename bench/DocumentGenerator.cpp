//
// DocumentGenerator.cpp
//

#include "DocumentGenerator.h"

#include <charconv>
#include <string_view>
#include <vector>

namespace benchdocs {

const std::array<const char*, 18> kItemTypes = {
    "Click",         "BunchClick",    "Swipehold", "Fire",    "Staring", "Spell",
    "SpellCancel",   "RightWalk",     "Eye",       "Gravity", "Macro",   "Curve",
    "LeftStickWalk", "RightStickEye", "Wheel",     "Zoom",    "Observe", "Tip"};

namespace {

// splitmix64: small, fast and the same on every platform and standard
// library, unlike the distributions of <random>.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9e3779b97f4a7c15ull);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
        return z ^ (z >> 31);
    }

    /// In [low, high].
    int between(int low, int high) {
        return low + static_cast<int>(next() % static_cast<std::uint64_t>(high - low + 1));
    }

    /// A relative coordinate with four decimals, as an editor produces them.
    double fraction() { return static_cast<double>(between(1, 9999)) / 10000.0; }

    bool chance(int percent) { return between(1, 100) <= percent; }

    template <typename T, std::size_t N>
    const T& pick(const std::array<T, N>& values) {
        return values[next() % N];
    }

private:
    std::uint64_t state_;
};

// A pretty-printing JSON emitter: indentation 4, as the library saves, since
// the documents hosts hand back are the ones it wrote.
class Writer {
public:
    std::string take() { return std::move(out_); }

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }

    void key(std::string_view name) {
        separate();
        quoted(name);
        out_ += " : ";
        afterKey_ = true;
    }

    void value(std::string_view text) {
        separate();
        quoted(text);
    }
    void value(const char* text) { value(std::string_view(text)); }
    void value(bool flag) {
        separate();
        out_ += flag ? "true" : "false";
    }
    void value(int number) {
        separate();
        out_ += std::to_string(number);
    }
    void value(double number) {
        separate();
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
        std::string_view text(buffer, static_cast<std::size_t>(result.ptr - buffer));
        out_ += text;
        // Keep doubles recognisable as such, as the library writes them.
        if (text.find_first_of(".eE") == std::string_view::npos) {
            out_ += ".0";
        }
    }

    template <typename T>
    void member(std::string_view name, const T& v) {
        key(name);
        value(v);
    }

private:
    void open(char bracket) {
        separate();
        out_ += bracket;
        first_.push_back(true);
    }

    void close(char bracket) {
        const bool empty = first_.back();
        first_.pop_back();
        if (!empty) {
            newline();
        }
        out_ += bracket;
    }

    void separate() {
        if (afterKey_) {
            afterKey_ = false;
            return;
        }
        if (first_.empty()) {
            return;
        }
        if (!first_.back()) {
            out_ += ',';
        }
        first_.back() = false;
        newline();
    }

    void newline() {
        out_ += '\n';
        out_.append(first_.size() * 4, ' ');
    }

    void quoted(std::string_view text) {
        out_ += '"';
        for (char c : text) {
            switch (c) {
                case '"':
                    out_ += "\\\"";
                    break;
                case '\\':
                    out_ += "\\\\";
                    break;
                case '\n':
                    out_ += "\\n";
                    break;
                default:
                    out_ += c;
            }
        }
        out_ += '"';
    }

    std::string out_;
    std::vector<bool> first_;
    bool afterKey_ = false;
};

struct Key {
    const char* device;
    const char* text;
    int virtualKey;
    int scanCode;
};

// Keys a user actually binds: letters, digits, modifiers, function keys,
// arrows, mouse buttons and gamepad controls.
constexpr std::array<Key, 40> kKeys = {{
    {"keyboard", "Q", 81, 16},
    {"keyboard", "W", 87, 17},
    {"keyboard", "E", 69, 18},
    {"keyboard", "R", 82, 19},
    {"keyboard", "T", 84, 20},
    {"keyboard", "A", 65, 30},
    {"keyboard", "S", 83, 31},
    {"keyboard", "D", 68, 32},
    {"keyboard", "F", 70, 33},
    {"keyboard", "G", 71, 34},
    {"keyboard", "Z", 90, 44},
    {"keyboard", "X", 88, 45},
    {"keyboard", "C", 67, 46},
    {"keyboard", "V", 86, 47},
    {"keyboard", "B", 66, 48},
    {"keyboard", "1", 49, 2},
    {"keyboard", "2", 50, 3},
    {"keyboard", "3", 51, 4},
    {"keyboard", "4", 52, 5},
    {"keyboard", "5", 53, 6},
    {"keyboard", "Space", 32, 57},
    {"keyboard", "Tab", 9, 15},
    {"keyboard", "Shift", 16, 42},
    {"keyboard", "Ctrl", 17, 29},
    {"keyboard", "Alt", 18, 56},
    {"keyboard", "Esc", 27, 1},
    {"keyboard", "F1", 112, 59},
    {"keyboard", "F2", 113, 60},
    {"keyboard", "Caps", 20, 58},
    {"keyboard", "`", 192, 41},
    {"keyboard", "Direction_up", 38, 328},
    {"keyboard", "Direction_down", 40, 336},
    {"mouse", "left_mouse", 1, 1},
    {"mouse", "right_mouse", 2, 2},
    {"mouse", "middle_mouse", 4, 4},
    {"mouse", "back_mouse", 8, 8},
    {"mouse", "forward_mouse", 16, 16},
    {"joystick", "A", 2147483647, 2147483647},
    {"joystick", "LB", 2147483647, 2147483647},
    {"joystick", "RT", 2147483647, 2147483647},
}};

constexpr std::array<const char*, 8> kDescriptions = {
    "Attack", "Jump",      "Skill 1 \"burst\"", "Reload", "Crouch", "\xE6\x8A\x80\xE8\x83\xBD 2",
    "Map",    "Back\\Menu"};

constexpr std::array<const char*, 4> kColours = {"1E90FF80", "FF000066", "00FF00AA", "FFFFFF40"};

class Generator {
public:
    explicit Generator(std::uint64_t seed) : random_(seed) {}

    std::string document(std::size_t itemCount) {
        w_.beginObject();
        info();
        w_.key("keymaps");
        w_.beginArray();
        for (std::size_t i = 0; i < itemCount; ++i) {
            item(kItemTypes[i % kItemTypes.size()]);
        }
        w_.endArray();
        param();
        w_.endObject();
        return w_.take();
    }

private:
    void info() {
        w_.key("info");
        w_.beginObject();
        w_.member("background_color", "10203040");
        w_.member("is_joystick", false);
        w_.member("transparent_ESC", true);
        w_.member("transparent_joystick", false);
        w_.member("transparent_keyboard", false);
        w_.member("transparent_mouse", "Mouse_OtherButton_Transparent");
        w_.member("transparent_mouse_windows_raw_move_period", 4);
        w_.member("transparent_mouse_windows_raw_move_sensitivity", 1.25);
        w_.member("transparent_wheel", true);
        w_.member("visibility", false);
        w_.endObject();
    }

    void param() {
        w_.key("param");
        w_.beginObject();
        w_.key("transparent_wheel_policy");
        w_.beginObject();
        w_.member("protocol_version", 2);
        w_.member("sensitivity", 1.5);
        w_.endObject();
        w_.key("wheel_policy");
        w_.beginObject();
        w_.member("wheel_step_distance", 0.02);
        w_.member("zoom_first_interval", 24);
        w_.member("zoom_last_idle", 8);
        w_.member("zoom_margin", 30);
        w_.member("zoom_period", 12);
        w_.member("zoom_step_distance", 0.005);
        w_.member("zoom_steps", 10);
        w_.endObject();
        w_.endObject();
    }

    void item(std::string_view type) {
        w_.beginObject();
        common(type);
        if (type == "Click" || type == "Tip" || type == "Observe") {
            secondKey();
        }
        if (type == "BunchClick") {
            secondKey();
            const bool oneOff = random_.chance(50);
            w_.member("bunch_click_type", oneOff ? "One_Off" : "Continue");
            w_.member("bunch_click_continue_number", random_.between(2, 60));
            w_.member("bunch_click_one_off_number", random_.between(2, 60));
        } else if (type == "Swipehold") {
            diamond(true);
            drag(random_.fraction() / 4);
        } else if (type == "Fire") {
            fire();
        } else if (type == "Staring") {
            secondKey();
            w_.member("sensitivity_x", random_.between(10, 200));
            w_.member("sensitivity_y", random_.between(10, 200));
            lookRange();
        } else if (type == "Spell") {
            secondKey();
            spell();
        } else if (type == "SpellCancel") {
            secondKey();
            w_.member("is_in_use", false);
            w_.key("spell_cancel_delay_info");
            w_.beginObject();
            w_.member("delay_time", random_.between(30, 300));
            w_.endObject();
        } else if (type == "RightWalk") {
            rightWalk();
        } else if (type == "Eye" || type == "Gravity") {
            diamond(false);
            w_.member("sensitivity", random_.between(5, 250));
        } else if (type == "Macro") {
            secondKey();
            macro();
        } else if (type == "Curve") {
            secondKey();
            curve();
        } else if (type == "LeftStickWalk") {
            w_.member("rel_radius", random_.fraction() / 3);
        } else if (type == "RightStickEye") {
            w_.member("sensitivity", random_.between(20, 300));
            lookRange();
        } else if (type == "Wheel") {
            pairs();
            w_.member("duration", random_.between(50, 500));
            w_.member("orientation", random_.chance(50) ? "horizontal" : "vertical");
            w_.member("sensitivity", random_.between(10, 120));
        } else if (type == "Zoom") {
            pairs();
            w_.member("duration", random_.between(50, 500));
            w_.member("one_side_gap", random_.fraction() / 20);
            w_.member("orientation", random_.chance(50) ? "horizontal" : "vertical");
            w_.member("sensitivity", random_.between(10, 200));
        } else if (type == "Observe") {
            w_.member("sensitivity", 0.5 + random_.fraction());
            w_.member("sensitivity_x", random_.between(5, 90));
            w_.member("sensitivity_y", random_.between(5, 90));
        }
        w_.endObject();
    }

    void common(std::string_view type) {
        w_.member("editor_icon_scale", 0.5 + random_.fraction());
        w_.key("icon");
        w_.beginObject();
        w_.member("background_color", random_.pick(kColours));
        w_.member("description", random_.pick(kDescriptions));
        w_.member("radius_correction", 0.5 + random_.fraction());
        point("rel_position");
        w_.member("visibility", random_.chance(80));
        w_.endObject();
        keyMember("key", randomKey());
        point("rel_work_position");
        w_.member("type", type);
    }

    const Key& randomKey() { return random_.pick(kKeys); }

    void keyMember(std::string_view name, const Key& key) {
        w_.key(name);
        w_.beginObject();
        w_.member("device", key.device);
        w_.member("scan_code", key.scanCode);
        w_.member("text", key.text);
        w_.member("virtual_key", key.virtualKey);
        w_.endObject();
    }

    void point(std::string_view name) {
        w_.key(name);
        w_.beginObject();
        w_.member("rel_x", random_.fraction());
        w_.member("rel_y", random_.fraction());
        w_.endObject();
    }

    void secondKey() {
        if (random_.chance(33)) {
            keyMember("second_key", randomKey());
        }
    }

    void pairs() {
        for (const char* side : {"negative_key", "positive_key"}) {
            w_.key(side);
            w_.beginObject();
            keyMember("key", randomKey());
            if (random_.chance(33)) {
                keyMember("second_key", randomKey());
            }
            w_.endObject();
        }
    }

    // Four direction keys: the usual WASD or arrows, or gamepad controls.
    void diamond(bool letters) {
        static constexpr std::array<Key, 4> kWasd = {{{"keyboard", "W", 87, 17},
                                                      {"keyboard", "D", 68, 32},
                                                      {"keyboard", "S", 83, 31},
                                                      {"keyboard", "A", 65, 30}}};
        static constexpr std::array<Key, 4> kPad = {{{"joystick", "Up", 2147483647, 2147483647},
                                                     {"joystick", "Right", 2147483647, 2147483647},
                                                     {"joystick", "Down", 2147483647, 2147483647},
                                                     {"joystick", "Left", 2147483647, 2147483647}}};
        static constexpr std::array<Key, 4> kArrows = {{{"keyboard", "Direction_up", 38, 328},
                                                        {"keyboard", "Direction_right", 39, 333},
                                                        {"keyboard", "Direction_down", 40, 336},
                                                        {"keyboard", "Direction_left", 37, 331}}};
        const auto& keys = random_.chance(20) ? kPad : (letters ? kWasd : kArrows);
        keyMember("bottom_key", keys[2]);
        keyMember("left_key", keys[3]);
        keyMember("right_key", keys[1]);
        keyMember("top_key", keys[0]);
    }

    // The drag settings shared by Swipehold items and the drag part of Spell
    // items.
    void drag(double radius) {
        static constexpr std::array<const char*, 3> kHandles = {"Transparent", "Click", "Move"};
        static constexpr std::array<const char*, 3> kMoves = {"Constant", "Big_Variable",
                                                              "Small_Variable"};
        static constexpr std::array<const char*, 6> kAxes = {"Default", "Sin", "Cos",
                                                             "X",       "X2",  "Infinite"};
        w_.key("first_point_policy");
        w_.beginObject();
        w_.member("handle_type", random_.pick(kHandles));
        w_.member("idle_before_first_press", random_.between(1, 20));
        w_.member("interval", random_.between(8, 64));
        w_.member("move_type", random_.pick(kMoves));
        w_.member("no_press_first_center_point", random_.chance(50));
        w_.member("period", random_.between(4, 32));
        w_.member("speed", random_.between(50, 200));
        w_.member("steps", random_.between(2, 12));
        w_.member("wait_for_second", random_.between(1, 20));
        w_.endObject();
        w_.member("hold_center_interval_after_release", random_.between(1, 100));
        w_.member("in_line_policy", random_.chance(50) ? "Just_Use_Last" : "Use_Both");
        w_.member("rel_radius", radius);
        w_.key("subsequent_point_policy");
        w_.beginObject();
        w_.member("handle_type", random_.pick(kHandles));
        w_.member("period", random_.between(4, 32));
        w_.member("steps", random_.between(2, 12));
        w_.endObject();
        w_.key("target_point_input_compensatory_policy");
        w_.beginObject();
        w_.member("count", random_.between(1, 9));
        w_.member("distance", random_.fraction() / 10);
        w_.member("enable", random_.chance(50));
        w_.member("period", random_.between(2, 20));
        w_.member("steps", random_.between(1, 9));
        w_.member("x_policy", random_.pick(kAxes));
        w_.member("x_policy_intercept_phaseshift", random_.fraction());
        w_.member("x_policy_slope_period", 0.5 + random_.fraction());
        w_.member("y_policy", random_.pick(kAxes));
        w_.member("y_policy_intercept_phaseshift", random_.fraction());
        w_.member("y_policy_slope_period", 0.5 + random_.fraction());
        w_.endObject();
    }

    void invalidZone() {
        w_.key("invalid_zone_info");
        w_.beginObject();
        w_.member("enable", true);
        w_.member("rel_radius_inside_invalid_zone", random_.fraction() / 100);
        w_.member("rel_radius_outside_invalid_zone", random_.fraction() / 50);
        w_.endObject();
    }

    void fire() {
        w_.key("fire_option");
        w_.beginObject();
        w_.member("fire_range_policy",
                  random_.chance(50) ? "Fire_range_dependent_swipehold" : "Fire_range_unlimited");
        w_.endObject();
        w_.member("need_fire_and_drag", true);
        w_.key("swipehold_info");
        w_.beginObject();
        invalidZone();
        point("rel_position");
        w_.member("rel_radius", random_.fraction() / 5);
        w_.member("steps", random_.between(2, 12));
        w_.endObject();
    }

    void spell() {
        static constexpr std::array<const char*, 4> kTriggers = {
            "Spell_Trigger_On_Release_Key", "Spell_Trigger_On_Press_Key",
            "Spell_Trigger_On_Next_Key", "Spell_Trigger_Immedaite"};
        static constexpr std::array<const char*, 3> kLocations = {
            "Spell_touch_location_mouse_dependence", "Spell_touch_location_swipehold_dependence",
            "Spell_touch_location_inner_swipehold_dependence"};
        w_.key("spell_info");
        w_.beginObject();
        w_.member("range", 20.0 + random_.between(0, 80));
        w_.member("rel_radius", random_.fraction() / 4);
        point("rel_position");
        w_.endObject();
        w_.key("spell_option");
        w_.beginObject();
        w_.member("is_occupy_swipehold_input", random_.chance(50));
        w_.member("need_spell_direction", random_.chance(50));
        w_.member("spell_touch_location_policy", random_.pick(kLocations));
        w_.member("spell_trigger_policy", random_.pick(kTriggers));
        w_.member("stop_walk_after_spell", random_.chance(50));
        w_.member("walk_with_spell", random_.chance(50));
        w_.endObject();
        w_.key("swipehold_info");
        w_.beginObject();
        drag(random_.fraction() / 4);
        invalidZone();
        w_.member("interval", random_.between(8, 64));
        w_.member("period", random_.between(4, 32));
        point("rel_position");
        w_.member("speed", random_.between(50, 200));
        w_.member("steps", random_.between(2, 12));
        w_.endObject();
        if (random_.chance(40)) {
            w_.key("tap_info");
            w_.beginObject();
            w_.member("distance_ratio", random_.fraction());
            w_.member("factor", 0.5 + random_.fraction());
            point("rel_center_pos");
            w_.member("seq", "1,2,3,2,1");
            w_.endObject();
        }
    }

    void lookRange() {
        static constexpr std::array<const char*, 4> kResets = {
            "Range_Window", "Range_Have_Padding_To_Window", "Range_User",
            "Range_User_Allow_Outside"};
        w_.key("reset_policy");
        w_.beginObject();
        w_.member("auto_reset_period", random_.between(100, 2000));
        w_.member("need_reset", random_.chance(50));
        w_.member("reset_type", random_.pick(kResets));
        w_.member("reset_wait_interval", random_.between(1, 40));
        w_.endObject();
        w_.key("staring_range");
        w_.beginObject();
        w_.member("rel_height", random_.fraction());
        w_.member("rel_width", random_.fraction());
        w_.endObject();
    }

    void rightWalk() {
        w_.member("duration_factor", random_.fraction());
        w_.key("first_move_policy");
        w_.beginObject();
        w_.member("interval", random_.between(8, 64));
        w_.member("period", random_.between(4, 32));
        w_.member("rel_radius", random_.fraction() / 10);
        w_.member("speed", random_.between(50, 200));
        w_.member("steps", random_.between(2, 12));
        w_.endObject();
        point("rel_measurement_pos");
    }

    void curve() {
        w_.member("act_as_line", random_.chance(50));
        std::string points;
        const int count = random_.between(2, 8);
        for (int i = 0; i < count; ++i) {
            points += (i == 0 ? "(" : ";(") + number(random_.fraction()) + "," +
                      number(random_.fraction()) + ")";
        }
        w_.member("rel_all_points_pos", std::string_view(points));
        point("rel_end_pos");
        point("rel_start_pos");
        w_.member("start_wait_time", random_.between(1, 200));
    }

    // Scripts in running text, the form documents carry.
    void macro() {
        w_.key("press_actions");
        script(random_.between(4, 16));
        w_.key("release_actions");
        script(random_.between(1, 6));
    }

    void script(int lines) {
        w_.beginArray();
        for (int i = 0; i < lines; ++i) {
            const std::string line = macroLine();
            w_.value(std::string_view(line));
        }
        w_.endArray();
    }

    std::string macroLine() {
        const auto at = [this] {
            return "(" + number(random_.fraction()) + "," + number(random_.fraction()) + ")";
        };
        switch (random_.between(0, 11)) {
            case 0:
                return "click_rel:" + at();
            case 1:
                return "press_rel:" + at() + ";" + at();
            case 2:
                return "release_rel:" + at();
            case 3:
                return "curve_rel:" + at() + ";" + at() + ";mouse";
            case 4:
                return "sleep:" + std::to_string(random_.between(10, 500));
            case 5:
                return "default_sleep_time:" + std::to_string(random_.between(5, 50));
            case 6:
                return "keyboard_press:" + std::to_string(random_.between(2, 57));
            case 7:
                return "keyboard_release:" + std::to_string(random_.between(2, 57));
            case 8:
                return "mouse_switch:" + std::to_string(random_.between(1, 3));
            case 9:
                return "start_loop:" + std::to_string(random_.between(2, 9));
            case 10:
                return "joystick_press:LB";
            default:
                return "text_inject:gg wp";
        }
    }

    static std::string number(double value) {
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        return std::string(buffer, result.ptr);
    }

    Random random_;
    Writer w_;
};

}  // namespace

std::string GenerateDocument(std::size_t itemCount, std::uint64_t seed) {
    return Generator(seed).document(itemCount);
}

}  // namespace benchdocs
