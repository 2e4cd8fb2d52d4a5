//
// MacroTouches.cpp
//

#include "zuno-keymapmanager/macro/MacroTouches.h"

#include <cctype>
#include <climits>
#include <string_view>

#include "macro/MacroCommands.h"

namespace zunokeymapmanager {

namespace {

using macro::MacroCommand;

struct Touching {
    MacroCommand command;
    std::string_view keyword;
};

constexpr Touching kTouching[] = {
    {MacroCommand::Click, "click"},     {MacroCommand::Press, "press"},
    {MacroCommand::Release, "release"}, {MacroCommand::Switch, "switch"},
    {MacroCommand::Curve, "curve"},
};

bool isBlank(char ch) {
    return std::isspace(static_cast<unsigned char>(ch)) != 0;
}

// Digits as an int, saturating: the line has been accepted, so only digits
// stand between `p` and the stop character.
std::int32_t readNumber(const char*& p, const char* end) {
    long long value = 0;
    while (p < end && *p >= '0' && *p <= '9') {
        value = value * 10 + (*p - '0');
        if (value > INT_MAX) {
            value = INT_MAX;
        }
        ++p;
    }
    return static_cast<std::int32_t>(value);
}

// The points of an accepted line: blanks, then "X,Y" or "mouse", repeated.
std::vector<Point> pointsOf(std::string_view line, std::size_t keywordLength) {
    std::vector<Point> points;
    const char* p = line.data() + keywordLength;
    const char* end = line.data() + line.size();
    while (p < end) {
        if (isBlank(*p)) {
            ++p;
        } else if (*p >= '0' && *p <= '9') {
            const std::int32_t x = readNumber(p, end);
            ++p;  // the comma
            points.emplace_back(x, readNumber(p, end));
        } else {
            p += 5;  // "mouse"
        }
    }
    return points;
}

}  // namespace

std::vector<MacroTouch> MacroTouchesOf(const std::vector<std::string>& script) {
    std::vector<MacroTouch> out;
    for (std::size_t i = 0; i < script.size(); ++i) {
        const std::string& line = script[i];
        for (const Touching& touching : kTouching) {
            if (line.compare(0, touching.keyword.size(), touching.keyword) != 0 ||
                !macro::IsEditingLine(touching.command, line)) {
                continue;
            }
            MacroTouch touch;
            touch.line = static_cast<int>(i + 1);
            touch.command = std::string(touching.keyword);
            touch.points = pointsOf(line, touching.keyword.size());
            out.push_back(std::move(touch));
            break;
        }
    }
    return out;
}

bool IsOnMacroScreen(const Point& point) {
    return point.x >= 0 && point.x < kMacroScreenWidth && point.y >= 0 &&
           point.y < kMacroScreenHeight;
}

}  // namespace zunokeymapmanager
