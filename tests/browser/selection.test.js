// Selecting on the picture: a rubber band, Ctrl- and Shift-click, Ctrl+A;
// what is selected then moves as one.
import { test, expect } from '@playwright/test';
import { centreOf, copyExample, drag, item, open, readDoc, save, screenPoint, settled, shoot, useEditor } from './harness.js';

useEditor(test);

const selected = (page) => page.locator('#items li[aria-selected=true]').evaluateAll(
  (rows) => rows.map((row) => Number(row.dataset.itemIndex)).sort((a, b) => a - b));

test('band, Ctrl-click, Shift-click and Ctrl+A select; the selection moves together', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  const doc = readDoc(file);
  const markers = doc.keymaps.map((k) => k.icon.rel_position);
  // A band around the left third of the screen takes the items marked there.
  const from = await screenPoint(page, 0.005, 0.005);
  const to = await screenPoint(page, 0.34, 0.995);
  await page.mouse.move(from.x, from.y);
  await page.mouse.down();
  await page.mouse.move(to.x, to.y, { steps: 6 });
  await shoot(page, 'editor-selection.png');
  await page.mouse.up();
  const left = markers.flatMap((m, i) => (m.rel_x < 0.34 ? [i] : []));
  expect(left.length).toBeGreaterThan(0);
  await expect.poll(() => selected(page)).toEqual(left);
  const other = markers.findIndex((m) => m.rel_x > 0.5);
  const cases = [
    { modifier: 'Control', then: [...left, other].sort((a, b) => a - b) },  // adds
    { modifier: 'Shift', then: left },                                    // and takes away
  ];
  for (const { modifier, then } of cases) {
    const at = await centreOf(item(page, other).locator('.marker'));
    await page.keyboard.down(modifier);
    await page.mouse.click(at.x, at.y);
    await page.keyboard.up(modifier);
    await expect.poll(() => selected(page)).toEqual(then);
  }
  // A band with Shift adds to what is selected; a plain click on the empty screen clears.
  const right = await screenPoint(page, 0.995, 0.995);
  const middle = await screenPoint(page, 0.5, 0.005);
  await page.keyboard.down('Shift');
  await drag(page, middle, right.x - middle.x, right.y - middle.y);
  await page.keyboard.up('Shift');
  await expect.poll(() => selected(page)).toEqual([...left, ...markers.flatMap((m, i) => (m.rel_x >= 0.5 ? [i] : []))].sort((a, b) => a - b));
  await page.keyboard.press('Control+a');
  await expect.poll(() => selected(page)).toEqual(markers.map((_, i) => i));
  await page.keyboard.press('ArrowDown');
  await settled(page);
  await save(page);
  const moved = readDoc(file).keymaps.map((k) => Math.round((k.icon.rel_position.rel_y - 0) * 1080));
  expect(moved).toEqual(markers.map((m) => Math.round(m.rel_y * 1080) + 1));
});
