// The browser itself: Debian's chromium starts headless and draws a page.
// When this fails, every other browser test would fail for the same reason.
import { test, expect } from '@playwright/test';

test('chromium starts and draws a page', async ({ page }) => {
  await page.setContent('<svg xmlns="http://www.w3.org/2000/svg" width="10" height="10">'
    + '<rect width="10" height="10" fill="#ff0000"/></svg>');
  await expect(page.locator('rect')).toHaveCount(1);
});
