// axe-core over every view of the editor: nothing serious or critical may
// stand between a keyboard or screen-reader user and the work.
import { test, expect } from '@playwright/test';
import AxeBuilder from '@axe-core/playwright';
import fs from 'node:fs';
import path from 'node:path';
import { at, copyExample, open, readDoc, serveStatic, settled, useEditor } from './harness.js';

useEditor(test);

async function expectAccessible(page, view) {
  const { violations } = await new AxeBuilder({ page }).analyze();
  const serious = violations.filter((v) => v.impact === 'serious' || v.impact === 'critical')
    .map((v) => `${view}: ${v.id} (${v.impact}) on ${v.nodes.map((n) => n.target.join(' ')).join(', ')}`);
  expect(serious).toEqual([]);
}

test('the workbench, the panel, document settings, the bind dialog, test mode and the recorder', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  await expectAccessible(page, 'workbench');
  await page.getByRole('button', { name: 'Add Macro' }).click();
  await settled(page);
  await page.keyboard.press('Escape');
  await expect(page.locator('#capture')).toBeHidden();
  await page.getByRole('option').last().click();
  await settled(page);
  await expectAccessible(page, 'selected item with handles');
  await page.getByRole('button', { name: 'Record' }).click();
  await expectAccessible(page, 'recorder');
  await page.getByRole('button', { name: 'Stop' }).click();
  await page.getByRole('button', { name: 'Document settings' }).click();
  await expectAccessible(page, 'document settings');
  await page.getByRole('button', { name: 'Document settings' }).click();
  await page.locator('#picture').focus();
  await page.keyboard.press('Enter');
  await expect(page.locator('#capture')).toBeVisible();
  await expectAccessible(page, 'bind dialog');
  await page.keyboard.press('Escape');
  await page.getByRole('button', { name: 'Test keys' }).click();
  await page.keyboard.down('w');
  await expectAccessible(page, 'test mode');
  await page.keyboard.up('w');
});

test('the conflict and recovery banners', async ({ page }) => {
  const file = copyExample('shooter.json');
  fs.writeFileSync(path.join(at.work, 'shooter.recovery.json'), fs.readFileSync(file));
  await open(page, file);
  await expect(page.locator('#recovery')).toBeVisible();
  await expectAccessible(page, 'recovery banner');
  await page.getByRole('option').first().click();
  await page.keyboard.press('ArrowRight');
  await settled(page);
  fs.writeFileSync(file, JSON.stringify({ ...readDoc(file), keymaps: [] }));
  await page.getByRole('button', { name: 'Save' }).click();
  await expect(page.locator('#conflict')).toBeVisible();
  await expectAccessible(page, 'conflict banner');
});

test('the static page', { tag: '@static' }, async ({ page }) => {
  const bundle = process.env.ZUNO_WEB_BUNDLE;
  test.skip(!bundle, 'ZUNO_WEB_BUNDLE names no bundle');
  const { server, address } = await serveStatic(bundle);
  try {
    await page.goto(address);
    await page.waitForFunction(() => window.editorReady === true);
    await expectAccessible(page, 'static page');
  } finally {
    server.close();
  }
});
