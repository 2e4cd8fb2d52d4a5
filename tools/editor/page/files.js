// Files in a page served as static files: keymaps opened with the picker or
// dropped on the page, and a screenshot shown under the items. When keymaps
// have opened, the page hears 'keymap-opened' and shows the first.

import { api, standalone } from './api.js';

const $ = (id) => document.getElementById(id);
const status = (text) => { $('status').textContent = text; };

/// Shows the image at `url` under the items.
export function showScreenshotUrl(url) {
  const picture = $('picture');
  picture.style.backgroundImage = `url("${url}")`;
  picture.classList.add('has-background');
}

// A screenshot stays for the session: a reload of the page finds it in the
// tab's storage, where it fits. It is never sent anywhere.
const SCREENSHOT_KEY = 'zuno-keymap-background';

/// Shows the image `file` under the items, for this session.
export function showScreenshot(file) {
  showScreenshotUrl(URL.createObjectURL(file));
  const reader = new FileReader();
  reader.onload = () => {
    try { sessionStorage.setItem(SCREENSHOT_KEY, reader.result); } catch (error) { /* too large to keep */ }
  };
  reader.readAsDataURL(file);
}

/// Shows the screenshot kept for this session, if any.
export function restoreScreenshot() {
  const kept = sessionStorage.getItem(SCREENSHOT_KEY);
  if (kept) showScreenshotUrl(kept);
}

const isKeymap = (file) => file.type === 'application/json' || /\.json$/i.test(file.name);

// Several keymaps opened together are a scheme: each its own document in
// the switcher.
async function open(sources) {
  // Edits on their way belong to the keymap shown: they land before it goes.
  if (window.editorIdle) await window.editorIdle();
  const unsaved = (await api.files()).filter((file) => file.unsaved).map((file) => file.name);
  if (unsaved.length && !window.confirm(`${unsaved.join(', ')} ${unsaved.length === 1 ? 'has' : 'have'} ` +
      'unsaved changes. Open other keymaps without them?')) return;
  const answer = await api.openFiles(sources);
  if (!answer.ok) {
    status(`Not opened: ${(answer.data && answer.data.error) || `HTTP ${answer.status}`}`);
    return;
  }
  window.dispatchEvent(new Event('keymap-opened'));
}

// The browser's own picker where there is one: its handle lets a save write
// the same file back.
async function pickKeymap() {
  if (!('showOpenFilePicker' in window)) {
    $('open-file').click();
    return;
  }
  try {
    const handles = await window.showOpenFilePicker({ multiple: true,
      types: [{ description: 'Keymap', accept: { 'application/json': ['.json'] } }] });
    await open(handles);
  } catch (error) {
    if (error.name !== 'AbortError') status(`Not opened: ${error.message}`);
  }
}

if (standalone) {
  for (const id of ['open', 'screenshot']) $(id).hidden = false;
  $('open').addEventListener('click', pickKeymap);
  $('screenshot').addEventListener('click', () => $('screenshot-file').click());
  $('open-file').addEventListener('change', (e) => {
    if (e.target.files.length) open([...e.target.files]);
    e.target.value = '';
  });
  $('screenshot-file').addEventListener('change', (e) => {
    if (e.target.files[0]) showScreenshot(e.target.files[0]);
    e.target.value = '';
  });
  // Keymaps dropped anywhere on the page open; images are the picture's (main.js).
  document.addEventListener('dragover', (e) => e.preventDefault());
  document.addEventListener('drop', (e) => {
    e.preventDefault();
    const items = [...(e.dataTransfer ? e.dataTransfer.items : [])]
      .filter((entry) => entry.kind === 'file' && isKeymap(entry.getAsFile()));
    if (items.length === 0) return;
    // The handles must be asked for while the drop is being handled.
    const dropped = items.map((item) => item.getAsFile());
    const handles = items.map((item) => (typeof item.getAsFileSystemHandle === 'function' ? item.getAsFileSystemHandle() : null));
    Promise.all(handles).then((found) => open(found.map((handle, i) => (handle && handle.kind === 'file' ? handle : dropped[i]))))
      .catch(() => open(dropped));
  });
}
