// The editor page: one store, filled from the server's answers; one render
// function that draws every view from it; and actions that turn what the
// user does into operations for the server (operations.js). The server
// applies them to the document it holds, through the library, and answers
// with the document, its check and its picture, which the page then shows.

import { api, showFile } from './api.js';
import { restoreScreenshot, showScreenshot, showScreenshotUrl } from './files.js';
import { Gestures, undoState } from './history.js';
import { GLYPHS, ItemList } from './itemlist.js';
import { bindingSteps } from './keys.js';
import { KeyCapture } from './capture.js';
import { MacroTools } from './macrotools.js';
import { OpQueue, op } from './operations.js';
import { Panel, resolve } from './panel.js';
import { Picture } from './picture.js';
import { Store, focusItem, fromSnapshot, indexOf, keyCaptionOf, keyCaptions, markerOf, problemCount, valueAt } from './store.js';
import { TestMode } from './testmode.js';
import { ScreenView } from './screen.js';
import { arrange } from './arrange.js';
import { element, keyedChildren } from './dom.js';
import { Elsewhere } from './elsewhere.js';
import { Switcher } from './schemes.js';

const $ = (id) => document.getElementById(id);
const store = new Store(undefined, (fn) => requestAnimationFrame(fn));
const gestures = new Gestures();
let schema = {};
let shapes = { handles: {}, keys: {}, kinds: {} };
let colours = {};

// ---- talking to the server -------------------------------------------------

// Each request names the version shown, so that the answer need carry only
// the items that changed since.
const queue = new OpQueue((body) => api.edit({ ...body, since: store.get().version }), answered,
  (trouble) => store.update({ trouble: trouble || '' }));

function answered(data, ops, failures) {
  if (!data) {
    store.update({ status: `Not applied: ${failures[0].error}` });
    return;
  }
  const errors = { ...store.get().errors };
  const refused = [];
  data.results.forEach((result, i) => {
    const sent = ops[i];
    const path = result.path || '';
    if (path) delete errors[path];
    if (!result.ok) {
      refused.push(result.error);
      if (path) errors[path] = result.error;
      if (sent && sent.member && sent.item !== undefined) {
        const index = data.ids.indexOf(sent.item);
        if (index >= 0) errors[`keymaps[${index}].${sent.member}`] = result.error;
      } else if (sent && sent.member) {
        errors[sent.member] = result.error;
      }
    }
  });
  store.update((state) => ({ ...fromSnapshot(state, data), errors,
    status: refused.length ? `Not applied: ${refused[refused.length - 1]}` : state.status }));
  for (const result of data.results) {
    if (result.ok && result.unbound && result.unbound.length) {
      store.update({ status: `Its keys collided and were left unbound: press Enter to bind` });
    }
  }
}

function send(operation) { const done = queue.push(operation); store.changed(); return done; }

// What an edit did, said in the status line (a live region) once the server
// has answered it, naming the item as the list does ("Spell E").
function itemName(state, id) {
  const index = indexOf(state, id);
  if (index < 0) return 'item';
  const type = state.doc.keymaps[index].type;
  const keys = keyCaptions(state, index, shapes.keys[type]);
  return keys ? `${type} ${keys}` : type;
}
async function announce(done, words) {
  const sent = [].concat(done);
  const results = await Promise.all(sent).catch(() => []);
  if (sent.length && results.length && results.every((r) => r && r.ok)) store.update((state) => ({ status: words(state) }));
}

// ---- views -----------------------------------------------------------------

const picture = new Picture($('picture'), $('stage'), {
  select: (ids) => store.update({ selected: ids }),
  moveItems: (ids, dx, dy) => {
    const group = gestures.next('drag');
    announce(ids.map((id) => send(op.move(id, dx, dy, group))), (state) => movedWords(state, ids));
  },
  movePoint: (id, member, point, dx, dy) => announce(send({ ...op.move(id, dx, dy, gestures.next('handle')), member, point }),
    (state) => `${itemName(state, id)}: ${member} moved`),
  setValue: (id, member, value, group) => announce(send(op.set(id, member, value, group)),
    (state) => `${itemName(state, id)}: ${member} set to ${value}`),
  press: (p) => macro.press(p),
  bind: (id) => bindItem(id),
  changed: () => store.changed(),
  current: () => store.get(),
});

