// The editor without a server: the keymap module (the library, its check and
// renderer, and the editor's request handling in WebAssembly) answers the
// same requests in a Web Worker. Files come from the user's picker or a drop
// and go back to the same file where the browser allows it (File System
// Access API), as a download otherwise. The work is kept in this browser's
// storage until it is saved, and offered back when the page opens again: the
// browser's form of the server's recovery file.

const worker = new Worker('worker.js');
const pending = new Map();
let nextId = 0;
let broken = null;

worker.onmessage = ({ data }) => {
  const waiting = pending.get(data.id);
  pending.delete(data.id);
  if (data.error !== undefined) waiting.reject(new Error(data.error));
  else waiting.resolve(data.answer);
};
worker.onerror = (event) => {
  event.preventDefault();
  broken = new Error(`the keymap module failed: ${event.message || 'it did not load'}`);
  for (const waiting of pending.values()) waiting.reject(broken);
  pending.clear();
};

function post(op, ...args) {
  if (broken) return Promise.reject(broken);
  return new Promise((resolve, reject) => {
    const id = nextId++;
    pending.set(id, { resolve, reject });
    worker.postMessage({ id, op, args });
  });
}

// An answer of the module in the form api.js gives the server's.
function reply(answer) {
  const type = answer.headers['content-type'] || '';
  return { status: answer.status, ok: answer.status >= 200 && answer.status < 300,
    data: type.startsWith('application/json') ? JSON.parse(answer.body) : answer.body,
    unsaved: answer.headers['x-keymap-unsaved'] || null };
}

function failure(status, error, extra = {}) {
  return { status, ok: false, data: { status, error, ...extra }, unsaved: null };
}

// What is kept between visits: the file's name and text as opened or last
// saved (`base`), and the document as last edited (`text`) while unsaved.
const storageKey = 'zuno-keymap-work';
function readWork() {
  try {
    const work = JSON.parse(localStorage.getItem(storageKey));
    return work && typeof work.name === 'string' && typeof work.base === 'string' ? work : null;
  } catch {
    return null;
  }
}
const blankWork = () => ({ name: 'keymap.json', base: '', blank: true, text: null, unsaved: false, time: 0 });
let work = readWork() || blankWork();
let keepTimer = 0;
function keepWork() {
  clearTimeout(keepTimer);
  keepTimer = 0;
  try {
    // An edited document is held as the answer's object, written as text only here.
    const { doc, ...kept } = work;
    localStorage.setItem(storageKey, JSON.stringify(doc ? { ...kept, text: JSON.stringify(doc) } : kept));
  } catch {
    // A document larger than the storage allows is only kept in the file.
  }
}
// Edits come quickly (a drag is many): the storage is written once they pause.
function keepWorkSoon() {
  clearTimeout(keepTimer);
  keepTimer = setTimeout(keepWork, 300);
}
addEventListener('pagehide', () => { if (keepTimer) keepWork(); });

// The file being edited: a handle to write back to, where the browser gives one.
let file = { name: work.name, handle: null, lastModified: null };
// Unsaved work of an earlier visit, until it is offered.
let earlier = work.unsaved && work.text !== null ? work : null;

// What was kept opens again; what no longer loads gives way to a blank document.
const opened = post('open', work.name, work.base, { blank: Boolean(work.blank) }).then((answer) => {
  if (answer.status === 200) return answer;
  work = blankWork();
  file = { name: work.name, handle: null, lastModified: null };
  earlier = null;
  return post('open', work.name, '', { blank: true });
});

async function request(method, target, body) {
  await opened;
  return reply(await post('request', method, target, body === undefined ? '' : body));
}

function describeEarlier() {
  const when = new Date(earlier.time).toLocaleString();
  return `this browser's storage (${earlier.name}, ${when})`;
}

async function state() {
  const answer = await request('GET', '/api/state');
  if (answer.ok) answer.data.recovery = earlier ? [describeEarlier()] : [];
  return answer;
}

async function putDocument(text) {
  const answer = await request('PUT', '/api/document', text);
  if (answer.ok) {
    earlier = null;
    work = { ...work, text, doc: null, unsaved: answer.unsaved === 'true', time: Date.now() };
    keepWorkSoon();
  }
  return answer;
}

