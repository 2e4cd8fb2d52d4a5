// The screen's view settings: how strongly the screenshot under the items
// shows, and whether the screen stands portrait or landscape. The document
// keeps positions as fractions of the screen, so neither is an edit: the
// opacity stays with the tab's session, like the screenshot, and the
// orientation is the server's picture size, turned.

const OPACITY_KEY = 'zuno-keymap-background-opacity';

/// The opacity (0 to 1) kept in the tab for the screenshot; 1 when none.
export function keptOpacity(storage) {
  const kept = Number(storage.getItem(OPACITY_KEY));
  return storage.getItem(OPACITY_KEY) !== null && Number.isFinite(kept) ? Math.min(Math.max(kept, 0), 1) : 1;
}

export class ScreenView {
  /// `view.refit()` makes the picture fit its new frame.
  constructor(store, api, view) {
    this.store = store;
    this.api = api;
    this.view = view;
    this.slider = document.getElementById('background-opacity');
    this.orientation = document.getElementById('orientation');
    this.setOpacity(keptOpacity(sessionStorage));
    this.slider.addEventListener('input', () => {
      const opacity = Number(this.slider.value) / 100;
      this.setOpacity(opacity);
      try { sessionStorage.setItem(OPACITY_KEY, String(opacity)); } catch (error) { /* kept for the page only */ }
    });
    this.orientation.addEventListener('click', () => this.turn());
  }

  setOpacity(opacity) {
    this.slider.value = String(Math.round(opacity * 100));
    document.getElementById('picture').style.setProperty('--background-veil', String(1 - opacity));
  }

  // Asks the server for the turned picture; the page then fits it whole.
  // One turn at a time: the page's width and height follow the server's.
  async turn() {
    if (this.turning) return;
    const { width, height } = this.store.get();
    const wanted = height > width ? 'landscape' : 'portrait';
    this.turning = true;
    const answer = await this.api.turnScreen().finally(() => { this.turning = false; });
    if (!answer.ok) {
      this.store.update({ status: `Not turned: ${(answer.data && answer.data.error) || `HTTP ${answer.status}`}` });
      return;
    }
    this.view.refit();
    this.store.update({ svg: answer.data.svg, width: height, height: width,
      status: `The screen is ${wanted} now (${height}x${width})` });
  }

  render(state) {
    this.orientation.setAttribute('aria-pressed', String(state.height > state.width));
    this.orientation.disabled = state.mode !== 'edit';
  }
}