const itemPanel = new Panel($('panel'), {
  change: (member, value, id) => send(op.set(id, member, value)),
  remove: (member, id) => send(op.remove(id, member)),
  bind: (members, id) => bindMembers(id, members),
  // The library says what no key is.
  clearKey: async (member, id) => send(op.set(id, member, await unsetKey())),
  macroCheck: (lines) => api.macroCheck(lines),
  macroRunning: (lines) => api.macroRunning(lines),
});

const settingsPanel = new Panel($('settings'), {
  change: (member, value) => send(op.set(null, member, value)),
  remove: (member) => send(op.remove(null, member)),
  bind: () => {},
  macroCheck: async () => [],
  macroRunning: async () => [],
});

const list = new ItemList($('items'), {
  select: (id, { add, range }) => {
    const { selected, ids } = store.get();
    if (add) store.update({ selected: selected.includes(id) ? selected.filter((x) => x !== id) : [...selected, id] });
    else if (range && selected.length) {
      const [a, b] = [ids.indexOf(selected[0]), ids.indexOf(id)].sort((x, y) => x - y);
      store.update({ selected: [selected[0], ...ids.slice(a, b + 1).filter((x) => x !== selected[0])] });
    } else store.update({ selected: [id] });
  },
  bind: (id) => bindItem(id),
  toggleHidden: (id) => store.update(({ hidden }) => ({ hidden: hidden.includes(id) ? hidden.filter((x) => x !== id) : [...hidden, id] })),
  reorder: (id, to) => { if (to >= 0 && to < store.get().ids.length) send(op.reorder(id, to)); },
});

// The library's writing of an unset key, asked once and kept.
let unsetKeyAnswer;
const unsetKey = () => (unsetKeyAnswer ||= api.key({ device: '' }).catch((error) => {
  unsetKeyAnswer = null;
  throw error;
}));
const capture = new KeyCapture($('capture'), (params) => api.key(params));
const tester = new TestMode(store, api, {
  size: () => picture.size, point: (e) => picture.point(e), shapes: () => shapes,
  macroCheck: (lines) => api.macroCheck(lines),
});
const macro = new MacroTools(store, {
  macroItem: () => { const f = focusItem(store.get()); return f && f.item.type === 'Macro' ? f : null; },
  change: (id, member, lines) => send(op.set(id, member, lines)),
  area: () => $('panel').querySelector('textarea[name="press_actions"]'),
});
const screen = new ScreenView(store, api, { refit: () => { picture.shownWidth = 0; } });

