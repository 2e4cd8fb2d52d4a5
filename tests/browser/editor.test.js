// zuno-keymap edit as keymap authors meet it: the installed tool serves the
// page, chromium drives it, and what was saved is read back through the
// library. Speeds are measured in speed.test.js.
import { test, expect } from '@playwright/test';
import fs from 'node:fs';
import path from 'node:path';
import { at, boxOf, centreOf, copyExample, drag, holdInTestMode, item, library, open, readDoc, save, screenPoint,
  serverSnapshot, settled, shoot, source, useEditor } from './harness.js';

useEditor(test);

test('the workbench shows every item, its list and its problems, with no request unanswered', async ({ page }) => {
  const file = copyExample('shooter.json');
  const { missing } = await open(page, file);
  const count = readDoc(file).keymaps.length;
  await expect(page.locator('#picture g.item[data-item-index]')).toHaveCount(count);
  await expect(page.getByRole('listbox', { name: 'Items' }).getByRole('option')).toHaveCount(count);
  const findings = JSON.parse(library('check', '--json', file).trim() || '{}');
  const total = (findings.findings || findings.documents?.[0]?.findings || []).length;
  await expect(page.locator('#problem-count')).toHaveText(`${total} ${total === 1 ? 'problem' : 'problems'}`);
  expect(page.url()).not.toContain('token');
  await page.getByRole('option').nth(3).click();
  await expect(page.locator('#panel h2')).toContainText('keymaps[3]');
  await expect(page.locator('#panel details.group[data-group="Advanced"]')).not.toHaveAttribute('open', '');
  await shoot(page, 'editor.png');
  await page.reload();
  await page.waitForFunction(() => window.editorReady === true);
  expect(missing).toEqual([]);
});

test('every control can be reached by keyboard and has a name', async ({ page }) => {
  await open(page, copyExample('shooter.json'));
  await page.getByRole('option').first().click();
  const unnamed = await page.evaluate(() => [...document.querySelectorAll('button, input, select, textarea, [role=option], .handle')]
    .filter((el) => !el.closest('[hidden]') && el.getClientRects().length)
    .filter((el) => {
      const labelled = el.getAttribute('aria-label') || el.getAttribute('aria-labelledby') ||
        (el.id && document.querySelector(`label[for="${el.id}"]`)) || el.textContent.trim();
      return !labelled || el.tabIndex < 0 && !el.matches('[role=option], .eye');
    }).map((el) => el.outerHTML.slice(0, 80)));
  expect(unnamed).toEqual([]);
  for (const name of ['Test keys', 'Pick point', 'Record', 'Stop', 'Zoom in', 'Zoom out', 'Fit', 'Document settings']) {
    await expect(page.getByRole('button', { name, exact: true })).toHaveCount(1);
  }
  await expect(page.getByRole('searchbox', { name: 'Search items' })).toBeVisible();
});

test('thirty quick ArrowRight presses move an item exactly thirty steps', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  const before = readDoc(file).keymaps[2].icon.rel_position.rel_x;
  await page.getByRole('option').nth(2).click();
  await page.locator('#picture').focus();
  for (let i = 0; i < 30; i++) await page.keyboard.press('ArrowRight', { delay: 0 });
  await settled(page);
  await save(page);
  const after = readDoc(file).keymaps[2].icon.rel_position.rel_x;
  expect(Math.round((after - before) * 1920 * 100) / 100).toBe(30);
  // One held key is one undo step.
  await page.keyboard.down('ArrowLeft');
  for (let i = 0; i < 10; i++) await page.keyboard.down('ArrowLeft');
  await page.keyboard.up('ArrowLeft');
  await settled(page);
  await page.keyboard.press('Control+z');
  await settled(page);
  await save(page);
  expect(Math.round((readDoc(file).keymaps[2].icon.rel_position.rel_x - before) * 1920 * 100) / 100).toBe(30);
});

function bigDocument(file) {
  const click = JSON.parse(library('new', 'Click'));
  const items = Array.from({ length: 200 }, (_, i) => {
    const spot = { rel_x: 0.05 + (i % 20) * 0.045, rel_y: 0.05 + Math.floor(i / 20) * 0.09 };
    return { ...click, icon: { ...click.icon, rel_position: spot }, rel_work_position: spot };
  });
  fs.writeFileSync(file, JSON.stringify({ info: { background_color: '000000FF', visibility: true }, keymaps: items }));
}

