// Copy and paste between two editors on two files, through the plain-text
// clipboard: what is copied is a keymap document of its own.
import { test, expect } from '@playwright/test';
import fs from 'node:fs';
import path from 'node:path';
import { at, copyExample, library, open, readDoc, save, screenPoint, settled, useEditor } from './harness.js';

useEditor(test);

test('items copied from one file paste into another at the pointer, taken keys unbound and said', async ({ page, context }) => {
  await context.grantPermissions(['clipboard-read', 'clipboard-write']);
  const from = copyExample('shooter.json');
  const to = path.join(at.work, 'other.json');
  fs.copyFileSync(from, to);
  const doc = readDoc(from);
  const spell = doc.keymaps.findIndex((k) => k.type === 'Spell');
  const pad = doc.keymaps.findIndex((k) => k.type === 'Swipehold');
  await open(page, from);
  await page.getByRole('option').nth(spell).click();
  await page.getByRole('option').nth(pad).click({ modifiers: ['Control'] });
  await page.locator('#picture').focus();
  await page.keyboard.press('Control+c');
  await expect(page.locator('#status')).toHaveText('2 items copied');
  // The clipboard holds the items as a keymap's own text.
  const copied = await page.evaluate(() => navigator.clipboard.readText());
  expect(JSON.parse(copied).keymaps).toEqual([doc.keymaps[spell], doc.keymaps[pad]]);

  const other = await context.newPage();
  await open(other, to);
  const spot = await screenPoint(other, 0.5, 0.4);
  await other.mouse.move(spot.x, spot.y);
  await other.keyboard.press('Control+v');
  await settled(other);
  await expect(other.locator('#status')).toContainText('Pasted 2 items; keys already taken here left unbound');
  await expect(other.locator('#items li[aria-selected=true]')).toHaveCount(2);
  await save(other);
  const pasted = readDoc(to).keymaps.slice(doc.keymaps.length);
  expect(pasted.map((k) => k.type).sort()).toEqual(['Spell', 'Swipehold']);
  const first = pasted[0].icon.rel_position;
  expect([first.rel_x, first.rel_y].map((v) => Math.round(v * 100))).toEqual([50, 40]);
  expect(pasted.every((k) => ['key', 'top_key', 'left_key'].every((m) => !k[m] || !k[m].device))).toBe(true);
  // What the check then finds is only the keys left to bind.
  let found = '';
  try { library('check', to); } catch (error) { found = error.stdout; }
  expect(found).toContain('0 error(s), 2 warning(s)');
});
