// The files of a scheme, side by side: a strip with one button per file,
// each with its problem count and a mark while it holds unsaved edits.
// Choosing one shows that file; the page then speaks of it alone. The shown
// file's count and mark come from the page's own state, the others' from the
// server, asked again about once a second.

import { element, keyedChildren } from './dom.js';
import { problemCount } from './store.js';

const plural = (count) => `${count} ${count === 1 ? 'problem' : 'problems'}`;

export class Switcher {
  /// `choose(index)` shows file `index`: true once it is shown, false when
  /// it could not be.
  constructor(strip, api, { choose }) {
    this.strip = strip;
    this.api = api;
    this.choose = choose;
    this.files = [];
    this.shown = 0;
    this.rows = new Map();
    this.switching = false;
    this.strip.addEventListener('keydown', (e) => this.key(e));
  }

  async refresh() {
    try {
      this.files = await this.api.files();
    } catch (error) {
      // Asked again on the next refresh.
    }
  }

  async pick(index) {
    if (this.switching || index === this.shown || !this.files[index]) return;
    this.switching = true;
    try {
      if (await this.choose(index)) this.shown = index;
      await this.refresh();
    } finally {
      this.switching = false;
    }
  }

  // The arrows walk the strip, as they do a tab list; Enter or Space chooses.
  key(e) {
    const buttons = [...this.strip.querySelectorAll('button')];
    const at = buttons.indexOf(document.activeElement);
    const step = { ArrowLeft: -1, ArrowUp: -1, ArrowRight: 1, ArrowDown: 1 }[e.key];
    if (at < 0 || !step) return;
    e.preventDefault();
    e.stopPropagation();
    buttons[(at + step + buttons.length) % buttons.length].focus();
  }

  render(state) {
    this.strip.hidden = this.files.length < 2;
    if (this.strip.hidden) return;
    const rows = this.files.map((file) => {
      const shown = file.index === this.shown;
      const unsaved = shown ? state.unsaved : file.unsaved;
      const problems = shown ? problemCount(state.report) : file.problems;
      return { key: JSON.stringify([file.name, shown, unsaved, problems]), make: () => {
        const button = element('button', { type: 'button', 'data-file': file.index,
          'aria-current': shown ? 'true' : false, title: unsaved ? 'Unsaved changes' : false },
        element('span', { class: 'mark', 'aria-hidden': 'true', text: unsaved ? '●' : '' }),
        element('span', { text: file.name }),
        element('small', { text: plural(problems) }));
        button.setAttribute('aria-label', `${file.name}, ${plural(problems)}${unsaved ? ', unsaved' : ''}`);
        button.addEventListener('click', () => this.pick(file.index));
        return button;
      } };
    });
    const focused = this.strip.contains(document.activeElement) ? document.activeElement.dataset.file : null;
    this.rows = keyedChildren(this.strip, this.rows, rows);
    // A row made anew keeps the keyboard where it was.
    if (focused !== null && !this.strip.contains(document.activeElement)) {
      const again = this.strip.querySelector(`button[data-file="${focused}"]`);
      if (again) again.focus({ preventScroll: true });
    }
  }
}
