//
// KeyLabels.cpp
//
// Label keys ("key.esc", "btn.left") and the captions made from them. The row
// tables below are the source data; they are folded once, on first use, into
// arrays indexed by code, so a lookup is a bounds check and an index.
//

#include "labels/KeyLabels.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

namespace zunokeymapmanager {
namespace labels {

namespace {

struct Row {
    int code;
    std::string_view label;
};

constexpr std::string_view kKeyboard = "keyboard";
constexpr std::string_view kMouse = "mouse";
constexpr std::string_view kUnknownKey = "key.unknown";
constexpr std::string_view kUnknownButton = "btn.unknown";

// Keys whose scan code carries the extended (E0) prefix, and the keypad keys
// that share their codes with the navigation block. Consulted before the
// general table; its "key.unknown" rows defer to the general table.
constexpr Row kExtendedKeyboardRows[] = {
    {55, "key.asterisk"}, {69, "key.unknown"},   {71, "key.n7"},      {72, "key.n8"},
    {73, "key.n9"},       {74, "key.minus"},     {75, "key.n4"},      {76, "key.n5"},
    {77, "key.n6"},       {78, "key.add"},       {79, "key.n1"},      {80, "key.n2"},
    {81, "key.n3"},       {82, "key.n0"},        {83, "key.dot"},     {284, "key.enter"},
    {309, "key.slash"},   {325, "key.unknown"},  {327, "key.home"},   {329, "key.pageUp"},
    {335, "key.end"},     {337, "key.pageDown"}, {338, "key.insert"}, {339, "key.delete"},
};

// The general keyboard table: the input-event key names, lower-cased, in the
// order the input-event codes define them (aliases after the name they
// alias). Where two names share a code the first one is kept.
constexpr Row kGeneralKeyboardRows[] = {
    {0, "key.reserved"},
    {1, "key.esc"},
    {2, "key.1"},
    {3, "key.2"},
    {4, "key.3"},
    {5, "key.4"},
    {6, "key.5"},
    {7, "key.6"},
    {8, "key.7"},
    {9, "key.8"},
    {10, "key.9"},
    {11, "key.0"},
    {12, "key.minus"},
    {13, "key.equal"},
    {14, "key.backspace"},
    {15, "key.tab"},
    {16, "key.q"},
    {17, "key.w"},
    {18, "key.e"},
    {19, "key.r"},
    {20, "key.t"},
    {21, "key.y"},
    {22, "key.u"},
    {23, "key.i"},
    {24, "key.o"},
    {25, "key.p"},
    {26, "key.leftbrace"},
    {27, "key.rightbrace"},
    {28, "key.enter"},
    {29, "key.leftctrl"},
    {30, "key.a"},
    {31, "key.s"},
    {32, "key.d"},
    {33, "key.f"},
    {34, "key.g"},
    {35, "key.h"},
    {36, "key.j"},
    {37, "key.k"},
    {38, "key.l"},
    {39, "key.semicolon"},
    {40, "key.apostrophe"},
    {41, "key.grave"},
    {42, "key.leftshift"},
    {43, "key.backslash"},
    {44, "key.z"},
    {45, "key.x"},
    {46, "key.c"},
    {47, "key.v"},
    {48, "key.b"},
    {49, "key.n"},
    {50, "key.m"},
    {51, "key.comma"},
    {52, "key.dot"},
    {53, "key.slash"},
    {54, "key.rightshift"},
    {55, "key.kpasterisk"},
    {56, "key.leftalt"},
    {57, "key.space"},
    {58, "key.caps"},
    {59, "key.f1"},
    {60, "key.f2"},
    {61, "key.f3"},
    {62, "key.f4"},
    {63, "key.f5"},
    {64, "key.f6"},
    {65, "key.f7"},
    {66, "key.f8"},
    {67, "key.f9"},
    {68, "key.f10"},
    {69, "key.numlock"},
    {70, "key.scrolllock"},
    {71, "key.kp7"},
    {72, "key.kp8"},
    {73, "key.kp9"},
    {74, "key.kpminus"},
    {75, "key.kp4"},
    {76, "key.kp5"},
    {77, "key.kp6"},
    {78, "key.kpplus"},
    {79, "key.kp1"},
    {80, "key.kp2"},
    {81, "key.kp3"},
    {82, "key.kp0"},
    {83, "key.kpdot"},
    {85, "key.zenkakuhankaku"},
    {86, "key.102nd"},
    {87, "key.f11"},
    {88, "key.f12"},
    {89, "key.ro"},
    {90, "key.katakana"},
    {91, "key.hiragana"},
    {92, "key.henkan"},
    {93, "key.katakanahiragana"},
    {94, "key.muhenkan"},
    {95, "key.kjpcomma"},
    {96, "key.kpenter"},
    {97, "key.rightctrl"},
    {98, "key.kpslash"},
    {99, "key.sysrq"},
    {100, "key.rightalt"},
    {101, "key.linefeed"},
    {102, "key.home"},
    {103, "key.up"},
    {104, "key.pageup"},
    {105, "key.left"},
    {106, "key.right"},
    {107, "key.end"},
    {108, "key.down"},
    {109, "key.pagedown"},
    {110, "key.insert"},
    {111, "key.delete"},
    {112, "key.macro"},
    {113, "key.mute"},
    {114, "key.volumedown"},
    {115, "key.volumeup"},
    {116, "key.power"},
    {117, "key.kpequal"},
    {118, "key.kpplusminus"},
    {119, "key.pause"},
    {120, "key.scale"},
    {121, "key.kpcomma"},
    {122, "key.hangeul"},
    {122, "key.hanguel"},
    {123, "key.hanja"},
    {124, "key.yen"},
    {125, "key.leftmeta"},
    {126, "key.rightmeta"},
    {127, "key.compose"},
    {128, "key.stop"},
    {129, "key.again"},
    {130, "key.props"},
    {131, "key.undo"},
    {132, "key.front"},
    {133, "key.copy"},
    {134, "key.open"},
    {135, "key.paste"},
    {136, "key.find"},
    {137, "key.cut"},
    {138, "key.help"},
    {139, "key.menu"},
    {140, "key.calc"},
    {141, "key.setup"},
    {142, "key.sleep"},
    {143, "key.wakeup"},
    {144, "key.file"},
    {145, "key.sendfile"},
    {146, "key.deletefile"},
    {147, "key.xfer"},
    {148, "key.prog1"},
    {149, "key.prog2"},
    {150, "key.www"},
    {151, "key.msdos"},
    {152, "key.coffee"},
    {152, "key.screenlock"},
    {153, "key.rotate_display"},
    {153, "key.direction"},
    {154, "key.cyclewindows"},
    {155, "key.mail"},
    {156, "key.bookmarks"},
    {157, "key.computer"},
    {158, "key.back"},
    {159, "key.forward"},
    {160, "key.closecd"},
    {161, "key.ejectcd"},
    {162, "key.ejectclosecd"},
    {163, "key.nextsong"},
    {164, "key.playpause"},
    {165, "key.previoussong"},
    {166, "key.stopcd"},
    {167, "key.record"},
    {168, "key.rewind"},
    {169, "key.phone"},
    {170, "key.iso"},
    {171, "key.config"},
    {172, "key.homepage"},
    {173, "key.refresh"},
    {174, "key.exit"},
    {175, "key.move"},
    {176, "key.edit"},
    {177, "key.scrollup"},
    {178, "key.scrolldown"},
    {179, "key.kpleftparen"},
    {180, "key.kprightparen"},
    {181, "key.new"},
    {182, "key.redo"},
    {183, "key.f13"},
    {184, "key.f14"},
    {185, "key.f15"},
    {186, "key.f16"},
    {187, "key.f17"},
    {188, "key.f18"},
    {189, "key.f19"},
    {190, "key.f20"},
    {191, "key.f21"},
    {192, "key.f22"},
    {193, "key.f23"},
    {194, "key.f24"},
    {200, "key.playcd"},
    {201, "key.pausecd"},
    {202, "key.prog3"},
    {203, "key.prog4"},
    {204, "key.all_applications"},
    {204, "key.dashboard"},
    {205, "key.suspend"},
    {206, "key.close"},
    {207, "key.play"},
    {208, "key.fastforward"},
    {209, "key.bassboost"},
    {210, "key.print"},
    {211, "key.hp"},
    {212, "key.camera"},
    {213, "key.sound"},
    {214, "key.question"},
    {215, "key.email"},
    {216, "key.chat"},
    {217, "key.search"},
    {218, "key.connect"},
    {219, "key.finance"},
    {220, "key.sport"},
    {221, "key.shop"},
    {222, "key.alterase"},
    {223, "key.cancel"},
    {224, "key.brightnessdown"},
    {225, "key.brightnessup"},
    {226, "key.media"},
    {227, "key.switchvideomode"},
    {228, "key.kbdillumtoggle"},
    {229, "key.kbdillumdown"},
    {230, "key.kbdillumup"},
    {231, "key.send"},
    {232, "key.reply"},
    {233, "key.forwardmail"},
    {234, "key.save"},
    {235, "key.documents"},
    {236, "key.battery"},
    {237, "key.bluetooth"},
    {238, "key.wlan"},
    {239, "key.uwb"},
    {240, "key.unknown"},
    {241, "key.video_next"},
    {242, "key.video_prev"},
    {243, "key.brightness_cycle"},
    {244, "key.brightness_auto"},
    {244, "key.brightness_zero"},
    {245, "key.display_off"},
    {246, "key.wwan"},
    {246, "key.wimax"},
    {247, "key.rfkill"},
    {248, "key.micmute"},
};

// The arrow block has the last word over both tables above.
constexpr int kArrowLast = 336;
constexpr Row kArrowRows[] = {
    {328, "key.direction_up"},   {329, "key.unknown"}, {330, "key.unknown"},
    {331, "key.direction_left"}, {332, "key.unknown"}, {333, "key.direction_right"},
    {334, "key.unknown"},        {335, "key.unknown"}, {336, "key.direction_down"},
};

// Mouse buttons as single-bit values, then the input-event button codes. Where
// two names share a code the first one is kept.
constexpr Row kMouseRows[] = {
    {1, "btn.left"},
    {2, "btn.right"},
    {4, "btn.middle"},
    {8, "btn.back"},
    {16, "btn.forward"},
    {256, "btn.misc"},
    {256, "btn.0"},
    {257, "btn.1"},
    {258, "btn.2"},
    {259, "btn.3"},
    {260, "btn.4"},
    {261, "btn.5"},
    {262, "btn.6"},
    {263, "btn.7"},
    {264, "btn.8"},
    {265, "btn.9"},
    {272, "btn.mouse"},
    {275, "btn.side"},
    {276, "btn.extra"},
    {279, "btn.task"},
    {288, "btn.joystick"},
    {288, "btn.trigger"},
    {289, "btn.thumb"},
    {290, "btn.thumb2"},
    {291, "btn.top"},
    {292, "btn.top2"},
    {293, "btn.pinkie"},
    {294, "btn.base"},
    {295, "btn.base2"},
    {296, "btn.base3"},
    {297, "btn.base4"},
    {298, "btn.base5"},
    {299, "btn.base6"},
    {303, "btn.dead"},
    {304, "btn.gamepad"},
    {304, "btn.a"},
    {305, "btn.b"},
    {306, "btn.c"},
    {307, "btn.x"},
    {308, "btn.y"},
    {309, "btn.z"},
    {310, "btn.tl"},
    {311, "btn.tr"},
    {312, "btn.tl2"},
    {313, "btn.tr2"},
    {314, "btn.select"},
    {315, "btn.start"},
    {316, "btn.mode"},
    {317, "btn.thumbl"},
    {318, "btn.thumbr"},
    {320, "btn.digi"},
    {320, "btn.tool_pen"},
    {321, "btn.tool_rubber"},
    {322, "btn.tool_brush"},
    {323, "btn.tool_pencil"},
    {324, "btn.tool_airbrush"},
    {325, "btn.tool_finger"},
    {326, "btn.tool_mouse"},
    {327, "btn.tool_lens"},
    {330, "btn.touch"},
    {331, "btn.stylus"},
    {332, "btn.stylus2"},
    {333, "btn.tool_doubletap"},
    {334, "btn.tool_tripletap"},
    {335, "btn.tool_quadtap"},
    {336, "btn.wheel"},
    {336, "btn.gear_down"},
    {337, "btn.gear_up"},
    {544, "btn.dpad_up"},
    {545, "btn.dpad_down"},
    {546, "btn.dpad_left"},
    {547, "btn.dpad_right"},
    {548, "btn.wheel_up"},
    {549, "btn.wheel_down"},
};

// Labels whose caption is not derived from the label itself.
constexpr std::pair<std::string_view, std::string_view> kFixedCaptions[] = {
    {"btn.left", "left_mouse"},
    {"btn.right", "right_mouse"},
    {"btn.middle", "middle_mouse"},
    {"btn.back", "back_mouse"},
    {"btn.forward", "forward_mouse"},
    {"btn.wheel_up", "wheel_up_mouse"},
    {"btn.wheel_down", "wheel_down_mouse"},
    {"key.leftctrl", "Ctrl"},
    {"key.leftshift", "Shift"},
    {"key.leftalt", "Alt"},
    {"key.grave", "`"},
    {"key.minus", "-"},
    {"key.equal", "="},
    {"key.leftbrace", "["},
    {"key.rightbrace", "]"},
    {"key.semicolon", ";"},
    {"key.apostrophe", "'"},
    {"key.backslash", "\\"},
    {"key.comma", ","},
    {"key.dot", "."},
    {"key.slash", "/"},
    {"key.asterisk", "*"},
    {"key.add", "+"},
};

constexpr int maxCode(const Row* first, const Row* last) {
    int result = 0;
    for (; first != last; ++first) {
        result = first->code > result ? first->code : result;
    }
    return result;
}

template <std::size_t N>
constexpr int maxCode(const Row (&rows)[N]) {
    return maxCode(rows, rows + N);
}

constexpr std::size_t kKeyboardCodes =
    std::max({maxCode(kExtendedKeyboardRows), maxCode(kGeneralKeyboardRows), kArrowLast}) + 1;
constexpr std::size_t kMouseCodes = maxCode(kMouseRows) + 1;

std::string captionOf(std::string_view label) {
    for (const auto& [fixedLabel, caption] : kFixedCaptions) {
        if (fixedLabel == label) {
            return std::string(caption);
        }
    }
    // Every label is "key." or "btn." followed by a name.
    std::string caption(label.substr(4));
    if (!caption.empty()) {
        caption[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(caption[0])));
    }
    if (caption == "Unknown") {
        caption.clear();
    }
    return caption;
}

// One device's labels and captions by code, and its captions sorted for the
// reverse lookup.
template <std::size_t Codes>
struct DeviceTable {
    std::array<std::string_view, Codes> labels{};
    std::array<std::string, Codes> captions{};
    std::vector<std::pair<std::string_view, int>> byCaption;