test('two drags 50 ms apart both land, on a 200-item document', async ({ page }) => {
  const file = path.join(at.work, 'big.json');
  bigDocument(file);
  await open(page, file);
  await expect(page.locator('#picture g.item[data-item-index]')).toHaveCount(200);
  const a = await centreOf(item(page, 21).locator('.marker'));
  const b = await centreOf(item(page, 45).locator('.marker'));
  await drag(page, a, 0, 40, 10);
  await page.waitForTimeout(50);
  await drag(page, b, 0, 40, 10);
  await settled(page);
  await save(page);
  const doc = readDoc(file);
  expect(doc.keymaps[21].icon.rel_position.rel_y).toBeGreaterThan(0.09 * 1 + 0.05 + 0.02);
  expect(doc.keymaps[45].icon.rel_position.rel_y).toBeGreaterThan(0.09 * 2 + 0.05 + 0.02);
});

test('Ctrl+S with a focused, edited field saves the edit', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  await page.getByRole('option').nth(2).click();
  await expect(page.locator('#panel h2')).toContainText('keymaps[2]');
  const description = page.locator('#panel input[name="icon.description"]');
  await description.fill('look around');
  await page.keyboard.press('Control+s');
  await expect(page.locator('#status')).toContainText('Saved');
  expect(readDoc(file).keymaps[2].icon.description).toBe('look around');
  await expect(page.locator('#unsaved-mark')).toBeHidden();
  // The same for a macro script being typed.
  await page.getByRole('button', { name: 'Add Macro' }).click();
  await page.locator('#capture').waitFor({ state: 'visible', timeout: 2000 }).then(() => page.keyboard.press('Escape'), () => {});
  await page.locator('#panel textarea[name="press_actions"]').fill('click 960,540\nsleep 50');
  await save(page);
  expect(readDoc(file).keymaps.at(-1).press_actions).toEqual(['click 960,540', 'sleep 50']);
});

test('grabbing a Spell by its centre moves marker, touch point and cast point together', async ({ page }) => {
  const file = copyExample('shooter.json');
  const before = readDoc(file).keymaps[3];
  await open(page, file);
  await drag(page, await centreOf(item(page, 3).locator('.marker')), -160, -120);
  await settled(page);
  await save(page);
  const after = readDoc(file).keymaps[3];
  const delta = (p, q) => [q.rel_x - p.rel_x, q.rel_y - p.rel_y];
  const moved = delta(before.icon.rel_position, after.icon.rel_position);
  expect(moved[0]).toBeLessThan(-0.05);
  for (const [a, b] of [[before.rel_work_position, after.rel_work_position],
    [before.spell_info.rel_position, after.spell_info.rel_position]]) {
    const d = delta(a, b);
    expect(d[0]).toBeCloseTo(moved[0], 5);
    expect(d[1]).toBeCloseTo(moved[1], 5);
  }
});

test('an item exactly under another is selected from the list, and its handles work', async ({ page }) => {
  const file = copyExample('shooter.json');
  const doc = readDoc(file);
  doc.keymaps[3].icon.rel_position = { ...doc.keymaps[4].icon.rel_position };
  doc.keymaps[3].rel_work_position = { ...doc.keymaps[4].rel_work_position };
  fs.writeFileSync(file, JSON.stringify(doc));
  await open(page, file);
  await page.getByRole('searchbox', { name: 'Search items' }).fill('Q');
  await page.getByRole('listbox', { name: 'Items' }).getByRole('option').first().click();
  await expect(item(page, 3)).toHaveClass(/selected/);
  const range = page.locator('#picture .handle[data-path="keymaps[3].spell_info.rel_radius"]');
  await expect(range).toHaveCount(1);
  const radius = readDoc(file).keymaps[3].spell_info.rel_radius;
  await drag(page, await centreOf(range), 60, 0);
  await settled(page);
  // Alt+Up in the list puts it before the other, so it is drawn beneath it.
  await page.getByRole('listbox', { name: 'Items' }).getByRole('option', { selected: true }).press('Alt+ArrowUp');
  await settled(page);
  await save(page);
  const saved = readDoc(file).keymaps;
  expect(saved[2].spell_info.rel_radius).toBeGreaterThan(radius);
  expect(saved[2].key.text).toBe('Q');
});

