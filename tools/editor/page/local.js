// The editor without a server: the keymap module (the library, its check and
// renderer, and the editor's request handling in WebAssembly) answers the
// same requests in a Web Worker. Files come from the user's picker or a drop
// and go back to the same file where the browser allows it (File System
// Access API), as a download otherwise. The work is kept in this browser's
// storage until it is saved, and offered back when the page opens again: the
// browser's form of the server's recovery file.

import { fetchEntry, forget, keep, listed, tabId } from './storage.js';
import { worker } from './start.js';
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

// What is kept between visits, per tab and file: the file's name and text as
// opened or last saved (`base`), and the document as last edited (`text`)
// while unsaved. A tab writes only its own entries, so another tab opening
// another file leaves them be. The last file opened or saved in any tab is
// what a new tab opens.
const tab = tabId();
const WORK = 'zuno-keymap-work:';
const KEPT = 'zuno-keymap-kept:';
const LAST = 'zuno-keymap-last';
const workKey = (name) => `${WORK}${tab}:${name}`;
const blankWork = () => ({ name: 'keymap.json', base: '', blank: true, text: null, unsaved: false, time: 0 });
const usable = (entry) => entry && typeof entry.name === 'string' && typeof entry.base === 'string';

function warn(text) {
  if (text) dispatchEvent(new CustomEvent('keymap-storage', { detail: text }));
}

let work = blankWork();
let keepTimer = 0;
function keepWork() {
  clearTimeout(keepTimer);
  keepTimer = 0;
  // An edited document is held as the answer's object, written as text only here.
  const { doc, ...kept } = work;
  sessionStorage.setItem('zuno-keymap-file', work.name);
  return keep(workKey(work.name), doc ? { ...kept, text: JSON.stringify(doc) } : kept).then(warn);
}
// Edits come quickly (a drag is many): the storage is written once they pause.
function keepWorkSoon() {
  clearTimeout(keepTimer);
  keepTimer = setTimeout(keepWork, 300);
}
addEventListener('pagehide', () => { if (keepTimer) keepWork(); });

// The file being edited: a handle to write back to, where the browser gives one.
let file = { name: work.name, handle: null, lastModified: null };

// Unsaved work of this file in the storage, offered until it is opened or
// dismissed: of other tabs, and this tab's own from before a reload (set
// aside, so that this visit's edits do not write over it).
let offers = [];
let offered = 0;
let recovered = [];
function findOffers(name) {
  const mine = workKey(name);
  offers = [...listed(KEPT), ...listed(WORK)]
    .filter(({ key, entry }) => key !== mine && entry.name === name && entry.unsaved)
    .sort((a, b) => b.entry.time - a.entry.time)
    .map(({ key, entry }) => ({ n: offered++, key, path: `this browser's storage (${name})`,
      time: new Date(entry.time).toISOString(),
      bytes: entry.bytes || (entry.text || '').length }));
}
async function setAside(name) {
  const own = await fetchEntry(workKey(name));
  if (!own || !own.unsaved || typeof own.text !== 'string') return;
  await keep(`${KEPT}${own.time}-${tab}:${name}`, own).then(warn);
  await forget(workKey(name));
}

// What this tab had open opens again (the last file of any tab in a new
// tab); what no longer loads gives way to a blank document.
async function startWork() {
  const name = sessionStorage.getItem('zuno-keymap-file');
  const own = name ? await fetchEntry(workKey(name)) : null;
  const last = usable(own) ? own : await fetchEntry(LAST);
  work = usable(last) ? { ...last, text: null, unsaved: false } : blankWork();
  file = { name: work.name, handle: null, lastModified: null };
  await setAside(work.name);
  let answer = await post('open', work.name, work.base, { blank: Boolean(work.blank) });
  if (answer.status !== 200) {
    work = blankWork();
    file = { name: work.name, handle: null, lastModified: null };
    answer = await post('open', work.name, '', { blank: true });
  }
  findOffers(work.name);
  return answer;
}
const opened = startWork();

async function request(method, target, body) {
  await opened;
  return reply(await post('request', method, target, body === undefined ? '' : body));
}

async function state() {
  const answer = await request('GET', '/api/state');
  if (answer.ok) answer.data.recovery = offers.map(({ key, ...offer }) => offer);
  return answer;
}

async function putDocument(text) {
  const answer = await request('PUT', '/api/document', text);
  if (answer.ok) {
    work = { ...work, text, doc: null, unsaved: answer.unsaved === 'true', time: Date.now() };
    keepWorkSoon();
  }
  return answer;
}

// Every answered edit carries the document: it is what is kept until saved.
async function edit(body) {
  const answer = await request('POST', '/api/edit', body);
  if (answer.ok && answer.data && answer.data.document) {
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
  await keepWork();
  warn(await keep(LAST, work));
  // Work opened from the storage is saved now: it is not offered again.
  for (const key of recovered.splice(0)) await forget(key);
  answer.data.file = file.name;
  answer.data.downloaded = !handle;
  return answer;
}

const offerOf = (n) => offers.find((offer) => offer.n === n);

async function recoveryText(n) {
  const offer = offerOf(n);
  const entry = offer ? await fetchEntry(offer.key) : null;
  return entry && typeof entry.text === 'string' ? entry.text : null;
}

async function recovery(n) {
  const text = await recoveryText(n);
  if (text === null) return failure(404, 'no such recovery file');
  return { status: 200, ok: true, data: text, unsaved: null };
}

// Opening kept work is an edit of the document shown, so Undo goes back.
async function openRecovery(body) {
  const { n } = JSON.parse(body || '{}');
  const text = await recoveryText(n);
  if (text === null) return failure(404, 'no such recovery file');
  const put = await putDocument(text);
  if (!put.ok) return put;
  recovered.push(offerOf(n).key);
  offers = offers.filter((offer) => offer.n !== n);
  return request('GET', '/api/snapshot');
}

async function dismissRecovery(body) {
  const { n } = JSON.parse(body || '{}');
  const offer = offerOf(n);
  if (!offer) return failure(404, 'no such recovery file');
  await forget(offer.key);
  offers = offers.filter((other) => other.n !== n);
  return { status: 200, ok: true, data: { recovery: offers.map(({ key, ...rest }) => rest) }, unsaved: null };
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
  recovered = [];
  await setAside(work.name);
  await keepWork();
  warn(await keep(LAST, work));
  findOffers(work.name);
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
  if (method === 'POST' && route === '/api/recovery/open') return openRecovery(body);
  if (method === 'POST' && route === '/api/recovery/dismiss') return dismissRecovery(body);
  if (method === 'GET' && route === '/api/recovery') {
    return recovery(Number(new URLSearchParams(path.split('?')[1] || '').get('n')));
  }
  return request(method, path, body);
}
