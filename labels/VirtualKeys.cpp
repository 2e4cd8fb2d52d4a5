//
// VirtualKeys.cpp
//

#include "labels/VirtualKeys.h"

namespace zunokeymapmanager {
namespace labels {

namespace {

struct CodeToVirtualKey {
    int code;
    int virtualKey;
};

// Keyboard scan codes (set 1, extended keys + 256) and the Windows virtual-key
// codes that go with them on a US layout, as the host records them: letters
// and digits are their upper-case ASCII codes, Ctrl 0x11, Shift 0x10, Alt
// 0x12 (left and right alike), the arrows 0x25 to 0x28.
constexpr CodeToVirtualKey kKeyboard[] = {
    {1, 0x1B},   {2, 0x31},   {3, 0x32},   {4, 0x33},   {5, 0x34},   {6, 0x35},   {7, 0x36},
    {8, 0x37},   {9, 0x38},   {10, 0x39},  {11, 0x30},  {12, 0xBD},  {13, 0xBB},  {14, 0x08},
    {15, 0x09},  {16, 0x51},  {17, 0x57},  {18, 0x45},  {19, 0x52},  {20, 0x54},  {21, 0x59},
    {22, 0x55},  {23, 0x49},  {24, 0x4F},  {25, 0x50},  {26, 0xDB},  {27, 0xDD},  {28, 0x0D},
    {29, 0x11},  {30, 0x41},  {31, 0x53},  {32, 0x44},  {33, 0x46},  {34, 0x47},  {35, 0x48},
    {36, 0x4A},  {37, 0x4B},  {38, 0x4C},  {39, 0xBA},  {40, 0xDE},  {41, 0xC0},  {42, 0x10},
    {43, 0xDC},  {44, 0x5A},  {45, 0x58},  {46, 0x43},  {47, 0x56},  {48, 0x42},  {49, 0x4E},
    {50, 0x4D},  {51, 0xBC},  {52, 0xBE},  {53, 0xBF},  {54, 0x10},  {55, 0x6A},  {56, 0x12},
    {57, 0x20},  {58, 0x14},  {59, 0x70},  {60, 0x71},  {61, 0x72},  {62, 0x73},  {63, 0x74},
    {64, 0x75},  {65, 0x76},  {66, 0x77},  {67, 0x78},  {68, 0x79},  {69, 0x90},  {70, 0x91},
    {71, 0x67},  {72, 0x68},  {73, 0x69},  {74, 0x6D},  {75, 0x64},  {76, 0x65},  {77, 0x66},
    {78, 0x6B},  {79, 0x61},  {80, 0x62},  {81, 0x63},  {82, 0x60},  {83, 0x6E},  {87, 0x7A},
    {88, 0x7B},  {284, 0x0D}, {285, 0x11}, {309, 0x6F}, {312, 0x12}, {327, 0x24}, {328, 0x26},
    {329, 0x21}, {331, 0x25}, {333, 0x27}, {335, 0x23}, {336, 0x28}, {337, 0x22}, {338, 0x2D},
    {339, 0x2E}, {347, 0x5B}, {348, 0x5C}, {349, 0x5D},
};

// Mouse buttons (single-bit codes) and their virtual keys: left 1, right 2,
// middle 4, back and forward the two extra buttons 5 and 6. The wheel's two
// directions have no virtual key; the host records -1 for them.
constexpr CodeToVirtualKey kMouse[] = {{1, 0x01},  {2, 0x02}, {4, 0x04}, {8, 0x05},
                                       {16, 0x06}, {548, -1}, {549, -1}};

template <std::size_t N>
std::optional<int> find(const CodeToVirtualKey (&table)[N], int code) {
    for (const CodeToVirtualKey& row : table) {
        if (row.code == code) {
            return row.virtualKey;
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<int> VirtualKeyOf(std::string_view device, int code) {
    if (device == "keyboard") {
        return find(kKeyboard, code);
    }
    if (device == "mouse") {
        return find(kMouse, code);
    }
    return std::nullopt;
}

}  // namespace labels
}  // namespace zunokeymapmanager
