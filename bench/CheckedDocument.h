//
// CheckedDocument.h
//
// Loads a generated document and refuses to benchmark anything else: a
// library that silently drops item types, or fails half way, would make every
// figure meaningless, so the run stops loudly instead.
//

#ifndef ZUNO_KEYMAPMANAGER_BENCH_CHECKEDDOCUMENT_H
#define ZUNO_KEYMAPMANAGER_BENCH_CHECKEDDOCUMENT_H

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>

#include <zuno-keymapmanager/keymapmanager.h>

#include "DocumentGenerator.h"

namespace benchdocs {

using DocumentPtr = std::unique_ptr<zunokeymapmanager::KeymapConfig>;

/// A path no built-in document has, so the text handed in is what is parsed.
inline const std::string kHostTextPath = "bench-host-text";

namespace detail {

inline std::atomic<int>& failures() {
    static std::atomic<int> count{0};
    return count;
}

inline void onLoadFailed(const std::string& /*path*/) {
    ++failures();
}

[[noreturn]] inline void fail(const std::string& what) {
    std::fprintf(stderr, "bench setup: %s\n", what.c_str());
    std::abort();
}

}  // namespace detail

/// Loads `text`, which must hold `expectedItems` items of all item types, and
/// aborts the process when the load fails or loses any item.
inline DocumentPtr loadChecked(const std::string& text, std::size_t expectedItems) {
    static KeymapManagerCallbacks callbacks{&detail::onLoadFailed};
    zunokeymapmanager::SetCallbacks(&callbacks);
    const int failuresBefore = detail::failures();
    DocumentPtr doc(zunokeymapmanager::LoadKeymapConfigAndInfo(kHostTextPath, text));
    zunokeymapmanager::SetCallbacks(nullptr);

    if (detail::failures() != failuresBefore) {
        detail::fail("the generated document failed to load");
    }
    if (doc->items.size() != expectedItems) {
        detail::fail("the generated document loaded " + std::to_string(doc->items.size()) + " of " +
                     std::to_string(expectedItems) +
                     " items; are all item types built into the library?");
    }
    std::set<std::string> types;
    for (const auto* item : doc->items) {
        types.insert(item->type);
    }
    const std::size_t typeCount = zunokeymapmanager::ItemDeclarations().size();
    if (expectedItems >= typeCount && types.size() != typeCount) {
        detail::fail("the loaded document holds " + std::to_string(types.size()) + " of " +
                     std::to_string(typeCount) + " item types");
    }
    return doc;
}

}  // namespace benchdocs

#endif  // ZUNO_KEYMAPMANAGER_BENCH_CHECKEDDOCUMENT_H