test('binding: Esc and the backdrop cancel, Ctrl+G binds Ctrl+G', async ({ page }) => {
  const file = path.join(at.work, 'new.json');
  await open(page, file);
  await page.getByRole('button', { name: 'Add Click' }).click();
  await expect(item(page, 0)).toHaveCount(1);
  await page.locator('#picture').focus();
  await page.keyboard.press('Enter');
  await expect(page.locator('#capture')).toBeVisible();
  await page.keyboard.press('Escape');
  await expect(page.locator('#capture')).toBeHidden();
  const marker = await centreOf(item(page, 0).locator('.marker'));
  await page.mouse.dblclick(marker.x, marker.y);
  await expect(page.locator('#capture')).toBeVisible();
  await page.mouse.click(5, 5);
  await expect(page.locator('#capture')).toBeHidden();
  await page.keyboard.press('Enter');
  await page.keyboard.press('Control+g');
  await expect(page.locator('#capture')).toBeHidden();
  await settled(page);
  await save(page);
  const saved = readDoc(file).keymaps[0];
  expect([saved.key.text, saved.second_key && saved.second_key.text]).toEqual(['G', 'Ctrl']);
});

test('test mode lights the items W fires, and edits nothing', async ({ page }) => {
  const { file, text } = await holdInTestMode(page, 'shooter.json', 'w');
  await expect(item(page, 0)).toHaveClass(/triggered/);
  await expect(page.locator('#picture g.item.triggered')).toHaveCount(1);
  await shoot(page, 'editor-test-mode.png');
  await page.keyboard.up('w');
  await expect(page.locator('#picture g.item.triggered')).toHaveCount(0);
  await page.keyboard.press('Delete');
  await page.keyboard.press('ArrowRight');
  await page.getByRole('button', { name: 'Test keys' }).click();
  await expect(page.locator('#unsaved-mark')).toBeHidden();
  expect(fs.readFileSync(file, 'utf8')).toBe(text);
});

test('with the server slowed, no edit is lost', async ({ page }) => {
  const file = copyExample('shooter.json');
  const before = readDoc(file);
  await open(page, file, { env: { ZUNO_KEYMAP_EDITOR_TEST_DELAY_MS: '400' } });
  await page.getByRole('option').nth(2).click();
  await page.locator('#picture').focus();
  for (let i = 0; i < 12; i++) await page.keyboard.press('ArrowDown');
  await drag(page, await centreOf(item(page, 6).locator('.marker')), 80, 0);
  await page.getByRole('option').nth(2).click();
  await expect(page.locator('#panel h2')).toContainText('keymaps[2]');
  await page.locator('#panel input[name="icon.description"]').fill('slow but sure');
  await page.keyboard.press('Control+s');
  await expect(page.locator('#status')).toContainText('Saved', { timeout: 20000 });
  const after = readDoc(file);
  expect(Math.round((after.keymaps[2].icon.rel_position.rel_y - before.keymaps[2].icon.rel_position.rel_y) * 1080)).toBe(12);
  expect(after.keymaps[6].icon.rel_position.rel_x).toBeGreaterThan(before.keymaps[6].icon.rel_position.rel_x + 0.02);
  expect(after.keymaps[2].icon.description).toBe('slow but sure');
});

