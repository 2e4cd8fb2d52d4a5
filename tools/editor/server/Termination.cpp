//
// Termination.cpp
//

#include "Termination.h"

#if defined(_WIN32)
// Poco brings winsock2.h, which must come before windows.h.
#include <Poco/Event.h>

#include <windows.h>
#else
#include <pthread.h>
#include <signal.h>
#endif

namespace zunokeymap {
namespace editor {

#if defined(_WIN32)

namespace {

Poco::Event& terminated() {
    static Poco::Event event(Poco::Event::EVENT_MANUALRESET);
    return event;
}

BOOL WINAPI onConsoleEvent(DWORD) {
    terminated().set();
    return TRUE;
}

}  // namespace

void PrepareForTermination() {
    terminated();
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

void WaitForTermination() {
    terminated().wait();
}

#else

namespace {

sigset_t terminationSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    sigaddset(&signals, SIGQUIT);
    return signals;
}

}  // namespace

// Blocked in every thread, the signals stay pending until sigwait takes them
// here, in plain code rather than in a signal handler.
void PrepareForTermination() {
    const sigset_t signals = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void WaitForTermination() {
    const sigset_t signals = terminationSignals();
    int received = 0;
    while (sigwait(&signals, &received) != 0) {
    }
}

#endif

}  // namespace editor
}  // namespace zunokeymap
