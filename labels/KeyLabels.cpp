//
// KeyLabels.cpp
//
// Label keys ("key.esc", "btn.left") and the captions made from them. The row
// tables below are the source data; they are folded once, on first use, into
// arrays indexed by code, so a lookup is a bounds check and an index.
//

#include "labels/KeyLabels.h"
#include "labels/KeyLabelRows.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

namespace zunokeymapmanager {
namespace labels {

namespace {

constexpr std::string_view kKeyboard = "keyboard";
constexpr std::string_view kMouse = "mouse";
constexpr std::string_view kUnknownKey = "key.unknown";
constexpr std::string_view kUnknownButton = "btn.unknown";

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
