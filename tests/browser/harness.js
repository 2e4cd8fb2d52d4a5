// Driving `zuno-keymap edit` from Playwright: the installed tool serves the
// page on a file of the test's own folder, and what was saved is read back.
import { expect } from '@playwright/test';
import { spawn, execFileSync } from 'node:child_process';
import fs from 'node:fs';
import http from 'node:http';
import os from 'node:os';
import path from 'node:path';
import readline from 'node:readline';

export const source = process.env.ZUNO_SOURCE_DIR || path.resolve('.');
const builtTool = process.env.ZUNO_KEYMAP_TOOL;
const buildDir = process.env.ZUNO_BUILD_DIR || path.resolve(path.dirname(builtTool), '../..');

// The installed tool, and a folder of each test's own (`at.work`).
export const at = { prefix: '', tool: '', work: '' };
const running = [];

/// Installs the tool once for the file's tests, and gives each test a
/// folder of its own; a failed test stops its editors too.
export function useEditor(test) {
  test.beforeAll(() => {
    at.prefix = fs.mkdtempSync(path.join(os.tmpdir(), 'zuno-edit-prefix-'));
    execFileSync('cmake', ['--install', buildDir, '--prefix', at.prefix], { stdio: 'ignore' });
    at.tool = path.join(at.prefix, 'bin', 'zuno-keymap');
  });
  test.afterAll(() => fs.rmSync(at.prefix, { recursive: true, force: true }));
  test.beforeEach(() => { at.work = fs.mkdtempSync(path.join(os.tmpdir(), 'zuno-edit-')); });
  test.afterEach(() => {
    for (const child of running.splice(0)) child.kill('SIGKILL');
    fs.rmSync(at.work, { recursive: true, force: true });
  });
}

export function startEditor(file, extra = [], env = {}) {
  // Recovery files of other runs stay out of the way: a data folder of its own.
  const child = spawn(at.tool, ['edit', '--no-browser', ...extra, file],
    { cwd: os.tmpdir(), env: { ...process.env, XDG_DATA_HOME: at.work, ...env } });
  running.push(child);
  const lines = readline.createInterface({ input: child.stdout });
  const url = new Promise((resolve, reject) => {
    lines.once('line', resolve);
    child.once('exit', (code) => reject(new Error(`the editor exited with ${code}`)));
  });
  return { child, url };
}

export function copyExample(name) {
  const file = path.join(at.work, name);
  fs.copyFileSync(path.join(source, 'examples', name), file);
  return file;
}

export const library = (...args) => execFileSync(at.tool, args, { encoding: 'utf8' });
export const readDoc = (file) => JSON.parse(fs.readFileSync(file, 'utf8'));
export const item = (page, index) => page.locator(`#picture g.item[data-item-index="${index}"]`);

export async function open(page, file, { extra = [], env = {} } = {}) {
  const missing = [];
  page.on('response', (r) => { if (r.status() === 404) missing.push(r.url()); });
  const editor = startEditor(file, extra, env);
  const url = await editor.url;
  expect(url).toMatch(/^http:\/\/127\.0\.0\.1:\d+\/\?token=[0-9a-f]{32,}$/);
  await page.setViewportSize({ width: 1440, height: 860 });
  await page.goto(url);
  await page.waitForFunction(() => window.editorReady === true);
  return { editor, missing };
}

export const settled = (page) => page.evaluate(() => window.editorIdle());

// The box of what `locator` finds, asked again while an answer redraws it.
export async function boxOf(locator) {
  for (let attempt = 0; attempt < 50; attempt++) {
    const box = await locator.boundingBox({ timeout: 2000 }).catch(() => null);
    if (box) return box;
    await new Promise((resolve) => setTimeout(resolve, 20));
  }
  throw new Error(`nothing shown for ${locator}`);
}

export async function centreOf(locator) {
  const box = await boxOf(locator);
  return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
}

export async function drag(page, from, dx, dy, steps = 6) {
  await page.mouse.move(from.x, from.y);
  await page.mouse.down();
  await page.mouse.move(from.x + dx, from.y + dy, { steps });
  await page.mouse.up();
}

// Waits for this save's answer: the status may still say "Saved" from the last.
export async function save(page) {
  const answered = page.waitForResponse((r) => new URL(r.url()).pathname === '/api/save');
  await page.keyboard.press('Control+s');
  await answered;
  await expect(page.locator('#status')).toContainText('Saved');
}

export async function shoot(page, name) {
  const shot = path.join(process.env.ZUNO_BROWSER_OUTPUT || at.work, name);
  await page.screenshot({ path: shot });
  if (process.env.ZUNO_UPDATE_SCREENSHOT) fs.copyFileSync(shot, path.join(source, 'docs/images', name));
}

// The screen on the picture (its rectangle, or the whole picture where it has
// none), asked again while an answer replaces the picture under the question.
export async function screenBox(page) {
  const rect = page.locator('#picture rect.screen').first();
  return boxOf((await rect.count()) ? rect : page.locator('#picture'));
}

// Where the picture shows the screen point (x, y), fractions of the screen.
export async function screenPoint(page, x, y) {
  const box = await screenBox(page);
  return { x: box.x + x * box.width, y: box.y + y * box.height };
}


/// What the server holds now, asked from the page with its own token: the
/// snapshot ({version, ids, document, ...}).
export function serverSnapshot(page) {
  return page.evaluate(async () => {
    const answer = await fetch('/api/snapshot', { cache: 'no-store',
      headers: { Authorization: `Bearer ${sessionStorage.getItem('zuno-keymap-token')}` } });
    return answer.json();
  });
}

/// Serves the folder `bundle` as a plain static host does, with no special
/// headers: its address.
export async function serveStatic(bundle) {
  const types = { '.html': 'text/html', '.js': 'text/javascript', '.css': 'text/css',
    '.wasm': 'application/wasm', '.json': 'application/json', '.svg': 'image/svg+xml' };
  const server = http.createServer((request, response) => {
    const name = decodeURIComponent(new URL(request.url, 'http://x').pathname).slice(1) || 'index.html';
    const file = path.join(bundle, path.basename(name));
    if (!fs.existsSync(file)) { response.writeHead(404).end(); return; }
    response.writeHead(200, { 'Content-Type': types[path.extname(file)] || 'application/octet-stream' });
    response.end(fs.readFileSync(file));
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  return { server, address: `http://127.0.0.1:${server.address().port}/` };
}

/// Opens a copy of the example `name` in test mode with `key` held, once the
/// items it fires are lit: the file, and its text as it was.
export async function holdInTestMode(page, name, key) {
  const file = copyExample(name);
  const text = fs.readFileSync(file, 'utf8');
  await open(page, file);
  await page.getByRole('button', { name: 'Test keys' }).click();
  await page.keyboard.down(key);
  await page.locator('#picture g.item.triggered').first().waitFor();
  return { file, text };
}
