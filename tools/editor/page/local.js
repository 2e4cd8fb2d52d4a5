// The editor without a server: the keymap module (the library, its check and
// renderer, and the editor's request handling in WebAssembly) answers the
// same requests in a Web Worker. Files come from the user's picker or a drop
// and go back to the same file where the browser allows it (File System
// Access API), as a download otherwise. The work is kept in this browser's
// storage until it is saved, and offered back when the page opens again: the
// browser's form of the server's recovery file.

import { withFile } from './api.js';
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
const OPEN = 'zuno-keymap-files';  // the names of the files this tab has open
const workKey = (name) => `${WORK}${tab}:${name}`;
const blankWork = () => ({ name: 'keymap.json', base: '', blank: true, text: null, unsaved: false, time: 0 });
const usable = (entry) => entry && typeof entry.name === 'string' && typeof entry.base === 'string';

function warn(text) {
  if (text) dispatchEvent(new CustomEvent('keymap-storage', { detail: text }));
}

// The files open, in the switcher's order (one unless several were opened
// together). Each has its work, the user's file it goes back to (a handle to
// write to, where the browser gives one), the unsaved work of earlier visits
// offered for it, and what of that was opened.
const documentOf = (work, file = { name: work.name, handle: null, lastModified: null }) =>
  ({ work, file, offers: [], recovered: [], keepTimer: 0 });
let docs = [documentOf(blankWork())];

function keepWork(doc) {
  clearTimeout(doc.keepTimer);
  doc.keepTimer = 0;
  // An edited document is held as the answer's object, written as text only here.
  const { doc: edited, ...kept } = doc.work;
  sessionStorage.setItem(OPEN, JSON.stringify(docs.map((one) => one.work.name)));
  return keep(workKey(doc.work.name), edited ? { ...kept, text: JSON.stringify(edited) } : kept).then(warn);
}
// Edits come quickly (a drag is many): the storage is written once they pause.
function keepWorkSoon(doc) {
  clearTimeout(doc.keepTimer);
  doc.keepTimer = setTimeout(() => keepWork(doc), 300);
}
addEventListener('pagehide', () => { for (const doc of docs) if (doc.keepTimer) keepWork(doc); });

