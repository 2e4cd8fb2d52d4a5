// The editor page: holds the document as the server last accepted it, sends
// every change through the server (which loads, checks and draws it with the
// library), and keeps undo and redo over whole documents.

import { api } from './api.js';
import { showScreenshot } from './files.js';
import { History } from './history.js';
import { keyboardKey, mouseKey, wheelKey, pressedGamepadKey } from './keys.js';
import { Panel } from './panel.js';
import { Picture } from './picture.js';

const $ = (id) => document.getElementById(id);
const state = { doc: null, text: '', schema: {}, report: null, selected: -1, errors: {},
  unsaved: false, queue: Promise.resolve(), name: '' };
let history = new History();

const picture = new Picture($('picture'), {
  select: (index) => select(index),
  move: (index, part, dx, dy) => moveItem(index, part, dx, dy),
});
const panel = new Panel($('panel'), {
  change: (path, value) => changeMember(path, value),
  bind: (path) => captureKey(path),
  clearKey: async (path) => changeMember(path, await api.key({ device: '' })),
  macroCheck: (lines) => api.macroCheck(lines),
  macroRunning: (lines) => api.macroRunning(lines),
});

function status(text) { $('status').textContent = text; }

function setUnsaved(unsaved) {
  state.unsaved = unsaved;
  $('unsaved-mark').hidden = !unsaved;
  document.title = `${unsaved ? '● ' : ''}${state.name} — keymap editor`;
}

function updateButtons() {
  $('undo').disabled = !history.canUndo();
  $('redo').disabled = !history.canRedo();
  const none = state.selected < 0 || !state.doc || state.selected >= state.doc.keymaps.length;
  $('delete').disabled = none;
  $('duplicate').disabled = none;
}

function select(index) {
  state.selected = state.doc && index >= 0 && index < state.doc.keymaps.length ? index : -1;
  state.errors = {};
  picture.select(state.selected);
  showPanel();
  updateButtons();
}

function showPanel() {
  if (state.selected < 0) panel.clear();
  else panel.show(state.schema, state.doc.keymaps[state.selected], state.selected, state.errors);
}

function showProblems() {
  const list = $('problems');
  const findings = (state.report && state.report.findings) || [];
  list.replaceChildren(...findings.map((finding) => {
    const li = document.createElement('li');
    li.className = finding.severity;
    li.tabIndex = 0;
    li.dataset.itemIndex = finding.item_index;
    const where = finding.item_index >= 0 ? `keymaps[${finding.item_index}] (${finding.item_type}): ` : '';
    li.textContent = `${where}${finding.message}`;
    const pick = () => { if (finding.item_index >= 0) select(finding.item_index); };
    li.addEventListener('click', pick);
    li.addEventListener('keydown', (e) => { if (e.key === 'Enter') pick(); });
    return li;
  }));
  if (findings.length === 0) {
    const li = document.createElement('li');
    li.className = 'none';
    li.textContent = 'No problems.';
    list.replaceChildren(li);
  }
}

async function refreshPicture() {
  picture.show(await api.render());
}

// Every change goes through here, one at a time, in the order made.
function apply(next, { record = true } = {}) {
  const run = async () => {
    const before = state.text;
    const text = JSON.stringify(next);
    const answer = await api.putDocument(text);
    if (answer.status !== 200) {
      const data = answer.data || {};
      const path = (data.diagnostic && data.diagnostic.path) || '';
      const prefix = `keymaps[${state.selected}].`;
      state.errors = path.startsWith(prefix) ? { [path.slice(prefix.length)]: data.error } : {};
      status(`Not applied: ${data.error || `HTTP ${answer.status}`}`);
      showPanel();
      return false;
    }
    if (record) history.record(before);
    state.doc = next;
    state.text = text;
    state.report = answer.data;
    state.errors = {};
    setUnsaved(answer.unsaved === 'true');
    if (state.selected >= next.keymaps.length) state.selected = -1;
    await refreshPicture();
    showProblems();
    showPanel();
    updateButtons();
    status('');
    return true;
  };
  state.queue = state.queue.then(run, run);
  return state.queue;
}

const clone = () => JSON.parse(state.text);
const round = (v) => Math.round(v * 10000) / 10000;

function setAt(target, path, value) {
  const last = path[path.length - 1];
  const parent = path.slice(0, -1).reduce((at, part) => {
    if (at[part] === undefined || at[part] === null) at[part] = {};
    return at[part];
  }, target);
  parent[last] = value;
}

