// Turning what the browser reports into the keys the library knows: keyboard
// keys as PC set-1 scan codes (256 added for extended keys), mouse buttons as
// the library's button codes, gamepad controls (standard mapping) by name.
// The virtual key and the caption of every key come from the server. Pure: no
// DOM, so that the capture rules can be tested without a browser.

const plain = ['Escape', 'Digit1', 'Digit2', 'Digit3', 'Digit4', 'Digit5', 'Digit6', 'Digit7',
  'Digit8', 'Digit9', 'Digit0', 'Minus', 'Equal', 'Backspace', 'Tab', 'KeyQ', 'KeyW', 'KeyE',
  'KeyR', 'KeyT', 'KeyY', 'KeyU', 'KeyI', 'KeyO', 'KeyP', 'BracketLeft', 'BracketRight', 'Enter',
  'ControlLeft', 'KeyA', 'KeyS', 'KeyD', 'KeyF', 'KeyG', 'KeyH', 'KeyJ', 'KeyK', 'KeyL',
  'Semicolon', 'Quote', 'Backquote', 'ShiftLeft', 'Backslash', 'KeyZ', 'KeyX', 'KeyC', 'KeyV',
  'KeyB', 'KeyN', 'KeyM', 'Comma', 'Period', 'Slash', 'ShiftRight', 'NumpadMultiply', 'AltLeft',
  'Space', 'CapsLock', 'F1', 'F2', 'F3', 'F4', 'F5', 'F6', 'F7', 'F8', 'F9', 'F10', 'NumLock',
  'ScrollLock', 'Numpad7', 'Numpad8', 'Numpad9', 'NumpadSubtract', 'Numpad4', 'Numpad5',
  'Numpad6', 'NumpadAdd', 'Numpad1', 'Numpad2', 'Numpad3', 'Numpad0', 'NumpadDecimal'];

const scanCodes = new Map(plain.map((code, i) => [code, i + 1]));
for (const [code, scan] of Object.entries({
  IntlBackslash: 86, F11: 87, F12: 88, F13: 100, F14: 101, F15: 102,
  // Extended keys: 0xE0-prefixed in set 1.
  NumpadEnter: 284, ControlRight: 285, NumpadDivide: 309, PrintScreen: 311, AltRight: 312,
  Pause: 69, Home: 327, ArrowUp: 328, PageUp: 329, ArrowLeft: 331, ArrowRight: 333, End: 335,
  ArrowDown: 336, PageDown: 337, Insert: 338, Delete: 339, MetaLeft: 347, MetaRight: 348,
  ContextMenu: 349,
})) scanCodes.set(code, scan);

/// The library's key parameters for a keyboard event, or null for a key
/// without a scan code.
export function keyboardKey(event) {
  const scan = scanCodes.get(event.code);
  if (scan === undefined) return null;
  return { device: 'keyboard', scan_code: scan };
}

const modifierCodes = new Set(['ControlLeft', 'ControlRight', 'ShiftLeft', 'ShiftRight',
  'AltLeft', 'AltRight', 'MetaLeft', 'MetaRight']);

export const isModifier = (code) => modifierCodes.has(code);

/// Captures one key or a combination from key events, as a person means it:
/// a modifier held while another key goes down makes a combination (the
/// library keeps it as the key and its "second_key": Ctrl+G is G with Ctrl);
/// a modifier pressed and released alone is itself the key; Escape alone
/// cancels. down() and up() answer null while undecided, else
/// {cancel: true}, {error}, or {keys: [key, second key?]}.
export class ChordCapture {
  constructor() { this.held = []; }

  down(event) {
    if (event.repeat) return null;
    if (event.code === 'Escape' && this.held.length === 0) return { cancel: true };
    if (isModifier(event.code)) {
      if (!this.held.includes(event.code)) this.held.push(event.code);
      return null;
    }
    const key = keyboardKey(event);
    if (!key) return { error: `the key ${event.code || event.key} has no scan code` };
    if (this.held.length === 0) return { keys: [key] };
    return { keys: [key, keyboardKey({ code: this.held[0] })] };
  }

