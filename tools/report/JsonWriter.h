//
// JsonWriter.h
//
// JSON text written straight into a string, for reports too large to build
// as a Poco tree first: a crowded keymap's check has thousands of findings,
// and building then stringifying their objects cost more than the check.
//

#ifndef ZUNO_KEYMAP_TOOL_JSONWRITER_H
#define ZUNO_KEYMAP_TOOL_JSONWRITER_H

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace zunokeymap {

class JsonWriter
/// Writes one JSON value into a string: compact, or with each member and
/// element on a line of its own, indented by two spaces a level. The caller
/// keeps the nesting right; the writer only places commas and blanks.
{
public:
    explicit JsonWriter(std::string& out, bool indented = false);

    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();

    /// The name of the next member of the open object.
    JsonWriter& key(std::string_view name);

    JsonWriter& value(std::string_view text);
    JsonWriter& value(const char* text);
    JsonWriter& value(const std::string& text);
    JsonWriter& value(bool flag);
    /// A finite number, with up to 15 significant digits.
    JsonWriter& value(double number);

    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer> &&
                                                            !std::is_same_v<Integer, bool>>>
    JsonWriter& value(Integer number) {
        return integer(static_cast<long long>(number));
    }

private:
    JsonWriter& integer(long long number);
    void place();
    void open(char bracket);
    void close(char bracket);
    void newline();

    std::string& _out;
    bool _indented;
    bool _afterKey = false;
    std::vector<bool> _empty;  // one per open container: nothing in it yet
};

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_JSONWRITER_H
