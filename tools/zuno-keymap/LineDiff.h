//
// LineDiff.h
//
// A line diff of two texts, written as a unified diff.
//

#ifndef ZUNO_KEYMAP_TOOL_LINEDIFF_H
#define ZUNO_KEYMAP_TOOL_LINEDIFF_H

#include <string>

namespace zunokeymap {

/// The unified diff (three lines of context) that turns `before` into
/// `after`, with `beforeName` and `afterName` in its header; empty when the
/// texts are equal. The edit is a shortest one (Myers) unless the texts
/// differ in more than a few thousand lines, where the differing middle is
/// shown as removed and added whole, so the time and memory stay bounded.
/// The names and each line's text are made safe to print (ForTerminal).
std::string UnifiedDiff(const std::string& before, const std::string& after,
                        const std::string& beforeName, const std::string& afterName);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_LINEDIFF_H
