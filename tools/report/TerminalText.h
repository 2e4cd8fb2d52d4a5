//
// TerminalText.h
//
// Text from a document on its way to a terminal, a line-based report or a
// JSON string. A keymap may come from anyone: its key names, types and
// colours can hold escape sequences that retitle a window, clear it or hide
// what follows, or a line feed that forges a report line of its own, and its
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

/// `text` safe to print as one field of one line, to a terminal or into a
/// line-based format (compiler-style findings, a diff): every control
/// character (C0, the line feed and tab included, DEL, C1) and every byte
/// that is not UTF-8 is written as `\xNN` (`\u0085` for a C1 character),
/// so the terminal shows it instead of obeying it and no value can start a
/// line of its own. Whoever prints text from a document or a file name puts
/// each piece through this and adds the line ends itself.
std::string ForTerminal(std::string_view text);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_TERMINALTEXT_H