test('the four-item shooter keymap, built by drag, handles, binding and recording, passes check --strict', async ({ page }) => {
  const file = path.join(at.work, 'shooter.json');
  await open(page, file);
  const place = async (type, x, y) => {
    const host = page.locator('#picture');
    const [spot, box] = [await screenPoint(page, x, y), await host.boundingBox()];
    await page.getByRole('button', { name: `Add ${type}`, exact: true }).dragTo(host,
      { targetPosition: { x: spot.x - box.x, y: spot.y - box.y } });
    await settled(page);
  };
  const bindWith = async (...presses) => {
    await page.locator('#picture').focus();
    await page.keyboard.press('Enter');
    for (const press of presses) {
      await expect(page.locator('#capture')).toBeVisible();
      await press();
    }
    // The dialog stays until the server has answered the last key.
    await expect(page.locator('#capture')).toBeHidden({ timeout: 15000 });
    await settled(page);
  };
  // WASD pad, its drag radius widened by its handle.
  await place('Swipehold', 0.18, 0.72);
  await bindWith(...['w', 'd', 's', 'a'].map((k) => () => page.keyboard.press(k)));
  const radius = page.locator('#picture .handle[data-path="keymaps[0].rel_radius"]');
  await drag(page, await centreOf(radius), 40, 0);
  await settled(page);
  // Fire on the left button.
  await place('Fire', 0.86, 0.68);
  await bindWith(async () => page.locator('#capture .click-area').click());
  // A skill on Q.
  await place('Spell', 0.7, 0.86);
  await bindWith(() => page.keyboard.press('q'));
  // A macro on F that taps the centre twice, 100 ms apart, recorded.
  await place('Macro', 0.5, 0.2);
  await bindWith(() => page.keyboard.press('f'));
  await page.getByRole('button', { name: 'Record' }).click();
  const centre = await screenPoint(page, 0.5, 0.5);
  await page.mouse.click(centre.x, centre.y);
  await page.waitForTimeout(100);
  await page.mouse.click(centre.x, centre.y);
  await page.getByRole('button', { name: 'Stop' }).click();
  await settled(page);
  await page.locator('#panel textarea[name="press_actions"]').scrollIntoViewIfNeeded();
  await shoot(page, 'editor-recorder.png');
  await save(page);
  const doc = readDoc(file);
  expect(doc.keymaps.map((k) => k.type)).toEqual(['Swipehold', 'Fire', 'Spell', 'Macro']);
  expect(['top_key', 'right_key', 'bottom_key', 'left_key'].map((k) => doc.keymaps[0][k].text)).toEqual(['W', 'D', 'S', 'A']);
  expect(doc.keymaps[0].rel_radius).toBeGreaterThan(0.08);
  expect(doc.keymaps[1].key.text).toBe('left_mouse');
  expect(doc.keymaps[2].key.text).toBe('Q');
  expect(doc.keymaps[3].key.text).toBe('F');
  const lines = doc.keymaps[3].press_actions;
  expect(lines[0]).toBe('click 960,540');
  expect(lines[1]).toMatch(/^sleep 1[0-9]0$/);
  expect(lines[2]).toBe('click 960,540');
  library('check', '--strict', file);
});

test('a value out of range is refused with the check\'s message by the field', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  await page.getByRole('option').nth(0).click();
  const field = page.locator('#panel input[name="icon.background_color"]');
  await field.fill('red');
  await field.press('Tab');
  await expect(page.locator('#panel .field .error:not([hidden])')).toContainText('not a colour');
  await settled(page);
  expect(fs.readFileSync(file, 'utf8')).not.toContain('"red"');
  await expect(page.locator('#unsaved-mark')).toBeHidden();
});

test('a bad macro line is marked beside its running form', async ({ page }) => {
  const { } = await open(page, path.join(at.work, 'new.json'));
  await page.getByRole('button', { name: 'Add Macro' }).click();
  const press = page.locator('#panel textarea[name="press_actions"]');
  await press.fill('click 960,540\nthis is no macro command');
  await expect(page.locator('#panel ol.macro-steps li.bad')).toHaveCount(1);
  await expect(page.locator('#panel ol.macro-steps li.good code')).toHaveText('click_rel:');
  // A picked point joins the line at the cursor, in the macro screen's pixels.
  await press.fill('sleep 10\n');
  await page.getByRole('button', { name: 'Pick point' }).click();
  const point = await screenPoint(page, 0.25, 0.5);
  await page.mouse.click(point.x, point.y);
  await expect(press).toHaveValue(/^sleep 10\nclick 4[78]\d,5[34]\d$/);
});

