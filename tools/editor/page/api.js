// Everything the page asks of the library goes through here, as the
// editor's requests (docs/editor.md). They go over HTTP to the server of
// `zuno-keymap edit`, or, when the page is served as plain static files, to
// the keymap module running in this page (local.js): the same requests, the
// same answers. Either way through one function,
// call(method, path, body) -> {status, ok, data}. The server's token is
// start.js's.

import { token } from './start.js';

/// True when no server serves the page: it then runs the library itself and
/// opens and saves the user's files.
export const standalone = !token;
const local = standalone ? import('./local.js') : null;

// No answer within this time counts as a lost answer: the request is retried.
const ANSWER_TIME = 30000;

async function httpCall(method, path, text) {
  const headers = { Authorization: `Bearer ${token}` };
  const init = { method, headers, cache: 'no-store', signal: AbortSignal.timeout(ANSWER_TIME) };
  if (text !== undefined) {
    headers['Content-Type'] = 'application/json';
    init.body = text;
  }
  let response;
  try {
    response = await fetch(path, init);
  } catch (error) {
    return { status: 0, ok: false, data: { error: `the editor cannot be reached (${error.message})` } };
  }
  const type = response.headers.get('Content-Type') || '';
  let data;
  try {
    data = type.startsWith('application/json') ? await response.json()
      : type.startsWith('image/') ? await response.blob() : await response.text();
  } catch (error) {
    return { status: 0, ok: false, data: { error: `the answer was cut off (${error.message})` } };
  }
  return { status: response.status, ok: response.ok, data };
}

// The file of a scheme the page shows, named in every request; until one is
// chosen, the server's first file is meant.
let shownFile;

/// Makes every later request one of file `index` of the scheme.
export function showFile(index) { shownFile = index; }

/// `target` as a request of file `file` of the scheme (its index or name).
export const withFile = (target, file) =>
  `${target}${target.includes('?') ? '&' : '?'}file=${encodeURIComponent(file)}`;

export async function call(method, target, body) {
  const text = body === undefined || typeof body === 'string' ? body : JSON.stringify(body);
  const path = shownFile === undefined ? target : withFile(target, shownFile);
  if (local) return (await local).localRequest(method, path, text);
  return httpCall(method, path, text);
}

async function must(promise) {
  const answer = await promise;
  if (!answer.ok) {
    throw new Error(answer.data && answer.data.error ? answer.data.error : `HTTP ${answer.status}`);
  }
  return answer.data;
}

const query = (params) => new URLSearchParams(params).toString();

export const api = {
  state: () => must(call('GET', '/api/state')),
  /// The files of the scheme: [{index, name, problems, unsaved, version}].
  files: async () => (await must(call('GET', '/api/files'))).files,
  /// The held document, its ids, check report and picture, and the history's state.
  snapshot: () => must(call('GET', '/api/snapshot')),
  /// Applies edits in order: {client, seq, ops} -> the snapshot with "results".
  edit: (body) => call('POST', '/api/edit', body),
  putDocument: (text) => call('PUT', '/api/document', text),
  /// Takes the file as it is on disk now (an undoable step): the snapshot.
  reload: () => call('POST', '/api/reload', {}),
  // force: overwrite a file changed on disk; drop: write without what the
  // library does not keep; version: the document's version the page shows
  // (409 "stale" when another page changed it since).
  save: ({ force = false, drop = false, version } = {}) =>
    call('POST', `/api/save?${query({ force: force ? 1 : 0, drop: drop ? 1 : 0 })}`,
      version === undefined ? {} : { version }),
  /// The held document's version and the screen's size, asked often to see
  /// another page's edits and turns: {version, width, height}.
  version: () => must(call('GET', '/api/version')),
  recovery: (n) => call('GET', `/api/recovery?${query({ n })}`),
  /// Makes recovery file n the held document (undoable): the snapshot.
  openRecovery: (n) => call('POST', '/api/recovery/open', { n }),
  /// Removes recovery file n, for good.
  dismissRecovery: (n) => call('POST', '/api/recovery/dismiss', { n }),
  schema: () => must(call('GET', '/api/schema')),
  types: async () => (await must(call('GET', '/api/types'))).types,
  templates: async () => (await must(call('GET', '/api/templates'))).templates,
  template: (name) => must(call('GET', `/api/template?${query({ name })}`)),
  shapes: () => must(call('GET', '/api/shapes')),
  background: () => call('GET', '/api/background'),
  /// Swaps the picture's width and height (a view setting): the snapshot.
  turnScreen: () => call('POST', '/api/screen/turn', {}),
  key: (params) => must(call('GET', `/api/key?${query(params)}`)),
  /// The items that the keys fire: [{index, role, rel_x, rel_y}].
  trigger: async (keys) => (await must(call('POST', '/api/trigger', { keys }))).items,
  macroCheck: async (lines) => (await must(call('POST', '/api/macro/check', { lines }))).bad,
  macroRunning: async (lines) => (await must(call('POST', '/api/macro/running', { lines }))).lines,
  /// Opens Files or file handles in the page's own module, in place of the
  /// files open (standalone only).
  openFiles: async (sources) => (await local).openFiles(sources),
};