function render(state) {
  const unanswered = queue.unanswered();
  picture.render(state, unanswered, shapes);
  const focus = focusItem(state);
  // Members with a change on its way, which their fields keep showing.
  const pendingOf = (id) => unanswered.filter((o) => (o.op === 'set' || o.op === 'remove') && o.item === id)
    .map((o) => o.member);
  if (state.showSettings) {
    settingsPanel.show(schema, { properties: { info: schema.properties.info, param: schema.properties.param } },
      state.doc, { key: 'document', heading: 'Document settings', prefix: '', errors: state.errors, sections: true,
        pending: pendingOf(undefined) });
    $('settings').hidden = false;
  } else $('settings').hidden = true;
  if (focus) {
    const definition = resolve(schema, (schema.definitions || schema.$defs || {})[focus.item.type]);
    itemPanel.show(schema, definition, focus.item, {
      key: `${focus.id}:${focus.item.type}`, target: focus.id, heading: `${focus.item.type} — keymaps[${focus.index}]`,
      prefix: `keymaps[${focus.index}]`, errors: state.errors, keyMembers: shapes.keys[focus.item.type] || [],
      captions: (state.captions[focus.index] || {}).keys || {}, pending: pendingOf(focus.id) });
  } else itemPanel.clear();
  list.render(state, colours, shapes.keys, shapes.markers);
  renderProblems(state);
  const { canUndo, canRedo } = undoState(state, unanswered);
  $('undo').disabled = !canUndo || state.mode === 'test';
  $('redo').disabled = !canRedo || state.mode === 'test';
  const none = state.selected.length === 0 || state.mode !== 'edit';
  for (const id of ['duplicate', 'delete']) $(id).disabled = none;
  for (const button of document.querySelectorAll('[data-arrange]')) {
    button.disabled = state.selected.length < Number(button.dataset.needs) || state.mode !== 'edit';
  }
  $('unsaved-mark').hidden = !state.unsaved && unanswered.length === 0;
  $('file-name').textContent = state.name + (state.isNew ? ' (new)' : '');
  const count = problemCount(state.report);
  $('problem-count').textContent = `${count} ${count === 1 ? 'problem' : 'problems'}`;
  document.title = `${state.unsaved ? '● ' : ''}${state.name} — ${count} ${count === 1 ? 'problem' : 'problems'} — keymap editor`;
  $('status').textContent = state.trouble || state.status;
  $('conflict').hidden = !state.conflict;
  $('test-keys').setAttribute('aria-pressed', String(state.mode === 'test'));
  $('record').disabled = state.mode === 'record' || !macro.target();
  $('pick-point').disabled = state.mode !== 'edit' || !macro.target();
  $('stop').disabled = state.mode !== 'record' && state.mode !== 'pick';
  $('document-settings').setAttribute('aria-pressed', String(!!state.showSettings));
  $('picture').dataset.mode = state.mode;
  const badge = { test: 'Testing keys', record: '● Recording', pick: 'Picking a point' }[state.mode];
  $('mode-badge').hidden = !badge;
  $('mode-badge').textContent = badge || '';
  for (const id of ['palette', 'panel', 'settings']) $(id).inert = state.mode === 'test';
  $('zoom-level').textContent = `${Math.round(state.zoom * 100)}%`;
  macro.render(state);
  screen.render(state);
  switcher.render(state);
}
store.subscribe(render);

let problemRows = new Map();
function renderProblems(state) {
  // The report carries what the file itself holds that the library drops or
  // takes as given (unknown members, values out of range), from its opening.
  const findings = (state.report && state.report.findings) || [];
  const signature = `${state.version}`;
  if ($('problems').dataset.version === signature) return;
  $('problems').dataset.version = signature;
  const rows = findings.map((finding) => ({ key: JSON.stringify([finding, state.ids[finding.item_index]]), make: () => {
    const where = finding.item_index >= 0 ? `keymaps[${finding.item_index}] (${finding.item_type}): ` : '';
    const li = element('li', { class: finding.severity, tabindex: 0, 'data-item-index': finding.item_index,
      text: `${where}${finding.message}` });
    const id = state.ids[finding.item_index];
    const pick = () => { if (finding.item_index >= 0) store.update({ selected: [id] }); };
    li.addEventListener('click', pick);
    li.addEventListener('keydown', (e) => { if (e.key === 'Enter') pick(); });
    return li;
  } }));
  if (rows.length === 0) rows.push({ key: 'none', make: () => element('li', { class: 'none', text: 'No problems.' }) });
  problemRows = keyedChildren($('problems'), problemRows, rows);
}

// ---- actions ---------------------------------------------------------------

function movedWords(state, ids) {
  return ids.length === 1 ? `${itemName(state, ids[0])} moved` : `${ids.length} items moved`;
}

async function addItem(type, at) {
  const round = (v) => Math.round(Math.min(Math.max(v, 0), 1) * 1e4) / 1e4;
  const result = await send(op.add(type, at && { rel_x: round(at.rel_x), rel_y: round(at.rel_y) }));
  if (result.ok) {
    store.update((state) => ({ selected: [result.item], showSettings: false,
      status: result.unbound && result.unbound.length ? state.status : `${itemName(state, result.item)} added` }));
    if (result.unbound && result.unbound.length) bindMembers(result.item, result.unbound, 'Its usual keys are taken: ');
  }
}

// After a button acts on the selection, the keyboard goes back to the
// picture, so that Enter binds and the arrows move rather than press the
// button again.
function focusPicture() { $('picture').focus({ preventScroll: true }); }

function selectedIds() { return store.get().selected.filter((id) => store.get().ids.includes(id)); }