// Unsaved work of a file in the storage, offered until it is opened or
// dismissed: of other tabs, and this tab's own from before a reload (set
// aside, so that this visit's edits do not write over it).
let offered = 0;
function findOffers(doc) {
  const { name } = doc.work;
  const mine = workKey(name);
  doc.offers = [...listed(KEPT), ...listed(WORK)]
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

function keptNames() {
  try {
    const names = JSON.parse(sessionStorage.getItem(OPEN) || '[]');
    return Array.isArray(names) ? names.filter((name) => typeof name === 'string') : [];
  } catch (error) {
    return [];
  }
}

// What this tab had open opens again (the last file of any tab in a new
// tab); what no longer loads is left out, and with nothing left a blank
// document opens.
async function startWork() {
  const own = await Promise.all(keptNames().map((name) => fetchEntry(workKey(name))));
  const entries = own.some(usable) ? own.filter(usable) : [await fetchEntry(LAST)].filter(usable);
  const back = [];
  for (const entry of entries) {
    const work = { ...entry, text: null, unsaved: false };
    await setAside(work.name);
    const answer = await post('open', work.name, work.base,
      { blank: Boolean(work.blank), slot: back.length ? back.length : -1 });
    if (answer.status === 200) back.push(documentOf(work));
  }
  if (back.length === 0) {
    back.push(documentOf(blankWork()));
    await post('open', 'keymap.json', '', { blank: true });
  }
  docs = back;
  docs.forEach(findOffers);
}
const opened = startWork();

async function request(method, target, body) {
  await opened;
  return reply(await post('request', method, target, body === undefined ? '' : body));
}

async function state(index) {
  const answer = await request('GET', withFile('/api/state', index));
  if (answer.ok) answer.data.recovery = docs[index].offers.map(({ key, ...offer }) => offer);
  return answer;
}

async function putDocument(index, text) {
  const answer = await request('PUT', withFile('/api/document', index), text);
  if (answer.ok) {
    const doc = docs[index];
    doc.work = { ...doc.work, text, doc: null, unsaved: answer.unsaved === 'true', time: Date.now() };
    keepWorkSoon(doc);
  }
  return answer;
}

// Every answered edit carries the document: it is what is kept until saved.
async function edit(index, body) {
  const answer = await request('POST', withFile('/api/edit', index), body);
  if (answer.ok && answer.data && answer.data.document) {
    const doc = docs[index];
    doc.work = { ...doc.work, text: null, doc: answer.data.document, unsaved: answer.data.unsaved === true,
      time: Date.now() };
    keepWorkSoon(doc);
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

async function pickSaveHandle(name) {
  return window.showSaveFilePicker({ suggestedName: name,
    types: [{ description: 'Keymap', accept: { 'application/json': ['.json'] } }] });
}

// The module saves into its own copy of the file, which answers for what
// the library keeps; the text then goes to the user's file.
async function save(index, { force = false, drop = false } = {}) {
  await opened;
  const doc = docs[index];
  if (doc.file.handle && doc.file.lastModified !== null && !force) {
    const onDisk = await doc.file.handle.getFile().catch(() => null);
    if (!onDisk || onDisk.lastModified !== doc.file.lastModified) {
      return failure(409, onDisk ? 'the file changed on disk since it was opened or last saved'
        : 'the file was removed since it was opened or last saved', { conflict: true });
    }
  }
  if (!doc.file.handle && 'showSaveFilePicker' in window) {
    try {
      const handle = await pickSaveHandle(doc.file.name);
      doc.file = { name: handle.name, handle, lastModified: null };
    } catch (error) {
      return failure(400, error.name === 'AbortError' ? 'no file was chosen' : error.message);
    }
  }
  const { handle } = doc.file;
  const answer = await request('POST', withFile(`/api/save?${new URLSearchParams({ force: force ? 1 : 0, drop: drop ? 1 : 0 })}`, index), '{}');
  if (!answer.ok) return answer;
  const text = (await request('GET', withFile('/api/document', index))).data;
  const saved = typeof text === 'string' ? text : JSON.stringify(text);
  try {
    if (handle) {
      const writable = await handle.createWritable();
      await writable.write(saved);
      await writable.close();
      const written = await handle.getFile();
      doc.file = { name: written.name, handle, lastModified: written.lastModified };
    } else {
      download(doc.file.name, saved);
    }
  } catch (error) {
    // The module counted it saved: it holds the old file and the edit again.
    await post('open', doc.work.name, doc.work.base, { blank: Boolean(doc.work.blank), slot: index });
    await post('request', 'PUT', withFile('/api/document', index), saved);
    return failure(500, `${doc.file.name} could not be written: ${error.message}`);
  }
  doc.work = { name: doc.file.name, base: saved, blank: false, text: null, unsaved: false, time: Date.now() };
  await keepWork(doc);
  warn(await keep(LAST, doc.work));
  // Work opened from the storage is saved now: it is not offered again.
  for (const key of doc.recovered.splice(0)) await forget(key);
  answer.data.file = doc.file.name;
  answer.data.downloaded = !handle;
  return answer;
}

const offerOf = (doc, n) => doc.offers.find((offer) => offer.n === n);

async function recoveryText(doc, n) {
  const offer = offerOf(doc, n);
  const entry = offer ? await fetchEntry(offer.key) : null;
  return entry && typeof entry.text === 'string' ? entry.text : null;
}

async function recovery(index, n) {
  const text = await recoveryText(docs[index], n);
  if (text === null) return failure(404, 'no such recovery file');
  return { status: 200, ok: true, data: text, unsaved: null };
}

// Opening kept work is an edit of the document shown, so Undo goes back.
async function openRecovery(index, body) {
  const doc = docs[index];
  const { n } = JSON.parse(body || '{}');
  const text = await recoveryText(doc, n);
  if (text === null) return failure(404, 'no such recovery file');
  const put = await putDocument(index, text);
  if (!put.ok) return put;
  doc.recovered.push(offerOf(doc, n).key);
  doc.offers = doc.offers.filter((offer) => offer.n !== n);
  return request('GET', withFile('/api/snapshot', index));
}

async function dismissRecovery(index, body) {
  const doc = docs[index];
  const { n } = JSON.parse(body || '{}');
  const offer = offerOf(doc, n);
  if (!offer) return failure(404, 'no such recovery file');
  await forget(offer.key);
  doc.offers = doc.offers.filter((other) => other.n !== n);
  return { status: 200, ok: true, data: { recovery: doc.offers.map(({ key, ...rest }) => rest) }, unsaved: null };
}

/// Opens Files, or FileSystemFileHandles (which a save then writes back
/// to), in place of the files open: each becomes a file of the switcher.
/// Answers as the module's open of the first: its state, or 422, and the
/// files open before stay, when one does not load.
export async function openFiles(sources) {
  const chosen = await Promise.all(sources.map(async (source) => {
    const handle = typeof source.getFile === 'function' ? source : null;
    const blob = handle ? await handle.getFile() : source;
    return { handle, blob, bytes: new Uint8Array(await blob.arrayBuffer()) };
  }));
  const names = chosen.map(({ blob }) => blob.name);
  const twice = names.find((name, i) => names.indexOf(name) !== i);
  if (twice) return failure(422, `two files are named ${twice}: open them one at a time`);
  await opened;
  // Opened after those open, which go only once every new one has loaded.
  const before = docs.length;
  let first;
  for (const [i, { blob, bytes }] of chosen.entries()) {
    const answer = reply(await post('open', blob.name, bytes, { slot: before + i }));
    if (!answer.ok) {
      if (i > 0) await post('close', before, i);
      return answer;
    }
    first ||= answer;
  }
  await post('close', 0, before);
  docs = chosen.map(({ handle, blob, bytes }) => documentOf(
    { name: blob.name, base: new TextDecoder().decode(bytes), blank: false, text: null, unsaved: false, time: Date.now() },
    { name: blob.name, handle, lastModified: handle ? blob.lastModified : null }));
  for (const doc of docs) {
    await setAside(doc.work.name);
    await keepWork(doc);
    findOffers(doc);
  }
  warn(await keep(LAST, docs[0].work));
  return first;
}

/// The requests of api.js, answered in this page.
export async function localRequest(method, path, body) {
  const [route, search] = path.split('?');
  const query = new URLSearchParams(search || '');
  await opened;
  // The file named as the server names it, by its place or its name; the
  // first without one.
  const named = query.get('file');
  const index = named === null ? 0 : /^\d+$/.test(named) ? Number(named) : docs.findIndex((doc) => doc.work.name === named);
  if (route !== '/api/files' && !docs[index]) {
    return request(method, path, body);  // the module refuses it as the server does
  }
  if (method === 'GET' && route === '/api/state') return state(index);
  if (method === 'PUT' && route === '/api/document') return putDocument(index, body);
  if (method === 'POST' && route === '/api/edit') return edit(index, body);
  if (method === 'POST' && route === '/api/save') {
    return save(index, { force: query.get('force') === '1', drop: query.get('drop') === '1' });
  }
  if (method === 'POST' && route === '/api/recovery/open') return openRecovery(index, body);
  if (method === 'POST' && route === '/api/recovery/dismiss') return dismissRecovery(index, body);
  if (method === 'GET' && route === '/api/recovery') return recovery(index, Number(query.get('n')));
  return request(method, path, body);
}
