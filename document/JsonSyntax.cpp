//
// JsonSyntax.cpp
//

#include "document/JsonSyntax.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "zuno-keymapmanager/model/NumberText.h"

namespace zunokeymapmanager {
namespace document {

namespace {

class Scanner {
public:
    Scanner(const std::string& text, std::size_t maxDepth, bool trackMembers,
            std::unordered_map<std::string_view, TextPosition>* wanted = nullptr)
        : s_(text),
          maxDepth_(maxDepth),
          track_(trackMembers || wanted != nullptr),
          members_(trackMembers),
          wanted_(wanted) {}

    SyntaxReport run() {
        if (s_.compare(0, 3, "\xEF\xBB\xBF") == 0) {
            return fail("byte-order mark at the start: save as UTF-8 without BOM");
        }
        skipSpace();
        if (atEnd()) {
            return fail("the document is empty");
        }
        report_.topLevel = s_[i_];
        enum class State { Value, AfterValue, MemberName };
        State state = State::Value;
        for (;;) {
            skipSpace();
            if (failed_) {
                return report_;
            }
            switch (state) {
                case State::Value: {
                    if (atEnd()) {
                        return fail("unexpected end of text, a value is expected");
                    }
                    bool wantedHere = false;
                    if (wanted_ != nullptr && prunedAt_ == 0) {
                        const auto found = wanted_->find(cur_);
                        if (found != wanted_->end()) {
                            found->second = {line_, static_cast<int>(i_ - lineStart_) + 1};
                            wantedHere = true;
                        }
                    }
                    if (s_[i_] == '{' || s_[i_] == '[') {
                        const char open = s_[i_];
                        stack_.push_back(open);
                        if (track_) {
                            frames_.emplace_back();
                            lens_.push_back(cur_.size());
                        }
                        // Every path a wanted one lies under is wanted too (the
                        // document's own, "", only when named): below any other
                        // container that is not, nothing is, and only the syntax
                        // is left to follow.
                        if (wanted_ != nullptr && !members_ && prunedAt_ == 0 && !wantedHere &&
                            stack_.size() > 1) {
                            prunedAt_ = stack_.size();
                        }
                        if (stack_.size() > maxDepth_) {
                            return fail("arrays and objects are nested too deeply");
                        }
                        ++i_;
                        skipSpace();
                        const char close = open == '{' ? '}' : ']';
                        if (!atEnd() && s_[i_] == close) {
                            ++i_;
                            stack_.pop_back();
                            popFrame();
                            state = State::AfterValue;
                        } else {
                            if (track_ && open == '[') {
                                element();
                            }
                            state = open == '{' ? State::MemberName : State::Value;
                        }
                        break;
                    }
                    scalar();
                    state = State::AfterValue;
                    break;
                }
                case State::MemberName:
                    if (atEnd() || s_[i_] != '"') {
                        return fail(atEnd() ? "unexpected end of text, a member name is expected"
                                            : "a member name in double quotes is expected");
                    }
                    {
                        const std::size_t nameStart = i_ + 1;
                        string();
                        if (track_ && !failed_) {
                            member(std::string_view(s_).substr(nameStart, i_ - 1 - nameStart));
                        }
                    }
                    skipSpace();
                    if (failed_) {
                        return report_;
                    }
                    if (atEnd() || s_[i_] != ':') {
                        return fail("':' is expected after a member name");
                    }
                    ++i_;
                    state = State::Value;
                    break;
                case State::AfterValue: {
                    if (stack_.empty()) {
                        return atEnd() ? report_
                                       : fail("unexpected text after the end of the document");
                    }
                    const bool inObject = stack_.back() == '{';
                    if (atEnd()) {
                        return fail(inObject ? "unexpected end of text, ',' or '}' is expected"
                                             : "unexpected end of text, ',' or ']' is expected");
                    }
                    if (s_[i_] == ',') {
                        ++i_;
                        if (track_ && !inObject) {
                            ++frames_.back().index;
                            element();
                        }
                        state = inObject ? State::MemberName : State::Value;
                    } else if (s_[i_] == (inObject ? '}' : ']')) {
                        ++i_;
                        stack_.pop_back();
                        popFrame();
                    } else {
                        return fail(inObject ? "',' or '}' is expected after a member value"
                                             : "',' or ']' is expected after an array element");
                    }
                    break;
                }
            }
        }
    }

private:
    // Where the scan is, for naming a member by its path: an object's member
    // names so far and the current one, or an array's element index.
    // Names are views into the text. Most objects have a few dozen members,
    // and comparing views beats hashing them; past that, a set of the names
    // keeps an object of any size linear.
    struct Frame {
        static constexpr std::size_t kListed = 32;

