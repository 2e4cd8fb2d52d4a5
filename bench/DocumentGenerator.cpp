//
// DocumentGenerator.cpp
//

#include "DocumentGenerator.h"

#include <charconv>
#include <string_view>
#include <vector>

#include <zuno-keymapmanager/keymapmanager.h>

namespace benchdocs {

namespace {

namespace km = zunokeymapmanager;

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

// Values away from the defaults for every member the library's tables
// declare, so that a new type or member is in the documents without a line
// here.
class Generator {
public:
    explicit Generator(std::uint64_t seed) : random_(seed) {}

    std::string document(std::size_t itemCount) {
        const std::vector<km::ItemDeclaration>& types = km::ItemDeclarations();
        w_.beginObject();
        w_.key("info");
        object(km::ConfigInfo::Members(), "");
        w_.key("keymaps");
        w_.beginArray();
        for (std::size_t i = 0; i < itemCount; ++i) {
            item(types[i % types.size()]);
        }
        w_.endArray();
        w_.key("param");
        object(km::ConfigParam::Members(), "");
        w_.endObject();
        return w_.take();
    }

private:
    void item(const km::ItemDeclaration& declaration) {
        w_.beginObject();
        for (const km::MemberTable* table : km::TablesOf(declaration.members())) {
            members(*table, km::NameOf(declaration.type));
        }
        w_.endObject();
    }

    void object(const km::MemberTable& table, std::string_view type) {
        w_.beginObject();
        members(table, type);
        w_.endObject();
    }

    void members(const km::MemberTable& table, std::string_view type) {
        for (const km::Member& member : table.members) {
            if (member.kind == km::MemberKind::Route) {
                routed(member.route->members());
                continue;
            }
            // Members written only now and then (second keys, a tap sequence)
            // are in about a third of the items.
            if (member.written != nullptr && !random_.chance(33)) {
                continue;
            }
            w_.key(*member.name);
            value(member, type);
        }
    }

    // What another class reads for an item: its settings, not its keys.
    void routed(const km::MemberTable& table) {
        for (const km::Member& member : table.members) {
            if (member.kind != km::MemberKind::Object || member.members != &km::KeyMembers) {
                w_.key(*member.name);
                value(member, "");
            }
        }
    }

    void value(const km::Member& member, std::string_view type) {
        switch (member.kind) {
            case km::MemberKind::Boolean:
                w_.value(random_.chance(50));
                break;
            case km::MemberKind::Integer:
                w_.value(integer(member));
                break;
            case km::MemberKind::Number:
                w_.value(number(member));
                break;
            case km::MemberKind::String:
                text(member, type);
                break;
            case km::MemberKind::Lines:
                script(random_.between(1, 16));
                break;
            case km::MemberKind::Object:
                if (member.members == &km::KeyMembers) {
                    keyObject(randomKey());
                } else {
                    object(member.members(), type);
                }
                break;
            case km::MemberKind::Route:
                break;
        }
    }

    int integer(const km::Member& member) {
        if (member.minimum == member.minimum && member.maximum == member.maximum) {
            return random_.between(static_cast<int>(member.minimum),
                                   static_cast<int>(member.maximum));
        }
        const std::string_view unit(member.unit);
        return unit == "ms"  ? random_.between(1, 500)
               : unit == "%" ? random_.between(10, 200)
                             : random_.between(2, 60);
    }

    double number(const km::Member& member) {
        if (member.minimum == member.minimum && member.maximum == member.maximum) {
            return member.minimum + (member.maximum - member.minimum) * random_.fraction();
        }
        return std::string_view(member.unit) == "screen" ? random_.fraction() / 4
                                                         : 0.5 + random_.fraction();
    }

    void text(const km::Member& member, std::string_view type) {
        if ((member.flags & km::kTypeName) != 0) {
            w_.value(type);
        } else if (member.names != nullptr) {
            w_.value(member.names[random_.next() % member.nameCount]);
        } else if (*member.pattern != '\0') {
            w_.value(random_.pick(kColours));
        } else if ((member.flags & km::kPointText) != 0) {
            std::string points;
            const int count = random_.between(2, 8);
            for (int i = 0; i < count; ++i) {
                points += (i == 0 ? "(" : ";(") + number(random_.fraction()) + "," +
                          number(random_.fraction()) + ")";
            }
            w_.value(std::string_view(points));
        } else {
            w_.value(random_.pick(kDescriptions));
        }
    }

    const Key& randomKey() { return random_.pick(kKeys); }

    void keyObject(const Key& key) {
        w_.beginObject();
        w_.member("device", key.device);
        w_.member("scan_code", key.scanCode);
        w_.member("text", key.text);
        w_.member("virtual_key", key.virtualKey);
        w_.endObject();
    }

    // Scripts in running text, the form documents carry.
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
