// The screen's view settings: the screenshot under the items dimmed by a
// slider, kept by the browser.
import { test, expect } from '@playwright/test';
import { copyExample, open, useEditor } from './harness.js';

useEditor(test);

test('the background slider dims the screenshot, by keyboard too, and the setting stays', async ({ page }) => {
  await open(page, copyExample('shooter.json'));
  await page.evaluate(() => {
    const bytes = Uint8Array.from(atob('iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJggg=='), (c) => c.charCodeAt(0));
    const data = new DataTransfer();
    data.items.add(new File([bytes], 'shot.png', { type: 'image/png' }));
    document.getElementById('stage').dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true }));
  });
  await expect(page.locator('#picture')).toHaveClass(/has-background/);
  const dimming = () => page.locator('#picture rect.screen').evaluate((r) => Number(getComputedStyle(r).fillOpacity));
  expect(await dimming()).toBeCloseTo(0, 2);
  const slider = page.getByRole('slider', { name: 'Background' });
  await slider.focus();
  for (let i = 0; i < 8; i++) await page.keyboard.press('ArrowLeft');
  await expect(slider).toHaveAttribute('aria-valuetext', '60%');
  expect(await dimming()).toBeCloseTo(0.4, 2);
  await page.reload();
  await page.waitForFunction(() => window.editorReady === true);
  await expect(page.locator('#picture')).toHaveClass(/has-background/);
  expect(await dimming()).toBeCloseTo(0.4, 2);
});
