//
// EditCommand.cpp
//
// zuno-keymap edit: a keymap in the browser, served from this process.
//

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <Poco/Environment.h>
#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/Path.h>
#include <Poco/Process.h>
#include <Poco/StringTokenizer.h>
#include <Poco/TemporaryFile.h>
#include <zuno-keymapmanager/api/TextFile.h>

#include "CommandLine.h"
#include "Common.h"
#include "EditorApi.h"
#include "EditorServer.h"
#include "EditorSession.h"
#include "ScreenOptions.h"
#include "TerminalText.h"
#include "Termination.h"

namespace zunokeymap {

namespace {

// Only POSIX desktops look for a browser launcher on PATH.
[[maybe_unused]] bool onPath(const std::string& program) {
    try {
        Poco::StringTokenizer directories(Poco::Environment::get("PATH", ""),
                                          std::string(1, Poco::Path::pathSeparator()),
                                          Poco::StringTokenizer::TOK_IGNORE_EMPTY);
        for (const std::string& directory : directories) {
            Poco::Path candidate(directory, program);
            if (Poco::File(candidate).exists()) {
                return true;
            }
        }
    } catch (const Poco::Exception&) {
    }
    return false;
}

// A browser that cannot be started is no error: the address is printed.
// Opens the page. The address holds the token, so it goes to the browser
// inside a file only this user may read, never on a command line that every
// local user can list. Returns the folder of that file, removed at the end.
std::string openBrowser(const std::string& url) {
    namespace fs = std::filesystem;
    std::string folder;
    try {
        folder = Poco::TemporaryFile::tempName();
        const fs::path dir = fs::u8path(folder);
        fs::create_directory(dir);
        fs::permissions(dir, fs::perms::owner_all, fs::perm_options::replace);
        const fs::path page = dir / "open-editor.html";
        std::string error;
        if (!km::WriteNewTextFile(page.u8string(),
                                  "<!DOCTYPE html><meta charset=\"utf-8\">"
                                  "<meta http-equiv=\"refresh\" content=\"0;url=" +
                                      url + "\"><title>zuno-keymap edit</title>\n",
                                  "", error)) {
            return folder;
        }
        fs::permissions(page, fs::perms::owner_read | fs::perms::owner_write,
                        fs::perm_options::replace);
#if defined(_WIN32)
        Poco::Process::launch("rundll32", {"url.dll,FileProtocolHandler", page.u8string()});
#else
        if (onPath("xdg-open")) {
            Poco::Process::launch("xdg-open", {page.u8string()});
        }
#endif
    } catch (const std::exception&) {
        // No browser: the address printed above still opens the page.
    }
    return folder;
}

struct EditArguments {
    std::string file;
    int port = 0;
    bool noBrowser = false;
    std::string background;
    std::string size;
    bool joystick = false;
};

// The most files of one folder opened together; a folder with more is
// opened in part, and the tool says so.
constexpr std::size_t kMaxSchemeFiles = 64;

// The keymaps of a scheme: the *.json files directly in `folder`, by name.
// `more` gets how many there were beyond kMaxSchemeFiles.
std::vector<std::string> schemeFiles(const std::string& folder, std::size_t& more) {
    namespace fs = std::filesystem;
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry(fs::u8path(folder), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().u8string();
        std::error_code ignored;
        if (name.size() > 5 && name.compare(name.size() - 5, 5, ".json") == 0 &&
            !editor::IsRecoveryName(name) && entry->is_regular_file(ignored)) {
            files.push_back(entry->path().u8string());
        }
    }
    std::sort(files.begin(), files.end());
    more = files.size() > kMaxSchemeFiles ? files.size() - kMaxSchemeFiles : 0;
    files.resize(std::min(files.size(), kMaxSchemeFiles));
    return files;
}

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(std::filesystem::u8path(path), ignored);
}

using Sessions = std::vector<std::unique_ptr<editor::EditorSession>>;

// Opens every file, or says on stderr why one cannot be edited.
bool openSessions(const std::vector<std::string>& files, const EditArguments& args,
                  const render::RenderOptions& render, Sessions& sessions) {
    for (const std::string& file : files) {
        render::RenderOptions own = render;
        own.title = Poco::Path(file).getFileName();
        sessions.emplace_back(new editor::EditorSession(file, args.joystick, own));
        const editor::EditorSession& session = *sessions.back();
        if (session.opened() == editor::EditorSession::Opened::Unreadable) {
            std::cerr << "zuno-keymap edit: cannot read " << ForTerminal(file) << "\n";
            return false;
        }
        if (session.opened() == editor::EditorSession::Opened::Failed) {
            std::cerr << "zuno-keymap edit: " << ForTerminal(file)
                      << " does not load: " << ForTerminal(session.openDiagnostic().message) << "\n"
                      << "Run 'zuno-keymap check " << ForTerminal(file) << "' for details.\n";
            return false;
        }
    }
    return true;
}

// Writes each file's unsaved work to its recovery file; false when some
// work could be written nowhere.
bool keepUnsavedWork(const Sessions& sessions) {
    bool kept = true;
    for (const auto& session : sessions) {
        const std::string recovery = session->writeRecovery();
        if (!recovery.empty()) {
            std::cerr << "zuno-keymap edit: unsaved changes were written to "
                      << ForTerminal(recovery) << "\n";
        } else if (session->unsaved()) {
            // Beside the file, the data folder and the temporary folder all refused.
            const std::string data = editor::RecoveryFolder();
            std::cerr << "zuno-keymap edit: unsaved changes could not be written beside "
                      << ForTerminal(session->file())
                      << (data.empty() ? "" : ", in " + ForTerminal(data))
                      << " nor in the temporary folder\n";
            kept = false;
        }
    }
    return kept;
}

int runEdit(const EditArguments& args) {
    const std::string& file = args.file;
    const int port = args.port;
    render::RenderOptions render;
    // An author sees what each control does, not only its key.
    render.labels = true;
    const std::string error = ReadScreenOptions(args.size, args.background, render);
    if (!error.empty()) {
        return UsageError("edit", error);
    }

    const bool scheme = isFolder(file);
    std::size_t more = 0;
    const std::vector<std::string> files =
        scheme ? schemeFiles(file, more) : std::vector<std::string>{file};
    if (files.empty()) {
        std::cerr << "zuno-keymap edit: " << ForTerminal(file)
                  << " holds no keymap (*.json) to edit\n";
        return kUsage;
    }
    if (more > 0) {
        std::cerr << "zuno-keymap edit: " << ForTerminal(file) << " holds " << more
                  << " keymaps beyond the first " << kMaxSchemeFiles
                  << ", which alone are opened\n";
    }
    Sessions sessions;
    if (!openSessions(files, args, render, sessions)) {
        return kUsage;
    }
    std::vector<editor::EditorSession*> served;
    for (const auto& session : sessions) {
        served.push_back(session.get());
    }

    editor::PrepareForTermination();
    editor::EditorApi api(served, editor::EditorApi::MakeToken(), port);
    // Only for tests of the page against a slow server: never set by the tool.
    if (const char* delay = std::getenv("ZUNO_KEYMAP_EDITOR_TEST_DELAY_MS")) {
        api.setTestDelay(std::atoi(delay));
    }
    std::unique_ptr<editor::EditorServer> server;
    try {
        server.reset(new editor::EditorServer(api, port));
    } catch (const Poco::Exception& e) {
        std::cerr << "zuno-keymap edit: cannot serve on 127.0.0.1:" << port << ": "
                  << e.displayText() << "\n";
        return kUsage;
    }
    server->start();
    const std::string url =
        "http://127.0.0.1:" + std::to_string(server->port()) + "/?token=" + api.token();
    if (scheme) {
        std::cerr << "zuno-keymap edit: editing the " << files.size() << " keymap"
                  << (files.size() == 1 ? "" : "s") << " of " << ForTerminal(file);
    } else {
        std::cerr << "zuno-keymap edit: editing " << ForTerminal(file)
                  << (sessions.front()->opened() == editor::EditorSession::Opened::Missing
                          ? " (a new file, written on the first save)"
                          : "");
    }
    std::cerr << "; open this address, and press Ctrl-C to stop:\n";
    for (const auto& session : sessions) {
        for (const std::string& recovery : session->recoveryFiles()) {
            std::cerr << "zuno-keymap edit: a recovery file of an earlier session exists: "
                      << ForTerminal(recovery) << " (the page offers to open it)\n";
        }
    }
    std::cout << url << std::endl;
    std::string handOver;
    if (!args.noBrowser) {
        handOver = openBrowser(url);
    }

    editor::WaitForTermination();
    // Unsaved work reaches the disk first; clients still connected wait.
    server->closeDoor();
    const bool kept = keepUnsavedWork(sessions);
    server->stop();
    if (!handOver.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(std::filesystem::u8path(handOver), ignored);
    }
    return kept ? kClean : kUsage;
}

}  // namespace

