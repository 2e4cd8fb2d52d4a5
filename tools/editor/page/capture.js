// The bind dialog: waits for one key, mouse button, wheel turn or gamepad
// control, or a combination, and answers it as the library writes keys.
// Escape, the Cancel button and a click beside the dialog cancel; a mouse
// button is taken only on the dialog's own click area.

import { ChordCapture, gamepadChange, mouseKey, readGamepads, wheelKey } from './keys.js';

export class KeyCapture {
  show(prompt, target, confirming) {
    const overlay = this.overlay;
    overlay.querySelector('.capture-target').textContent = target;
    overlay.querySelector('.capture-prompt').textContent = prompt;
    overlay.querySelector('.click-area').hidden = confirming;
    overlay.querySelector('.capture-confirm').hidden = !confirming;
    overlay.hidden = false;
    if (!this.open) {
      window.addEventListener('keydown', this.hold, true);
      window.addEventListener('keyup', this.hold, true);
    }
    this.open = true;
  }

  /// Ends a binding: the dialog stays open from its first question to here,
  /// so no key meant for it reaches the page between two questions.
  close() {
    window.removeEventListener('keydown', this.hold, true);
    window.removeEventListener('keyup', this.hold, true);
    this.held = [];
    this.open = false;
    this.overlay.hidden = true;
    // The keyboard goes back to where it was before the dialog.
    if (this.before && this.before.isConnected) this.before.focus({ preventScroll: true });
  }

  /// Asks before a binding that replaces or collides: resolves true for
  /// Enter or "Bind anyway", false for Escape, Cancel or a click beside.
  confirm(message, target = '') {
    const overlay = this.overlay;
    this.show(message, target, true);
    overlay.querySelector('.capture-box').focus();
    return new Promise((resolve) => {
      const yes = overlay.querySelector('.capture-confirm');
      const no = overlay.querySelector('.capture-cancel');
      const finish = (answer) => {
        if (!this.listening) return;
        this.listening = false;
        window.removeEventListener('keydown', onKey, true);
        overlay.removeEventListener('mousedown', onMouse);
        yes.removeEventListener('click', onYes);
        no.removeEventListener('click', onNo);
        resolve(answer);
      };
      const onKey = (e) => {
        e.preventDefault();
        e.stopPropagation();
        if (e.key === 'Enter') finish(true);
        else if (e.key === 'Escape') finish(false);
      };
      const onMouse = (e) => { if (e.target === overlay) { e.preventDefault(); finish(false); } };
      const onYes = () => finish(true);
      const onNo = () => finish(false);
      this.listening = true;
      window.addEventListener('keydown', onKey, true);
      overlay.addEventListener('mousedown', onMouse);
      yes.addEventListener('click', onYes);
      no.addEventListener('click', onNo);
      this.replay(onKey, () => {});
    });
  }

  /// `keyOf(params)` asks the server for the key with its caption.
  constructor(overlay, keyOf) {
    this.overlay = overlay;
    this.keyOf = keyOf;
    this.open = false;
    this.listening = false;
    // Keys pressed while the dialog is open between two questions (an
    // answer from the server under way) are kept for the next question.
    this.held = [];
    this.hold = (e) => {
      if (this.listening) return;
      e.preventDefault();
      e.stopPropagation();
      this.held.push({ type: e.type, code: e.code, key: e.key, repeat: e.repeat });
    };
  }

  // Hands the keys held so far to a question's handlers, as events, until
  // one answers it: the keys after it are for the questions after it.
  replay(onKeyDown, onKeyUp) {
    const quiet = { preventDefault() {}, stopPropagation() {} };
    while (this.listening && this.held.length) {
      const e = this.held.shift();
      (e.type === 'keydown' ? onKeyDown : onKeyUp)({ ...quiet, ...e });
    }
  }

  /// Resolves to [key, second key?] in the library's form, or null when
  /// cancelled. `target` names the item and the slot being bound.
  capture(prompt, { chord = false, target = '' } = {}) {
    const overlay = this.overlay;
    const area = overlay.querySelector('.click-area');
    this.show(prompt, target, false);
    if (!this.overlay.contains(document.activeElement)) this.before = document.activeElement;
    overlay.querySelector('.capture-box').focus();
    return new Promise((resolve) => {
      const chords = new ChordCapture();
      let frame = 0;
      let pads = readGamepads();
      let done = false;
      const finish = async (params) => {
        if (done) return;
        done = true;
        stop();
        if (!params) { resolve(null); return; }
        try {
          resolve(await Promise.all(params.slice(0, chord ? 2 : 1).map((p) => this.keyOf(p))));
        } catch (error) {
          resolve(null);
        }
      };
      const decide = (outcome) => {
        if (!outcome) return;
        if (outcome.cancel) finish(null);
        else if (outcome.keys) finish(outcome.keys);
        else if (outcome.error) overlay.querySelector('.capture-prompt').textContent = `${prompt} (${outcome.error})`;
      };
      const onKeyDown = (e) => { e.preventDefault(); e.stopPropagation(); decide(chords.down(e)); };
      const onKeyUp = (e) => { e.preventDefault(); e.stopPropagation(); decide(chords.up(e)); };
      const onMouse = (e) => {
        e.preventDefault();
        if (e.target === overlay) { finish(null); return; }  // beside the dialog: cancel
        if (!area.contains(e.target)) return;
        const key = mouseKey(e);
        if (key) finish([key]);
      };
      const onWheel = (e) => { if (area.contains(e.target)) { e.preventDefault(); finish([wheelKey(e)]); } };
      const onMenu = (e) => e.preventDefault();
      const onCancel = () => finish(null);
      const poll = () => {
        const now = readGamepads();
        for (let i = 0; i < now.length; i++) {
          const change = gamepadChange(pads[i], now[i]);
          if (change) { finish([change]); return; }
        }
        pads = now;
        frame = requestAnimationFrame(poll);
      };
      const stop = () => {
        this.listening = false;
        cancelAnimationFrame(frame);
        window.removeEventListener('keydown', onKeyDown, true);
        window.removeEventListener('keyup', onKeyUp, true);
        overlay.removeEventListener('mousedown', onMouse);
        overlay.removeEventListener('wheel', onWheel);
        overlay.removeEventListener('contextmenu', onMenu);
        overlay.querySelector('.capture-cancel').removeEventListener('click', onCancel);
      };
      window.addEventListener('keydown', onKeyDown, true);
      window.addEventListener('keyup', onKeyUp, true);
      overlay.addEventListener('mousedown', onMouse);
      overlay.addEventListener('wheel', onWheel, { passive: false });
      overlay.addEventListener('contextmenu', onMenu);
      overlay.querySelector('.capture-cancel').addEventListener('click', onCancel);
      frame = requestAnimationFrame(poll);
      this.listening = true;
      this.replay(onKeyDown, onKeyUp);
    });
  }
}