test('saving over a file changed on disk asks, in words, to overwrite or reload', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  await page.getByRole('option').nth(2).click();
  await page.locator('#picture').focus();
  await page.keyboard.press('ArrowRight');
  await settled(page);
  const other = readDoc(file);
  other.keymaps[0].icon.description = 'changed elsewhere';
  fs.writeFileSync(file, JSON.stringify(other));
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#conflict')).toBeVisible();
  await expect(page.locator('#conflict-text')).toContainText('changed by another program');
  expect(readDoc(file).keymaps[0].icon.description).toBe('changed elsewhere');
  await page.getByRole('button', { name: 'Reload' }).click();
  await expect(page.locator('#conflict')).toBeHidden();
  await page.getByRole('option').first().click();
  await expect(page.locator('#panel input[name="icon.description"]')).toHaveValue('changed elsewhere');
  await page.getByRole('button', { name: 'Undo' }).click();
  await settled(page);
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#status')).toContainText('Saved');
  await expect(page.locator('#conflict')).toBeHidden();
  expect(readDoc(file).keymaps[0].icon.description).not.toBe('changed elsewhere');
});

test('a file with elements the editor does not know is saved only when the user agrees', async ({ page }) => {
  const file = copyExample('shooter.json');
  const text = fs.readFileSync(file, 'utf8').replace('"keymaps"', '"notes": "mine", "keymaps"');
  fs.writeFileSync(file, text);
  await open(page, file);
  await page.getByRole('option').nth(2).click();
  await page.locator('#picture').focus();
  await page.keyboard.press('ArrowRight');
  page.once('dialog', (dialog) => dialog.dismiss());
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#status')).toContainText('would drop');
  expect(fs.readFileSync(file, 'utf8')).toBe(text);
  page.once('dialog', (dialog) => dialog.accept());
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#status')).toContainText('Saved');
  expect(readDoc(file).notes).toBeUndefined();
});

test('a new file loses "(new)" on its first save; document settings are edited too', async ({ page }) => {
  const file = path.join(at.work, 'fresh.json');
  await open(page, file);
  await expect(page.locator('#file-name')).toHaveText('fresh.json (new)');
  await page.getByRole('button', { name: 'Document settings' }).click();
  await page.locator('#settings input[name="info.transparent_wheel"]').check();
  await settled(page);
  await save(page);
  await expect(page.locator('#file-name')).toHaveText('fresh.json');
  expect(readDoc(file).info.transparent_wheel).toBe(true);
});

test('the screen zooms, pans and fits, and a dropped screenshot stays for the session', async ({ page }) => {
  await open(page, copyExample('shooter.json'));
  const width = async () => (await boxOf(page.locator('#picture'))).width;
  const fitted = await width();
  await page.getByRole('button', { name: 'Zoom in' }).click();
  await expect(page.locator('#zoom-level')).toHaveText('125%');
  expect(await width()).toBeGreaterThan(fitted * 1.2);
  const centre = await centreOf(page.locator('#stage'));
  await page.mouse.move(centre.x, centre.y);
  await page.mouse.wheel(0, 300);
  await expect(page.locator('#zoom-level')).not.toHaveText('125%');
  await page.getByRole('button', { name: 'Zoom in' }).click();
  await page.getByRole('button', { name: 'Zoom in' }).click();
  const scrolled = () => page.evaluate(() => document.getElementById('stage').scrollLeft);
  const before = await scrolled();
  await page.locator('#picture').focus();
  await page.keyboard.down(' ');
  await drag(page, centre, -200, 0);
  await page.keyboard.up(' ');
  expect(await scrolled()).toBeGreaterThan(before + 100);
  await page.getByRole('button', { name: 'Fit' }).click();
  await expect(page.locator('#zoom-level')).toHaveText('100%');
  // A one-pixel PNG dropped onto the picture.
  await page.evaluate(() => {
    const bytes = Uint8Array.from(atob('iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg=='), (c) => c.charCodeAt(0));
    const data = new DataTransfer();
    data.items.add(new File([bytes], 'shot.png', { type: 'image/png' }));
    document.getElementById('stage').dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true }));
  });
  await expect(page.locator('#picture')).toHaveClass(/has-background/);
  await page.waitForFunction(() => sessionStorage.getItem('zuno-keymap-background'));
  await page.reload();
  await page.waitForFunction(() => window.editorReady === true);
  await expect(page.locator('#picture')).toHaveClass(/has-background/);
});

// ---- focus and selection: quick mouse and keyboard work lands where meant ----

