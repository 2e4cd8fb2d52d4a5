// Test mode: keys, mouse buttons and gamepad controls light up the items the
// library says they fire (the server answers with its match rules, the same
// as for collisions), and where each would touch is marked. Nothing is
// edited while it is on.

import { gamepadChange, isModifier, keyboardKey, mouseKey, readGamepads } from './keys.js';

export class TestMode {
  constructor(store, api) {
    this.store = store;
    this.api = api;
    this.modifiers = [];
    this.frame = 0;
    const picture = document.getElementById('picture');
    picture.addEventListener('mousedown', (e) => this.mouse(e, true));
    picture.addEventListener('mouseup', (e) => this.mouse(e, false));
    picture.addEventListener('contextmenu', (e) => { if (this.on()) e.preventDefault(); });
  }

  on() { return this.store.get().mode === 'test'; }

  toggle() {
    const on = !this.on();
    this.store.update({ mode: on ? 'test' : 'edit', triggered: [],
      status: on ? 'Test keys: press keys, mouse buttons or gamepad controls; nothing is edited' : '' });
    this.modifiers = [];
    cancelAnimationFrame(this.frame);
    if (on) this.poll(readGamepads());
  }

  async show(keys) {
    const asked = this.asked = (this.asked || 0) + 1;
    let items = [];
    try { items = await this.api.trigger(keys); } catch (error) { items = []; }
    if (asked !== this.asked || !this.on()) return;
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
    if (!down || !key) { if (!down) this.store.update({ triggered: [] }); return; }
    const held = this.modifiers.find((code) => code !== e.code);
    this.show(held ? [key, keyboardKey({ code: held })] : [key]);
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
