// Cutting the server's picture into its frame and its items' groups, and
// finding the groups an answer changed.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { changedItems, pictureParts } from '../../tools/editor/page/patching.js';

const group = (index, body) => `<g class="item" data-item-index="${index}"><g class="geometry"><circle r="1"/></g>${body}<g/></g>`;
const picture = ({ title = 'a — 2 items', items = [group(0, 'x'), group(1, 'y')] } = {}) =>
  `<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 10 10"><title>${title}</title><g class="items">\n` +
  `${items.join('\n')}\n</g><g class="legend"><text>&lt;g</text></g></svg>`;

test('a picture is cut into its frame and one piece per item, nested and empty groups inside', () => {
  const parts = pictureParts(picture());
  assert.deepEqual(parts.items, [group(0, 'x'), group(1, 'y')]);
  assert.equal(parts.root, '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 10 10">');
  assert.ok(parts.head.endsWith('<g class="items">\n'));
  assert.ok(parts.tail.startsWith('</g><g class="legend">'));
  assert.deepEqual(pictureParts(picture({ items: [] })).items, []);
  for (const broken of ['', '<svg><g class="items"><g>', '<g class="items"></g>']) {
    assert.equal(pictureParts(broken), null, broken);
  }
});

test('only the items that differ are redrawn; a changed frame or count redraws all', () => {
  const shown = pictureParts(picture());
  const cases = [
    ['the same picture', picture(), []],
    ['one item changed', picture({ items: [group(0, 'x'), group(1, 'z')] }), [1]],
    ['both changed', picture({ items: [group(0, 'w'), group(1, 'z')] }), [0, 1]],
    ['the title changed', picture({ title: 'a — 2 items, 1 problem' }), null],
    ['an item added', picture({ items: [group(0, 'x'), group(1, 'y'), group(2, 'z')] }), null],
    ['no items group', '<svg></svg>', null],
  ];
  for (const [name, next, want] of cases) assert.deepEqual(changedItems(shown, pictureParts(next)), want, name);
});
