// A host that uses only the umbrella header. Exits non-zero on the first surprise.

#include <cstdio>
#include <memory>
#include <string>

#include <zuno-keymapmanager/keymapmanager.h>

namespace km = zunokeymapmanager;

namespace {

int failures = 0;

void expect(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "host check failed: %s\n", what);
        ++failures;
    }
}

int failedLoads = 0;

void onFailed(const std::string&) {
    ++failedLoads;
}

}  // namespace

int main() {
    KeymapManagerCallbacks callbacks{};
    callbacks.loadConfigAndInfoFailed = &onFailed;
    km::SetCallbacks(&callbacks);

    std::unique_ptr<km::KeymapConfig> blank(
        km::LoadKeymapConfigAndInfo("sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300", ""));
    expect(blank && blank->info && blank->param, "built-in document loads");
    expect(!blank->info->transparent_keyboard, "built-in switches");

    std::unique_ptr<km::KeymapConfig> broken(km::LoadKeymapConfigAndInfo("host-text", "{"));
    expect(failedLoads == 1, "failure callback");

    for (std::size_t i = 1; i < km::kItemTypeNames.size(); ++i) {
        const std::string type(km::kItemTypeNames[i]);
        std::unique_ptr<km::ConfigItem> item(km::CreateConfigItem(type));
        if (item) {
            expect(item->type == type, "factory type name");
            (void)dynamic_cast<km::ComposableConfigItem*>(item.get());
            item->ConvertToJsonObject();
        }
    }

    km::ConfigKey key = km::CreateConfigKey("keyboard", 18, 312);
    expect(key.scan_code == 56, "modifier folding");
    expect(!km::isConfigKeyMatch(blank.get(), &key, &key), "empty document has no collision");
    expect(km::ModifyKeyboardScanCodeIfNeeded(285) == 29, "scan code folding");
    (void)km::MacroKeyEditingTextGrammarCheck({"release_actions", ""});

    km::SetCallbacks(nullptr);
    return failures == 0 ? 0 : 1;
}
