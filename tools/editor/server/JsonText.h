//
// JsonText.h
//
// Compact JSON text of a Poco JSON tree, byte for byte what Poco's
// Stringifier writes with JSON_WRAP_STRINGS and no indentation, several times
// faster: a check report of a large document is most of an edit's round trip
// when written by the stringifier.
//

#ifndef ZUNO_KEYMAP_EDITOR_JSONTEXT_H
#define ZUNO_KEYMAP_EDITOR_JSONTEXT_H

#include <string>

#include <Poco/Dynamic/Var.h>

namespace zunokeymap {
namespace editor {

/// Appends the JSON text of `value` to `out`.
void AppendJson(const Poco::Dynamic::Var& value, std::string& out);

inline std::string JsonText(const Poco::Dynamic::Var& value) {
    std::string out;
    AppendJson(value, out);
    return out;
}

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_JSONTEXT_H
