// Opens the web page at ADDRESS in Debian's chromium and waits until it has
// loaded its WebAssembly module and shown the blank keymap, then prints what
// the status bar says. Playwright comes from the browser tests' install.
//   node web_page.cjs PLAYWRIGHT_INSTALL ADDRESS
const { createRequire } = require('node:module');
const [install, address] = process.argv.slice(2);
const { chromium } = createRequire(`${install}/`)('@playwright/test');

(async () => {
  const browser = await chromium.launch({ executablePath: '/usr/bin/chromium', headless: true });
  try {
    const page = await browser.newPage();
    const errors = [];
    page.on('pageerror', (error) => errors.push(error.message));
    await page.goto(address);
    await page.waitForFunction(() => window.editorReady === true, null, { timeout: 90000 });
    if (errors.length) throw new Error(`the page threw: ${errors.join('; ')}`);
    console.log(`ready: ${await page.locator('#problem-count').innerText()}`);
  } finally {
    await browser.close();
  }
})().catch((error) => {
  console.error(error.message);
  process.exit(1);
});
