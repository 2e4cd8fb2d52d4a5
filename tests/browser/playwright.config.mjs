// Browser tests run by ctest (browser.playwright) with Debian's chromium:
// never a downloaded browser. RunBrowserTests.cmake installs @playwright/test
// into the build tree and runs this config from there; ZUNO_BROWSER_TESTS
// names this folder, where the *.test.js files live.
import { defineConfig } from '@playwright/test';

export default defineConfig({
  testDir: process.env.ZUNO_BROWSER_TESTS || '.',
  testMatch: /.*\.test\.(js|mjs)$/,
  outputDir: process.env.ZUNO_BROWSER_OUTPUT || 'test-results',
  workers: 1,
  reporter: 'line',
  timeout: 60000,
  projects: [
    {
      name: 'chromium',
      use: {
        browserName: 'chromium',
        headless: true,
        launchOptions: {
          executablePath: '/usr/bin/chromium',
          args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
            '--disable-background-networking', '--disable-component-update', '--disable-sync'],
        },
      },
    },
  ],
});