void AddEditCommand(CLI::App& app) {
    auto args = std::make_shared<EditArguments>();
    CLI::App& command = AddSubcommand(
        app, "edit", "edit a document in the browser",
        "Opens FILE in an editor page served on 127.0.0.1 and shown in the browser: move\n"
        "items, bind keys by pressing them, see collisions and invalid items at once, and\n"
        "save through the library. FILE need not exist: the editor then starts from the\n"
        "blank document and creates FILE on the first save. The address to open, with\n"
        "its access token, is printed on a line of its own. Ctrl-C stops the server;\n"
        "unsaved changes are then written to a recovery file beside FILE.\n"
        "FILE may be a folder: each of its keymaps (*.json) is then opened side by side,\n"
        "a scheme, each file with its own undo, saves and recovery file.\n"
        "docs/editor.md describes the page and its HTTP contract.\n");
    command
        .add_option("FILE", args->file,
                    "the document to edit (created on the first save), or a folder of them")
        ->required();
    command.add_option("--port", args->port, "the port to serve on (default: any free port)")
        ->check(CLI::Range(0, 65535))
        ->type_name("N");
    command.add_flag("--no-browser", args->noBrowser, "print the address, open no browser");
    command
        .add_option("--background", args->background,
                    "a PNG or JPEG screenshot drawn under the items")
        ->type_name("IMAGE");
    command
        .add_option("--size", args->size,
                    "the screen in pixels (default 1920x1080, or the background's size)")
        ->type_name("WxH");
    command.add_flag("--joystick", args->joystick, "edit FILE as a gamepad document");
    OnRun(command, [args] { return runEdit(*args); });
}

}  // namespace zunokeymap
