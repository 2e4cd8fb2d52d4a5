// Key capture as people mean it, gesture groups, gamepad readings.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { ChordCapture, bindingSteps, gamepadButtonChanges, gamepadChange } from '../../tools/editor/page/keys.js';
import { Gestures, undoState } from '../../tools/editor/page/history.js';

const down = (code, extra = {}) => ({ code, keyCode: 0, ...extra });

test('chords, single modifiers and Escape', () => {
  const cases = [
    { name: 'plain key', events: [['down', 'KeyW']], want: { keys: [34 - 17] } },
    { name: 'Ctrl+G is G with Ctrl', events: [['down', 'ControlLeft'], ['down', 'KeyG']], want: { keys: [34, 29] } },
    { name: 'modifier alone', events: [['down', 'ShiftLeft'], ['up', 'ShiftLeft']], want: { keys: [42] } },
    { name: 'Escape cancels', events: [['down', 'Escape']], want: { cancel: true } },
    { name: 'Escape with a modifier is a chord', events: [['down', 'AltLeft'], ['down', 'Escape']], want: { keys: [1, 56] } },
    { name: 'no scan code', events: [['down', 'LaunchMail']], want: { error: true } },
  ];
  for (const c of cases) {
    const capture = new ChordCapture();
    let outcome = null;
    for (const [kind, code] of c.events) outcome = capture[kind](down(code)) || outcome;
    if (c.want.keys) assert.deepEqual(outcome.keys.map((k) => k.scan_code), c.want.keys, c.name);
    else if (c.want.cancel) assert.equal(outcome.cancel, true, c.name);
    else assert.ok(outcome.error, c.name);
  }
});

test('binding flows: a pad in four presses, a combination in one', () => {
  assert.deepEqual(bindingSteps(['top_key', 'right_key', 'bottom_key', 'left_key']).map((s) => s.prompt),
    ['Press the key for up', 'Press the key for right', 'Press the key for down', 'Press the key for left']);
  assert.deepEqual(bindingSteps(['key', 'second_key']).map((s) => s.members), [['key', 'second_key']]);
  assert.deepEqual(bindingSteps(['positive_key.key', 'positive_key.second_key', 'negative_key.key', 'negative_key.second_key'])
    .map((s) => s.members), [['positive_key.key', 'positive_key.second_key'], ['negative_key.key', 'negative_key.second_key']]);
});

test('gamepad: buttons, triggers and sticks as they change', () => {
  const pad = (buttons = [], axes = [0, 0, 0, 0]) => ({
    buttons: Array.from({ length: 17 }, (_, i) => ({ pressed: buttons.includes(i), value: buttons.includes(i) ? 1 : 0 })), axes });
  const cases = [
    ['A pressed', pad(), pad([0]), 'A'],
    ['A held is no change', pad([0]), pad([0]), null],
    ['right trigger', pad(), pad([7]), 'RT'],
    ['D-pad up', pad(), pad([12]), 'DPad_Up'],
    ['left stick pushed', pad(), pad([], [0.9, 0, 0, 0]), 'Left_Stick'],
    ['right stick pushed up', pad(), pad([], [0, 0, 0, -0.8]), 'Right_Stick'],
    ['stick drifting', pad(), pad([], [0.2, 0.1, 0, 0]), null],
  ];
  for (const [name, before, now, want] of cases) {
    const change = gamepadChange(before, now);
    assert.equal(change ? change.text : null, want, name);
  }
  assert.deepEqual(gamepadButtonChanges(pad([0]), pad([1])), [{ text: 'A', down: false }, { text: 'B', down: true }]);
});

test('a held key is one gesture, a new press another', () => {
  const g = new Gestures();
  const first = g.forKey('ArrowRight', false);
  assert.equal(g.forKey('ArrowRight', true), first);
  assert.notEqual(g.forKey('ArrowRight', false), first);
  const other = g.forKey('ArrowLeft', true);
  g.keyUp('ArrowLeft');
  assert.notEqual(g.forKey('ArrowLeft', true), other);
});

test('undo is possible while an edit is on its way, redo is not', () => {
  const cases = [
    [{ canUndo: false, canRedo: true }, [], { canUndo: false, canRedo: true }],
    [{ canUndo: false, canRedo: true }, [{ op: 'move' }], { canUndo: true, canRedo: false }],
    [{ canUndo: true, canRedo: true }, [{ op: 'undo' }], { canUndo: true, canRedo: true }],
  ];
  for (const [state, pending, want] of cases) assert.deepEqual(undoState(state, pending), want);
});