        // False when `name` was seen before in this object.
        bool firstTime(std::string_view name) {
            if (names.size() < kListed) {
                if (std::find(names.begin(), names.end(), name) != names.end()) {
                    return false;
                }
                names.push_back(name);
                if (names.size() == kListed) {
                    seen.insert(names.begin(), names.end());
                }
                return true;
            }
            return seen.insert(name).second;
        }

        std::vector<std::string_view> names;
        std::unordered_set<std::string_view> seen;
        std::size_t index = 0;
    };

    // The path of the value being read, kept as it goes: cur_ holds it, and
    // lens_ where each open container's own path ends in it.
    void popFrame() {
        if (prunedAt_ > stack_.size()) {
            prunedAt_ = 0;
        }
        if (track_) {
            frames_.pop_back();
            cur_.resize(lens_.back());
            lens_.pop_back();
        }
    }

    void element() {
        if (prunedAt_ != 0) {
            return;
        }
        cur_.resize(lens_.back());
        cur_ += '[';
        cur_ += std::to_string(frames_.back().index);
        cur_ += ']';
    }

    void member(std::string_view name) {
        if (prunedAt_ != 0) {
            return;
        }
        cur_.resize(lens_.back());
        if (!cur_.empty()) {
            cur_ += '.';
        }
        cur_ += name;
        if (members_ && !frames_.back().firstTime(name)) {
            report_.duplicates.push_back(cur_);
        }
    }

    bool atEnd() const { return i_ >= s_.size(); }
    unsigned char at(std::size_t k) const {
        return k < s_.size() ? static_cast<unsigned char>(s_[k]) : 0;
    }

    SyntaxReport fail(const char* reason) {
        if (!failed_) {
            failed_ = true;
            report_.error = true;
            report_.line = line_;
            report_.column = static_cast<int>(i_ - lineStart_) + 1;
            report_.reason = reason;
        }
        return report_;
    }

    void skipSpace() {
        while (!failed_ && !atEnd()) {
            const char c = s_[i_];
            if (c == '\n') {
                ++line_;
                lineStart_ = i_ + 1;
            } else if (c != ' ' && c != '\t' && c != '\r') {
                return;
            }
            ++i_;
        }
    }

    void scalar() {
        const char c = s_[i_];
        if (c == '"') {
            string();
        } else if (c == '-' || (c >= '0' && c <= '9')) {
            number();
        } else if (c == 't') {
            literal("true");
        } else if (c == 'f') {
            literal("false");
        } else if (c == 'n') {
            literal("null");
        } else {
            fail("unexpected character, a value is expected");
        }
    }

    void literal(const char* word) {
        for (const char* w = word; *w != '\0'; ++w, ++i_) {
            if (atEnd() || s_[i_] != *w) {
                fail("invalid literal (true, false or null is expected)");
                return;
            }
        }
    }

    bool digits() {
        const std::size_t start = i_;
        while (!atEnd() && s_[i_] >= '0' && s_[i_] <= '9') {
            ++i_;
        }
        return i_ > start;
    }

    void number() {
        const std::size_t start = i_;
        const int startLine = line_;
        numberSyntax();
        // The parser also refuses numbers beyond the range of a double, which
        // takes an exponent or hundreds of digits: others need no conversion.
        const std::string_view written = std::string_view(s_).substr(start, i_ - start);
        const bool large = written.size() > 300 || written.find_first_of("eE") != written.npos;
        double ignored = 0;
        const char* first = s_.data() + start;
        if (!failed_ && large && ReadNumber(first, s_.data() + i_, ignored) == first) {
            i_ = start;
            line_ = startLine;
            fail("the number is out of range");
        }
    }

    void numberSyntax() {
        if (s_[i_] == '-') {
            ++i_;
        }
        if (!atEnd() && s_[i_] == '0') {
            ++i_;
        } else if (!digits()) {
            fail("a digit is expected");
            return;
        }
        if (!atEnd() && s_[i_] == '.') {
            ++i_;
            if (!digits()) {
                fail("a digit is expected after the decimal point");
                return;
            }
        }
        if (!atEnd() && (s_[i_] == 'e' || s_[i_] == 'E')) {
            ++i_;
            if (!atEnd() && (s_[i_] == '+' || s_[i_] == '-')) {
                ++i_;
            }
            if (!digits()) {
                fail("a digit is expected in the exponent");
            }
        }
    }

    bool hex4(unsigned& value) {
        value = 0;
        for (int k = 0; k < 4; ++k, ++i_) {
            const unsigned char c = at(i_);
            unsigned digit;
            if (c >= '0' && c <= '9') {
                digit = c - '0';
            } else if (c >= 'a' && c <= 'f') {
                digit = c - 'a' + 10;
            } else if (c >= 'A' && c <= 'F') {
                digit = c - 'A' + 10;
            } else {
                fail("four hexadecimal digits are expected after \\u");
                return false;
            }
            value = value * 16 + digit;
        }
        return true;
    }

