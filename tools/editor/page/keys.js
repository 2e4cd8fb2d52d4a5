// Turning what the browser reports into the keys the library knows: keyboard
// keys as PC set-1 scan codes (256 added for extended keys), mouse buttons as
// the library's button codes, gamepad buttons (standard mapping) by name. The
// virtual key and the caption of every key come from the server.

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

/// The first pressed gamepad button as the library's key parameters, or null.
export function pressedGamepadKey() {
  for (const pad of navigator.getGamepads ? navigator.getGamepads() : []) {
    if (!pad) continue;
    const index = pad.buttons.findIndex((button) => button.pressed);
    if (index >= 0) return { device: 'joystick', text: padNames[index] || `Button_${index}` };
  }
  return null;
}
