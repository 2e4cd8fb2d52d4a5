import { gamepadButtonChanges, readGamepads } from './keys.js';

// Making macro scripts on the screen: "Pick point" puts the next click on
// the picture into the script as a point; "Record" turns clicks, drags and
// typed text into lines, with the pauses between them, until "Stop". Points
// are written in the editing form's pixels of the macro screen the server names.

/// A point of the screen ({x, y}, fractions) in the editing form's pixels of
/// a `width` x `height` macro screen, never beyond its last pixel.
export function macroPoint(p, width, height) {
  const at = (f, size) => Math.min(Math.max(Math.round(f * size), 0), size - 1);
  return `${at(p.x, width)},${at(p.y, height)}`;
}

/// The lines for what was recorded: [{kind: 'tap'|'drag'|'text'|'pad', ...,
/// start, end}] in time order, times in milliseconds.
export function recordedLines(events, width, height) {
  const px = (p) => macroPoint(p, width, height);
  const lines = [];
  let last = null;
  for (const e of events) {
    if (last !== null) {
      const pause = Math.round((e.start - last) / 10) * 10;
      if (pause >= 10) lines.push(`sleep ${pause}`);
    }
    if (e.kind === 'tap') lines.push(`click ${px(e.from)}`);
    else if (e.kind === 'drag') lines.push(`curve ${px(e.from)} ${px(e.to)}`);
    else if (e.kind === 'text') lines.push(`text "${e.text}"`);
    else if (e.kind === 'pad') lines.push(`joystick_${e.down ? 'press' : 'release'} ${e.text}`);
    last = e.end;
  }
  return lines;
}

/// `text` with the point `xy` ("960,540") put in at `caret`: a new click line
/// on an empty line, else a further point of the line.
export function insertPoint(text, caret, xy) {
  const start = text.lastIndexOf('\n', caret - 1) + 1;
  const lineEnd = text.indexOf('\n', caret);
  const line = text.slice(start, lineEnd < 0 ? text.length : lineEnd);
  if (line.trim() === '') return text.slice(0, start) + `click ${xy}` + text.slice(start + line.length);
  const end = lineEnd < 0 ? text.length : lineEnd;
  return `${text.slice(0, end)} ${xy}${text.slice(end)}`;
}

export class MacroTools {
  /// `hooks`: macroItem() -> {id, item} or null, change(id, member, lines),
  /// area() -> the press script's text area, if shown.
  constructor(store, hooks) {
    this.store = store;
    this.hooks = hooks;
    this.events = [];
  }

  target() { return this.hooks.macroItem(); }

  pick() {
    if (!this.target()) return;
    this.store.update({ mode: 'pick', status: 'Click the screen where the point goes' });
  }

  record() {
    if (!this.target()) return;
    this.events = [];
    this.down = null;
    this.watchGamepads(readGamepads());
    this.store.update({ mode: 'record', recorded: [], status: 'Recording: click, drag or type on the screen; Stop ends it' });
  }

  stop() {
    const { mode } = this.store.get();
    const target = this.target();
    if (mode === 'record' && target) {
      const { macroWidth, macroHeight } = this.store.get();
      const lines = recordedLines(this.events, macroWidth, macroHeight);
      const before = target.item.press_actions || [];
      if (lines.length) this.hooks.change(target.id, 'press_actions', [...before.filter((l) => l !== ''), ...lines]);
    }
    this.events = [];
    this.store.update({ mode: 'edit', recorded: [], status: mode === 'record' ? 'Recorded' : '' });
  }

  commit() { if (this.store.get().mode === 'record') this.stop(); }

  /// Remembers the press script's text and cursor as the user leaves it.
  remember(area) {
    const target = this.target();
    if (target) this.leftAt = { id: target.id, text: area.value, caret: area.selectionStart };
  }

  /// A press or release on the picture at {x, y} (fractions of the screen).
  press(p) {
    const { mode, macroWidth, macroHeight } = this.store.get();
    const target = this.target();
    if (!target) return;
    if (mode === 'pick' && !p.down) {
      // Where the cursor was when the script was left for the button.
      const area = this.hooks.area();
      const left = this.leftAt && this.leftAt.id === target.id ? this.leftAt : null;
      const text = left ? left.text : area ? area.value : (target.item.press_actions || []).join('\n');
      const caret = left ? left.caret : area ? area.selectionStart : text.length;
      this.leftAt = null;
      const xy = macroPoint(p, macroWidth, macroHeight);
      this.hooks.change(target.id, 'press_actions', insertPoint(text, caret, xy).split('\n'));
      this.store.update({ mode: 'edit', status: `Point ${xy} added` });
    } else if (mode === 'record') {
      if (p.down) { this.down = p; return; }
      if (!this.down) return;
      const moved = Math.hypot(p.x - this.down.x, p.y - this.down.y) > 0.01;
      this.events.push({ kind: moved ? 'drag' : 'tap', from: this.down, to: p, start: this.down.time, end: p.time });
      this.down = null;
      this.showRecorded();
    }
  }

  // Gamepad buttons pressed and released while recording become lines too.
  watchGamepads(before) {
    const now = readGamepads();
    const time = performance.now();
    now.forEach((pad, i) => {
      for (const change of gamepadButtonChanges(before[i], pad)) {
        this.events.push({ kind: 'pad', ...change, start: time, end: time });
        this.showRecorded();
      }
    });
    requestAnimationFrame(() => { if (this.store.get().mode === 'record') this.watchGamepads(now); });
  }

  /// A key pressed while recording: typed characters become text lines.
  key(e) {
    if (e.key === 'Escape') { this.stop(); return; }
    if (e.ctrlKey || e.metaKey || e.altKey || e.key.length !== 1) return;
    e.preventDefault();
    const last = this.events[this.events.length - 1];
    if (last && last.kind === 'text' && e.timeStamp - last.end < 1000) {
      last.text += e.key.replace(/"/g, '');
      last.end = e.timeStamp;
    } else {
      this.events.push({ kind: 'text', text: e.key.replace(/"/g, ''), start: e.timeStamp, end: e.timeStamp });
    }
    this.showRecorded();
  }

  // The lines recorded so far, shown while the recording goes on.
  showRecorded() {
    const { macroWidth, macroHeight } = this.store.get();
    const recorded = recordedLines(this.events, macroWidth, macroHeight);
    this.store.update({ recorded, status: `Recording: ${recorded.length} ${recorded.length === 1 ? 'line' : 'lines'}` });
  }
}
