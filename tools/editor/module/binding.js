// Appended to the module's glue: the module's C interface as functions of
// JavaScript values. Bodies go in as strings (sent as UTF-8) or bytes (sent
// as they are); answers come out as { status, headers, body }, the body as
// text, or as bytes with { bytes: true }.

(function bind(module) {
  const encoder = new TextEncoder();
  const decoder = new TextDecoder();

  // Calls `use` with a NUL-terminated copy of `value` in the module's memory.
  function withBytes(value, use) {
    const bytes = value instanceof Uint8Array ? value : encoder.encode(value == null ? '' : String(value));
    const pointer = module._malloc(bytes.length + 1);
    if (!pointer) throw new Error('the keymap module is out of memory');
    try {
      module.HEAPU8.set(bytes, pointer);
      module.HEAPU8[pointer + bytes.length] = 0;
      return use(pointer, bytes.length);
    } finally {
      module._free(pointer);
    }
  }

  function take(answer, { bytes = false } = {}) {
    try {
      const headers = {};
      for (const line of module.UTF8ToString(module._zuno_answer_headers(answer)).split('\n')) {
        const colon = line.indexOf(': ');
        if (colon > 0) headers[line.slice(0, colon).toLowerCase()] = line.slice(colon + 2);
      }
      // Copied out: the next call may move the module's memory.
      const start = module._zuno_answer_body(answer);
      const view = module.HEAPU8.subarray(start, start + module._zuno_answer_size(answer));
      return { status: module._zuno_answer_status(answer), headers,
        body: bytes ? view.slice() : decoder.decode(view) };
    } finally {
      module._zuno_answer_free(answer);
    }
  }

  module.request = (method, target, body, options) =>
    withBytes(method, (m) => withBytes(target, (t) => withBytes(body, (b, size) =>
      take(module._zuno_editor_request(m, t, b, size), options))));
  // `slot`: the file of the scheme it becomes (the next one adds it);
  // without it, the one file open.
  module.open = (name, bytes, { joystick = false, blank = false, slot = -1 } = {}) =>
    withBytes(name, (n) => withBytes(bytes, (b, size) =>
      take(module._zuno_editor_open(n, b, size, joystick ? 1 : 0, blank ? 1 : 0, slot))));
  module.close = (first, count) => take(module._zuno_editor_close(first, count));
  module.check = (name, bytes, { joystick = false, ...options } = {}) =>
    withBytes(name, (n) => withBytes(bytes, (b, size) =>
      take(module._zuno_keymap_check(n, b, size, joystick ? 1 : 0), options)));
  module.render = (name, bytes, { joystick = false, ...options } = {}) =>
    withBytes(name, (n) => withBytes(bytes, (b, size) =>
      take(module._zuno_keymap_render(n, b, size, joystick ? 1 : 0), options)));
}(Module));