  up(event) {
    if (!this.held.includes(event.code)) return null;
    this.held = this.held.filter((code) => code !== event.code);
    return { keys: [keyboardKey({ code: event.code })] };
  }
}

/// The member holding the second key of a combination with key member
/// `member` ("key", "positive_key.key"), or null where it has none.
export const secondKeyOf = (member) => (member === 'key' ? 'second_key'
  : member.endsWith('.key') ? member.replace(/key$/, 'second_key') : null);

/// The steps to bind `members` (the key members of an item, by name), in the
/// order people expect: up, right, down, left for a direction pad; one
/// combination for a key and its second key; one key for anything else.
export function bindingSteps(members) {
  const directions = [['top_key', 'up'], ['right_key', 'right'], ['bottom_key', 'down'], ['left_key', 'left']];
  if (directions.every(([member]) => members.includes(member))) {
    return directions.map(([member, word]) => ({ members: [member], prompt: `Press the key for ${word}` }));
  }
  return members.filter((member) => !member.endsWith('second_key')).map((member) => {
    const second = secondKeyOf(member);
    const name = member.replace(/\.key$/, '').replace(/_key$/, '').replace(/_/g, ' ');
    return {
      members: second && members.includes(second) ? [member, second] : [member],
      prompt: member === 'key' ? 'Press the key (hold Ctrl, Shift or Alt for a combination)'
        : `Press the key for ${name}`,
    };
  });
}

// DOM button numbers to the library's mouse codes.
const mouseButtons = [1, 4, 2, 8, 16];

export function mouseKey(event) {
  const code = mouseButtons[event.button];
  return code ? { device: 'mouse', scan_code: code } : null;
}

export function wheelKey(event) {
  return { device: 'mouse', scan_code: event.deltaY < 0 ? 548 : 549 };
}

// Button names of the standard gamepad mapping.
const padNames = ['A', 'B', 'X', 'Y', 'LB', 'RB', 'LT', 'RT', 'Back', 'Start', 'LS', 'RS',
  'DPad_Up', 'DPad_Down', 'DPad_Left', 'DPad_Right', 'Guide'];

const stickNames = ['Left_Stick', 'Left_Stick', 'Right_Stick', 'Right_Stick'];

/// What changed between two readings of a gamepad ({buttons: [{pressed,
/// value}], axes: [numbers]}): a button, trigger or D-pad pressed, or a stick
/// pushed past half way, as the library's key parameters; null for nothing.
export function gamepadChange(before, now) {
  if (!now) return null;
  const pressed = gamepadButtonChanges(before, now).find((c) => c.down);
  if (pressed) return { device: 'joystick', text: pressed.text };
  for (let i = 0; i < now.axes.length; i++) {
    const was = before ? Math.abs(before.axes[i] || 0) : 0;
    if (Math.abs(now.axes[i]) > 0.5 && was <= 0.5) {
      return { device: 'joystick', text: stickNames[i] || `Axis_${i}` };
    }
  }
  return null;
}

/// Every button, trigger or D-pad direction that went down or up between two
/// readings of a gamepad: [{text, down}] by the standard mapping's names.
export function gamepadButtonChanges(before, now) {
  if (!now) return [];
  const pressed = (b) => !!b && (b.pressed || b.value > 0.5);
  return now.buttons.map((b, i) => ({ text: padNames[i] || `Button_${i}`, down: pressed(b),
    was: pressed(before && before.buttons[i]) })).filter((c) => c.down !== c.was)
    .map(({ text, down }) => ({ text, down }));
}

/// The browser's gamepads as plain readings.
export function readGamepads(source = globalThis.navigator) {
  const pads = source && source.getGamepads ? [...source.getGamepads()] : [];
  return pads.map((pad) => pad && {
    buttons: pad.buttons.map((b) => ({ pressed: b.pressed, value: b.value })), axes: [...pad.axes] });
}
