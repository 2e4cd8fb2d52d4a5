// Work made elsewhere: recovery files of earlier sessions, offered when the
// page opens, and edits and screen turns made through another page (tab,
// window) on the same document, shown as soon as the page learns of them.

import { element } from './dom.js';
import { fromSnapshot } from './store.js';

const $ = (id) => document.getElementById(id);

export class Elsewhere {
  /// `view.refit()` makes the picture fit a turned screen; `view.turning()`
  /// says whether this page is turning it.
  constructor(store, queue, api, view) {
    this.view = view;
    this.store = store;
    this.queue = queue;
    this.api = api;
    this.asking = false;
    $('stale-dismiss').addEventListener('click', () => { $('stale').hidden = true; });
    // Another page's edits: the version is asked about once a second and
    // when the page gets the focus.
    setInterval(() => this.poll(), 1000);
    window.addEventListener('focus', () => this.poll());
  }

  /// Offers every recovery file ({n, path, time, bytes}), newest first: each
  /// can be opened (an edit that can be undone) or dismissed for good.
  offer(files) {
    const entries = (files || []).map((file) => this.entry(file));
    $('recovery-files').replaceChildren(...entries);
    $('recovery').hidden = entries.length === 0;
  }

  entry(file) {
    const open = element('button', { type: 'button', text: 'Open', 'aria-label': `Open ${file.path}` });
    const dismiss = element('button', { type: 'button', text: 'Dismiss', 'aria-label': `Dismiss ${file.path}` });
    const li = element('li', {}, element('span', { text: `${file.path}, ${new Date(file.time).toLocaleString()}` +
      (file.bytes !== undefined ? `, ${file.bytes} bytes` : '') }), open, dismiss);
    const settle = (text) => {
      li.remove();
      $('recovery').hidden = $('recovery-files').childElementCount === 0;
      this.store.update({ status: text });
    };
    open.addEventListener('click', async () => {
      await this.queue.idle();
      const answer = await this.api.openRecovery(file.n);
      if (!answer.ok) { this.store.update({ status: `Not opened: ${answer.data.error}` }); return; }
      this.store.update((state) => fromSnapshot(state, answer.data));
      settle(`Opened ${file.path}: Undo goes back`);
    });
    dismiss.addEventListener('click', async () => {
      const answer = await this.api.dismissRecovery(file.n);
      if (!answer.ok) { this.store.update({ status: `Not dismissed: ${answer.data.error}` }); return; }
      settle(`Dismissed ${file.path}`);
    });
    return li;
  }

  notice(text) {
    $('stale-text').textContent = text;
    $('stale').hidden = false;
  }

  /// Shows the server's document when it is newer than the one shown, with
  /// the notice `text`; true when it was.
  async catchUp(text) {
    const shot = await this.api.snapshot();
    // Versions only grow, and an answer to this page's own edit can land
    // while the snapshot is on its way: an older snapshot is no news.
    if (this.queue.busy() || shot.version <= this.store.get().version) return false;
    this.store.update((state) => fromSnapshot(state, shot));
    this.notice(text);
    return true;
  }

  // Another page turned the screen: a view setting, so the picture is drawn
  // afresh at the new size and nothing else is said to have changed.
  async turned(width, height) {
    const shot = await this.api.snapshot();
    if (shot.version < this.store.get().version) return;  // the next poll asks again
    this.view.refit();
    this.store.update((state) => ({ ...fromSnapshot(state, shot), width, height,
      status: `Another page turned the screen: it is ${height > width ? 'portrait' : 'landscape'} now` }));
  }

  async poll() {
    if (this.asking || !window.editorReady || this.queue.busy()) return;
    this.asking = true;
    try {
      const { version, width, height } = await this.api.version();
      const shown = this.store.get();
      // This page's own turn is shown by its answer.
      if ((width !== shown.width || height !== shown.height) && !this.queue.busy() && !this.view.turning()) {
        await this.turned(width, height);
      }
      // A version older than the one shown was answered before this page's
      // own edit landed.
      if (version > this.store.get().version && !this.queue.busy()) {
        await this.catchUp('Another page changed this document: it now shows that version.');
      }
    } catch (error) {
      // The next poll asks again; a server out of reach shows on the next edit.
    } finally {
      this.asking = false;
    }
  }
}
