// A scheme: `zuno-keymap edit FOLDER` shows every keymap of the folder in a
// switcher, each with its own document, history and saves.
import { test, expect } from '@playwright/test';
import AxeBuilder from '@axe-core/playwright';
import fs from 'node:fs';
import path from 'node:path';
import { at, library, open, readDoc, save, screenPoint, serveStatic, settled, shoot, source, useEditor } from './harness.js';

useEditor(test);

const example = (name) => readDoc(path.join(source, 'examples', name));

// What the server holds for file `index`, asked with the page's own token.
const heldDoc = (page, index) => page.evaluate(async (file) => {
  const answer = await fetch(`/api/document?file=${file}`, { cache: 'no-store',
    headers: { Authorization: `Bearer ${sessionStorage.getItem('zuno-keymap-token')}` } });
  return answer.json();
}, index);

// Errors and warnings as `check` counts them (it exits 1 on warnings).
function problemsOf(file) {
  let report;
  try { report = library('check', '--json', file); } catch (error) { report = error.stdout; }
  const { errors, warnings } = JSON.parse(report).documents[0];
  return errors + warnings;
}

test('a folder opens as a scheme: switch, copy from one file into another, save only that one', async ({ page, context }) => {
  await context.grantPermissions(['clipboard-read', 'clipboard-write']);
  const folder = path.join(at.work, 'scheme');
  fs.mkdirSync(folder);
  const shooter = example('shooter.json');
  const doubled = { ...shooter, keymaps: [...shooter.keymaps, shooter.keymaps[0]] };  // a colliding pad
  const files = { 'a-shooter.json': shooter, 'b-racing.json': example('racing.json'), 'c-doubled.json': doubled };
  for (const [name, doc] of Object.entries(files)) fs.writeFileSync(path.join(folder, name), `${JSON.stringify(doc, null, 4)}\n`);
  // Beside the keymaps: a recovery file of the first, offered with it, and
  // what is no keymap of the scheme.
  fs.writeFileSync(path.join(folder, 'a-shooter.recovery.json'), `${JSON.stringify(shooter, null, 4)}\n`);
  fs.writeFileSync(path.join(folder, 'notes.txt'), 'not a keymap\n');
  fs.mkdirSync(path.join(folder, 'old'));
  fs.writeFileSync(path.join(folder, 'old', 'x.json'), `${JSON.stringify(shooter)}\n`);
  const before = Object.fromEntries(Object.keys(files).map((name) => [name, fs.readFileSync(path.join(folder, name), 'utf8')]));
  const expected = Object.keys(files).map((name) => problemsOf(path.join(folder, name)));
  expect(expected[2]).toBeGreaterThan(0);

  await open(page, folder);
  const tabs = page.locator('#scheme button');
  await expect(tabs).toHaveCount(3);
  for (const [i, name] of Object.keys(files).entries()) {
    await expect(tabs.nth(i)).toHaveAttribute('aria-label', `${name}, ${expected[i]} ${expected[i] === 1 ? 'problem' : 'problems'}`);
  }
  await expect(tabs.nth(0)).toHaveAttribute('aria-current', 'true');
  await expect(page.locator('#file-name')).toHaveText('a-shooter.json');
  await expect(page.locator('#recovery-files li')).toHaveCount(1);

  // Copy the Q spell of the shooter; racing has no Q, so it keeps its key.
  const spell = shooter.keymaps.findIndex((k) => k.type === 'Spell' && k.key.text === 'Q');
  await page.getByRole('option').nth(spell).click();
  await page.keyboard.press('Control+c');
  await expect(page.locator('#status')).toHaveText(/copied/);

  // The switcher by keyboard: arrows walk it, Enter chooses.
  await tabs.nth(0).focus();
  await page.keyboard.press('ArrowRight');
  await expect(tabs.nth(1)).toBeFocused();
  await page.keyboard.press('Enter');
  await expect(page.locator('#file-name')).toHaveText('b-racing.json');
  await expect(page.getByRole('option')).toHaveCount(files['b-racing.json'].keymaps.length);
  const spot = await screenPoint(page, 0.5, 0.5);
  await page.mouse.move(spot.x, spot.y);
  await page.keyboard.press('Control+v');
  await settled(page);
  await expect(page.locator('#status')).toHaveText('Pasted 1 item');
  await expect(tabs.nth(1)).toHaveAttribute('aria-label', /, unsaved$/);
  const { violations } = await new AxeBuilder({ page }).include('#scheme').analyze();
  expect(violations.filter((v) => v.impact === 'serious' || v.impact === 'critical')).toEqual([]);
  await shoot(page, 'editor-schemes.png');

  // Undo in the shooter takes back the shooter's own step, not the paste.
  await tabs.nth(0).click();
  await expect(page.locator('#file-name')).toHaveText('a-shooter.json');
  await expect(page.locator('#unsaved-mark')).toBeHidden();
  await page.getByRole('option').nth(0).click();
  await page.getByRole('button', { name: 'Delete' }).click();
  await settled(page);
  await expect(page.getByRole('option')).toHaveCount(shooter.keymaps.length - 1);
  await page.keyboard.press('Control+z');
  await settled(page);
  await expect(page.getByRole('option')).toHaveCount(shooter.keymaps.length);
  expect((await heldDoc(page, 1)).keymaps).toHaveLength(files['b-racing.json'].keymaps.length + 1);

  await tabs.nth(1).click();
  await expect(page.locator('#file-name')).toHaveText('b-racing.json');
  await expect(page.getByRole('option')).toHaveCount(files['b-racing.json'].keymaps.length + 1);
  await save(page);
  await expect(tabs.nth(1)).not.toHaveAttribute('aria-label', /unsaved/);
  const saved = readDoc(path.join(folder, 'b-racing.json'));
  expect(saved.keymaps.at(-1).type).toBe('Spell');
  expect(saved.keymaps.at(-1).key.text).toBe('Q');
  library('check', path.join(folder, 'b-racing.json'));
  for (const name of ['a-shooter.json', 'c-doubled.json']) {
    expect(fs.readFileSync(path.join(folder, name), 'utf8')).toBe(before[name]);
  }
  expect(fs.readdirSync(folder).sort()).toEqual([...Object.keys(files), 'a-shooter.recovery.json', 'notes.txt', 'old'].sort());
});

