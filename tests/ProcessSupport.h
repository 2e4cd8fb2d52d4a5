// Running the tool (or any program) from a test, with its standard streams
// piped both ways.

#ifndef ZUNO_KEYMAPMANAGER_TESTS_PROCESSSUPPORT_H
#define ZUNO_KEYMAPMANAGER_TESTS_PROCESSSUPPORT_H

#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <Poco/Exception.h>
#include <Poco/Pipe.h>
#include <Poco/PipeStream.h>
#include <Poco/Process.h>
#include <Poco/StreamCopier.h>

#include "tools/zuno-keymap/Platform.h"

namespace testsupport {

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs `program` with `args`, `input` on its standard input. The arguments
/// reach it as given, on every platform: no shell reads them.
inline Result RunProgram(const std::string& program, const std::vector<std::string>& args,
                         const std::string& input = "") {
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);  // a tool that exits without reading all its input
#endif
    zunokeymap::PrepareStandardStreams();  // or a closed one is lent to a pipe, and lost
    Poco::Pipe in, out, err;
    Poco::ProcessHandle process = Poco::Process::launch(program, args, &in, &out, &err);
    // Each pipe has its own thread, so a full one never stalls the others.
    std::thread feeder([&in, &input] {
        try {
            Poco::PipeOutputStream stream(in);
            stream << input;
            stream.close();
        } catch (const Poco::Exception&) {
            in.close();  // the tool stopped reading: what it did not read does not matter
        }
    });
    Result result;
    std::thread errors([&err, &result] {
        Poco::PipeInputStream stream(err);
        Poco::StreamCopier::copyToString(stream, result.err);
    });
    Poco::PipeInputStream stream(out);
    Poco::StreamCopier::copyToString(stream, result.out);
    errors.join();
    feeder.join();
    result.status = process.wait();
    return result;
}

}  // namespace testsupport

#endif  // ZUNO_KEYMAPMANAGER_TESTS_PROCESSSUPPORT_H
