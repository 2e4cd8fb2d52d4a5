// The recorder shows each line as it is recorded, before Stop writes them.
import { test, expect } from '@playwright/test';
import path from 'node:path';
import { at, open, readDoc, save, screenPoint, settled, shoot, useEditor } from './harness.js';

useEditor(test);

test('each click and typed word shows as a line while recording', async ({ page }) => {
  const file = path.join(at.work, 'macro.json');
  await open(page, file);
  await page.getByRole('button', { name: 'Add Macro' }).click();
  await settled(page);
  await page.getByRole('button', { name: 'Record' }).click();
  const shown = page.getByRole('list', { name: 'Recorded lines' }).getByRole('listitem');
  await expect(shown).toHaveText(['Nothing yet: click, drag or type on the screen']);
  const centre = await screenPoint(page, 0.5, 0.5);
  await page.mouse.click(centre.x, centre.y);
  await expect(shown).toHaveText(['click 960,540']);
  await page.waitForTimeout(150);
  await page.mouse.click(centre.x, centre.y);
  await expect(shown).toHaveText(['click 960,540', /^sleep \d+$/, 'click 960,540']);
  await shoot(page, 'editor-recording.png');
  await page.getByRole('button', { name: 'Stop' }).click();
  await expect(page.getByRole('list', { name: 'Recorded lines' })).toBeHidden();
  await settled(page);
  await save(page);
  expect(readDoc(file).keymaps[0].press_actions.filter((l) => l.startsWith('click'))).toHaveLength(2);
});