    // Fills captions and the reverse index once every label is in place.
    void finish(std::string_view unknownLabel) {
        for (std::size_t code = 0; code < Codes; ++code) {
            if (labels[code].empty()) {
                labels[code] = unknownLabel;
            }
            captions[code] = captionOf(labels[code]);
            if (!captions[code].empty()) {
                byCaption.emplace_back(captions[code], static_cast<int>(code));
            }
        }
        // Sorted by caption, then code: the lowest code owns a shared caption.
        std::sort(byCaption.begin(), byCaption.end());
    }

    static bool inRange(int code) { return code >= 0 && static_cast<std::size_t>(code) < Codes; }

    std::string_view label(int code, std::string_view unknownLabel) const {
        return inRange(code) ? labels[static_cast<std::size_t>(code)] : unknownLabel;
    }

    std::string caption(int code) const {
        return inRange(code) ? captions[static_cast<std::size_t>(code)] : std::string();
    }

    int codeOf(std::string_view caption) const {
        const auto found =
            std::lower_bound(byCaption.begin(), byCaption.end(), std::make_pair(caption, -1));
        return found != byCaption.end() && found->first == caption ? found->second : -1;
    }
};

template <std::size_t N, std::size_t Codes>
void insertFirstWins(std::array<std::string_view, Codes>& labels, const Row (&rows)[N]) {
    for (const Row& row : rows) {
        std::string_view& slot = labels[static_cast<std::size_t>(row.code)];
        if (slot.empty()) {
            slot = row.label;
        }
    }
}

struct Tables {
    DeviceTable<kKeyboardCodes> keyboard;
    DeviceTable<kMouseCodes> mouse;

