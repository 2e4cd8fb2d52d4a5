// The keymap picture as a browser shows it: zuno-keymap render's SVG opened
// in chromium, screenshotted, and read back pixel by pixel.
import { test, expect } from '@playwright/test';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

const tool = process.env.ZUNO_KEYMAP_TOOL;
const source = process.env.ZUNO_SOURCE_DIR;
const dir = mkdtempSync(join(tmpdir(), 'zuno-render-'));

function render(args, name) {
  const out = join(dir, name);
  execFileSync(tool, ['render', '-o', out, ...args]);
  return out;
}

// The colours of a screenshot at `points`, decoded by the browser itself.
async function pixels(browserPage, png, points) {
  return browserPage.evaluate(async ({ data, points }) => {
    const image = new Image();
    image.src = `data:image/png;base64,${data}`;
    await image.decode();
    const canvas = document.createElement('canvas');
    canvas.width = image.width;
    canvas.height = image.height;
    const context = canvas.getContext('2d');
    context.drawImage(image, 0, 0);
    const all = context.getImageData(0, 0, image.width, image.height).data;
    const distinct = new Set();
    for (let i = 0; i < all.length; i += 4 * 97) {
      distinct.add((all[i] << 16) | (all[i + 1] << 8) | all[i + 2]);
    }
    return {
      distinct: distinct.size,
      at: points.map(([x, y]) => Array.from(context.getImageData(x, y, 1, 1).data.slice(0, 3))),
    };
  }, { data: png.toString('base64'), points });
}

test.use({ viewport: { width: 1920, height: 1080 } });

test('the example keymap is drawn, not blank', async ({ page, context }) => {
  await page.goto(`file://${render([join(source, 'examples/shooter.json')], 'shooter.svg')}`);
  await expect(page.locator('g.item')).toHaveCount(8);
  await expect(page.locator('g.item[data-item-index="0"] .marker')).toHaveCount(1);
  const shot = await page.screenshot();
  const reader = await context.newPage();
  const { distinct } = await pixels(reader, shot, []);
  expect(distinct).toBeGreaterThan(20);
});

test('a marker is where its document puts it, in its colour', async ({ page, context }) => {
  const item = JSON.parse(execFileSync(tool, ['new', 'Click']).toString());
  item.key = { device: 'keyboard', text: 'G', virtual_key: 71, scan_code: 34 };
  item.icon.rel_position = { rel_x: 0.25, rel_y: 0.5 };
  item.icon.background_color = 'FF0000FF';
  item.rel_work_position = { rel_x: 0.75, rel_y: 0.75 };
  const doc = join(dir, 'one.json');
  writeFileSync(doc, JSON.stringify({
    info: { background_color: '000000FF', visibility: true }, keymaps: [item] }));
  await page.goto(`file://${render([doc], 'one.svg')}`);
  // The marker is at (480, 540) with a radius of 28 at this size; below the
  // caption it shows its own colour, and far from it the screen's.
  const hit = await page.evaluate(() => {
    const element = document.elementFromPoint(480, 560);
    return [element.getAttribute('class'), element.closest('g.item').dataset.itemIndex];
  });
  expect(hit).toEqual(['marker', '0']);
  const shot = await page.screenshot();
  const reader = await context.newPage();
  const { at } = await pixels(reader, shot, [[480, 560], [480, 620], [1000, 900]]);
  expect(at[0]).toEqual([255, 0, 0]);
  expect(at[1]).not.toEqual([255, 0, 0]);
  expect(at[2]).toEqual(at[1]);
});
