//
// Platform.h
//
// What the tool does differently on Windows, so that it behaves the same
// everywhere: its arguments and file names are UTF-8, and its standard
// streams carry bytes, never translated line ends.
//

#ifndef ZUNO_KEYMAP_TOOL_PLATFORM_H
#define ZUNO_KEYMAP_TOOL_PLATFORM_H

#include <fstream>
#include <string>
#include <vector>

namespace zunokeymap {

/// The command line as UTF-8 text. Windows hands `main` its arguments in
/// the ANSI code page, which cannot hold every file name; there they are
/// read again as UTF-16 and converted. Elsewhere they are taken as given.
class Utf8CommandLine {
public:
    Utf8CommandLine(int argc, char** argv);
    Utf8CommandLine(const Utf8CommandLine&) = delete;
    Utf8CommandLine& operator=(const Utf8CommandLine&) = delete;

    int argc() const { return static_cast<int>(pointers_.size()) - 1; }
    char** argv() { return pointers_.data(); }

private:
    std::vector<std::string> arguments_;
    std::vector<char*> pointers_;  ///< into arguments_, ending in a null pointer
};

/// Makes standard input, output and error safe to use. On Windows they are
/// put into binary mode, so that the tool writes the same bytes there as
/// elsewhere ("\n", not "\r\n"). Elsewhere a descriptor the tool was started
/// without is opened write-only on /dev/null, so that no file the tool opens
/// later takes its number: nothing meant for the terminal lands in a file, and
/// a closed standard input still cannot be read.
void PrepareStandardStreams();

/// Opens the regular file at the UTF-8 `path` for reading bytes. False for
/// anything else: a pipe or a device could block forever.
bool OpenRegularFile(const std::string& path, std::ifstream& in);

}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_TOOL_PLATFORM_H
