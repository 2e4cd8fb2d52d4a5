// Snapping, aligning and recording: the geometry the page does itself.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { SnapLines, snapOffset } from '../../tools/editor/page/snapping.js';
import { arrange } from '../../tools/editor/page/arrange.js';
import { insertPoint, macroPoint, recordedLines } from '../../tools/editor/page/macrotools.js';

const size = { width: 1920, height: 1080 };

test('snapping prefers controls to the grid and says where', () => {
  const targets = [{ x: 500, y: 300, r: 28 }];
  const cases = [
    ['onto a centre', { x: 503, y: 700 }, 500, 'x'],
    ['onto an edge', { x: 530, y: 705 }, 528, 'x'],
    ['onto the grid only', { x: 1003, y: 901 }, 1000, null],
  ];
  for (const [name, point, wantX, guide] of cases) {
    const s = snapOffset(point, targets, size);
    assert.equal(point.x + s.dx, wantX, name);
    assert.equal(s.guides.some((g) => g.axis === 'x'), guide === 'x', name);
  }
});

test('snapping through the grid of lines finds what a scan of every control finds', () => {
  // A scan of every line and the screen's middle, as the grid must answer;
  // seeded, so a failure repeats.
  const scan = (point, targets, axis) => {
    const lines = [...targets, { x: size.width / 2, y: size.height / 2 }].flatMap((t) => [[t[axis], 2], ...(t.r ? [[t[axis] - t.r, 1], [t[axis] + t.r, 1]] : [])]);
    const near = lines.filter(([at]) => Math.abs(at - point[axis]) <= 8)
      .sort((a, b) => Math.abs(a[0] - point[axis]) - Math.abs(b[0] - point[axis]) || b[1] - a[1]);
    return near.length ? near[0][0] - point[axis] : null;
  };
  let seed = 7;
  const random = () => { seed = (seed * 16807) % 2147483647; return seed / 2147483647; };
  const targets = Array.from({ length: 300 }, () => ({ x: random() * 2000 - 40, y: random() * 1160 - 40,
    r: random() < 0.3 ? 0 : Math.round(random() * 40) }));
  const lines = new SnapLines(targets);
  for (let i = 0; i < 500; i++) {
    const point = { x: Math.round(random() * 2000) - 40, y: Math.round(random() * 1160) - 40 };
    const s = snapOffset(point, lines, size);
    for (const [axis, d] of [['x', s.dx], ['y', s.dy]]) {
      const want = scan(point, targets, axis);
      if (want !== null && s.guides.some((g) => g.axis === axis)) assert.equal(Math.abs(d), Math.abs(want), `${axis} of ${JSON.stringify(point)}`);
      if (want !== null) assert.ok(Math.abs(d) <= Math.abs(want), `${axis} of ${JSON.stringify(point)}`);
    }
  }
});

test('align and distribute move markers, not what is already in line', () => {
  const item = (x, y) => ({ icon: { rel_position: { rel_x: x, rel_y: y } } });
  const entries = [{ id: 1, item: item(0.1, 0.5) }, { id: 2, item: item(0.3, 0.2) }, { id: 3, item: item(0.9, 0.4) }];
  assert.deepEqual(arrange('left', entries).map((m) => [m.id, +m.dx.toFixed(3)]), [[2, -0.2], [3, -0.8]]);
  assert.deepEqual(arrange('top', entries).map((m) => m.id), [1, 3]);
  const spread = arrange('distribute-h', entries);
  assert.deepEqual(spread.map((m) => [m.id, +m.dx.toFixed(3)]), [[2, 0.2]]);
  assert.deepEqual(arrange('distribute-h', entries.slice(0, 2)), []);
});

test('a recording becomes lines with the pauses between', () => {
  const at = (x, y) => ({ x, y });
  const lines = recordedLines([
    { kind: 'tap', from: at(0.5, 0.5), start: 0, end: 40 },
    { kind: 'tap', from: at(0.5, 0.5), start: 142, end: 180 },
    { kind: 'drag', from: at(0.1, 0.9), to: at(0.2, 0.8), start: 183, end: 400 },
    { kind: 'text', text: 'gg', start: 900, end: 950 },
    { kind: 'pad', text: 'A', down: true, start: 950, end: 950 },
    { kind: 'pad', text: 'A', down: false, start: 1000, end: 1000 },
  ], 1920, 1080);
  assert.deepEqual(lines, ['click 960,540', 'sleep 100', 'click 960,540', 'curve 192,972 384,864', 'sleep 500',
    'text "gg"', 'joystick_press A', 'sleep 50', 'joystick_release A']);
});

test('a picked point starts a click line or joins the line at the caret', () => {
  const cases = [
    ['empty script', '', 0, 'click 1,2'],
    ['empty line', 'sleep 5\n', 8, 'sleep 5\nclick 1,2'],
    ['on a line', 'curve 0,0\nsleep 5', 3, 'curve 0,0 1,2\nsleep 5'],
  ];
  for (const [name, text, caret, want] of cases) assert.equal(insertPoint(text, caret, '1,2'), want, name);
});

test('macro points stay on the macro screen', () => {
  const cases = [[{ x: 0.5, y: 0.5 }, '960,540'], [{ x: 1, y: 1 }, '1919,1079'], [{ x: -0.1, y: 0 }, '0,0']];
  for (const [p, want] of cases) assert.equal(macroPoint(p, 1920, 1080), want);
});
