// The keymap module in a worker of its own, so that loading, checking and
// drawing a large document never holds up the page. Messages in:
// { id, op: 'open' | 'close' | 'request', args }; out: { id, answer } or { id, error }.

/* global createKeymapModule */

// The module's code is downloaded and compiled as it arrives, while its
// glue is loaded; a host that does not send it as application/wasm gets it
// compiled once it is all there.
const CODE = 'zuno-keymap-module.wasm';
const streamed = typeof WebAssembly.compileStreaming === 'function' ? WebAssembly.compileStreaming(fetch(CODE))
  : Promise.reject(new Error('no streaming compilation'));
const compiled = streamed
  .catch(() => fetch(CODE).then((response) => response.arrayBuffer()).then((bytes) => WebAssembly.compile(bytes)));
importScripts('zuno-keymap-module.js');

const ready = compiled.then((code) => new Promise((resolve, reject) => {
  createKeymapModule({
    instantiateWasm(imports, done) {
      WebAssembly.instantiate(code, imports).then((instance) => done(instance, code), reject);
      return {};
    },
  }).then(resolve, reject);
}));
// The first document opened pays for the library's first use (its tables,
// the schema, the first run of its code): a blank one is opened as soon as
// the module is there, while the page is still loading, and the page's own
// open, which replaces it, runs at the speed of a second one. A request
// already waiting by then would only wait longer for it.
let asked = false;
ready.then((module) => { if (!asked) module.open('keymap.json', '', { blank: true }); }).catch(() => {});
const operations = new Set(['open', 'close', 'request']);

self.onmessage = async ({ data }) => {
  const { id, op, args } = data;
  asked = true;
  try {
    if (!operations.has(op)) throw new Error(`no operation ${op}`);
    const module = await ready;
    self.postMessage({ id, answer: module[op](...args) });
  } catch (error) {
    self.postMessage({ id, error: String((error && error.message) || error) });
  }
};
