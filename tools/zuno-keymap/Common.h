//
// Common.h
//
// What the zuno-keymap subcommands share: exit codes, loading and saving
// documents and describing keys and items.
//

#ifndef ZUNO_KEYMAP_TOOL_COMMON_H
#define ZUNO_KEYMAP_TOOL_COMMON_H

#include <memory>
#include <string>
#include <vector>

#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {

namespace km = zunokeymapmanager;

/// Exit statuses: clean, problems found, usage or I/O error.
enum Exit : int { kClean = 0, kProblems = 1, kUsage = 2 };

/// Reads all of standard input, or all of the file `path` ("-" for standard
/// input). False when it cannot be read.
bool ReadInput(const std::string& path, std::string& text);

/// A loaded document with what the load said about it.
struct Loaded {
    std::string source;  ///< as the user named it ("-" shown as "<stdin>")
    std::unique_ptr<km::KeymapConfig> doc;
    km::LoadDiagnostic diagnostic;
    /// The text as given, when it came from standard input or a built-in.
    std::string text;
    /// True when the input could not be read at all (exit status 2).
    bool unreadable = false;
    /// Loaded as a gamepad document.
    bool joystick = false;
};

/// A document compiled into the library, under a short name of the tool's.
struct BuiltIn {
    const char* name;         ///< "blank", ...
    const char* libraryName;  ///< the name the library knows it by
    bool joystick;            ///< a gamepad document
    const char* summary;
};

/// The built-in documents; each also answers to its library name.
const std::vector<BuiltIn>& BuiltIns();

/// The built-ins, one "  NAME  summary" line each, for help texts.
std::string BuiltInsHelp();

/// The built-in a new document starts from: "blank", or "blank-gamepad" for
/// a gamepad keymap.
const char* BlankName(bool joystick);

/// Loads `source`: "-" reads standard input, a built-in name loads that
/// built-in, anything else is a file path. Gamepad documents with `joystick`
/// (a gamepad built-in is one anyway; Loaded::joystick says which it was).
Loaded Load(const std::string& source, bool joystick);

/// Prints "SOURCE: error: MESSAGE" to standard error for a document that did
/// not load, and returns its exit status: 2 when it could not be read, else 1.
int ReportLoadFailure(const Loaded& loaded);

/// Whether `name` is a built-in document of the given kind.
bool IsBuiltIn(const std::string& name, bool joystick);

/// The text the library saves for `doc`.
std::string SavedText(const km::KeymapConfig* doc);

/// Writes `text` to `path`: "-" is standard output, a pipe or device is
/// written as a stream, and a file is replaced in one step or left
/// byte-identical (never written in place). False, with the cause on
/// standard error, when nothing (or not everything) was written.
bool WriteOutput(const std::string& command, const std::string& path, const std::string& text);

/// WriteOutput of the text the library saves for `doc`.
bool SaveTo(const std::string& command, const std::string& path, km::KeymapConfig* doc);

/// The item types, in the order of the type list, without "Unknown".
std::vector<std::string> ItemTypes();

/// A key as people read it: its caption, else device and code; "-" when unset.
inline std::string DescribeKey(const km::ConfigKey& key) {
    return km::DescribeConfigKey(key);
}

/// A key or combination that fires an item, as the library finds them.
using Trigger = km::KeyTrigger;

inline std::vector<Trigger> TriggersOf(const km::ConfigItem& item) {
    return km::KeyTriggersOf(item);
}

inline std::string DescribeTrigger(const Trigger& trigger) {
    return km::DescribeKeyTrigger(trigger);
}

/// Parses a decimal or 0x-prefixed integer; false when `text` is not one.
bool ParseInt(const std::string& text, int& value);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_COMMON_H
