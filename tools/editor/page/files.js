// Files in a page served as static files: a keymap opened with the picker or
// dropped on the page, and a screenshot shown under the items. When a
// keymap has opened, the page hears 'keymap-opened' and shows it.

import { api, standalone } from './api.js';

const $ = (id) => document.getElementById(id);
const status = (text) => { $('status').textContent = text; };

/// Shows the image `file` under the items, in this page only.
export function showScreenshot(file) {
  const picture = $('picture');
  picture.style.backgroundImage = `url(${URL.createObjectURL(file)})`;
  picture.classList.add('has-background');
}

const isKeymap = (file) => file.type === 'application/json' || /\.json$/i.test(file.name);

async function open(source) {
  const { unsaved, name } = await api.state();
  if (unsaved && !window.confirm(`${name} has unsaved changes. Open another keymap without them?`)) return;
  const answer = await api.openFile(source);
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
    const [handle] = await window.showOpenFilePicker({
      types: [{ description: 'Keymap', accept: { 'application/json': ['.json'] } }] });
    await open(handle);
  } catch (error) {
    if (error.name !== 'AbortError') status(`Not opened: ${error.message}`);
  }
}

if (standalone) {
  for (const id of ['open', 'screenshot']) $(id).hidden = false;
  $('open').addEventListener('click', pickKeymap);
  $('screenshot').addEventListener('click', () => $('screenshot-file').click());
  $('open-file').addEventListener('change', (e) => {
    if (e.target.files[0]) open(e.target.files[0]);
    e.target.value = '';
  });
  $('screenshot-file').addEventListener('change', (e) => {
    if (e.target.files[0]) showScreenshot(e.target.files[0]);
    e.target.value = '';
  });
  // A keymap dropped anywhere on the page opens; images are the picture's (main.js).
  document.addEventListener('dragover', (e) => e.preventDefault());
  document.addEventListener('drop', (e) => {
    e.preventDefault();
    const items = [...(e.dataTransfer ? e.dataTransfer.items : [])];
    const item = items.find((entry) => entry.kind === 'file' && isKeymap(entry.getAsFile()));
    if (!item) return;
    // The handle must be asked for while the drop is being handled.
    const handle = typeof item.getAsFileSystemHandle === 'function' ? item.getAsFileSystemHandle() : null;
    const dropped = item.getAsFile();
    Promise.resolve(handle).then((found) => open(found && found.kind === 'file' ? found : dropped))
      .catch(() => open(dropped));
  });
}
