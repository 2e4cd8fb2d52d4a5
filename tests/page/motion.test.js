// Where test mode puts a pad's finger and a macro's taps, and the kept
// background opacity.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { macroTaps, padFinger } from '../../tools/editor/page/motion.js';
import { keptOpacity } from '../../tools/editor/page/screen.js';

const near = (got, want, name) => {
  for (const k of Object.keys(want)) assert.ok(Math.abs(got[k] - want[k]) < 1e-9, `${name}: ${k} ${got[k]} != ${want[k]}`);
};

test('a macro\'s taps: points in the macro frame, pauses add up, refused lines and mouse points left out', () => {
  const cases = [
    { name: 'press, pause, release', lines: ['press 960,540', 'sleep 50', 'release 960,540'], bad: [],
      want: [{ at: 0, x: 0.5, y: 0.5, n: 1 }, { at: 50, x: 0.5, y: 0.5, n: 2 }] },
    { name: 'a curve is one point after another', lines: ['curve 0,0 1920,1080'], bad: [],
      want: [{ at: 0, x: 0, y: 0, n: 1 }, { at: 0, x: 1, y: 1, n: 2 }] },
    { name: 'a refused line counts neither points nor time', lines: ['sleep 100', 'click 10,10', 'click 480,270'], bad: [1, 2],
      want: [{ at: 0, x: 0.25, y: 0.25, n: 1 }] },
    { name: 'the mouse has no place', lines: ['click mouse 480,270'], bad: [], want: [{ at: 0, x: 0.25, y: 0.25, n: 1 }] },
    { name: 'nothing to show', lines: ['loop 3', 'loop_end', ''], bad: [], want: [] },
  ];
  for (const c of cases) assert.deepEqual(macroTaps(c.lines, c.bad, 1920, 1080), c.want, c.name);
  // A long script is shown in part rather than played for minutes.
  assert.equal(macroTaps(Array(1000).fill('click 1,1'), [], 1920, 1080).length, 200);
  assert.equal(macroTaps(['sleep 60000', 'click 1,1'], [], 1920, 1080).length, 0);
});

test('a pad\'s finger goes to the rim toward the held directions, and stays home when they cancel', () => {
  const circle = { x: 100, y: 100, r: 10 };
  const s = Math.SQRT1_2 * 10;
  const cases = [
    { held: ['top'], want: { x: 100, y: 90 } },
    { held: ['right', 'bottom'], want: { x: 100 + s, y: 100 + s } },
    { held: ['left', 'right'], want: { x: 100, y: 100 } },
    { held: [], want: { x: 100, y: 100 } },
  ];
  for (const c of cases) near(padFinger(circle, c.held), c.want, c.held.join('+') || 'none');
});

test('the kept background opacity is read back within 0 to 1, and is 1 when none is kept', () => {
  const storage = (value) => ({ getItem: () => value });
  const cases = [[null, 1], ['0.4', 0.4], ['0', 0], ['7', 1], ['-1', 0], ['dim', 1]];
  for (const [kept, want] of cases) assert.equal(keptOpacity(storage(kept)), want, String(kept));
});
