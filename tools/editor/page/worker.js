// The keymap module in a worker of its own, so that loading, checking and
// drawing a large document never holds up the page. Messages in:
// { id, op: 'open' | 'request', args }; out: { id, answer } or { id, error }.

/* global createKeymapModule */
importScripts('zuno-keymap-module.js');

const ready = createKeymapModule();
const operations = new Set(['open', 'request']);

self.onmessage = async ({ data }) => {
  const { id, op, args } = data;
  try {
    if (!operations.has(op)) throw new Error(`no operation ${op}`);
    const module = await ready;
    self.postMessage({ id, answer: module[op](...args) });
  } catch (error) {
    self.postMessage({ id, error: String((error && error.message) || error) });
  }
};