async function duplicateSelected() {
  const group = gestures.next('duplicate');
  const made = await Promise.all(selectedIds().map((id) => send(op.duplicate(id, group))));
  store.update({ selected: made.filter((r) => r.ok).map((r) => r.item) });
}

function deleteSelected() {
  const group = gestures.next('delete');
  const ids = selectedIds();
  const words = ids.length === 1 ? `${itemName(store.get(), ids[0])} deleted` : `${ids.length} items deleted`;
  announce(ids.map((id) => send(op.delete(id, group))), () => words);
  store.update({ selected: [] });
}

// Copy and paste go through the plain-text clipboard as a keymap document,
// so another page, this editor's static form or a text editor can take them.
function copySelected(e) {
  const state = store.get();
  const ids = selectedIds();
  if (ids.length === 0) return;
  const keymaps = ids.map((id) => state.doc.keymaps[indexOf(state, id)]);
  e.clipboardData.setData('text/plain', `${JSON.stringify({ keymaps }, null, 4)}\n`);
  e.preventDefault();
  store.update({ status: `${ids.length === 1 ? itemName(state, ids[0]) : `${ids.length} items`} copied` });
}

function pastedItems(text) {
  try {
    const parsed = JSON.parse(text);
    const items = Array.isArray(parsed) ? parsed : parsed && Array.isArray(parsed.keymaps) ? parsed.keymaps : [parsed];
    return items.filter((item) => item && typeof item === 'object' && typeof item.type === 'string');
  } catch (error) {
    return [];
  }
}

// Pasted items keep their layout: the first one's marker goes to the pointer
// when it is over the screen, else all shift a little from where they were.
async function paste(text) {
  const items = pastedItems(text);
  if (items.length === 0 || store.get().mode !== 'edit') return;
  const first = markerOf(items[0]);
  const offset = pointer && first ? { dx: pointer.x - first.x, dy: pointer.y - first.y } : { dx: 0.03, dy: 0.03 };
  const group = gestures.next('paste');
  const results = await Promise.all(items.map((value) => send({ op: 'paste', value, ...offset, group })));
  const made = results.filter((r) => r.ok);
  const state = store.get();
  const unbound = made.filter((r) => r.unbound && r.unbound.length)
    .map((r) => `${itemName(state, r.item)}: ${r.unbound.join(', ')}`);
  const refused = results.length - made.length;
  store.update({ selected: made.map((r) => r.item), showSettings: false,
    status: `Pasted ${made.length} ${made.length === 1 ? 'item' : 'items'}` +
      (refused ? `, ${refused} refused` : '') +
      (unbound.length ? `; keys already taken here left unbound (${unbound.join('; ')}): press Enter to bind` : '') });
}

// The pointer over the screen, in fractions of it, for a paste.
let pointer = null;
$('picture').addEventListener('pointermove', (e) => {
  if (!picture.svg) return;
  const p = picture.point(e);
  pointer = { x: p.x / picture.size.width, y: p.y / picture.size.height };
  if (pointer.x < 0 || pointer.y < 0 || pointer.x > 1 || pointer.y > 1) pointer = null;
});
$('picture').addEventListener('pointerleave', () => { pointer = null; });
document.addEventListener('copy', (e) => { if (!typing(e.target) && !capture.open) copySelected(e); });
document.addEventListener('paste', (e) => {
  if (typing(e.target) || capture.open) return;
  e.preventDefault();
  paste(e.clipboardData.getData('text/plain'));
});

function arrangeSelected(how) {
  const state = store.get();
  const group = gestures.next(how);
  for (const { id, dx, dy } of arrange(how, selectedIds().map((id) => ({ id, item: state.doc.keymaps[indexOf(state, id)] })))) {
    send(op.move(id, dx, dy, group));
  }
}

function nudge(dx, dy, group) {
  const state = store.get();
  const ids = selectedIds();
  announce(ids.map((id) => send(op.move(id, dx / state.width, dy / state.height, group))), (now) => movedWords(now, ids));
}