test('a screen turned in one page is turned in another page on the same file', async ({ page, context }) => {
  const folder = path.join(at.work, 'scheme');
  fs.mkdirSync(folder);
  for (const name of ['moba.json', 'racing.json']) fs.copyFileSync(path.join(source, 'examples', name), path.join(folder, name));
  const { editor } = await open(page, folder);
  const other = await context.newPage();
  await other.setViewportSize({ width: 1440, height: 860 });
  await other.goto(await editor.url);
  await other.waitForFunction(() => window.editorReady === true);
  await page.locator('#scheme button').nth(1).click();
  await expect(page.locator('#file-name')).toHaveText('racing.json');
  await page.getByRole('button', { name: 'Portrait' }).click();
  await expect(page.getByRole('button', { name: 'Portrait' })).toHaveAttribute('aria-pressed', 'true');
  // The other page shows moba.json, which was not turned; on racing.json it is.
  await other.waitForTimeout(1500);
  await expect(other.getByRole('button', { name: 'Portrait' })).toHaveAttribute('aria-pressed', 'false');
  await other.locator('#scheme button').nth(1).click();
  await expect(other.getByRole('button', { name: 'Portrait' })).toHaveAttribute('aria-pressed', 'true');
  await page.getByRole('button', { name: 'Portrait' }).click();
  await expect(other.getByRole('button', { name: 'Portrait' })).toHaveAttribute('aria-pressed', 'false', { timeout: 5000 });
  await expect(other.locator('#status')).toHaveText('Another page turned the screen: it is landscape now');
});

// The static page: several files opened together, each its own document
// with its own kept work. Needs the bundle of scripts/web (ZUNO_WEB_BUNDLE).
test('the static page opens several files side by side and keeps the work of each', { tag: '@static' }, async ({ page }) => {
  test.skip(!process.env.ZUNO_WEB_BUNDLE, 'ZUNO_WEB_BUNDLE names no bundle');
  const { server, address } = await serveStatic(process.env.ZUNO_WEB_BUNDLE);
  try {
    await page.addInitScript(() => { delete window.showOpenFilePicker; delete window.showSaveFilePicker; });
    await page.goto(address);
    await page.waitForFunction(() => window.editorReady === true);
    await expect(page.locator('#scheme')).toBeHidden();
    const names = ['shooter.json', 'moba.json', 'racing.json'];
    await page.setInputFiles('#open-file', names.map((name) => path.join(source, 'examples', name)));
    const tabs = page.locator('#scheme button');
    await expect(tabs).toHaveCount(3);
    await expect(page.locator('#file-name')).toHaveText('shooter.json');

    await tabs.nth(1).click();
    await expect(page.locator('#file-name')).toHaveText('moba.json');
    const moba = example('moba.json').keymaps.length;
    await expect(page.getByRole('option')).toHaveCount(moba);
    await page.getByRole('option').nth(0).click();
    await page.getByRole('button', { name: 'Delete' }).click();
    await expect(page.getByRole('option')).toHaveCount(moba - 1);
    await expect(tabs.nth(1)).toHaveAttribute('aria-label', /, unsaved$/);
    await expect(tabs.nth(0)).not.toHaveAttribute('aria-label', /unsaved/);

    // A reload opens the three again; the moba file's work is offered back.
    page.on('dialog', (dialog) => dialog.accept());
    await page.reload();
    await page.waitForFunction(() => window.editorReady === true);
    await expect(tabs).toHaveCount(3);
    await expect(page.locator('#recovery-files li')).toHaveCount(0);
    await tabs.nth(1).click();
    await expect(page.locator('#recovery-files li')).toContainText("this browser's storage (moba.json)");
    await page.locator('#recovery-files').getByRole('button', { name: 'Open' }).click();
    await expect(page.getByRole('option')).toHaveCount(moba - 1);
    const download = page.waitForEvent('download');
    await page.keyboard.press('Control+s');
    const saved = await download;
    expect(saved.suggestedFilename()).toBe('moba.json');
    expect(JSON.parse(fs.readFileSync(await saved.path(), 'utf8')).keymaps).toHaveLength(moba - 1);
  } finally {
    server.close();
  }
});
