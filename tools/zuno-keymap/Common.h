//
// Common.h
//
// What the zuno-keymap subcommands share: exit codes, argument handling,
// loading documents and describing keys and items.
//

#ifndef ZUNO_KEYMAP_TOOL_COMMON_H
#define ZUNO_KEYMAP_TOOL_COMMON_H

#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <zuno-keymapmanager/keymapmanager.h>

namespace zunokeymap {

namespace km = zunokeymapmanager;

/// Exit statuses: clean, problems found, usage or I/O error.
enum Exit : int { kClean = 0, kProblems = 1, kUsage = 2 };

/// One subcommand: its name, a one-line summary, its usage text and its entry.
struct Command {
    const char* name;
    const char* summary;
    const char* usage;
    int (*run)(const std::vector<std::string>& args);
};

const std::vector<Command>& Commands();

int CheckCommand(const std::vector<std::string>& args);
int FmtCommand(const std::vector<std::string>& args);
int ListCommand(const std::vector<std::string>& args);
int NewCommand(const std::vector<std::string>& args);
int MacroCommand(const std::vector<std::string>& args);
int KeyCommand(const std::vector<std::string>& args);
int EditCommand(const std::vector<std::string>& args);
int RenderCommand(const std::vector<std::string>& args);

extern const char* const kCheckUsage;
extern const char* const kFmtUsage;
extern const char* const kListUsage;
extern const char* const kNewUsage;
extern const char* const kMacroUsage;
extern const char* const kKeyUsage;
extern const char* const kEditUsage;
extern const char* const kRenderUsage;

/// Prints "zuno-keymap NAME: MESSAGE" to standard error and returns kUsage.
int UsageError(const std::string& command, const std::string& message);

/// A command line split into the flags it set, the values of its valued
/// options, and its operands. "--" ends the options; "-" is an operand
/// (standard input).
struct Options {
    std::set<std::string> flags;
    std::map<std::string, std::string> values;
    std::vector<std::string> operands;

    bool has(const std::string& flag) const { return flags.count(flag) != 0; }
};

/// Parses `args` for `command`, which knows the `flags` and the valued options
/// `valued` (each a name and its alias, e.g. {"-o", "--output"}; the value is
/// stored under the name). Returns 0, or the usage error it reported.
int ParseOptions(const std::string& command, const std::vector<std::string>& args,
                 std::initializer_list<const char*> flags,
                 std::initializer_list<std::pair<const char*, const char*>> valued, Options& out);

/// True when `args` asks for help; the usage is then printed.
bool WantsHelp(const std::vector<std::string>& args, const char* usage);

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
};

/// Loads `source`: "-" reads standard input, a built-in name loads that
/// built-in, anything else is a file path. Gamepad documents with `joystick`.
Loaded Load(const std::string& source, bool joystick);

/// Whether `name` is a built-in document of the given kind.
bool IsBuiltIn(const std::string& name, bool joystick);

/// The text the library saves for `doc`.
std::string SavedText(km::KeymapConfig* doc);

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
