// Test mode: keys, mouse buttons and gamepad controls light up the items the
// library says they fire (the server answers with its match rules, the same
// as for collisions), and where each would touch is marked. Nothing is
// edited while it is on. The motion is drawn too: a drag pad's finger
// steered by its direction keys, a skill's aim toward the pointer, and a
// macro's taps played in time.

import { gamepadChange, isModifier, keyboardKey, mouseKey, readGamepads } from './keys.js';
import { aimFinger, dragCircle, macroTaps, padFinger } from './motion.js';

// How long a finger stays at the centre it went back to, and how often a
// macro's taps move on.
const RETURN_MS = 600;
const TAP_SHOWN_MS = 700;

export class TestMode {
  /// `view`: size() -> the picture's {width, height}; point(e) -> the pointer
  /// in picture units; shapes() -> the server's shapes; macroCheck(lines) ->
  /// the numbers of the lines the library refuses.
  constructor(store, api, view) {
    this.store = store;
    this.api = api;
    this.view = view;
    this.modifiers = [];
    this.frame = 0;
    this.down = new Set();  // key codes down now
    this.held = new Map();  // key code -> what it fires, while it is down
    this.returning = [];    // fingers back at their centre: {from, to, until}
    this.taps = [];
    this.timers = [];
    const picture = document.getElementById('picture');
    picture.addEventListener('mousedown', (e) => this.mouse(e, true));
    picture.addEventListener('mouseup', (e) => this.mouse(e, false));
    picture.addEventListener('mousemove', (e) => {
      if (!this.on()) return;
      this.pointer = this.view.point(e);
      if ([...this.held.values()].some((items) => items.length)) this.drawMotion();
    });
    picture.addEventListener('contextmenu', (e) => { if (this.on()) e.preventDefault(); });
  }

  on() { return this.store.get().mode === 'test'; }

  toggle() {
    const on = !this.on();
    this.store.update({ mode: on ? 'test' : 'edit', triggered: [],
      status: on ? 'Test keys: press keys, mouse buttons or gamepad controls; nothing is edited' : '' });
    this.modifiers = [];
    this.down.clear();
    this.held.clear();
    this.stopTaps();
    this.returning = [];
    this.store.update({ motion: null });
    cancelAnimationFrame(this.frame);
    if (on) this.poll(readGamepads());
  }

  async show(keys, code = '') {
    const asked = this.asked = (this.asked || 0) + 1;
    let items = [];
    try { items = await this.api.trigger(keys); } catch (error) { items = []; }
    if (asked !== this.asked || !this.on()) return;
    if (code && this.down.has(code)) this.held.set(code, items);
    this.playMacros(items);
    this.drawMotion();
    const { doc } = this.store.get();
    const named = items.map((t) => `${doc.keymaps[t.index].type} ${t.index}${t.role === 'key' ? '' : ` (${t.role})`}`);
    this.store.update({ triggered: items,
      status: named.length ? `Fires ${named.join(', ')}` : 'Nothing fires on this key' });
  }

  key(e, down) {
    if (e.key === 'Escape' && down) { this.toggle(); return; }
    if (e.ctrlKey && e.key.toLowerCase() === 's') return;
    e.preventDefault();
    if (e.repeat) return;
    const key = keyboardKey(e);
    if (isModifier(e.code)) {
      this.modifiers = down ? [...this.modifiers, e.code] : this.modifiers.filter((c) => c !== e.code);
    }
    if (down) this.down.add(e.code);
    else this.release(e.code);
    if (!down || !key) { if (!down) this.store.update({ triggered: [] }); return; }
    const held = this.modifiers.find((code) => code !== e.code);
    this.show(held ? [key, keyboardKey({ code: held })] : [key], e.code);
  }

  // A released key's fingers go back to where they started.
  release(code) {
    this.down.delete(code);
    const before = this.fingers();
    this.held.delete(code);
    const after = new Set(this.fingers().map((f) => f.index));
    const until = performance.now() + RETURN_MS;
    for (const finger of before) {
      if (!after.has(finger.index)) this.returning.push({ from: finger.from, to: finger.from, index: finger.index, until });
    }
    this.drawMotion();
    setTimeout(() => this.drawMotion(), RETURN_MS + 20);
  }

  /// The fingers the held keys move: [{index, from, to}], picture units.
  fingers() {
    const { doc } = this.store.get();
    if (!doc) return [];
    const size = this.view.size();
    const handles = this.view.shapes().handles || {};
    const directions = new Map();
    const aims = new Set();
    for (const items of this.held.values()) {
      for (const t of items) {
        const item = doc.keymaps[t.index];
        if (!item) continue;
        if (['top', 'right', 'bottom', 'left'].includes(t.role)) {
          directions.set(t.index, [...(directions.get(t.index) || []), t.role]);
        } else if (item.type === 'Spell') aims.add(t.index);
      }
    }
    const out = [];
    for (const [index, roles] of directions) {
      const item = doc.keymaps[index];
      const circle = dragCircle(item, handles[item.type], size, 'drag radius');
      out.push({ index, from: circle, to: padFinger(circle, roles) });
    }
    for (const index of aims) {
      const item = doc.keymaps[index];
      const circle = dragCircle(item, handles[item.type], size, 'drag radius');
      const touch = item.rel_work_position || { rel_x: 0, rel_y: 0 };
      const from = { x: touch.rel_x * size.width, y: touch.rel_y * size.height };
      out.push({ index, from, to: this.pointer ? aimFinger(from, this.pointer, circle.r) : from });
    }
    return out;
  }

  drawMotion() {
    if (!this.on()) return;
    const now = performance.now();
    this.returning = this.returning.filter((f) => f.until > now);
    const fingers = [...this.fingers(), ...this.returning];
    this.store.update({ motion: { fingers, taps: this.taps.filter((t) => t.shownUntil > now) } });
  }

  // A macro's press script, played in time: each tap shows for a moment
  // with its number, at its moment.
  async playMacros(items) {
    const { doc } = this.store.get();
    const macros = items.filter((t) => doc.keymaps[t.index] && doc.keymaps[t.index].type === 'Macro');
    if (!macros.length) return;
    this.stopTaps();
    const size = this.view.size();
    for (const t of macros) {
      const lines = doc.keymaps[t.index].press_actions || [];
      let bad = [];
      try { bad = await this.view.macroCheck(lines); } catch (error) { bad = lines.map((line, i) => i + 1); }
      if (!this.on()) return;
      const { macroWidth, macroHeight } = this.store.get();
      for (const tap of macroTaps(lines, bad, macroWidth, macroHeight)) {
        this.timers.push(setTimeout(() => {
          const at = performance.now();
          this.taps = [...this.taps.filter((shown) => shown.shownUntil > at),
            { x: tap.x * size.width, y: tap.y * size.height, n: tap.n, shownUntil: at + TAP_SHOWN_MS }];
          this.drawMotion();
          this.timers.push(setTimeout(() => this.drawMotion(), TAP_SHOWN_MS + 20));
        }, tap.at));
      }
    }
  }

  stopTaps() {
    for (const timer of this.timers) clearTimeout(timer);
    this.timers = [];
    this.taps = [];
  }

  mouse(e, down) {
    if (!this.on()) return;
    e.preventDefault();
    const key = mouseKey(e);
    if (down && key) this.show([key]);
    else this.store.update({ triggered: [] });
  }

  poll(before) {
    const now = readGamepads();
    for (let i = 0; i < now.length; i++) {
      const change = gamepadChange(before[i], now[i]);
      if (change) this.show([change]);
    }
    this.frame = requestAnimationFrame(() => { if (this.on()) this.poll(now); });
  }
}
