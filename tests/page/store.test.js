// The store and what the views read from it.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { Store, fromSnapshot, initialState, keyCaptions, matchingItems, problemCount } from '../../tools/editor/page/store.js';

test('key captions are the server\'s, in the order of the key members', () => {
  const state = { captions: [
    { marker: 'Ctrl+G', keys: { key: 'Ctrl+G', second_key: 'Ctrl' } },
    { marker: '', keys: { bottom_key: 'S', left_key: 'A', right_key: 'D', top_key: 'W' } },
    { marker: 'E', keys: { 'positive_key.key': 'E', 'negative_key.key': 'Alt+R' } },
    { marker: '', keys: {} },
  ] };
  const cases = [
    [0, undefined, 'Ctrl+G'],
    [0, ['key', 'second_key'], 'Ctrl+G'],
    [1, ['top_key', 'right_key', 'bottom_key', 'left_key'], 'W D S A'],
    [2, undefined, 'E Alt+R'],
    [3, ['key'], ''],
    [9, ['key'], ''],
  ];
  for (const [index, members, want] of cases) assert.equal(keyCaptions(state, index, members), want, `item ${index}`);
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

test('an answer since the version shown puts its items in place; since another, it asks again', () => {
  const group = (i, body) => `<g class="item" data-item-index="${i}">${body}</g>`;
  const svg = (a, b) => `<svg viewBox="0 0 9 9"><g class="items">\n${group(0, a)}\n${group(1, b)}\n</g></svg>`;
  const shown = { ...initialState(), version: 7, ids: [1, 2], svg: svg('a', 'b'), report: { findings: [{}] },
    doc: { info: { v: 1 }, keymaps: [{ n: 0 }, { n: 1 }] }, captions: [{ marker: 'A' }, { marker: 'B' }] };
  const delta = { version: 8, since: 7, ids: [1, 2], svg_items: { 1: group(1, 'c') },
    document_items: { 1: { n: 2 } }, captions_items: { 1: { marker: 'C' } } };
  const cases = [
    ['the items changed', delta, { version: 8, svg: svg('a', 'c'), keymaps: [{ n: 0 }, { n: 2 }], markers: ['A', 'C'], findings: 1 }],
    ['the report too', { ...delta, report: { findings: [] } }, { version: 8, svg: svg('a', 'c'), keymaps: [{ n: 0 }, { n: 2 }], markers: ['A', 'C'], findings: 0 }],
    ['nothing changed', { ...delta, svg_items: {}, document_items: {}, captions_items: {} },
      { version: 8, svg: svg('a', 'b'), keymaps: [{ n: 0 }, { n: 1 }], markers: ['A', 'B'], findings: 1 }],
    ['since another version', { ...delta, since: 6 }, { version: null, svg: svg('a', 'b'), keymaps: [{ n: 0 }, { n: 1 }], markers: ['A', 'B'], findings: 1 }],
    ['a group the picture lacks', { ...delta, svg_items: { 5: group(5, 'x') } }, { version: null, svg: svg('a', 'b'), keymaps: [{ n: 0 }, { n: 1 }], markers: ['A', 'B'], findings: 1 }],
  ];
  for (const [name, answer, want] of cases) {
    const next = { ...shown, ...fromSnapshot(shown, answer) };
    assert.deepEqual({ version: next.version, svg: next.svg, keymaps: next.doc.keymaps, markers: next.captions.map((c) => c.marker),
      findings: next.report.findings.length }, want, name);
    assert.deepEqual(next.doc.info, { v: 1 }, name);
  }
  assert.deepEqual(shown.doc.keymaps, [{ n: 0 }, { n: 1 }], 'the state shown is left as it was');
});

test('search finds items by type, key and description', () => {
  const state = { ...initialState(), ids: [5, 6], doc: { keymaps: [
    { type: 'Click', icon: { description: 'jump' } }, { type: 'Fire', icon: { description: '' } }] },
  captions: [{ keys: { key: 'Q' } }, { keys: { key: 'LMB' } }] };
  const cases = [['', [5, 6]], ['fire', [6]], ['q', [5]], ['lmb', [6]], ['JUMP', [5]], ['nothing', []]];
  for (const [text, want] of cases) assert.deepEqual(matchingItems(state, text).map((e) => e.id), want, text);
});