    Tables() {
        // Keyboard: the extended table, then the general table where the
        // extended one has no name, then the arrow block over both.
        for (const Row& row : kExtendedKeyboardRows) {
            if (row.label != kUnknownKey) {
                keyboard.labels[static_cast<std::size_t>(row.code)] = row.label;
            }
        }
        insertFirstWins(keyboard.labels, kGeneralKeyboardRows);
        for (const Row& row : kArrowRows) {
            keyboard.labels[static_cast<std::size_t>(row.code)] = row.label;
        }
        keyboard.finish(kUnknownKey);

        insertFirstWins(mouse.labels, kMouseRows);
        mouse.finish(kUnknownButton);
    }
};

// Built on first use (thread-safe static initialisation), read-only after.
const Tables& tables() {
    static const Tables instance;
    return instance;
}

}  // namespace

std::string_view LabelKey(std::string_view device, int code) {
    if (device == kKeyboard) {
        return tables().keyboard.label(code, kUnknownKey);
    }
    if (device == kMouse) {
        return tables().mouse.label(code, kUnknownButton);
    }
    return {};
}

std::string Caption(std::string_view device, int code) {
    if (device == kKeyboard) {
        return tables().keyboard.caption(code);
    }
    if (device == kMouse) {
        return tables().mouse.caption(code);
    }
    return {};
}

int CodeOf(std::string_view device, std::string_view caption) {
    if (caption.empty()) {
        return -1;
    }
    if (device == kKeyboard) {
        return tables().keyboard.codeOf(caption);
    }
    if (device == kMouse) {
        return tables().mouse.codeOf(caption);
    }
    return -1;
}

}  // namespace labels
}  // namespace zunokeymapmanager