// Binds the keys of item `id` that fire it, in the flow its kind asks for.
function bindItem(id) {
  const state = store.get();
  const index = indexOf(state, id);
  if (index < 0 || state.mode !== 'edit') return;
  bindMembers(id, shapes.keys[state.doc.keymaps[index].type] || ['key']);
}

async function bindMembers(id, members, lead = '') {
  try {
    await bindSteps(id, members, lead);
  } finally {
    capture.close();
  }
}

async function bindSteps(id, members, lead) {
  const group = gestures.next('bind');
  for (const step of bindingSteps(members)) {
    const before = store.get();
    const index = indexOf(before, id);
    if (index < 0) return;  // deleted meanwhile
    const now = keyCaptionOf(before, index, step.members[0]);
    const target = `${before.doc.keymaps[index].type} — keymaps[${index}], ${step.members.join(' + ')}` +
      (now ? ` (now ${now}: the key you press replaces it)` : '');
    const keys = await capture.capture(lead + step.prompt, { chord: step.members.length > 1, target });
    if (!keys) return;  // cancelled: what is bound so far stays
    if (!await collisionAccepted(id, keys, target)) return;
    const state = store.get();
    const item = state.doc.keymaps[indexOf(state, id)] || {};
    const done = [];
    for (const [k, member] of step.members.entries()) {
      // A single key for a combination's step clears the second key, if there is one.
      const present = valueAt(item, member);
      if (keys[k]) done.push(send(op.set(id, member, keys[k], group)));
      else if (present && present.device) done.push(send(op.set(id, member, await unsetKey(), group)));
    }
    announce(done, (now) => `${now.doc.keymaps[indexOf(now, id)].type} bound to ${
      keyCaptions(now, indexOf(now, id), step.members) || keys.filter(Boolean).map((key) => key.caption || key.text).join('+')}`);
    lead = '';
  }
}

// A key another item already fires on is bound only when the user says so.
async function collisionAccepted(id, keys, target) {
  let fired = [];
  try { fired = await api.trigger(keys.filter(Boolean)); } catch (error) { return true; }
  const state = store.get();
  const others = [...new Set(fired.map((t) => t.index))].filter((index) => state.ids[index] !== id);
  if (others.length === 0) return true;
  const names = others.map((index) => `${state.doc.keymaps[index].type} keymaps[${index}]`).join(', ');
  const pressed = keys.filter(Boolean).map((key) => key.caption || key.text).reverse().join('+');
  return capture.confirm(`${pressed} already fires ${names}: binding it makes a collision. ` +
    'Enter binds it anyway; Escape cancels.', target);
}

async function save(options = {}) {
  itemPanel.commitFocused();
  settingsPanel.commitFocused();
  macro.commit();
  store.update({ status: 'Saving…' });
  await queue.idle();
  const answer = await api.save({ ...options, version: store.get().version });
  const name = store.get().name;
  if (answer.status === 200) {
    const status = answer.data.downloaded ? `Downloaded ${answer.data.file || name}`
      : `Saved to ${answer.data.file || name}`;
    // A save moves the version on; the document shown is the one saved.
    const version = answer.data.version ?? store.get().version;
    store.update({ unsaved: false, isNew: false, conflict: false, status, version });
    switcher.refresh().then(() => store.changed());
  } else if (answer.status === 409 && answer.data.stale) {
    await elsewhere.catchUp('Another page changed this document: it now shows that version. Nothing was saved.');
    store.update({ status: 'Not saved: another page changed the document; look it over and save again' });
  } else if (answer.status === 409 && answer.data.lost) {
    const lost = answer.data.lost.join('\n  ');
    if (window.confirm(`Saving drops ${answer.data.lost.length} element(s) of ${name} ` +
        `that this editor does not know:\n  ${lost}\nSave anyway?`)) {
      await save({ ...options, drop: true });
    } else {
      store.update({ status: 'Not saved: the file holds elements the editor would drop' });
    }
  } else if (answer.status === 409) {
    store.update({ conflict: true, status: 'Not saved: the file changed on disk' });
  } else {
    store.update({ status: `Not saved: ${(answer.data && answer.data.error) || `HTTP ${answer.status}`}` });
  }
}

