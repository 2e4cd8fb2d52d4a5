// zuno-keymap edit as a user meets it: the installed tool serves the page,
// chromium drives it, and what was saved is read back through the library.
import { test, expect } from '@playwright/test';
import { spawn, execFileSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import readline from 'node:readline';

const source = process.env.ZUNO_SOURCE_DIR || path.resolve('.');
const builtTool = process.env.ZUNO_KEYMAP_TOOL;
const buildDir = process.env.ZUNO_BUILD_DIR || path.resolve(path.dirname(builtTool), '../..');
let prefix;
let tool;
let work;

test.beforeAll(() => {
  prefix = fs.mkdtempSync(path.join(os.tmpdir(), 'zuno-edit-prefix-'));
  execFileSync('cmake', ['--install', buildDir, '--prefix', prefix], { stdio: 'ignore' });
  tool = path.join(prefix, 'bin', 'zuno-keymap');
});
test.afterAll(() => fs.rmSync(prefix, { recursive: true, force: true }));
const running = [];
test.beforeEach(() => { work = fs.mkdtempSync(path.join(os.tmpdir(), 'zuno-edit-')); });
// A failed test stops its editor too.
test.afterEach(() => {
  for (const child of running.splice(0)) child.kill('SIGKILL');
  fs.rmSync(work, { recursive: true, force: true });
});

// Starts the editor on `file` from a directory of its own; resolves to its address.
function startEditor(file, extra = []) {
  const child = spawn(tool, ['edit', '--no-browser', ...extra, file], { cwd: os.tmpdir() });
  running.push(child);
  const lines = readline.createInterface({ input: child.stdout });
  const url = new Promise((resolve, reject) => {
    lines.once('line', resolve);
    child.once('exit', (code) => reject(new Error(`the editor exited with ${code}`)));
  });
  return { child, url, stop: () => child.kill('SIGKILL') };
}

function copyExample(name) {
  const file = path.join(work, name);
  fs.copyFileSync(path.join(source, 'examples', name), file);
  return file;
}

function library(...args) {
  return execFileSync(tool, args, { encoding: 'utf8' });
}

// Clicks item `index` on its marker, as a person would, whatever is drawn over it.
async function pick(page, index) {
  const marker = page.locator(`#picture g.item[data-item-index="${index}"] .marker`);
  const box = await marker.boundingBox();
  await page.mouse.click(box.x + box.width / 2, box.y + box.height / 2);
}

async function open(page, file, extra) {
  const editor = startEditor(file, extra);
  const url = await editor.url;
  expect(url).toMatch(/^http:\/\/127\.0\.0\.1:\d+\/\?token=[0-9a-f]{32,}$/);
  await page.goto(url);
  await page.waitForFunction(() => window.editorReady === true);
  return { editor, url };
}

test('open a document and see every item', async ({ page }) => {
  const file = copyExample('shooter.json');
  const { editor } = await open(page, file);
  const count = JSON.parse(fs.readFileSync(file, 'utf8')).keymaps.length;
  await expect(page.locator('#picture g.item[data-item-index]')).toHaveCount(count);
  await expect(page.locator('#palette button')).toHaveCount(18);
  expect(page.url()).not.toContain('token'); // out of the address bar and the history
  await page.reload();
  await page.waitForFunction(() => window.editorReady === true);
  await pick(page, 1);
  await expect(page.locator('#panel h2')).toContainText('keymaps[1]');
  await page.setViewportSize({ width: 1440, height: 810 });
  const shot = path.join(process.env.ZUNO_BROWSER_OUTPUT || work, 'editor.png');
  await page.screenshot({ path: shot });
  if (process.env.ZUNO_UPDATE_SCREENSHOT) fs.copyFileSync(shot, path.join(source, 'docs/images/editor.png'));
  editor.stop();
});

test('drag an item, save, and find it moved; undo takes it back', async ({ page }) => {
  const file = copyExample('shooter.json');
  const { editor } = await open(page, file);
  const before = library('list', file).split('\n').find((l) => /^1\s/.test(l));
  const marker = page.locator('#picture g.item[data-item-index="1"] .marker');
  const box = await marker.boundingBox();
  await page.mouse.move(box.x + 3, box.y + box.height / 2);
  await page.mouse.down();
  await page.mouse.move(box.x - 100, box.y - 60, { steps: 5 });
  await page.mouse.up();
  await expect(page.locator('#unsaved-mark')).toBeVisible();
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#unsaved-mark')).toBeHidden();
  const after = library('list', file).split('\n').find((l) => /^1\s/.test(l));
  expect(after, fs.readFileSync(file, 'utf8')).not.toEqual(before);
  library('check', file);

  await page.getByRole('button', { name: 'Undo' }).click();
  await expect(page.locator('#unsaved-mark')).toBeVisible();
  await page.keyboard.press('Control+s');
  await expect(page.locator('#unsaved-mark')).toBeHidden();
  expect(library('list', file).split('\n').find((l) => /^1\s/.test(l))).toEqual(before);
  editor.stop();
});

test('bind a key by pressing it, and see the collision it makes', async ({ page }) => {
  const file = copyExample('shooter.json');
  const { editor } = await open(page, file);
  const doc = JSON.parse(fs.readFileSync(file, 'utf8'));
  const taken = doc.keymaps.findIndex((item) => item.key && item.key.text === 'Q');
  const other = doc.keymaps.findIndex((item, i) => i !== taken && item.key && item.key.device === 'keyboard');
  expect(taken).toBeGreaterThanOrEqual(0);
  await expect(page.locator('#problems li.none')).toHaveCount(1);

  await pick(page, other);
  await page.locator('#panel .field', { hasText: /^key/ }).getByRole('button', { name: 'Bind key' }).first().click();
  await expect(page.locator('#capture')).toBeVisible();
  await page.keyboard.press('KeyQ');
  await expect(page.locator('#capture')).toBeHidden();
  await expect(page.locator('#panel .key-field output').first()).toHaveText('Q');
  await expect(page.locator('#problems li')).toContainText([/collide|collision|fire/i]);
  await expect(page.locator(`#picture g.item[data-item-index="${other}"]`)).toHaveClass(/collision/);

  await page.locator('#problems li').first().click();
  await expect(page.locator('#panel h2')).toContainText(`keymaps[${Math.min(taken, other)}]`);
  editor.stop();
});

test('a value the library refuses shows its diagnostic by the field', async ({ page }) => {
  const file = copyExample('shooter.json');
  const { editor } = await open(page, file);
  await pick(page, 0);
  const field = page.locator('#panel input[name="editor_icon_scale"]');
  await field.fill('');
  await field.press('Tab');
  await expect(page.locator('#panel .field .error')).toBeVisible();
  editor.stop();
});

test('a bad macro line is marked as it is typed', async ({ page }) => {
  const { editor } = await open(page, path.join(work, 'new.json'));
  await page.getByRole('button', { name: 'Add Macro' }).click();
  await expect(page.locator('#picture g.item[data-item-index="0"]')).toHaveCount(1);
  const press = page.locator('#panel textarea[aria-label="press_actions"]');
  await press.fill('this is no macro command');
  await expect(page.locator('#panel ol[aria-label="press_actions check"] li.bad')).toHaveCount(1);
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#unsaved-mark')).toBeHidden();
  expect(fs.existsSync(path.join(work, 'new.json'))).toBe(true);
  editor.stop();
});

test('saving over a file changed on disk is refused', async ({ page }) => {
  const file = copyExample('shooter.json');
  const { editor } = await open(page, file);
  await pick(page, 2);
  await page.keyboard.press('ArrowRight');
  await expect(page.locator('#unsaved-mark')).toBeVisible();
  fs.writeFileSync(file, '{"changed": "elsewhere"}');
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#conflict')).toBeVisible();
  await expect(page.locator('#conflict-text')).toContainText('changed by another program');
  expect(fs.readFileSync(file, 'utf8')).toBe('{"changed": "elsewhere"}');
  editor.stop();
});

test('a file with elements the editor does not know is saved only when the user agrees', async ({ page }) => {
  const file = copyExample('shooter.json');
  const text = fs.readFileSync(file, 'utf8').replace('"keymaps"', '"notes": "mine", "keymaps"');
  fs.writeFileSync(file, text);
  const { editor } = await open(page, file);
  await pick(page, 2);
  await page.keyboard.press('ArrowRight');
  page.once('dialog', (dialog) => dialog.dismiss());
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#status')).toContainText('would drop');
  expect(fs.readFileSync(file, 'utf8')).toBe(text);
  page.once('dialog', (dialog) => dialog.accept());
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#status')).toContainText('Saved');
  expect(JSON.parse(fs.readFileSync(file, 'utf8')).notes).toBeUndefined();
  editor.stop();
});

test('a 200-item document is shown soon after navigation', async ({ page }) => {
  const click = JSON.parse(library('new', 'Click'));
  const items = Array.from({ length: 200 }, (_, i) => ({ ...click,
    icon: { ...click.icon, rel_position: { rel_x: 0.05 + (i % 20) * 0.045, rel_y: 0.05 + Math.floor(i / 20) * 0.09 } },
    rel_work_position: { rel_x: 0.05 + (i % 20) * 0.045, rel_y: 0.05 + Math.floor(i / 20) * 0.09 } }));
  const file = path.join(work, 'big.json');
  fs.writeFileSync(file, JSON.stringify({ info: { background_color: '000000FF', visibility: true }, keymaps: items }));
  const { editor } = await open(page, file);
  await expect(page.locator('#picture g.item[data-item-index]')).toHaveCount(200);
  const shown = await page.evaluate(() => performance.getEntriesByName('keymap-shown')[0].startTime);
  console.log(`editor: 200-item document shown ${shown.toFixed(0)} ms after navigation`);
  editor.stop();
});
