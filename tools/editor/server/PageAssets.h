//
// PageAssets.h
//
// The editor page's files and the format's schema, compiled into the tool
// (the source is generated from tools/editor/page/ at build time).
//

#ifndef ZUNO_KEYMAP_EDITOR_PAGEASSETS_H
#define ZUNO_KEYMAP_EDITOR_PAGEASSETS_H

#include <cstddef>
#include <string>

namespace zunokeymap {
namespace editor {

struct PageAsset {
    const char* name;  ///< the file name, such as "index.html"
    const char* data;
    std::size_t size;
};

/// The embedded file named `name`, or null.
const PageAsset* FindPageAsset(const std::string& name);

}  // namespace editor
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_EDITOR_PAGEASSETS_H