// Every answered edit carries the document: it is what is kept until saved.
async function edit(body) {
  const answer = await request('POST', '/api/edit', body);
  if (answer.ok && answer.data && answer.data.document) {
    earlier = null;
    work = { ...work, text: null, doc: answer.data.document, unsaved: answer.data.unsaved === true,
      time: Date.now() };
    keepWorkSoon();
  }
  return answer;
}

function download(name, text) {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(new Blob([text], { type: 'application/json' }));
  link.download = name;
  document.body.append(link);
  link.click();
  link.remove();
  setTimeout(() => URL.revokeObjectURL(link.href), 60000);
}

async function pickSaveHandle() {
  return window.showSaveFilePicker({ suggestedName: file.name,
    types: [{ description: 'Keymap', accept: { 'application/json': ['.json'] } }] });
}

// The module saves into its own copy of the file, which answers for what
// the library keeps; the text then goes to the user's file.
async function save({ force = false, drop = false } = {}) {
  await opened;
  if (file.handle && file.lastModified !== null && !force) {
    const onDisk = await file.handle.getFile().catch(() => null);
    if (!onDisk || onDisk.lastModified !== file.lastModified) {
      return failure(409, onDisk ? 'the file changed on disk since it was opened or last saved'
        : 'the file was removed since it was opened or last saved', { conflict: true });
    }
  }
  if (!file.handle && 'showSaveFilePicker' in window) {
    try {
      const handle = await pickSaveHandle();
      file = { name: handle.name, handle, lastModified: null };
    } catch (error) {
      return failure(400, error.name === 'AbortError' ? 'no file was chosen' : error.message);
    }
  }
  const { handle } = file;
  const answer = await request('POST', `/api/save?${new URLSearchParams({ force: force ? 1 : 0, drop: drop ? 1 : 0 })}`, '{}');
  if (!answer.ok) return answer;
  const text = (await request('GET', '/api/document')).data;
  const saved = typeof text === 'string' ? text : JSON.stringify(text);
  try {
    if (handle) {
      const writable = await handle.createWritable();
      await writable.write(saved);
      await writable.close();
      const written = await handle.getFile();
      file = { name: written.name, handle, lastModified: written.lastModified };
    } else {
      download(file.name, saved);
    }
  } catch (error) {
    // The module counted it saved: it holds the old file and the edit again.
    await post('open', work.name, work.base, { blank: Boolean(work.blank) });
    await post('request', 'PUT', '/api/document', saved);
    return failure(500, `${file.name} could not be written: ${error.message}`);
  }
  work = { name: file.name, base: saved, blank: false, text: null, unsaved: false, time: Date.now() };
  keepWork();
  answer.data.file = file.name;
  return answer;
}

async function recovery(n) {
  if (n !== 0 || !earlier) return failure(404, 'no such recovery file');
  return { status: 200, ok: true, data: earlier.text, unsaved: null };
}

/// Opens a File, or a FileSystemFileHandle (which a save then writes back
/// to). Answers as the module's open: the state, or 422 when it does not load.
export async function openFile(source) {
  const handle = typeof source.getFile === 'function' ? source : null;
  const blob = handle ? await handle.getFile() : source;
  const bytes = new Uint8Array(await blob.arrayBuffer());
  await opened;
  const answer = reply(await post('open', blob.name, bytes));
  if (!answer.ok) return answer;
  file = { name: blob.name, handle, lastModified: handle ? blob.lastModified : null };
  work = { name: blob.name, base: new TextDecoder().decode(bytes), blank: false, text: null,
    unsaved: false, time: Date.now() };
  earlier = null;
  keepWork();
  return answer;
}

/// The requests of api.js, answered in this page.
export function localRequest(method, path, body) {
  const route = path.split('?')[0];
  if (method === 'GET' && route === '/api/state') return state();
  if (method === 'PUT' && route === '/api/document') return putDocument(body);
  if (method === 'POST' && route === '/api/edit') return edit(body);
  if (method === 'POST' && route === '/api/save') {
    const query = new URLSearchParams(path.split('?')[1] || '');
    return save({ force: query.get('force') === '1', drop: query.get('drop') === '1' });
  }
  if (method === 'GET' && route === '/api/recovery') {
    return recovery(Number(new URLSearchParams(path.split('?')[1] || '').get('n')));
  }
  return request(method, path, body);
}
