// What test mode and the recorder show as they go, and the screen's view
// settings: the installed tool serves the page, chromium drives it.
import { test, expect } from '@playwright/test';
import fs from 'node:fs';
import { boxOf, copyExample, holdInTestMode, item, open, screenBox, screenPoint, settled, shoot, useEditor } from './harness.js';

useEditor(test);

// The centre of an overlay circle, as fractions of the screen.
async function circleAt(page, selector) {
  const [box, c] = [await screenBox(page), await boxOf(page.locator(`#picture .editor-overlay ${selector}`).first())];
  return { x: (c.x + c.width / 2 - box.x) / box.width, y: (c.y + c.height / 2 - box.y) / box.height };
}

test('test mode moves the pad\'s finger on W and back on release, aims a skill, and numbers a macro\'s taps', async ({ page }) => {
  // The walk pad sits at (0.18, 0.72): W moves the finger straight up.
  const { file, text } = await holdInTestMode(page, 'shooter.json', 'w');
  await expect(item(page, 0)).toHaveClass(/triggered/);
  await expect(page.locator('#picture .finger')).toHaveCount(1);
  const up = await circleAt(page, '.finger');
  expect(up.x).toBeCloseTo(0.18, 2);
  expect(up.y).toBeLessThan(0.7);
  await page.keyboard.up('w');
  await expect.poll(async () => (await circleAt(page, '.finger')).y).toBeCloseTo(0.72, 2);
  expect((await circleAt(page, '.finger')).x).toBeCloseTo(0.18, 2);
  await expect(page.locator('#picture .finger')).toHaveCount(0);
  // The skill on Q aims from its touch point (0.7, 0.86) toward the pointer, within its drag radius.
  const pointer = await screenPoint(page, 0.4, 0.86);
  await page.mouse.move(pointer.x, pointer.y);
  await page.keyboard.down('q');
  await expect(page.locator('#picture .finger')).toHaveCount(1);
  const aim = await circleAt(page, '.finger');
  expect(aim.x).toBeLessThan(0.7);
  expect(aim.x).toBeGreaterThan(0.4);
  expect(aim.y).toBeCloseTo(0.86, 2);
  await page.keyboard.down('w');
  await expect(page.locator('#picture .finger')).toHaveCount(2);
  await shoot(page, 'editor-test-motion.png');
  await page.keyboard.up('w');
  await page.keyboard.up('q');
  await page.getByRole('button', { name: 'Test keys' }).click();
  expect(fs.readFileSync(file, 'utf8')).toBe(text);

  // A macro that presses the centre and releases it 50 ms later: two taps, numbered.
  await open(page, copyExample('macros.json'));
  await page.getByRole('button', { name: 'Test keys' }).click();
  await page.keyboard.down('f');
  await expect(page.locator('#picture .macro-tap-number')).toHaveText(['1', '2']);
  const tap = await circleAt(page, '.macro-tap');
  expect(tap.x).toBeCloseTo(0.5, 2);
  expect(tap.y).toBeCloseTo(0.5, 2);
  await page.keyboard.up('f');
  await expect(page.locator('#picture .macro-tap')).toHaveCount(0);
});

test('the recorder lists each step and marks it on the picture while it records', async ({ page }) => {
  await open(page, copyExample('macros.json'));
  await page.locator('#items [role=option]').first().click();
  await page.getByRole('button', { name: 'Record' }).click();
  const steps = page.getByRole('list', { name: 'Recorded steps' });
  await expect(steps).toBeVisible();
  for (const [x, y] of [[0.25, 0.25], [0.75, 0.5]]) {
    const at = await screenPoint(page, x, y);
    await page.mouse.click(at.x, at.y);
  }
  await expect(steps.locator('li').first()).toHaveText('click 480,270');
  await expect(steps.locator('li').last()).toHaveText('click 1440,540');
  await expect(page.locator('#picture .recorded-step-number')).toHaveText(['1', '2']);
  await shoot(page, 'editor-recorder-steps.png');
  await page.getByRole('button', { name: 'Stop' }).click();
  await expect(steps).toBeHidden();
  await expect(page.locator('#picture .recorded-step')).toHaveCount(0);
});

test('the background dims by its slider, for the session, and the screen turns portrait and back', async ({ page }) => {
  await open(page, copyExample('shooter.json'));
  const veil = () => page.evaluate(() => getComputedStyle(document.getElementById('picture')).getPropertyValue('--background-veil'));
  await page.getByRole('slider', { name: 'Background opacity' }).fill('40');
  expect(Number(await veil())).toBeCloseTo(0.6, 5);
  await page.reload();
  await page.waitForFunction(() => window.editorReady === true);
  await expect(page.getByRole('slider', { name: 'Background opacity' })).toHaveValue('40');

  const portrait = page.getByRole('button', { name: 'Portrait' });
  await expect(portrait).toHaveAttribute('aria-pressed', 'false');
  await portrait.click();
  await settled(page);
  await expect.poll(async () => { const b = await screenBox(page); return b.height > b.width; }).toBe(true);
  // The document keeps fractions of the screen: the item stays at its place, nothing to save.
  const pad = await item(page, 0).locator('.marker').first().boundingBox();
  const box = await screenBox(page);
  expect((pad.x + pad.width / 2 - box.x) / box.width).toBeCloseTo(0.18, 1);
  await expect(page.locator('#unsaved-mark')).toBeHidden();
  await page.reload();
  await page.waitForFunction(() => window.editorReady === true);
  await expect(portrait).toHaveAttribute('aria-pressed', 'true');
  await portrait.click();
  await expect.poll(async () => { const b = await screenBox(page); return b.width > b.height; }).toBe(true);
  await expect(portrait).toHaveAttribute('aria-pressed', 'false');
});