function changeMember(path, value) {
  if (state.selected < 0) return;
  const next = clone();
  setAt(next.keymaps[state.selected], path, value);
  apply(next);
}

function moveItem(index, part, dx, dy) {
  const next = clone();
  const item = next.keymaps[index];
  if (!item) return;
  let point = part === 'touch' ? item.rel_work_position : item.icon && item.icon.rel_position;
  if (!point) return;
  const touch = item.rel_work_position;
  // An unset marker is drawn at the touch point: move it from there.
  if (part === 'marker' && point.rel_x === 0 && point.rel_y === 0 && touch) {
    point = item.icon.rel_position = { ...touch };
  }
  // A touch point under its marker goes where the marker goes.
  const moved = [point];
  if (part === 'marker' && touch && touch.rel_x === point.rel_x && touch.rel_y === point.rel_y) {
    moved.push(touch);
  }
  for (const p of moved) {
    p.rel_x = round(Math.min(1, Math.max(0, p.rel_x + dx)));
    p.rel_y = round(Math.min(1, Math.max(0, p.rel_y + dy)));
  }
  apply(next);
}

async function addItem(type) {
  const item = await api.item(type);
  item.icon.rel_position = { rel_x: 0.5, rel_y: 0.5 };
  item.rel_work_position = { rel_x: 0.5, rel_y: 0.5 };
  const next = clone();
  next.keymaps.push(item);
  if (await apply(next)) select(next.keymaps.length - 1);
}

async function duplicateItem() {
  if (state.selected < 0) return;
  const next = clone();
  const copy = JSON.parse(JSON.stringify(next.keymaps[state.selected]));
  for (const point of [copy.icon && copy.icon.rel_position, copy.rel_work_position]) {
    if (point) { point.rel_x = round(Math.min(1, point.rel_x + 0.02)); point.rel_y = round(Math.min(1, point.rel_y + 0.02)); }
  }
  next.keymaps.splice(state.selected + 1, 0, copy);
  if (await apply(next)) select(state.selected + 1);
}

function deleteItem() {
  if (state.selected < 0) return;
  const next = clone();
  next.keymaps.splice(state.selected, 1);
  state.selected = -1;
  apply(next).then(() => select(-1));
}

async function step(direction) {
  const text = direction === 'undo' ? history.undo(state.text) : history.redo(state.text);
  if (text === null) return;
  if (!(await apply(JSON.parse(text), { record: false }))) history.revert(direction);
  updateButtons();
}

async function save(options = {}) {
  await state.queue;
  const answer = await api.save(options);
  if (answer.status === 200) {
    setUnsaved(false);
    $('conflict').hidden = true;
    $('file-name').textContent = state.name;
    status(`Saved ${state.name}`);
  } else if (answer.status === 409 && answer.data.lost) {
    // The file holds what the library does not keep: the user decides.
    const list = answer.data.lost.join('\n  ');
    if (window.confirm(`Saving drops ${answer.data.lost.length} element(s) of ${state.name} ` +
        `that this editor does not know:\n  ${list}\nSave anyway?`)) {
      await save({ ...options, drop: true });
    } else {
      status('Not saved: the file holds elements the editor would drop');
    }
  } else if (answer.status === 409) {
    $('conflict-text').textContent =
      `${state.name} was changed by another program since you opened it. ` +
      'Overwrite it with your version, or reload to see the other version.';
    $('conflict').hidden = false;
    status('Not saved: the file changed on disk');
  } else {
    status(`Not saved: ${(answer.data && answer.data.error) || `HTTP ${answer.status}`}`);
  }
}

// A recovery file of an earlier session: offered once, opened as an edit.
async function offerRecovery(files) {
  if (!files || files.length === 0) return;
  if (!window.confirm(`Unsaved changes of an earlier session were kept in ${files[0]}. Open them?`)) {
    return;
  }
  const answer = await api.recovery(0);
  if (answer.ok) {
    await apply(typeof answer.data === 'string' ? JSON.parse(answer.data) : answer.data);
  }
}

