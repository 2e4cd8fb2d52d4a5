//
// EditorModule.h
//
// The editor, the check and the renderer built for the browser, as a small C
// interface: a request goes in as bytes and an answer comes out, the same
// answers the editor's HTTP server gives (docs/editor.md). A page runs it in
// a Web Worker through the functions binding.js adds to the module.
//
// Every function returns an answer that the caller frees with
// zuno_answer_free; none throws or aborts, whatever the input.
//

#ifndef ZUNO_KEYMAP_EDITOR_EDITORMODULE_H
#define ZUNO_KEYMAP_EDITOR_EDITORMODULE_H

#include <cstddef>

extern "C" {

/// An answer: a status, headers and a body.
struct ZunoAnswer;

/// Opens a document for editing: `bytes` are the file named `name` (its
/// last path component is kept), or, with `blank`, there is no file yet and
/// editing starts from the blank document. It becomes file `slot` of the
/// files open (a scheme): in place of the one there, after the last for the
/// next slot, and in place of them all for a negative `slot`. Answers as
/// GET /api/state of that file, or 422 with the load's `diagnostic` when the
/// file does not load, and then the documents held before stay.
ZunoAnswer* zuno_editor_open(const char* name, const char* bytes, std::size_t size, int joystick,
                             int blank, int slot);

/// Closes `count` files of the scheme from file `first` on, with their
/// unsaved work: answers as GET /api/files. One file at least stays open:
/// 422 for a range that would close them all or lies outside them.
ZunoAnswer* zuno_editor_close(int first, int count);

/// One request of the HTTP contract to the open documents (a blank one until
/// zuno_editor_open), naming its file as the server's do. `target` is the path and query. A save
/// writes the module's own copy of the file, which GET /api/document then reads.
ZunoAnswer* zuno_editor_request(const char* method, const char* target, const char* body,
                                std::size_t size);

/// What `zuno-keymap check --json NAME` prints for the file `bytes` named `name`.
ZunoAnswer* zuno_keymap_check(const char* name, const char* bytes, std::size_t size, int joystick);

/// What `zuno-keymap render NAME` writes for the file `bytes` named `name`;
/// 422 with the load's message when it does not load.
ZunoAnswer* zuno_keymap_render(const char* name, const char* bytes, std::size_t size, int joystick);

int zuno_answer_status(const ZunoAnswer* answer);
/// The headers, one "Name: value" line each.
const char* zuno_answer_headers(ZunoAnswer* answer);
const char* zuno_answer_body(const ZunoAnswer* answer);
std::size_t zuno_answer_size(const ZunoAnswer* answer);
void zuno_answer_free(ZunoAnswer* answer);
}

#endif  // ZUNO_KEYMAP_EDITOR_EDITORMODULE_H
