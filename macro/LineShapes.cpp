//
// LineShapes.cpp
//

#include "macro/LineShapes.h"

#include <cstddef>

namespace zunokeymapmanager {
namespace macro {

namespace {

constexpr bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool isName(char c) {
    return !isBlank(c);
}
constexpr bool isLineBreak(char c) {
    return c == '\n' || c == '\r';
}

/// A read position in a line that only moves forward.
class Cursor {
public:
    Cursor(std::string_view line, std::size_t at) : line_(line), at_(at) {}

    bool atEnd() const { return at_ == line_.size(); }
    std::size_t at() const { return at_; }

    /// Steps over the longest run of characters in the class; true when the
    /// run is not empty.
    template <typename Class>
    bool skipRun(Class inClass) {
        const std::size_t from = at_;
        while (at_ < line_.size() && inClass(line_[at_])) {
            ++at_;
        }
        return at_ != from;
    }

    /// Steps over `text` when the line continues with it.
    bool skip(std::string_view text) {
        if (text.empty() || line_.substr(at_, text.size()) != text) {
            return false;
        }
        at_ += text.size();
        return true;
    }

    bool skip(char c) {
        if (at_ < line_.size() && line_[at_] == c) {
            ++at_;
            return true;
        }
        return false;
    }

private:
    std::string_view line_;
    std::size_t at_;
};

bool startsWith(std::string_view line, std::string_view keyword) {
    return line.substr(0, keyword.size()) == keyword;
}

// "digits,digits" or "mouse".
bool skipPoint(Cursor& c) {
    if (c.skip("mouse")) {
        return true;
    }
    return c.skipRun(isDigit) && c.skip(',') && c.skipRun(isDigit);
}

// Digits, optionally "." and more digits: every way of splitting such a run
// between the three parts of the number ends at the same place.
bool skipDecimal(Cursor& c) {
    if (!c.skipRun(isDigit)) {
        return false;
    }
    if (c.skip('.')) {
        c.skipRun(isDigit);
    }
    return true;
}

// "(number,number)" or "mouse".
bool skipRelativePoint(Cursor& c) {
    if (c.skip("mouse")) {
        return true;
    }
    return c.skip('(') && skipDecimal(c) && c.skip(',') && skipDecimal(c) && c.skip(')');
}

bool acceptsPoints(const LineShape& s, std::string_view line) {
    if (!startsWith(line, s.keyword)) {
        return false;
    }
    Cursor c(line, s.keyword.size());
    do {
        // A point starts with a digit or "m", never with a blank, so the
        // blanks before it are exactly the longest run.
        if (!c.skipRun(isBlank) || !skipPoint(c)) {
            return false;
        }
    } while (!c.atEnd());
    return true;
}

bool acceptsRelativePoints(const LineShape& s, std::string_view line) {
    if (!startsWith(line, s.keyword)) {
        return false;
    }
    Cursor c(line, s.keyword.size());
    while (skipRelativePoint(c)) {
        if (c.atEnd()) {
            return true;
        }
        if (!c.skip(';')) {
            return false;
        }
    }
    return false;
}

bool acceptsValues(const LineShape& s, std::string_view line) {
    if (!startsWith(line, s.keyword)) {
        return false;
    }
    Cursor c(line, s.keyword.size());
    do {
        if (s.gap && !c.skipRun(isBlank)) {
            return false;
        }
        // Adjacent runs of digits read the same as one longer run.
        if (!c.skipRun(isDigit) && !c.skip(s.word)) {
            return false;
        }
    } while (!c.atEnd());
    return true;
}

bool acceptsOptionalNumber(const LineShape& s, std::string_view line) {
    if (!startsWith(line, s.keyword)) {
        return false;
    }
    Cursor c(line, s.keyword.size());
    c.skipRun(isBlank);
    c.skipRun(isDigit);
    return c.atEnd();
}

// The quoted text runs to the last double quote before the first line break;
// the line is accepted only when that quote is its last character.
bool acceptsQuoted(const LineShape& s, std::string_view line) {
    if (!startsWith(line, s.keyword)) {
        return false;
    }
    Cursor c(line, s.keyword.size());
    if (!c.skipRun(isBlank) || !c.skip('"')) {
        return false;
    }
    const std::size_t open = c.at() - 1;
    if (line.size() - 1 == open || line.back() != '"') {
        return false;
    }
    for (std::size_t i = open + 1; i < line.size(); ++i) {
        if (isLineBreak(line[i])) {
            return false;
        }
    }
    return true;
}

bool acceptsRest(const LineShape& s, std::string_view line) {
    if (!startsWith(line, s.keyword)) {
        return false;
    }
    for (std::size_t i = s.keyword.size(); i < line.size(); ++i) {
        if (isLineBreak(line[i])) {
            return false;
        }
    }
    return true;
}

// The value of the leftmost occurrence of keyword [blanks] value, whether or
// not it ends the line; nullopt when there is none. Every occurrence of the
// keyword is examined at most once, and the blanks after different
// occurrences never overlap (the keyword holds no blank), so the search is
// linear.
template <typename Class>
std::optional<std::string_view> firstOccurrence(const LineShape& s, std::string_view line,
                                                Class valueClass) {
    if (s.keyword.empty()) {
        return std::nullopt;
    }
    for (std::size_t from = line.find(s.keyword); from != std::string_view::npos;
         from = line.find(s.keyword, from + 1)) {
        Cursor c(line, from + s.keyword.size());
        if (s.gap && !c.skipRun(isBlank)) {
            continue;
        }
        // Blanks are not values, so the longest run of blanks is the only
        // one that can be followed by a value.
        const std::size_t valueStart = c.at();
        if (c.skipRun(valueClass)) {
            return line.substr(valueStart, c.at() - valueStart);
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string_view> findValue(const LineShape& shape, std::string_view line) {
    std::optional<std::string_view> value;
    if (shape.shape == Shape::FindNumber) {
        value = firstOccurrence(shape, line, isDigit);
    } else if (shape.shape == Shape::FindName) {
        value = firstOccurrence(shape, line, isName);
    }
    if (value && value->data() + value->size() != line.data() + line.size()) {
        return std::nullopt;
    }
    return value;
}

bool accepts(const LineShape& shape, std::string_view line) {
    switch (shape.shape) {
        case Shape::Never:
            return false;
        case Shape::Word:
            return line == shape.keyword;
        case Shape::Points:
            return acceptsPoints(shape, line);
        case Shape::RelativePoints:
            return acceptsRelativePoints(shape, line);
        case Shape::Values:
            return acceptsValues(shape, line);
        case Shape::OptionalNumber:
            return acceptsOptionalNumber(shape, line);
        case Shape::Quoted:
            return acceptsQuoted(shape, line);
        case Shape::Rest:
            return acceptsRest(shape, line);
        case Shape::FindNumber:
        case Shape::FindName:
            return findValue(shape, line).has_value();
    }
    return false;
}

}  // namespace macro
}  // namespace zunokeymapmanager