// Binding a key: the next key, mouse button, wheel turn or gamepad button.
function captureKey(path) {
  const overlay = $('capture');
  overlay.hidden = false;
  overlay.querySelector('.capture-box').focus();
  let frame = 0;
  const finish = async (params) => {
    stop();
    if (params) changeMember(path, await api.key(params));
  };
  const onKey = (e) => {
    e.preventDefault();
    e.stopPropagation();
    const params = keyboardKey(e);
    if (params) finish(params);
    else status(`The key ${e.code || e.key} has no scan code`);
  };
  const onMouse = (e) => {
    if (e.target.closest('#capture-cancel')) return;
    e.preventDefault();
    finish(mouseKey(e));
  };
  const onWheel = (e) => { e.preventDefault(); finish(wheelKey(e)); };
  const onMenu = (e) => e.preventDefault();
  const poll = () => {
    const params = pressedGamepadKey();
    if (params) finish(params);
    else frame = requestAnimationFrame(poll);
  };
  const stop = () => {
    overlay.hidden = true;
    cancelAnimationFrame(frame);
    window.removeEventListener('keydown', onKey, true);
    overlay.removeEventListener('mousedown', onMouse);
    overlay.removeEventListener('wheel', onWheel);
    overlay.removeEventListener('contextmenu', onMenu);
    $('capture-cancel').onclick = null;
  };
  window.addEventListener('keydown', onKey, true);
  overlay.addEventListener('mousedown', onMouse);
  overlay.addEventListener('wheel', onWheel, { passive: false });
  overlay.addEventListener('contextmenu', onMenu);
  $('capture-cancel').onclick = () => stop();
  frame = requestAnimationFrame(poll);
}

function typing(target) {
  return target && (target.isContentEditable || /^(INPUT|TEXTAREA|SELECT)$/.test(target.tagName));
}

document.addEventListener('keydown', (e) => {
  const ctrl = e.ctrlKey || e.metaKey;
  if (ctrl && e.key.toLowerCase() === 's') { e.preventDefault(); save(); return; }
  if (typing(e.target)) return;
  if (ctrl && e.key.toLowerCase() === 'z') { e.preventDefault(); step(e.shiftKey ? 'redo' : 'undo'); return; }
  if (ctrl && e.key.toLowerCase() === 'y') { e.preventDefault(); step('redo'); return; }
  if (e.key === 'Delete') { deleteItem(); return; }
  const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
  if (arrows[e.key] && state.selected >= 0 && picture.svg) {
    e.preventDefault();
    const { width, height } = picture.size();
    const pixels = e.shiftKey ? 10 : 1;
    moveItem(state.selected, 'marker', arrows[e.key][0] * pixels / width, arrows[e.key][1] * pixels / height);
  }
});

window.addEventListener('beforeunload', (e) => {
  if (!state.unsaved) return;
  e.preventDefault();
  e.returnValue = '';
});

// A screenshot dropped on the picture is shown under the items, in this page only.
const stage = $('stage');
stage.addEventListener('dragover', (e) => { e.preventDefault(); $('picture').classList.add('dropping'); });
stage.addEventListener('dragleave', () => $('picture').classList.remove('dropping'));
stage.addEventListener('drop', (e) => {
  e.preventDefault();
  $('picture').classList.remove('dropping');
  const file = [...(e.dataTransfer ? e.dataTransfer.files : [])].find((f) => f.type.startsWith('image/'));
  if (file) showScreenshot(file);
});

$('save').addEventListener('click', () => save());
$('overwrite').addEventListener('click', () => save({ force: true }));
$('conflict-cancel').addEventListener('click', () => { $('conflict').hidden = true; });
$('undo').addEventListener('click', () => step('undo'));
$('redo').addEventListener('click', () => step('redo'));
$('delete').addEventListener('click', () => deleteItem());
$('duplicate').addEventListener('click', () => duplicateItem());

async function start() {
  try {
    const [info, schema, types, held, report, svg] = await Promise.all([api.state(),
      api.schema(), api.types(), api.document(), api.check(), api.render()]);
    state.name = info.name;
    state.schema = schema;
    state.doc = held.data;
    state.text = JSON.stringify(held.data);
    state.report = report;
    $('file-name').textContent = info.name + (info.new ? ' (new)' : '');
    setUnsaved(info.unsaved);
    picture.show(svg);
    showProblems();
    $('palette').replaceChildren(...types.map((type) => {
      const button = document.createElement('button');
      button.type = 'button';
      button.textContent = type;
      button.setAttribute('aria-label', `Add ${type}`);
      button.addEventListener('click', () => addItem(type));
      return button;
    }));
    updateButtons();
    performance.mark('keymap-shown');
    window.editorReady = true;
    await offerRecovery(info.recovery);
  } catch (error) {
    status(`Cannot reach the editor: ${error.message}`);
  }
}

// Another keymap opened in the page (served as static files): shown afresh.
window.addEventListener('keymap-opened', () => {
  history = new History();
  state.selected = -1;
  panel.clear();
  start();
});

start();
