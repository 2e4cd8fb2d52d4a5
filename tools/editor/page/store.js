// The page's one store: what the server last answered (document, item ids,
// check report, picture, history), what the user is doing (selection, mode,
// view), and nothing else. Every change goes through update(); the views are
// drawn from the state by one render function, at most once a frame.

import { withGroups } from './patching.js';

export function initialState() {
  return {
    // From the server.
    doc: null, ids: [], captions: [], report: null, svg: '', version: 0, unsaved: false,
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
  const shown = data.since === undefined ? data : sinceShown(state, data);
  return {
    ...(shown ? { doc: shown.document, captions: shown.captions || [], report: shown.report, svg: shown.svg, version: data.version }
      // Not the version shown: another page's snapshot came between, and
      // the next look at the version asks for the whole document.
      : { version: null }),
    ids, unsaved: data.unsaved, canUndo: data.undo, canRedo: data.redo,
    selected: state.selected.filter(alive),
    hidden: state.hidden.filter(alive),
  };
}

// An answer that names the version shown (`since`) carries only the items
// that changed since, each in the document, the picture and the captions;
// the report only when it changed.
function sinceShown(state, data) {
  if (data.since !== state.version || !state.doc) return null;
  const svg = withGroups(state.svg, data.svg_items || {});
  if (svg === null) return null;
  const replaced = (list, pieces) => {
    const out = list.slice();
    for (const [index, piece] of Object.entries(pieces || {})) out[Number(index)] = piece;
    return out;
  };
  return { document: { ...state.doc, keymaps: replaced(state.doc.keymaps, data.document_items) },
    captions: replaced(state.captions, data.captions_items), report: data.report || state.report, svg };
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

/// The findings about each item, by index: those on the item and those
/// that name it among others.
export function problemsByItem(report) {
  const byItem = new Map();
  const findings = report && Array.isArray(report.findings) ? report.findings : [];
  for (const finding of findings) {
    for (const index of new Set([finding.item_index, ...(finding.items || [])])) {
      if (!byItem.has(index)) byItem.set(index, []);
      byItem.get(index).push(finding);
    }
  }
  return byItem;
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
    .filter(({ item, index }) => !wanted || itemWords(state, item, index).toLowerCase().includes(wanted));
}

// Key captions are the picture's own, from the server: {marker, keys:
// {member path: caption}} for each item, a combination as one ("Ctrl+G").
const captionsOf = (state, index) => (state.captions && state.captions[index]) || { marker: '', keys: {} };

/// The caption of item `index`'s key `member`; empty for no key.
export function keyCaptionOf(state, index, member) {
  return captionsOf(state, index).keys[member] || '';
}

/// The captions of the keys that fire item `index`, in the order of its key
/// `members` (every key it has when not given).
export function keyCaptions(state, index, members) {
  const { keys } = captionsOf(state, index);
  // A combination is captioned on its key; its second key adds nothing.
  return (members || Object.keys(keys)).filter((member) => !member.endsWith('second_key'))
    .map((member) => keys[member]).filter(Boolean).join(' ');
}

function itemWords(state, item, index) {
  return `${item.type} ${keyCaptions(state, index)} ${(item.icon && item.icon.description) || ''}`;
}
