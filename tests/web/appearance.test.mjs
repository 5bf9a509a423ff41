// SPDX-License-Identifier: Apache-2.0
// How the page looks: on a desk and on a phone. The pictures are left in the build folder.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { statSync } from 'node:fs';
import { join } from 'node:path';
import { buttonctl, openPage, outputFolder, startBrowser, startSimulator } from './support.mjs';

async function demonstrated(t, options) {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t, options), simulator);
  await page.getByRole('button', { name: 'Demonstration' }).click();
  await page.locator('#messages li', { hasText: 'BMS_Ping' }).waitFor();
  await buttonctl(simulator, 'subtext', '0', '7', '11', '12:31');
  await buttonctl(simulator, 'led', '14', 'on');
  await page.locator('#messages li', { hasText: '12:31' }).waitFor();
  await page.locator('[aria-label="Button LED 14"][aria-pressed=true]').waitFor();
  return page;
}

const screenSides = (page) => page.locator('canvas[id^=screen]').evaluateAll((all) =>
  all.map((one) => one.getBoundingClientRect().width * devicePixelRatio));

const overflow = (page) => page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);

async function picture(page, name, options) {
  const path = join(outputFolder, name);
  await page.screenshot({ path, ...options });
  assert.ok(statSync(path).size > 20_000);
}

test('on a desk the screens have whole pixels at twice their size', async (t) => {
  const page = await demonstrated(t, {});
  assert.deepEqual(await screenSides(page), [256, 256, 256]);
  assert.equal(await overflow(page), 0);
  await picture(page, 'web-panel.png');
  await page.setViewportSize({ width: 1280, height: 800 });
  await page.waitForFunction(() => document.querySelector('#screen-2').getBoundingClientRect().width === 256);
  assert.equal(await overflow(page), 0);
  await picture(page, 'web-panel-1280.png');
});

test('on a phone nothing is cut off and everything is large enough for a finger', async (t) => {
  const page = await demonstrated(t, { viewport: { width: 390, height: 844 }, deviceScaleFactor: 3, hasTouch: true, isMobile: true });
  for (const side of await screenSides(page)) {
    // Browsers place boxes at 64ths of a pixel.
    assert.ok(Math.abs(side - Math.round(side / 128) * 128) < 0.1, `${side} pixels`);
    assert.ok(side > 3 * 255, `${side} pixels`);
  }
  assert.equal(await overflow(page), 0);
  const small = await page.locator('button, .tools a, select, input:not([type=file])').evaluateAll((all) =>
    all.map((one) => [one.getAttribute('aria-label') ?? one.id ?? one.textContent, one.getBoundingClientRect()])
      .filter(([, box]) => box.width < 24 || box.height < 24).map(([name]) => name));
  assert.deepEqual(small, []);
  await picture(page, 'web-panel-phone.png', { fullPage: true });
});
