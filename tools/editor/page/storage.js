// Work kept in this browser between visits of the page served as static
// files: an entry ({name, base, text, unsaved, time}) under a key of its
// own, in localStorage where it fits; a document too large for it goes to
// IndexedDB, with a small note in localStorage that says so. Entries are
// written one after another, in the order asked.

const NOTE = 'in-database';
let database = null;
let queue = Promise.resolve();

function openDatabase() {
  database ||= new Promise((resolve, reject) => {
    const request = indexedDB.open('zuno-keymap', 1);
    request.onupgradeneeded = () => request.result.createObjectStore('work');
    request.onsuccess = () => resolve(request.result);
    request.onerror = () => reject(request.error);
  });
  return database;
}

async function transact(mode, act) {
  const db = await openDatabase();
  return new Promise((resolve, reject) => {
    const transaction = db.transaction('work', mode);
    const request = act(transaction.objectStore('work'));
    transaction.oncomplete = () => resolve(request.result);
    transaction.onerror = () => reject(transaction.error);
    transaction.onabort = () => reject(transaction.error || new Error('the storage refused it'));
  });
}

function note(key) {
  try { return JSON.parse(localStorage.getItem(key)); } catch { return null; }
}

/// This tab's identity: it stays across reloads of the tab, and no other
/// tab has it.
export function tabId() {
  let id = sessionStorage.getItem('zuno-keymap-tab');
  if (!id) {
    id = `${Date.now().toString(36)}-${Math.random().toString(36).slice(2, 10)}`;
    sessionStorage.setItem('zuno-keymap-tab', id);
  }
  return id;
}

/// Keeps `entry` under `key`. Resolves to '' once kept, else to a warning
/// for the user.
export function keep(key, entry) {
  const run = async () => {
    const text = JSON.stringify(entry);
    const before = note(key);
    try {
      localStorage.setItem(key, text);
      if (before && before[NOTE]) await transact('readwrite', (s) => s.delete(key)).catch(() => {});
      return '';
    } catch {
      // Too large for localStorage: the old entry must not stand for this one.
      localStorage.removeItem(key);
    }
    try {
      await transact('readwrite', (s) => s.put(text, key));
      localStorage.setItem(key, JSON.stringify({ name: entry.name, time: entry.time, unsaved: entry.unsaved,
        bytes: text.length, [NOTE]: true }));
      return '';
    } catch (error) {
      return `${entry.name} is too large to keep in this browser: save it, or it is lost when the page closes`;
    }
  };
  queue = queue.then(run, run);
  return queue;
}

/// The entry under `key`, or null.
export async function fetchEntry(key) {
  await queue.catch(() => {});
  const found = note(key);
  if (!found || !found[NOTE]) return found;
  try { return JSON.parse(await transact('readonly', (s) => s.get(key))); } catch { return null; }
}

/// Removes the entry under `key`, wherever it is kept.
export function forget(key) {
  const run = async () => {
    const found = note(key);
    localStorage.removeItem(key);
    if (found && found[NOTE]) await transact('readwrite', (s) => s.delete(key)).catch(() => {});
    return '';
  };
  queue = queue.then(run, run);
  return queue;
}

/// The keys under `prefix`, with what localStorage says of each
/// ({name, time, unsaved, ...}).
export function listed(prefix) {
  const found = [];
  for (let i = 0; i < localStorage.length; i++) {
    const key = localStorage.key(i);
    if (!key || !key.startsWith(prefix)) continue;
    const entry = note(key);
    if (entry && typeof entry.name === 'string') found.push({ key, entry });
  }
  return found;
}
