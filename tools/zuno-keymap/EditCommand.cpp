//
// EditCommand.cpp
//
// zuno-keymap edit: a keymap in the browser, served from this process.
//

#include <iostream>
#include <string>
#include <vector>

#include <Poco/Environment.h>
#include <Poco/Exception.h>
#include <Poco/File.h>
#include <Poco/Path.h>
#include <Poco/Process.h>
#include <Poco/StringTokenizer.h>

#include "Common.h"
#include "EditorApi.h"
#include "EditorServer.h"
#include "EditorSession.h"
#include "ImageHeader.h"
#include "Termination.h"

namespace zunokeymap {

const char* const kEditUsage =
    "usage: zuno-keymap edit [--port N] [--no-browser] [--background IMAGE] [--size WxH]\n"
    "                        [--joystick] FILE\n\n"
    "Opens FILE in an editor page served on 127.0.0.1 and shown in the browser: move\n"
    "items, bind keys by pressing them, see collisions and invalid items at once, and\n"
    "save through the library. FILE need not exist: the editor then starts from the\n"
    "blank document and creates FILE on the first save. The address to open, with\n"
    "its access token, is printed on a line of its own. Ctrl-C stops the server;\n"
    "unsaved changes are then written to a recovery file beside FILE.\n\n"
    "Options:\n"
    "  --port N            the port to serve on (default: any free port)\n"
    "  --no-browser        do not open a browser\n"
    "  --background IMAGE  a PNG or JPEG screenshot to draw under the items\n"
    "  --size WxH          the screen's size in pixels (default: the image's, else 1920x1080)\n"
    "  --joystick          edit FILE as a gamepad document\n";

namespace {

bool parseSize(const std::string& text, int& width, int& height) {
    const std::size_t x = text.find_first_of("xX");
    return x != std::string::npos && ParseInt(text.substr(0, x), width) &&
           ParseInt(text.substr(x + 1), height) && width > 0 && height > 0 && width <= 65536 &&
           height <= 65536;
}

// Reads the image and its size; empty on success, else why not.
std::string readBackground(const std::string& path, render::Background& background) {
    std::string bytes;
    if (!editor::ReadWholeFile(path, bytes)) {
        return "cannot read " + path;
    }
    return render::ReadBackground(bytes, background);
}

bool onPath(const std::string& program) {
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
void openBrowser(const std::string& url) {
    try {
#if defined(_WIN32)
        Poco::Process::launch("rundll32", {"url.dll,FileProtocolHandler", url});
#else
        if (onPath("xdg-open")) {
            Poco::Process::launch("xdg-open", {url});
        }
#endif
    } catch (const Poco::Exception&) {
    }
}

}  // namespace

int EditCommand(const std::vector<std::string>& args) {
    Options options;
    if (const int status = ParseOptions(
            "edit", args, {"--no-browser", "--joystick"},
            {{"--port", "--port"}, {"--background", "--background"}, {"--size", "--size"}},
            options)) {
        return status;
    }
    if (options.operands.size() != 1) {
        return UsageError("edit",
                          options.operands.empty() ? "no FILE given" : "edit takes one FILE");
    }
    const std::string file = options.operands.front();

    int port = 0;
    if (options.values.count("--port") != 0 &&
        (!ParseInt(options.values["--port"], port) || port < 0 || port > 65535)) {
        return UsageError("edit", "--port takes a port number");
    }
    render::RenderOptions render;
    render.title = Poco::Path(file).getFileName();
    if (options.values.count("--background") != 0) {
        const std::string why = readBackground(options.values["--background"], render.background);
        if (!why.empty()) {
            return UsageError("edit", why);
        }
        render.width = render.background.width > 0 ? render.background.width : render.width;
        render.height = render.background.height > 0 ? render.background.height : render.height;
    }
    if (options.values.count("--size") != 0 &&
        !parseSize(options.values["--size"], render.width, render.height)) {
        return UsageError("edit", "--size takes WIDTHxHEIGHT in pixels, such as 1920x1080");
    }

    editor::EditorSession session(file, options.has("--joystick"), render);
    if (session.opened() == editor::EditorSession::Opened::Unreadable) {
        std::cerr << "zuno-keymap edit: cannot read " << file << "\n";
        return kUsage;
    }
    if (session.opened() == editor::EditorSession::Opened::Failed) {
        std::cerr << "zuno-keymap edit: " << file
                  << " does not load: " << session.openDiagnostic().message << "\n"
                  << "Run 'zuno-keymap check " << file << "' for details.\n";
        return kUsage;
    }

    editor::PrepareForTermination();
    editor::EditorApi api(session, editor::EditorApi::MakeToken(), port);
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
    std::cerr << "zuno-keymap edit: editing " << file
              << (session.opened() == editor::EditorSession::Opened::Missing
                      ? " (a new file, written on the first save)"
                      : "")
              << "; open this address, and press Ctrl-C to stop:\n";
    std::cout << url << std::endl;
    if (!options.has("--no-browser")) {
        openBrowser(url);
    }

    editor::WaitForTermination();
    server->stop();
    const std::string recovery = session.writeRecovery();
    if (!recovery.empty()) {
        std::cerr << "zuno-keymap edit: unsaved changes were written to " << recovery << "\n";
    } else if (session.unsaved()) {
        std::cerr << "zuno-keymap edit: unsaved changes could not be written beside " << file
                  << "\n";
        return kUsage;
    }
    return kClean;
}

}  // namespace zunokeymap