async function reload() {
  await queue.idle();
  const answer = await api.reload();
  if (answer.ok) {
    store.update((state) => ({ ...fromSnapshot(state, answer.data), conflict: false, status: 'Reloaded from disk' }));
  } else {
    store.update({ status: `Not reloaded: ${answer.data.error}` });
  }
}

// A template replaces the document as one step, which undo takes back.
async function fromTemplate(name, title) {
  await queue.idle();
  const text = JSON.stringify(await api.template(name), null, 4);
  const answer = await api.putDocument(text);
  if (!answer.ok) {
    store.update({ status: `Not started from ${title}: ${answer.data.error}` });
    return;
  }
  const shot = await api.snapshot();
  store.update((state) => ({ ...fromSnapshot(state, shot), selected: [], hidden: [], errors: {},
    status: `Started from the ${name} template: Undo takes it back` }));
}

async function offerTemplates() {
  const entries = (await api.templates()).map(({ name, title }) => {
    const button = element('button', { type: 'button', 'data-template': name, text: title });
    button.addEventListener('click', () => {
      closeMenu(button.closest('details'));
      fromTemplate(name, title);
    });
    return button;
  });
  $('templates').replaceChildren(...entries);
}

// A menu (Arrange, templates) closes on Escape, on a choice and when the
// focus leaves it, and gives the keyboard back to its button.
function closeMenu(menu) {
  if (!menu || !menu.open) return;
  menu.open = false;
  menu.querySelector('summary').focus({ preventScroll: true });
}
for (const menu of document.querySelectorAll('details.menu, details.picker')) {
  menu.addEventListener('keydown', (e) => {
    if (e.key === 'Escape' && menu.open) { e.preventDefault(); e.stopPropagation(); closeMenu(menu); }
  });
  menu.addEventListener('focusout', (e) => { if (!menu.contains(e.relatedTarget)) menu.open = false; });
}

function setZoom(zoom, keep) {
  store.update({ zoom });
  if (keep) requestAnimationFrame(() => requestAnimationFrame(keep));
}

// ---- input -----------------------------------------------------------------

function typing(target) {
  return target && (target.isContentEditable || /^(INPUT|TEXTAREA|SELECT)$/.test(target.tagName));
}

document.addEventListener('keydown', (e) => {
  const ctrl = e.ctrlKey || e.metaKey;
  const state = store.get();
  if (ctrl && e.key.toLowerCase() === 's') { e.preventDefault(); save(); return; }
  if (capture.open) return;
  if (state.mode === 'test') { tester.key(e, true); return; }
  if (state.mode === 'record') { macro.key(e); return; }
  // Undo and redo are the document's, in a field too: what was typed there
  // is sent first, so it is the step undone.
  const undo = ctrl && e.key.toLowerCase() === 'z' && !e.shiftKey;
  const redo = ctrl && (e.key.toLowerCase() === 'y' || (e.key.toLowerCase() === 'z' && e.shiftKey));
  if ((undo || redo) && !e.target.closest('#search')) {
    e.preventDefault();
    itemPanel.commitFocused();
    settingsPanel.commitFocused();
    send(undo ? op.undo() : op.redo());
    return;
  }
  if (typing(e.target)) return;
  if (ctrl && e.key.toLowerCase() === 'a' && state.mode === 'edit') {
    e.preventDefault();
    const selected = state.ids.filter((id) => !state.hidden.includes(id));
    store.update({ selected, status: `${selected.length} items selected` });
    return;
  }
  if (e.key === ' ' && !e.repeat) { picture.spaceHeld = true; e.preventDefault(); return; }
  if (e.key === 'Escape') { store.update({ selected: [], showSettings: false }); return; }
  if (e.target.classList && e.target.classList.contains('handle')) {
    const step = e.shiftKey ? 10 : 1;
    const moves = { ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, -step], ArrowDown: [0, step] };
    if (moves[e.key]) { e.preventDefault(); picture.nudgeHandle(e.target, ...moves[e.key]); }
    return;
  }
  if (state.selected.length === 0) return;
  if (e.key === 'Delete') { deleteSelected(); return; }
  // Enter binds from the picture (or nowhere in particular); on a control it
  // is that control's (a button, the Arrange menu, a list entry).
  if (e.key === 'Enter' && (e.target === document.body || e.target.closest('#picture'))) {
    e.preventDefault();
    bindItem(state.selected[0]);
    return;
  }
  const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
  if (arrows[e.key] && !e.target.closest('#items')) {
    e.preventDefault();
    const pixels = e.shiftKey ? 10 : 1;
    nudge(arrows[e.key][0] * pixels, arrows[e.key][1] * pixels, gestures.forKey(e.code, e.repeat));
  }
});

