// "New from template": each layout the editor offers starts a document that
// saves and checks clean with --strict; undo takes it back.
import { test, expect } from '@playwright/test';
import path from 'node:path';
import { at, library, open, readDoc, save, settled, shoot, useEditor } from './harness.js';

useEditor(test);

test('every template starts a document that checks clean with --strict, and undo takes it back', async ({ page }) => {
  const file = path.join(at.work, 'mine.json');
  await open(page, file);
  const menu = page.locator('#templates-menu');
  const names = await page.locator('#templates [data-template]').evaluateAll((b) => b.map((x) => x.dataset.template));
  expect(names).toEqual(['shooter', 'moba', 'racing', 'gamepad']);
  for (const name of names) {
    // By keyboard: the menu opens on Enter, Tab reaches the entry.
    await menu.locator('summary').focus();
    await page.keyboard.press('Enter');
    for (let i = 0; i < 8 && !await page.locator(`[data-template="${name}"]`).evaluate((b) => b === document.activeElement); i++) {
      await page.keyboard.press('Tab');
    }
    if (name === 'moba') await shoot(page, 'editor-templates.png');
    await page.keyboard.press('Enter');
    await expect(page.locator('#status')).toContainText(`Started from the ${name} template`);
    await settled(page);
    await save(page);
    const doc = readDoc(file);
    expect(doc.keymaps.length).toBeGreaterThan(3);
    library('check', '--strict', ...(doc.info.is_joystick ? ['--joystick'] : []), file);
  }
  await page.getByRole('button', { name: 'Undo' }).click();
  await settled(page);
  await expect(page.locator('#status')).not.toContainText('Not');
  await save(page);
  expect(readDoc(file).info.is_joystick).toBe(false);
});
