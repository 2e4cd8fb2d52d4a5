// Loads the built-in blank keymap and prints the document as the library saves it.

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <zuno-keymapmanager/keymapmanager.h>

namespace km = zunokeymapmanager;

int main() {
    const std::string blank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
    std::unique_ptr<km::KeymapConfig> config(km::LoadKeymapConfigAndInfo(blank, ""));

    char path[] = "/tmp/blank-keymap-XXXXXX";
    const int fd = mkstemp(path);
    if (fd < 0) {
        std::perror("mkstemp");
        return 1;
    }
    km::SaveKeymapConfigAndInfo(path, config.get());

    std::ifstream in(path);
    std::cout << in.rdbuf() << '\n';
    std::remove(path);
    return 0;
}
