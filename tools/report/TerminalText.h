//
// TerminalText.h
//
// Text from a document on its way to a terminal or a JSON string. A keymap
// may come from anyone: its key names, types and colours can hold escape
// sequences that retitle a window, clear it or hide what follows, and its
// file name need not be UTF-8.
//

#ifndef ZUNO_KEYMAP_TOOL_TERMINALTEXT_H
#define ZUNO_KEYMAP_TOOL_TERMINALTEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace zunokeymap {

/// The length of the well-formed UTF-8 sequence at `at` in `text` (1 for
/// ASCII), or 0 when the bytes there are not one.
std::size_t Utf8SequenceAt(std::string_view text, std::size_t at);

/// `text` safe to print: control characters (C0 but line ends, DEL, C1) and
/// bytes that are not UTF-8 are written as `\xNN` (`\u0085` for a C1
/// character), so the terminal shows them instead of obeying them.
std::string ForTerminal(std::string_view text);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_TERMINALTEXT_H