test('a description typed into the panel stays with its item when another is clicked on the picture', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  for (const leave of ['picture', 'list']) {
    await page.getByRole('option').nth(3).click();
    // Typed once the panel shows the item, as a person would: typed before,
    // it belongs to the item the panel showed, and lands there.
    await expect(page.locator('#panel h2')).toContainText('keymaps[3]');
    const text = `only three, left by the ${leave}`;
    await page.locator('#panel input[name="icon.description"]').fill(text);
    if (leave === 'picture') await page.mouse.click(...Object.values(await centreOf(item(page, 0).locator('.marker'))));
    else await page.getByRole('option').nth(0).click();
    await expect(page.locator('#panel h2')).toContainText('keymaps[0]');
    await settled(page);
    await save(page);
    const saved = readDoc(file).keymaps.map((k) => k.icon.description);
    expect(saved.filter((d) => d === text), leave).toHaveLength(1);
    expect(saved[3], leave).toBe(text);
    await expect(page.locator('#panel input[name="icon.description"]')).toHaveValue(saved[0]);
  }
});

test('a double click binds the item it hit, whatever was selected; the dialog names it', async ({ page }) => {
  const file = copyExample('shooter.json');
  const before = readDoc(file);
  await open(page, file);
  await page.getByRole('option').nth(2).click();
  const b = await centreOf(item(page, 5).locator('.marker'));
  await page.mouse.dblclick(b.x, b.y);
  await expect(page.locator('#capture')).toBeVisible();
  await expect(page.locator('#capture .capture-target')).toContainText(`${before.keymaps[5].type} — keymaps[5]`);
  await page.keyboard.press('KeyK');
  await expect(page.locator('#capture')).toBeHidden();
  await settled(page);
  await save(page);
  const after = readDoc(file);
  expect(after.keymaps[5].key.text).toBe('K');
  expect(after.keymaps[2]).toEqual(before.keymaps[2]);
});

test('a key another item fires on is bound only when the dialog is answered yes', async ({ page }) => {
  const file = copyExample('shooter.json');
  const before = readDoc(file);
  await open(page, file);
  for (const [answer, bound] of [['Escape', false], ['Enter', true]]) {
    await page.getByRole('option').nth(4).click();
    await page.keyboard.press('Enter');
    await page.keyboard.press('KeyQ');
    await expect(page.locator('#capture .capture-prompt')).toContainText(/already fires .*keymaps\[3\]/);
    await page.keyboard.press(answer);
    await expect(page.locator('#capture')).toBeHidden();
    await settled(page);
    await save(page);
    expect(readDoc(file).keymaps[4].key.text === 'Q', answer).toBe(bound);
  }
  expect(before.keymaps[4].key.text).not.toBe('Q');
});

test('after a palette add or Duplicate, Enter binds; after a click on the picture, arrows move', async ({ page }) => {
  const file = path.join(at.work, 'new.json');
  await open(page, file);
  const count = () => page.locator('#picture g.item[data-item-index]').count();
  await page.getByRole('button', { name: 'Add Click' }).click();
  await settled(page);
  await page.keyboard.press('Escape');
  await page.getByRole('option').first().click();
  await page.keyboard.press('Enter');
  await expect(page.locator('#capture')).toBeVisible();
  await page.keyboard.press('Escape');
  expect(await count()).toBe(1);
  await page.getByRole('button', { name: 'Duplicate' }).click();
  await settled(page);
  await page.keyboard.press('Enter');
  await expect(page.locator('#capture')).toBeVisible();
  await page.keyboard.press('Escape');
  await settled(page);
  expect(await count()).toBe(2);
  const y = async () => (await serverSnapshot(page)).document.keymaps[0].icon.rel_position.rel_y;
  const before = await y();
  const marker = await centreOf(item(page, 0).locator('.marker'));
  await page.mouse.click(marker.x, marker.y);
  for (let i = 0; i < 5; i++) await page.keyboard.press('ArrowDown');
  await settled(page);
  expect(Math.round((await y() - before) * 1080)).toBe(5);
});