document.addEventListener('keyup', (e) => {
  gestures.keyUp(e.code);
  if (e.key === ' ') picture.spaceHeld = false;
  if (store.get().mode === 'test') tester.key(e, false);
});

window.addEventListener('beforeunload', (e) => {
  // Another file of a scheme counts too.
  const elsewhereUnsaved = switcher.files.some((file) => file.unsaved && file.index !== switcher.shown);
  if (!store.get().unsaved && !queue.busy() && !elsewhereUnsaved) return;
  e.preventDefault();
  e.returnValue = '';
});

$('stage').addEventListener('wheel', (e) => {
  if (store.get().mode === 'test') return;
  e.preventDefault();
  const { zoom, keep } = picture.zoomAt(e.deltaY < 0 ? 1.15 : 1 / 1.15, e.clientX, e.clientY, store.get().zoom);
  setZoom(zoom, keep);
}, { passive: false });

// A screenshot dropped on the picture is shown under the items for this session;
// a palette entry dropped there adds its item at that spot.
const stage = $('stage');
stage.addEventListener('dragover', (e) => { e.preventDefault(); $('picture').classList.add('dropping'); });
stage.addEventListener('dragleave', () => $('picture').classList.remove('dropping'));
stage.addEventListener('drop', (e) => {
  e.preventDefault();
  $('picture').classList.remove('dropping');
  const type = e.dataTransfer && e.dataTransfer.getData('application/x-keymap-type');
  if (type && picture.svg) {
    focusPicture();
    const p = picture.point(e);
    addItem(type, { rel_x: p.x / picture.size.width, rel_y: p.y / picture.size.height });
    return;
  }
  const file = [...(e.dataTransfer ? e.dataTransfer.files : [])].find((f) => f.type.startsWith('image/'));
  if (file) showScreenshot(file);
});

const click = (id, fn) => $(id).addEventListener('click', fn);
click('save', () => save());
click('overwrite', () => save({ force: true }));
click('reload', () => reload());
click('undo', () => send(op.undo()));
click('redo', () => send(op.redo()));
click('delete', () => { deleteSelected(); focusPicture(); });
click('duplicate', () => { duplicateSelected(); focusPicture(); });
click('test-keys', () => tester.toggle());
click('pick-point', () => macro.pick());
click('record', () => macro.record());
click('stop', () => macro.stop());
click('zoom-in', () => setZoom(Math.min(store.get().zoom * 1.25, 8)));
click('zoom-out', () => setZoom(Math.max(store.get().zoom / 1.25, 0.25)));
click('fit', () => { setZoom(1); $('stage').scrollTo(0, 0); });
click('document-settings', () => store.update(({ showSettings }) => ({ showSettings: !showSettings })));
for (const button of document.querySelectorAll('[data-arrange]')) {
  button.addEventListener('click', () => {
    arrangeSelected(button.dataset.arrange);
    closeMenu(button.closest('details'));
  });
}
$('search').addEventListener('input', (e) => store.update({ search: e.target.value }));
$('panel').addEventListener('focusout', (e) => { if (e.target.name === 'press_actions') macro.remember(e.target); });
window.addEventListener('resize', () => { picture.shownWidth = 0; store.changed(); });

// ---- start -----------------------------------------------------------------

