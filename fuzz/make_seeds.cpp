// Writes seed documents for the document fuzzer into the directory given as
// the only argument: every item type at its defaults, alone and all together,
// as keymap and as gamepad document, and the built-in documents.

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "zuno-keymapmanager/keymapmanager.h"
#include "zuno-keymapmanager/model/NameLists.h"

namespace km = zunokeymapmanager;

namespace {

void writeSeed(const std::string& dir, const std::string& name, const std::string& text) {
    std::ofstream(dir + "/" + name + ".json", std::ios::binary | std::ios::trunc) << text;
}

std::unique_ptr<km::KeymapConfig> blankDocument(bool joystick) {
    km::LoadDiagnostic diagnostic;
    return std::unique_ptr<km::KeymapConfig>(km::ReadKeymapDocument(
        km::DocumentOrigin::BuiltIn, "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", "", joystick,
        diagnostic));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <seed directory>\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[1];
    for (const bool joystick : {false, true}) {
        const std::string kind = joystick ? "gamepad" : "keymap";
        std::unique_ptr<km::KeymapConfig> all = blankDocument(joystick);
        for (const std::string_view type : km::kDocumentItemTypeNames) {
            std::unique_ptr<km::KeymapConfig> one = blankDocument(joystick);
            one->items.push_back(km::CreateConfigItem(std::string(type)));
            writeSeed(dir, kind + "-" + std::string(type),
                      km::SaveKeymapConfigAndInfoToText(one.get()));
            all->items.push_back(km::CreateConfigItem(std::string(type)));
        }
        writeSeed(dir, kind + "-all-types", km::SaveKeymapConfigAndInfoToText(all.get()));
    }
    int n = 0;
    for (const auto* table : {&EmbededConfig::keymapConfigs(), &EmbededConfig::joystickConfigs()}) {
        for (const auto& entry : *table) {
            writeSeed(dir, "built-in-" + std::to_string(n++), entry.second);
        }
    }
    return 0;
}