test('the Arrange menu opens and closes by keyboard, above the picture, and the toolbar stays', async ({ page }) => {
  await open(page, copyExample('shooter.json'));
  const toolbar = page.locator('header.toolbar');
  const saveBox = await boxOf(page.getByRole('button', { name: 'Save' }));
  await page.getByRole('option').nth(0).click();
  await page.getByRole('option').nth(3).click({ modifiers: ['Control'] });
  await page.locator('.menu summary').focus();
  await page.keyboard.press('Enter');
  await page.keyboard.press('Tab');
  const first = page.getByRole('button', { name: 'Align left' });
  await expect(first).toBeFocused();
  const over = await first.evaluate((button) => {
    const box = button.getBoundingClientRect();
    return document.elementFromPoint(box.x + box.width / 2, box.y + box.height / 2) === button;
  });
  expect(over).toBe(true);
  await page.keyboard.press('Escape');
  await expect(page.locator('.menu')).not.toHaveAttribute('open', '');
  await expect(page.locator('.menu summary')).toBeFocused();
  expect(await toolbar.evaluate((t) => t.scrollLeft)).toBe(0);
  expect(await boxOf(page.getByRole('button', { name: 'Save' }))).toEqual(saveBox);
});

test('the list, the picture, the panel and the bind dialog say a key the same way', async ({ page }) => {
  const file = path.join(at.work, 'new.json');
  await open(page, file);
  await page.getByRole('button', { name: 'Add Click' }).click();
  await settled(page);
  await page.keyboard.press('Escape');
  await page.getByRole('option').first().click();
  await page.keyboard.press('Enter');
  await page.keyboard.press('Control+g');
  await settled(page);
  await expect(page.getByRole('option').first()).toContainText('Ctrl+G');
  await expect(page.locator('#panel .key-field output').first()).toHaveText('Ctrl+G');
  await expect(item(page, 0)).toContainText('Ctrl+G');
  await page.keyboard.press('Enter');
  await expect(page.locator('#capture .capture-target')).toContainText('now Ctrl+G');
  await page.locator('#capture .click-area').click();
  await settled(page);
  await expect(page.getByRole('option').first()).toContainText('LMB');
  await expect(page.getByRole('option').first()).not.toContainText('left_m');
});

// ---- recovery files and a second page ----

function recoveryFile(file, name, description, time) {
  const doc = readDoc(file);
  doc.keymaps[0].icon.description = description;
  const kept = path.join(at.work, name);
  fs.writeFileSync(kept, JSON.stringify(doc));
  fs.utimesSync(kept, time, time);
  return kept;
}

test('every recovery file is offered, newest first; a dismissal sticks; opening works after an edit', async ({ page }) => {
  const file = copyExample('shooter.json');
  recoveryFile(file, 'shooter.recovery.json', 'older walk', new Date('2026-01-01T10:00:00Z'));
  const newer = recoveryFile(file, 'shooter.recovery-2.json', 'newer walk', new Date('2026-02-01T10:00:00Z'));
  await open(page, file);
  const offered = page.locator('#recovery-files li');
  await expect(offered).toHaveCount(2);
  await expect(offered.nth(0)).toContainText('recovery-2');
  await expect(offered.nth(1)).toContainText('shooter.recovery.json');
  await offered.nth(0).getByRole('button', { name: 'Dismiss' }).click();
  await expect(offered).toHaveCount(1);
  expect(fs.existsSync(newer)).toBe(false);
  // An edit first, then the offer is taken: it becomes the document, undoably.
  await page.getByRole('option').nth(2).click();
  await page.keyboard.press('ArrowRight');
  await settled(page);
  await offered.first().getByRole('button', { name: 'Open' }).click();
  await expect(page.getByRole('option').first()).toContainText('older walk');
  await expect(page.locator('#recovery')).toBeHidden();
  await page.getByRole('button', { name: 'Undo' }).click();
  await expect(page.getByRole('option').first()).not.toContainText('older walk');
  await page.reload();
  await page.waitForFunction(() => window.editorReady === true);
  await expect(page.locator('#recovery-files li')).toHaveCount(1);
  await expect(page.locator('#recovery-files li')).not.toContainText('recovery-2');
});

