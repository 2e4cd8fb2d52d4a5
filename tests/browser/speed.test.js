// How the editor keeps up as documents grow: a drag over 8, 200 and 1,000
// items, timed with the Performance API. The times and the ratios against 8
// items are printed; only bounds no loaded machine comes near are asserted.
import { test, expect } from '@playwright/test';
import fs from 'node:fs';
import path from 'node:path';
import { at, centreOf, drag, item, library, open, readDoc, save, settled, useEditor } from './harness.js';

useEditor(test);

function manyClicks(file, count) {
  const click = JSON.parse(library('new', 'Click'));
  const columns = Math.ceil(Math.sqrt(count * 16 / 9));
  const rows = Math.ceil(count / columns);
  const items = Array.from({ length: count }, (_, i) => {
    const at = { rel_x: Math.round((0.04 + (i % columns) * 0.92 / columns) * 1e4) / 1e4,
      rel_y: Math.round((0.05 + Math.floor(i / columns) * 0.9 / rows) * 1e4) / 1e4 };
    return { ...click, icon: { ...click.icon, rel_position: at }, rel_work_position: at };
  });
  fs.writeFileSync(file, JSON.stringify({ info: { background_color: '000000FF', visibility: true }, keymaps: items }));
}

// A step: from the pointer event to the end of the frame that shows it. An
// update: from the release to the end of the frame that shows the picture
// drawn from the server's answer (a task queued as it is drawn runs after).
function listen() {
  const host = document.getElementById('picture');
  window.timing = { steps: [], released: 0, shown: 0 };
  new MutationObserver(() => {
    const { released, shown } = window.timing;
    if (!released || shown) return;
    if (!performance.getEntriesByName('picture-drawn').some((e) => e.startTime > released)) return;
    window.timing.shown = -1;
    setTimeout(() => { window.timing.shown = performance.now(); });
  }).observe(host, { childList: true, subtree: true });
  host.addEventListener('pointermove', () => {
    const start = performance.now();
    requestAnimationFrame(() => setTimeout(() => window.timing.steps.push(performance.now() - start)));
  }, { capture: true });
  host.addEventListener('pointerup', () => { window.timing.released = performance.now(); }, { capture: true });
}

async function measure(page, count) {
  const file = path.join(at.work, `many-${count}.json`);
  manyClicks(file, count);
  await open(page, file);
  await expect(page.locator('#picture g.item[data-item-index]')).toHaveCount(count);
  await page.evaluate(listen);
  // The last item is drawn on top: nothing covers its marker.
  const index = count - 1;
  const before = readDoc(file).keymaps[index].icon.rel_position.rel_x;
  // A first drag warms the page; the second is the one timed.
  await drag(page, await centreOf(item(page, index).locator('.marker')), 0, 20, 5);
  await settled(page);
  await page.evaluate(() => { window.timing = { ...window.timing, steps: [], released: 0, shown: 0 }; });
  await drag(page, await centreOf(item(page, index).locator('.marker')), 60, 0, 30);
  await settled(page);
  await page.waitForFunction(() => window.timing.shown > 0);
  const result = await page.evaluate(() => {
    const steps = [...window.timing.steps].sort((x, y) => x - y);
    const edit = performance.getEntriesByType('resource').filter((e) => e.name.includes('/api/edit')).pop();
    return { shown: performance.getEntriesByName('keymap-shown')[0].startTime, median: steps[steps.length >> 1], worst: steps[steps.length - 1],
      update: window.timing.shown - window.timing.released, answer: edit ? edit.responseEnd - edit.startTime : NaN };
  });
  await save(page);
  expect(readDoc(file).keymaps[index].icon.rel_position.rel_x).toBeGreaterThan(before);
  return result;
}

test('a drag and its answer take about as long at 1,000 items as at 8; times printed', async ({ browser }) => {
  test.setTimeout(180000);
  const results = {};
  for (const count of [8, 200, 1000]) {
    const page = await browser.newPage();
    results[count] = await measure(page, count);
    await page.close();
    const r = results[count];
    console.log(`editor, ${count} items: shown ${r.shown.toFixed(0)} ms after navigation; drag step median ${r.median.toFixed(1)} ms, worst ${r.worst.toFixed(1)} ms; ` +
      `picture updated ${r.update.toFixed(0)} ms after release (the answer took ${r.answer.toFixed(0)} ms)`);
  }
  const step = results[1000].median / results[8].median;
  const update = results[1000].update / results[8].update;
  console.log(`editor, 1,000 : 8 items: drag step ${step.toFixed(2)}x, update ${update.toFixed(2)}x`);
  // Bounds far above the aim (1.5x and 3x), so that a busy machine passes.
  expect(results[1000].median).toBeLessThan(250);
  expect(results[1000].update).toBeLessThan(5000);
});