function palette(types, kind) {
  const entries = types.filter((type) => (shapes.kinds[type] || 'both') === 'both' || shapes.kinds[type] === kind)
    .map((type) => {
      const definition = (schema.definitions || schema.$defs || {})[type] || {};
      const purpose = (definition.description || '').replace(/`/g, '').split(/(?<=\.)\s/)[0];
      const button = element('button', { type: 'button', draggable: 'true', 'aria-label': `Add ${type}`, title: purpose },
        element('span', { class: 'marker-glyph', style: `color:${colours[type] || '#fff'}`, 'aria-hidden': 'true',
          text: GLYPHS[(shapes.markers || {})[type]] || '●' }),
        element('strong', { text: type }), element('small', { text: purpose }));
      button.addEventListener('click', () => { focusPicture(); addItem(type); });
      button.addEventListener('dragstart', (e) => {
        e.dataTransfer.setData('application/x-keymap-type', type);
        e.dataTransfer.effectAllowed = 'copy';
      });
      return button;
    });
  $('palette').replaceChildren(...entries);
}

// Recovery files of earlier sessions, and another page's edits.
const elsewhere = new Elsewhere(store, queue, api,
  { refit: () => { picture.shownWidth = 0; }, turning: () => Boolean(screen.turning) });

// Another file of the scheme. What was typed or sent lands in the file it
// was made in first; the other file then comes with a selection, view and
// history of its own. The version poll waits meanwhile, so that it never
// takes the other file's version for another page's edit.
async function showScheme(index) {
  itemPanel.commitFocused();
  settingsPanel.commitFocused();
  macro.commit();
  if (store.get().mode === 'pick') macro.stop();
  if (store.get().mode === 'test') tester.toggle();
  await queue.idle();
  while (elsewhere.asking) await new Promise((resolve) => setTimeout(resolve, 20));
  elsewhere.asking = true;
  try {
    showFile(index);
    const [info, shot] = await Promise.all([api.state(), api.snapshot()]);
    picture.shownWidth = 0;
    store.update((state) => ({ ...fromSnapshot({ ...state, selected: [], hidden: [] }, shot),
      name: info.name, isNew: info.new, width: info.width, height: info.height, errors: {},
      conflict: false, showSettings: false, status: `Showing ${info.name}` }));
    elsewhere.offer(info.recovery);
    return true;
  } catch (error) {
    // The file shown stays the one the page's requests name.
    showFile(switcher.shown);
    store.update({ status: `Not switched: ${error.message}` });
    return false;
  } finally {
    elsewhere.asking = false;
  }
}
const switcher = new Switcher($('scheme'), api, { choose: showScheme });
setInterval(() => {
  if (switcher.files.length > 1 && !document.hidden) switcher.refresh().then(() => store.changed());
}, 1000);

async function start() {
  try {
    const [info, loadedSchema, types, loadedShapes, shot] = await Promise.all([api.state(),
      api.schema(), api.types(), api.shapes(), api.snapshot(), switcher.refresh()]);
    schema = loadedSchema;
    shapes = loadedShapes;
    store.update((state) => ({ ...fromSnapshot(state, shot), name: info.name, isNew: info.new,
      width: info.width, height: info.height, joystick: info.joystick,
      macroWidth: info.macro_width || 1920, macroHeight: info.macro_height || 1080 }));
    colours = shapes.colours || {};
    palette(types, info.joystick ? 'gamepad' : 'keyboard');
    offerTemplates().catch(() => { $('templates-menu').hidden = true; });
    if (info.background) {
      const image = await api.background();
      if (image.ok) showScreenshotUrl(URL.createObjectURL(image.data));
    } else {
      restoreScreenshot();
    }
    await new Promise((resolve) => requestAnimationFrame(resolve));
    performance.mark('keymap-shown');
    window.editorReady = true;
    // For tests and tools driving the page: every edit answered and drawn.
    window.editorIdle = async () => {
      await queue.idle();
      await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
    };
    elsewhere.offer(info.recovery);
  } catch (error) {
    store.update({ status: `Cannot reach the editor: ${error.message}` });
  }
}

// The static page's storage could not keep the work: the user must know.
window.addEventListener('keymap-storage', (e) => elsewhere.notice(e.detail));

// Other keymaps opened in the page (served as static files): the first shown afresh.
window.addEventListener('keymap-opened', () => {
  showFile(undefined);
  switcher.shown = 0;
  store.update({ selected: [], hidden: [], errors: {}, showSettings: false, status: '' });
  start();
});

start();
