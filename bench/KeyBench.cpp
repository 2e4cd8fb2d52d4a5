//
// KeyBench.cpp
//
// Key captions and key collisions.
//
// Captions are measured against the straightforward way of computing them:
// building the integer-keyed code tables on every call and then looking the
// code up. The library must beat that by two orders of magnitude, since
// editors ask for captions of whole keyboards at once.
//
// Collisions walk every item of a document, so the cost must grow linearly
// with the number of items. The baseline of a document of N items is the
// same N items, in the same memory, walked as N / 200 documents of 200 items
// each: anything the single walk loses beyond that is growth faster than the
// item count.
//
// Naming: a case "BM_X" is paired with its baseline "BM_X_Baseline"; the
// counter "bar" is the largest acceptable ratio of the two (bench/run).
//

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include <zuno-keymapmanager/keymapmanager.h>

#include "CheckedDocument.h"
#include "DocumentGenerator.h"

namespace {

namespace km = zunokeymapmanager;

// --- Captions ----------------------------------------------------------------

struct Row {
    int code;
    const char* label;
};

// Keyboard keys by Linux input-event code, which the scan codes follow.
const Row kGeneralKeyboardRows[] = {
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
    {153, "key.rotate_display"},
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
    {245, "key.display_off"},
    {246, "key.wwan"},
    {247, "key.rfkill"},
    {248, "key.micmute"},
};

// Keys whose scan codes are extended, and keypad keys with captions of their own.
const Row kExtendedKeyboardRows[] = {
    {55, "key.asterisk"}, {69, "key.unknown"},   {71, "key.n7"},      {72, "key.n8"},
    {73, "key.n9"},       {74, "key.minus"},     {75, "key.n4"},      {76, "key.n5"},
    {77, "key.n6"},       {78, "key.add"},       {79, "key.n1"},      {80, "key.n2"},
    {81, "key.n3"},       {82, "key.n0"},        {83, "key.dot"},     {284, "key.enter"},
    {309, "key.slash"},   {325, "key.unknown"},  {327, "key.home"},   {329, "key.pageUp"},
    {335, "key.end"},     {337, "key.pageDown"}, {338, "key.insert"}, {339, "key.delete"},
};

// Mouse buttons as single bits, then the Linux button codes. Where two names
// share a code the first one wins.
const Row kMouseRows[] = {
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

// The arrow block of the extended codes, 328 to 336.
const char* const kArrowLabels[] = {"key.direction_up",   "key.unknown", "key.unknown",
                                    "key.direction_left", "key.unknown", "key.direction_right",
                                    "key.unknown",        "key.unknown", "key.direction_down"};

template <std::size_t N>
std::map<int, std::string> buildTable(const Row (&rows)[N]) {
    std::map<int, std::string> table;
    for (const Row& row : rows) {
        table.emplace(row.code, row.label);
    }
    return table;
}

std::string captionOf(const std::string& label) {
    static const std::pair<const char*, const char*> kFixed[] = {
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
        {"key.add", "+"}};
    for (const auto& [from, to] : kFixed) {
        if (label == from) {
            return to;
        }
    }
    std::string caption = label.substr(4);
    caption[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(caption[0])));
    return caption == "Unknown" ? std::string() : caption;
}

// The caption rule as written, with both code tables built for every call.
std::string perCallLabel(const std::string& device, int code) {
    const std::map<int, std::string> keyboard = buildTable(kGeneralKeyboardRows);
    const std::map<int, std::string> extended = buildTable(kExtendedKeyboardRows);
    const std::map<int, std::string> mouse = buildTable(kMouseRows);

    if (device == "keyboard") {
        if (const auto found = extended.find(code); found != extended.end()) {
            return found->second;
        }
        if (const auto found = keyboard.find(code); found != keyboard.end()) {
            return found->second;
        }
        if (code >= 328 && code <= 336) {
            return kArrowLabels[code - 328];
        }
        return "key.unknown";
    }
    if (device == "mouse") {
        const auto found = mouse.find(code);
        return found != mouse.end() ? found->second : "btn.unknown";
    }
    return "unknown";
}

km::ConfigKey perCallCreateConfigKey(std::string device, int virtualKey, int scanCode) {
    km::ConfigKey key;
    key.device = device;
    key.virtual_key = virtualKey;
    key.scan_code = scanCode;
    key.modifySpecialKey();
    if (device != "joystick") {
        key.text = captionOf(perCallLabel(device, scanCode));
    }
    return key;
}

struct KeyRequest {
    std::string device;
    int virtualKey;
    int scanCode;
};

// What an editor asks for: every keyboard code, the extended block, the
// mouse buttons and button codes, and some codes without a name.
const std::vector<KeyRequest>& keySpread() {
    static const std::vector<KeyRequest> spread = [] {
        std::vector<KeyRequest> requests;
        for (int code = 0; code <= 140; ++code) {
            requests.push_back({"keyboard", code + 1000, code});
        }
        for (int code = 284; code <= 340; ++code) {
            requests.push_back({"keyboard", code + 1000, code});
        }
        for (int code : {1, 2, 3, 4, 8, 16, 256, 272, 288, 304, 320, 336, 544, 548, 549, 999}) {
            requests.push_back({"mouse", code, code});
        }
        for (int code : {500, -1, 2147483647}) {
            requests.push_back({"keyboard", code, code});
        }
        return requests;
    }();
    return spread;
}

template <typename Create>
void runCaptions(benchmark::State& state, Create create) {
    const auto& spread = keySpread();
    for (auto _ : state) {
        for (const KeyRequest& request : spread) {
            km::ConfigKey key = create(request.device, request.virtualKey, request.scanCode);
            benchmark::DoNotOptimize(key.text.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(spread.size()));
    // At least a hundred times faster than the per-call tables.
    state.counters["bar"] = 0.01;
}

void BM_CreateConfigKey(benchmark::State& state) {
    runCaptions(state, &km::CreateConfigKey);
}

void BM_CreateConfigKey_Baseline(benchmark::State& state) {
    runCaptions(state, &perCallCreateConfigKey);
}

// --- Collisions ----------------------------------------------------------------

constexpr std::size_t kUnitItems = 200;

km::KeymapConfig& documentOf(std::size_t items) {
    static std::map<std::size_t, benchdocs::DocumentPtr> documents;
    auto& doc = documents[items];
    if (!doc) {
        doc = benchdocs::loadChecked(benchdocs::GenerateDocument(items), items);
    }
    return *doc;
}

// Documents that borrow consecutive runs of another document's items.
class Slices {
public:
    Slices(const km::KeymapConfig& whole, std::size_t itemsEach) {
        for (std::size_t first = 0; first < whole.items.size(); first += itemsEach) {
            auto slice = std::make_unique<km::KeymapConfig>();
            const auto begin = whole.items.begin() + static_cast<std::ptrdiff_t>(first);
            slice->items.assign(begin, begin + static_cast<std::ptrdiff_t>(std::min(
                                                   itemsEach, whole.items.size() - first)));
            pointers_.push_back(slice.get());
            slices_.push_back(std::move(slice));
        }
    }
    ~Slices() {
        for (auto& slice : slices_) {
            slice->items.clear();  // borrowed
        }
    }
    Slices(const Slices&) = delete;
    Slices& operator=(const Slices&) = delete;

    const std::vector<km::KeymapConfig*>& documents() const { return pointers_; }

private:
    std::vector<std::unique_ptr<km::KeymapConfig>> slices_;
    std::vector<km::KeymapConfig*> pointers_;
};

// Single keys and combinations, present in the documents and absent.
struct Probe {
    km::ConfigKey first;
    km::ConfigKey second;
};

// Not const: the public function takes the keys by pointer to non-const.
std::vector<Probe>& probes() {
    static std::vector<Probe> all = {
        {km::ConfigKey("keyboard", "Q", 81, 16), km::ConfigKey()},
        {km::ConfigKey("keyboard", "Ctrl", 17, 29), km::ConfigKey("keyboard", "1", 49, 2)},
        {km::ConfigKey("mouse", "left_mouse", 1, 1), km::ConfigKey()},
        {km::ConfigKey("joystick", "LB", km::kUnsetKeyCode, km::kUnsetKeyCode),
         km::ConfigKey("joystick", "A", km::kUnsetKeyCode, km::kUnsetKeyCode)},
        {km::ConfigKey("keyboard", "F12", 123, 88), km::ConfigKey()},
    };
    return all;
}

void checkCollisions(benchmark::State& state, const std::vector<km::KeymapConfig*>& docs) {
    std::vector<Probe>& keys = probes();
    std::size_t items = 0;
    for (const km::KeymapConfig* doc : docs) {
        items += doc->items.size();
    }
    for (auto _ : state) {
        // Every probe walks all the items, as an editor checks one key at a
        // time; probing each small document repeatedly would keep it cached.
        for (Probe& probe : keys) {
            for (km::KeymapConfig* doc : docs) {
                benchmark::DoNotOptimize(km::isConfigKeyMatch(doc, &probe.first, &probe.second));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items * keys.size()));
    state.counters["bar"] = 1.5;
}

void BM_IsConfigKeyMatch(benchmark::State& state) {
    checkCollisions(state, {&documentOf(static_cast<std::size_t>(state.range(0)))});
}

void BM_IsConfigKeyMatch_Baseline(benchmark::State& state) {
    const Slices slices(documentOf(static_cast<std::size_t>(state.range(0))), kUnitItems);
    checkCollisions(state, slices.documents());
}

}  // namespace

BENCHMARK(BM_CreateConfigKey)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CreateConfigKey_Baseline)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IsConfigKeyMatch)->Arg(200)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IsConfigKeyMatch_Baseline)->Arg(2000)->Arg(20000)->Unit(benchmark::kMicrosecond);
