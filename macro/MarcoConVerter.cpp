//
// MarcoConVerter.cpp
//

#include "zuno-keymapmanager/macro/MarcoConVerter.h"

#include <cstddef>
#include <string_view>

#include "labels/KeyLabels.h"

namespace zunokeymapmanager {

namespace {

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t skipDigits(std::string_view text, std::size_t at) {
    while (at < text.size() && isDigit(text[at])) {
        ++at;
    }
    return at;
}

/// The first occurrence of a character at or after a position, for positions
/// that never decrease: each byte of the text is looked at once in all.
class NextOf {
public:
    NextOf(std::string_view text, char c) : text_(text), c_(c) {}

    std::size_t from(std::size_t pos) {
        if (!searched_ || (found_ != std::string_view::npos && found_ < pos)) {
            found_ = text_.find(c_, pos);
            searched_ = true;
        }
        return found_;
    }

private:
    std::string_view text_;
    char c_;
    bool searched_ = false;
    std::size_t found_ = std::string_view::npos;
};

bool isKeyDevice(const std::string& device) {
    return device == "keyboard" || device == "mouse";
}

}  // namespace

void MarcoConVerter::initRunningText(const std::string& text, Rect rect) {
    running_text_ = text;
    rect_ = rect;
}

void MarcoConVerter::initEditingText(const std::string& text, Rect rect) {
    editing_text_ = text;
    rect_ = rect;
}

bool MarcoConVerter::converterFromEditingText(const std::string& text) {
    editing_text_ = text;
    return true;
}

// The first "a,b" is the first run of digits followed by a comma and another
// run of digits; it counts only when the second run ends the text.
std::string MarcoConVerter::converterToRunningText() {
    const std::string_view text = editing_text_;
    std::string out = "press_rel:";
    std::size_t at = 0;
    while (at < text.size()) {
        if (!isDigit(text[at])) {
            ++at;
            continue;
        }
        const std::size_t firstEnd = skipDigits(text, at);
        if (firstEnd + 1 < text.size() && text[firstEnd] == ',' && isDigit(text[firstEnd + 1])) {
            const std::size_t secondEnd = skipDigits(text, firstEnd + 1);
            if (secondEnd == text.size()) {
                out.append(text.substr(at, firstEnd - at)).append(";");
                out.append(text.substr(firstEnd + 1)).append(";");
            }
            return out;
        }
        at = firstEnd;
    }
    return out;
}

// The first "(a,b)" opens at the first "(" that is followed by a non-empty
// text without commas, a comma, and a non-empty text without ")" closed by
// ")". It counts only when that ")" ends the text.
std::string MarcoConVerter::converterToEditingText() {
    const std::string_view text = running_text_;
    std::string out = "press";
    NextOf comma(text, ',');
    NextOf close(text, ')');
    for (std::size_t open = text.find('('); open != std::string_view::npos;
         open = text.find('(', open + 1)) {
        const std::size_t c = comma.from(open + 1);
        if (c == std::string_view::npos) {
            break;
        }
        if (c == open + 1) {
            continue;
        }
        const std::size_t d = close.from(c + 1);
        if (d == std::string_view::npos) {
            break;
        }
        if (d == c + 1) {
            continue;
        }
        if (d + 1 == text.size()) {
            out.append(" ").append(text.substr(open + 1, c - open - 1));
            out.append(" ").append(text.substr(c + 1, d - c - 1));
        }
        return out;
    }
    return out;
}

std::string MarcoConVerter::scancodeToText(const std::string& device, int code) {
    return isKeyDevice(device) ? labels::Caption(device, code) : std::string();
}

int MarcoConVerter::textToScancode(const std::string& device, const std::string& text) {
    return isKeyDevice(device) ? labels::CodeOf(device, text) : -1;
}

}  // namespace zunokeymapmanager
