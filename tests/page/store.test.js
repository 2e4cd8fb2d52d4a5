// The store and what the views read from it.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { Store, fromSnapshot, initialState, keyCaptions, matchingItems, problemCount } from '../../tools/editor/page/store.js';

const key = (text) => ({ device: 'keyboard', text, scan_code: 1, virtual_key: 1 });
const unset = { device: '', text: '', scan_code: 2147483647, virtual_key: 2147483647 };

test('key captions of every kind of item', () => {
  const cases = [
    ['single', { key: key('Q') }, 'Q'],
    ['combination', { key: key('G'), second_key: key('Ctrl') }, 'G+Ctrl'],
    ['direction pad', { key: unset, bottom_key: key('S'), left_key: key('A'), right_key: key('D'), top_key: key('W') }, 'S A D W'],
    ['pair', { key: unset, positive_key: { key: key('E') }, negative_key: { key: key('R'), second_key: key('Alt') } }, 'E R+Alt'],
    ['nothing bound', { key: unset }, ''],
  ];
  for (const [name, item, want] of cases) assert.equal(keyCaptions(item), want, name);
  const pad = cases[2][1];
  assert.equal(keyCaptions(pad, ['top_key', 'right_key', 'bottom_key', 'left_key']), 'W D S A', 'in the order bound');
});

test('updates are merged and drawn once per frame', () => {
  const frames = [];
  const store = new Store(initialState(), (fn) => frames.push(fn));
  let draws = 0;
  store.subscribe(() => draws++);
  store.update({ zoom: 2 });
  store.update((s) => ({ zoom: s.zoom * 2 }));
  assert.equal(frames.length, 1);
  frames[0]();
  assert.equal(draws, 1);
  assert.equal(store.get().zoom, 4);
});

test('a snapshot keeps the selection of items that still exist', () => {
  const state = { ...initialState(), selected: [1, 2], hidden: [2, 3] };
  const next = fromSnapshot(state, { ids: [2, 4], document: { keymaps: [] }, report: { findings: [{}, {}] }, undo: true });
  assert.deepEqual(next.selected, [2]);
  assert.deepEqual(next.hidden, [2]);
  assert.equal(problemCount(next.report), 2, 'errors and warnings count alike');
});

test('search finds items by type, key and description', () => {
  const state = { ...initialState(), ids: [5, 6], doc: { keymaps: [
    { type: 'Click', key: key('Q'), icon: { description: 'jump' } },
    { type: 'Fire', key: key('left_mouse'), icon: { description: '' } }] } };
  const cases = [['', [5, 6]], ['fire', [6]], ['q', [5]], ['JUMP', [5]], ['nothing', []]];
  for (const [text, want] of cases) assert.deepEqual(matchingItems(state, text).map((e) => e.id), want, text);
});