test('a second page on the file shows the first one\'s edits, and never saves over them', async ({ page, context }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  const url = await page.evaluate(() => `${location.origin}/?token=${sessionStorage.getItem('zuno-keymap-token')}`);
  const other = await context.newPage();
  await other.goto(url);
  await other.waitForFunction(() => window.editorReady === true);
  // The first page edits; the second page shows it within a poll or two.
  await page.getByRole('option').nth(2).click();
  await page.locator('#panel input[name="icon.description"]').fill('from the first page');
  await page.keyboard.press('Tab');
  await settled(page);
  await expect(other.getByRole('option').nth(2)).toContainText('from the first page', { timeout: 5000 });
  await expect(other.locator('#stale')).toBeVisible();
  // A save from a page that has not seen the last change writes nothing: its
  // polls are held back so that it cannot have seen it.
  await other.route('**/api/version', (route) => route.abort());
  await other.route('**/api/snapshot', (route) => route.abort());
  await page.getByRole('option').nth(2).click();
  await page.locator('#panel input[name="icon.description"]').fill('newer still');
  await page.keyboard.press('Tab');
  await settled(page);
  const text = fs.readFileSync(file, 'utf8');
  await other.unroute('**/api/snapshot');
  const answered = other.waitForResponse((r) => new URL(r.url()).pathname === '/api/save');
  await other.getByRole('button', { name: 'Save' }).click();
  expect((await answered).status()).toBe(409);
  await expect(other.locator('#status')).toContainText('another page changed');
  await expect(other.getByRole('option').nth(2)).toContainText('newer still');
  expect(fs.readFileSync(file, 'utf8')).toBe(text);
});

test('answers made before the page\'s own edits are no news of another page', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  // A poll's answers, made by the server before each of two edits, reach the
  // page after them: the version before the first, the snapshot before the
  // second.
  const gate = () => { let open; const shut = new Promise((resolve) => { open = resolve; }); return { shut, open }; };
  const hold = async (pattern) => {
    const asked = gate(), answer = gate();
    let once = false;
    await page.route(pattern, async (route) => {
      if (once) return route.continue();
      once = true;
      const response = await route.fetch();
      asked.open();
      await answer.shut;
      await route.fulfill({ response });
    });
    return { asked: asked.shut, release: answer.open };
  };
  const describe = async (text) => {
    await page.getByRole('option').nth(2).click();
    await page.locator('#panel input[name="icon.description"]').fill(text);
    await page.keyboard.press('Tab');
    await settled(page);
  };
  const version = await hold('**/api/version');
  const snapshot = await hold('**/api/snapshot');
  await version.asked;
  await describe('first');
  version.release();
  await page.waitForTimeout(300);
  await describe('second');
  snapshot.release();
  await page.waitForTimeout(1500);
  await expect(page.locator('#stale')).toBeHidden();
  await expect(page.getByRole('option').nth(2)).toContainText('second');
});

test('unknown members and values out of range are problems as soon as the file opens', async ({ page }) => {
  const file = copyExample('shooter.json');
  const doc = readDoc(file);
  doc.keymaps[1].mystery = 1;
  doc.keymaps[3].spell_info.rel_radius = -0.2;
  fs.writeFileSync(file, JSON.stringify(doc));
  let report = {};
  try { report = JSON.parse(library('check', '--json', file)); } catch (error) { report = JSON.parse(error.stdout); }
  const findings = report.findings || report.documents?.[0]?.findings || [];
  expect(findings.length).toBeGreaterThan(0);
  await open(page, file);
  await expect(page.locator('#problem-count')).toHaveText(`${findings.length} ${findings.length === 1 ? 'problem' : 'problems'}`);
  for (const finding of findings) await expect(page.locator('#problems')).toContainText(finding.message);
});

test('a direction pad typed quickly on a slow server keeps every key, in order', async ({ page }) => {
  const file = path.join(at.work, 'pad.json');
  await open(page, file, { env: { ZUNO_KEYMAP_EDITOR_TEST_DELAY_MS: '300' } });
  await page.getByRole('button', { name: 'Add Swipehold', exact: true }).click();
  await settled(page);
  await page.keyboard.press('Escape');
  await page.getByRole('option').first().click();
  await page.keyboard.press('Enter');
  for (const key of ['i', 'l', 'k', 'j']) await page.keyboard.press(key);
  await expect(page.locator('#capture')).toBeHidden({ timeout: 15000 });
  await settled(page);
  await save(page);
  const pad = readDoc(file).keymaps[0];
  expect(['top_key', 'right_key', 'bottom_key', 'left_key'].map((k) => pad[k].text)).toEqual(['I', 'L', 'K', 'J']);
});