    void escape() {
        ++i_;  // the backslash
        const unsigned char c = at(i_);
        if (c == '"' || c == '\\' || c == '/' || c == 'b' || c == 'f' || c == 'n' || c == 'r' ||
            c == 't') {
            ++i_;
            return;
        }
        if (c != 'u') {
            fail("invalid escape sequence");
            return;
        }
        ++i_;
        unsigned unit = 0;
        if (!hex4(unit)) {
            return;
        }
        if (unit >= 0xDC00 && unit <= 0xDFFF) {
            fail("a low surrogate without a high surrogate before it");
        } else if (unit >= 0xD800 && unit <= 0xDBFF) {
            if (at(i_) != '\\' || at(i_ + 1) != 'u') {
                fail("a high surrogate must be followed by a \\u low surrogate");
                return;
            }
            i_ += 2;
            if (hex4(unit) && (unit < 0xDC00 || unit > 0xDFFF)) {
                fail("a high surrogate must be followed by a \\u low surrogate");
            }
        }
    }

    void utf8() {
        const unsigned char lead = at(i_);
        int more = 0;
        if (lead >= 0xC2 && lead <= 0xDF) {
            more = 1;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            more = 2;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            more = 3;
        } else {
            fail("invalid UTF-8 in string");
            return;
        }
        ++i_;
        for (int k = 0; k < more; ++k, ++i_) {
            const unsigned char c = at(i_);
            if (c < 0x80 || c > 0xBF) {
                fail("invalid UTF-8 in string");
                return;
            }
        }
    }

    void string() {
        ++i_;  // the opening quote
        while (!failed_) {
            if (atEnd()) {
                fail("unterminated string");
                return;
            }
            const unsigned char c = at(i_);
            if (c == '"') {
                ++i_;
                return;
            }
            if (c < 0x20) {
                fail("unescaped control character in string");
            } else if (c == '\\') {
                escape();
            } else if (c >= 0x80) {
                utf8();
            } else {
                ++i_;
            }
        }
    }

    const std::string& s_;
    const std::size_t maxDepth_;
    std::size_t i_ = 0;
    int line_ = 1;
    std::size_t lineStart_ = 0;
    std::vector<char> stack_;
    const bool track_;
    const bool members_;  // duplicate members are reported
    std::unordered_map<std::string_view, TextPosition>* wanted_;
    // Locating: the depth of the container below which nothing is wanted,
    // 0 for none.
    std::size_t prunedAt_ = 0;
    std::vector<Frame> frames_;
    std::string cur_;
    std::vector<std::size_t> lens_;
    bool failed_ = false;
    SyntaxReport report_;
};

}  // namespace

SyntaxReport ScanJson(const std::string& text, std::size_t maxDepth) {
    return Scanner(text, maxDepth, false).run();
}

std::vector<std::string> DuplicateMembers(const std::string& text, std::size_t maxDepth) {
    return Scanner(text, maxDepth, true).run().duplicates;
}

std::vector<TextPosition> LocatePaths(const std::string& text,
                                      const std::vector<std::string_view>& paths,
                                      std::size_t maxDepth) {
    // Each path and every path it lies under: a member that is missing is
    // found at the object that lacks it. The keys are views, so a report of
    // many thousands of findings copies none of its paths.
    std::unordered_map<std::string_view, TextPosition> wanted;
    wanted.reserve(paths.size() + 16);
    for (const std::string_view whole : paths) {
        for (std::size_t end = whole.size();; --end) {
            // A prefix met before came with all of its own prefixes.
            if ((end == whole.size() || whole[end] == '.' || whole[end] == '[') &&
                !wanted.try_emplace(whole.substr(0, end)).second) {
                break;
            }
            if (end == 0) {
                break;
            }
        }
    }
    Scanner(text, maxDepth, false, &wanted).run();
    std::vector<TextPosition> positions;
    positions.reserve(paths.size());
    for (const std::string_view whole : paths) {
        TextPosition at;
        for (std::size_t end = whole.size(); at.line == 0;) {
            const auto found = wanted.find(whole.substr(0, end));
            if (found != wanted.end()) {
                at = found->second;
            }
            if (end == 0) {
                break;
            }
            const std::size_t cut = whole.find_last_of(".[", end - 1);
            end = cut == std::string::npos ? 0 : cut;
        }
        positions.push_back(at);
    }
    return positions;
}

}  // namespace document
}  // namespace zunokeymapmanager
