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
  await page.goto(`file://${render([doc, '--no-legend'], 'one.svg')}`);
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

// A keymap document of `items` (each a partial item merged into a fresh one
// of its type), written to the test folder.
function documentOf(name, items) {
  const keymaps = items.map(({ type, ...rest }) => {
    const item = JSON.parse(execFileSync(tool, ['new', type]).toString());
    return { ...item, ...rest, icon: { ...item.icon, ...(rest.icon || {}) } };
  });
  const path = join(dir, name);
  writeFileSync(path, JSON.stringify({ info: { background_color: '000000FF', visibility: true }, keymaps }));
  return path;
}

const key = (text, code) => ({ device: 'keyboard', text, virtual_key: code, scan_code: code });
const at = (x, y) => ({ rel_x: x, rel_y: y });

test('the screen holds the screen and the items, nothing else', async ({ page }) => {
  for (const example of ['shooter', 'macros', 'gamepad']) {
    const svg = render([join(source, `examples/${example}.json`), '--labels'], `${example}.svg`);
    await page.setViewportSize({ width: 1920, height: 1300 });
    await page.goto(`file://${svg}`);
    const stray = await page.evaluate(() => {
      const screen = document.querySelector('rect.screen').getBBox();
      const inside = (b) => b.x < screen.x + screen.width && b.x + b.width > screen.x
        && b.y < screen.y + screen.height && b.y + b.height > screen.y;
      const out = [];
      for (const element of document.querySelectorAll('svg *')) {
        if (!element.getBBox || element.closest('g.items') || element.matches('rect.screen, image.background')
          || element.closest('title, style')) continue;
        if (inside(element.getBBox())) out.push(element.outerHTML.slice(0, 80));
      }
      for (const marker of document.querySelectorAll('g.items .marker')) {
        const b = marker.getBBox();
        if (b.x < 0 || b.y < 0 || b.x + b.width > screen.width || b.y + b.height > screen.height) {
          out.push(`marker outside: ${marker.closest('g.item').dataset.itemIndex}`);
        }
      }
      return out;
    });
    expect(stray, example).toEqual([]);
  }
});

test('markers at one spot are fanned out, each one visible and grabbable', async ({ page }) => {
  const items = [];
  for (const [k, type] of ['Click', 'Macro', 'Wheel', 'Tip', 'Spell', 'Click'].entries()) {
    items.push({ type, key: key(String.fromCharCode(65 + k), 65 + k),
      icon: { rel_position: at(0.5, 0.5) }, rel_work_position: at(0.5, 0.5) });
  }
  items.push({ type: 'Click', key: key('Z', 44), icon: { rel_position: at(0.51, 0.5) },
    rel_work_position: at(0.51, 0.5) });
  const pictures = [render([documentOf('same.json', items)], 'same.svg'),
    render([join(source, 'examples/macros.json')], 'macros.svg')];
  for (const svg of pictures) {
    await page.setViewportSize({ width: 1920, height: 1300 });
    await page.goto(`file://${svg}`);
    const hits = await page.evaluate(() => Array.from(document.querySelectorAll('g.item'), (group) => {
      const box = group.querySelector('.marker').getBoundingClientRect();
      const hit = document.elementFromPoint(box.x + box.width / 2, box.y + box.height / 2);
      const owner = hit && hit.closest('g.item');
      return [group.dataset.itemIndex, owner ? owner.dataset.itemIndex : null];
    }));
    for (const [index, owner] of hits) expect(owner, `${svg}: item ${index}`).toBe(index);
  }
});

test('labels overlap neither each other nor any marker', async ({ page }) => {
  // The examples, and a crowded screen of forty described items.
  const crowd = [];
  for (let k = 0; k < 40; k += 1) {
    crowd.push({ type: k % 3 ? 'Click' : 'Spell', key: key(String.fromCharCode(65 + (k % 26)), 65 + k),
      icon: { rel_position: at(0.3 + 0.05 * (k % 8), 0.3 + 0.08 * Math.floor(k / 8)),
        description: `action number ${k} of the crowd` },
      rel_work_position: at(0.3 + 0.05 * (k % 8), 0.3 + 0.08 * Math.floor(k / 8)) });
  }
  const pictures = ['shooter', 'macros', 'gamepad'].map((name) =>
    render([join(source, `examples/${name}.json`), '--labels'], `${name}-labels.svg`));
  pictures.push(render([documentOf('crowd.json', crowd), '--labels'], 'crowd.svg'));
  for (const svg of pictures) {
    await page.goto(`file://${svg}`);
    const clashes = await page.evaluate(() => {
      const boxes = (selector) => Array.from(document.querySelectorAll(selector), (element) => {
        const b = element.getBBox();
        return { name: `${selector} ${element.closest('g.item').dataset.itemIndex}`, b };
      });
      const overlap = (p, q) => p.x < q.x + q.width && q.x < p.x + p.width
        && p.y < q.y + q.height && q.y < p.y + p.height;
      const labels = boxes('text.label').concat(boxes('text.caption.outside'));
      const others = labels.concat(boxes('g.items .marker'));
      const out = [];
      for (const label of labels) {
        for (const other of others) {
          if (other !== label && overlap(label.b, other.b)) out.push(`${label.name} / ${other.name}`);
        }
      }
      return { count: labels.length, out };
    });
    expect(clashes.count, svg).toBeGreaterThan(0);
    expect(clashes.out, svg).toEqual([]);
  }
});
