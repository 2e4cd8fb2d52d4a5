// Loads the keymap its argument names through the DLL and prints the version
// it was built against and the number of items.
#include <zuno-keymapmanager/keymapmanager.h>

#include <iostream>
#include <memory>

namespace km = zunokeymapmanager;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: sdk-host KEYMAP\n";
        return 2;
    }
    km::LoadDiagnostic diagnostic;
    std::unique_ptr<km::KeymapConfig> doc(km::LoadKeymapConfigAndInfo(argv[1], "", &diagnostic));
    if (!doc) {
        std::cerr << "not loaded\n";
        return 1;
    }
    std::cout << ZUNO_KM_VERSION_STRING << " " << doc->items.size() << "\n";
    return 0;
}
