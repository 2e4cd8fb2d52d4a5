// The editor's requests (docs/editor.md), as functions. They go over HTTP to
// the server of `zuno-keymap edit`, or, when the page is served as plain
// static files, to the keymap module running in this page (local.js): the
// same requests, the same answers.
//
// The server hands the page a token in its address. It leaves the address
// bar (and so the history) at once, kept for this tab only, where a reload
// finds it, and goes out as a Bearer header.

const token = new URLSearchParams(location.search).get('token') ||
  sessionStorage.getItem('zuno-keymap-token') || '';
if (token) {
  sessionStorage.setItem('zuno-keymap-token', token);
  history.replaceState(null, '', location.pathname);
}

/// True when no server serves the page: it then runs the library itself and
/// opens and saves the user's files.
export const standalone = !token;
const local = standalone ? import('./local.js') : null;

async function call(method, path, body) {
  const text = body === undefined || typeof body === 'string' ? body : JSON.stringify(body);
  if (local) return (await local).localRequest(method, path, text);
  const headers = { Authorization: `Bearer ${token}` };
  const init = { method, headers, cache: 'no-store' };
  if (text !== undefined) {
    headers['Content-Type'] = 'application/json';
    init.body = text;
  }
  const response = await fetch(path, init);
  const type = response.headers.get('Content-Type') || '';
  const data = type.startsWith('application/json') ? await response.json() : await response.text();
  return { status: response.status, ok: response.ok, data,
    unsaved: response.headers.get('X-Keymap-Unsaved') };
}

async function must(promise) {
  const answer = await promise;
  if (!answer.ok) {
    throw new Error(answer.data && answer.data.error ? answer.data.error : `HTTP ${answer.status}`);
  }
  return answer.data;
}

export const api = {
  state: () => must(call('GET', '/api/state')),
  document: () => call('GET', '/api/document'),
  putDocument: (text) => call('PUT', '/api/document', text),
  check: () => must(call('GET', '/api/check')),
  render: () => must(call('GET', '/api/render.svg')),
  // force: overwrite a file changed on disk; drop: write without what the library does not keep.
  save: ({ force = false, drop = false } = {}) =>
    call('POST', `/api/save?${new URLSearchParams({ force: force ? 1 : 0, drop: drop ? 1 : 0 })}`, {}),
  recovery: (n) => call('GET', `/api/recovery?n=${n}`),
  schema: () => must(call('GET', '/api/schema')),
  types: async () => (await must(call('GET', '/api/types'))).types,
  item: (type) => must(call('GET', `/api/item?type=${encodeURIComponent(type)}`)),
  key: (params) => must(call('GET', `/api/key?${new URLSearchParams(params)}`)),
  macroCheck: async (lines) => (await must(call('POST', '/api/macro/check', { lines }))).bad,
  macroRunning: async (lines) => (await must(call('POST', '/api/macro/running', { lines }))).lines,
  /// Opens a File or a file handle in the page's own module (standalone only).
  openFile: async (source) => (await local).openFile(source),
};
