// Document round trip: whatever a host hands in, the document that comes out
// of the load saves to a text that loads back without a failure and saves to
// the very same text again.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "zuno-keymapmanager/keymapmanager.h"

namespace km = zunokeymapmanager;

namespace {

// Names no built-in document has and no file can have, so that the host's
// load, given empty text, fails as a missing file instead of reading
// something from disk.
const std::string kInputPath = "/nonexistent-zuno-fuzz/input.json";
const std::string kSavedPath = "/nonexistent-zuno-fuzz/saved.json";

int failures = 0;  // the loads below run one at a time
void onFailed(const std::string&) {
    ++failures;
}
KeymapManagerCallbacks callbacks{&onFailed};

[[noreturn]] void fail(const char* what, const std::string& first, const std::string& second) {
    std::fprintf(stderr, "%s\n--- first:\n%s\n--- second:\n%s\n", what, first.c_str(),
                 second.c_str());
    std::abort();
}

// The first load reads the text without the host's callback thread, which
// would cost more than everything else here: most inputs fail to load. A
// failed load keeps what was read before the failure.
std::unique_ptr<km::KeymapConfig> loadInput(const std::string& text, bool joystick) {
    km::LoadDiagnostic diagnostic;
    return std::unique_ptr<km::KeymapConfig>(
        km::ReadKeymapDocument(km::DocumentOrigin::Text, kInputPath, text, joystick, diagnostic));
}

void roundTrip(const std::string& text, bool joystick) {
    std::unique_ptr<km::KeymapConfig> doc = loadInput(text, joystick);
    const std::string saved = km::SaveKeymapConfigAndInfoToText(doc.get());

    failures = 0;
    std::unique_ptr<km::KeymapConfig> reread(joystick
                                                 ? km::LoadJoystickConfigAndInfo(kSavedPath, saved)
                                                 : km::LoadKeymapConfigAndInfo(kSavedPath, saved));
    if (failures != 0) {
        fail("the saved text does not load", text, saved);
    }
    const std::string savedAgain = km::SaveKeymapConfigAndInfoToText(reread.get());
    if (savedAgain != saved) {
        fail("the saved text saves differently", saved, savedAgain);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    km::SetCallbacks(&callbacks);
    const std::string text(reinterpret_cast<const char*>(data), size);
    roundTrip(text, false);
    roundTrip(text, true);
    // The check takes any text without calling the host back; a failed load
    // is always one of its errors.
    failures = 0;
    const km::CheckReport report = km::CheckKeymapDocument(text, size % 2 == 1);
    if (failures != 0 || (report.diagnostic.failed && report.errors() == 0)) {
        fail("the check called back or lost the failed load", text, report.diagnostic.message);
    }
    return 0;
}
