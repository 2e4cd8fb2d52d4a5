// The page's one store: what the server last answered (document, item ids,
// check report, picture, history), what the user is doing (selection, mode,
// view), and nothing else. Every change goes through update(); the views are
// drawn from the state by one render function, at most once a frame.

import { secondKeyOf } from './keys.js';

export function initialState() {
  return {
    // From the server.
    doc: null, ids: [], report: null, svg: '', version: 0, unsaved: false,
    canUndo: false, canRedo: false,
    name: '', isNew: false, width: 1920, height: 1080, joystick: false,
    macroWidth: 1920, macroHeight: 1080,  // the frame of macro points, from the server
    // The user's.
    selected: [],        // item ids, the first is the one the panel shows
    hidden: [],          // item ids not drawn (the list still shows them)
    errors: {},          // JSON path -> the reason an edit of it was refused
    mode: 'edit',        // 'edit', 'test', 'pick', 'record'
    search: '',
    status: '',
    trouble: '',
    conflict: false,
    triggered: [],       // in test mode: [{index, role, rel_x, rel_y}]
    zoom: 1, panX: 0, panY: 0,
    snap: true,
  };
}

export class Store {
  /// `schedule(fn)` runs fn before the next frame (requestAnimationFrame in
  /// the page, at once in tests).
  constructor(state = initialState(), schedule = (fn) => fn()) {
    this.state = state;
    this.schedule = schedule;
    this.listeners = [];
    this.queued = false;
  }

  get() { return this.state; }

  /// Merges `patch` (or the object `patch(state)` returns) into the state and
  /// asks for a render.
  update(patch) {
    const changes = typeof patch === 'function' ? patch(this.state) : patch;
    if (!changes) return;
    this.state = { ...this.state, ...changes };
    this.changed();
  }

  /// Asks for a render without changing the state (the view keeps a little
  /// of its own, such as a drag under way).
  changed() {
    if (this.queued) return;
    this.queued = true;
    this.schedule(() => {
      this.queued = false;
      for (const listener of this.listeners) listener(this.state);
    });
  }

  subscribe(listener) { this.listeners.push(listener); }
}

/// The state after the server's answer `data` (a snapshot, with results or not).
export function fromSnapshot(state, data) {
  const ids = data.ids || [];
  const alive = (id) => ids.includes(id);
  return {
    doc: data.document, ids, report: data.report, svg: data.svg, version: data.version,
    unsaved: data.unsaved, canUndo: data.undo, canRedo: data.redo,
    selected: state.selected.filter(alive),
    hidden: state.hidden.filter(alive),
  };
}

/// Index of item `id` in the document, or -1.
export function indexOf(state, id) { return state.ids.indexOf(id); }

/// The item the panel shows: the first selected, or null.
export function focusItem(state) {
  const index = state.selected.length ? indexOf(state, state.selected[0]) : -1;
  return index >= 0 && state.doc ? { index, id: state.selected[0], item: state.doc.keymaps[index] } : null;
}

/// Errors and warnings, as the problem list shows them.
export function problemCount(report) {
  return report && Array.isArray(report.findings) ? report.findings.length : 0;
}

/// The findings about item `index`.
export function problemsOf(report, index) {
  return report && Array.isArray(report.findings)
    ? report.findings.filter((f) => f.item_index === index || (f.items || []).includes(index)) : [];
}

/// The value at `member` ("a.b.c") inside `object`, or undefined.
export function valueAt(object, member) {
  return member.split('.').reduce((at, name) => (at === undefined || at === null ? undefined : at[name]), object);
}

/// Where the document puts `item`'s marker, in fractions of the screen: its
/// icon position, or its touch point while that is unset; null for neither.
export function markerOf(item) {
  const m = item.icon && item.icon.rel_position;
  const p = m && (m.rel_x !== 0 || m.rel_y !== 0) ? m : item.rel_work_position;
  return p ? { x: p.rel_x, y: p.rel_y } : null;
}

/// Items whose type, key captions or description contain `text` (any case).
export function matchingItems(state, text) {
  const wanted = text.trim().toLowerCase();
  const items = state.doc ? state.doc.keymaps : [];
  return items.map((item, index) => ({ item, index, id: state.ids[index] }))
    .filter(({ item }) => !wanted || itemWords(item).toLowerCase().includes(wanted));
}

const isKey = (v) => v && typeof v === 'object' && 'device' in v && 'scan_code' in v;
/// A key's caption as the library wrote it; empty for no key.
export const caption = (key) => (key && key.device ? key.text || `${key.device} ${key.scan_code}` : '');

/// The captions of the keys that fire an item, in the order of `members` (its
/// key members, "key", "top_key", "positive_key.key"...; every key it holds
/// when not given), a key and its second key as one combination ("G+Ctrl").
export function keyCaptions(object, members) {
  const paths = members || Object.entries(object || {}).flatMap(([name, value]) =>
    (isKey(value) ? [name] : value && typeof value === 'object' && isKey(value.key) ? [`${name}.key`, `${name}.second_key`] : []));
  const seconds = new Set(paths.filter((p) => p.endsWith('second_key')));
  return paths.filter((p) => !seconds.has(p)).map((p) => {
    const second = secondKeyOf(p);
    return [caption(valueAt(object, p)), second && (seconds.has(second) || !members) ? caption(valueAt(object, second)) : ''].filter(Boolean).join('+');
  }).filter(Boolean).join(' ');
}

function itemWords(item) {
  return `${item.type} ${keyCaptions(item)} ${(item.icon && item.icon.description) || ''}`;
}
