// The editor without a mouse: every action from the keyboard, handles a
// finger can hit, and what each edit did said in the live status line.
import { test, expect } from '@playwright/test';
import path from 'node:path';
import { at, copyExample, library, open, readDoc, save, settled, shoot, useEditor } from './harness.js';

useEditor(test);

// Presses Tab until the focused element matches `selector` (as a user would).
async function tabTo(page, selector, { back = false } = {}) {
  for (let i = 0; i < 300; i++) {
    if (await page.evaluate((s) => !!document.activeElement && document.activeElement.matches(s), selector)) return;
    await page.keyboard.press(back ? 'Shift+Tab' : 'Tab');
  }
  throw new Error(`Tab never reached ${selector}`);
}

// Answers the bind dialog's questions with `keys`, one a question.
async function answer(page, ...keys) {
  for (const key of keys) {
    await expect(page.locator('#capture')).toBeVisible();
    await page.keyboard.press(key);
  }
  await expect(page.locator('#capture')).toBeHidden({ timeout: 15000 });
  await settled(page);
}

test('handles are 24-pixel targets clear of captions, named, and moved by arrows with the move said', async ({ page }) => {
  const file = copyExample('shooter.json');
  await open(page, file);
  const doc = readDoc(file);
  for (const index of doc.keymaps.keys()) {
    await page.getByRole('option').nth(index).click();
    await settled(page);
    const trouble = await page.evaluate((i) => {
      const words = [...document.querySelectorAll(`#picture g.item[data-item-index="${i}"] :is(.caption, .label, .keycap)`)]
        .map((n) => n.getBoundingClientRect());
      return [...document.querySelectorAll('#picture .handle')].flatMap((h) => {
        const box = h.getBoundingClientRect();
        const problems = [];
        if (box.width < 23.5 || box.height < 23.5) problems.push(`${box.width}x${box.height}`);
        if (!h.querySelector('title') || !h.querySelector('title').textContent.includes(h.dataset.member)) problems.push('no tooltip');
        if (h.classList.contains('handle-point') && words.some((w) => box.left < w.right && box.right > w.left &&
          box.top < w.bottom && box.bottom > w.top)) problems.push('on a caption');
        return problems.length ? [`${h.getAttribute('aria-label')}: ${problems.join(', ')}`] : [];
      });
    }, index);
    expect(trouble).toEqual([]);
  }
  const spell = doc.keymaps.findIndex((k) => k.type === 'Spell');
  await page.getByRole('option').nth(spell).click();
  await settled(page);
  await page.locator('#picture').focus();
  await tabTo(page, '#picture .handle[data-member="spell_info.rel_radius"]');
  await shoot(page, 'editor-handles.png');
  const before = readDoc(file).keymaps[spell].spell_info.rel_radius;
  for (let i = 0; i < 3; i++) await page.keyboard.press('Shift+ArrowRight');
  await settled(page);
  await expect(page.locator('#status')).toContainText('spell_info.rel_radius set to');
  await save(page);
  expect(readDoc(file).keymaps[spell].spell_info.rel_radius).toBeGreaterThan(before);
  await page.keyboard.press('ArrowUp');
  await tabTo(page, '#picture');
  await page.keyboard.press('ArrowLeft');
  await expect(page.locator('#status')).toHaveText(/^Spell \S+ moved$/);
});

test('the four-item shooter keymap, built with the keyboard alone, passes check --strict', async ({ page }) => {
  const file = path.join(at.work, 'shooter.json');
  await open(page, file);
  const add = async (type) => {
    await tabTo(page, `#palette button[aria-label="Add ${type}"]`, { back: true });
    await page.keyboard.press('Enter');
    await settled(page);
    await expect(page.locator('#picture')).toBeFocused();
    await expect(page.locator('#status')).toContainText(type);
  };
  const bind = async (...keys) => {
    await page.keyboard.press('Enter');
    await answer(page, ...keys);
    await expect(page.locator('#status')).toContainText('bound to');
  };
  // Each lands at a free spot, selected, with the picture focused: arrows move it.
  await add('Swipehold');
  await bind('w', 'd', 's', 'a');
  await page.keyboard.press('Shift+ArrowDown');
  await tabTo(page, '#picture .handle[data-member="rel_radius"]');
  for (let i = 0; i < 4; i++) await page.keyboard.press('Shift+ArrowRight');
  await settled(page);
  await add('Fire');
  await bind('j');
  await add('Spell');
  await bind('q');
  await add('Macro');
  await bind('f');
  await tabTo(page, '#panel textarea[name="press_actions"]');
  await page.keyboard.type('click 960,540\nsleep 100\nclick 960,540');
  await page.keyboard.press('Tab');
  // Fire and Spell lined up from the Arrange menu, opened and closed by keys.
  await tabTo(page, '#items li[role=option][aria-selected=true]', { back: true });
  await page.keyboard.press('ArrowUp');
  await page.keyboard.press('Shift+ArrowUp');
  await tabTo(page, 'details.menu summary', { back: true });
  await page.keyboard.press('Enter');
  await tabTo(page, '[data-arrange="top"]');
  await page.keyboard.press('Enter');
  await expect(page.locator('details.menu')).not.toHaveAttribute('open', '');
  await settled(page);
  await save(page);
  const doc = readDoc(file);
  expect(doc.keymaps.map((k) => k.type)).toEqual(['Swipehold', 'Fire', 'Spell', 'Macro']);
  expect(['top_key', 'right_key', 'bottom_key', 'left_key'].map((k) => doc.keymaps[0][k].text)).toEqual(['W', 'D', 'S', 'A']);
  expect(doc.keymaps[0].rel_radius).toBeGreaterThan(0.08);
  expect([doc.keymaps[1].key.text, doc.keymaps[2].key.text, doc.keymaps[3].key.text]).toEqual(['J', 'Q', 'F']);
  expect(doc.keymaps[1].icon.rel_position.rel_y).toBeCloseTo(doc.keymaps[2].icon.rel_position.rel_y, 4);
  expect(doc.keymaps[3].press_actions).toEqual(['click 960,540', 'sleep 100', 'click 960,540']);
  library('check', '--strict', file);
});
