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
    all.filter((one) => one.checkVisibility())
      .map((one) => [one.getAttribute('aria-label') ?? one.id ?? one.textContent, one.getBoundingClientRect()])
      .filter(([, box]) => box.width < 24 || box.height < 24).map(([name]) => name));
  assert.deepEqual(small, []);
  await picture(page, 'web-panel-phone.png', { fullPage: true });
});

const places = '.bar > *, main > section, .screw, .wordmark, .toggle, .intensity-window, .bezel, .tray, .key, .keyless > span, ' +
  '#form .field, #submit, #copy, .list-head > *, .scroller';

// Pairs of places that lie over each other, though neither is a part of the other.
const overlaps = (page) => page.evaluate((selector) => {
  const seen = [...document.querySelectorAll(selector)].filter((one) => one.checkVisibility());
  const boxes = seen.map((one) => one.getBoundingClientRect());
  const name = (one) => one.id || one.getAttribute('aria-label') || one.className;
  return seen.flatMap((one, i) => seen.slice(i + 1).filter((other, k) => {
    const [a, b] = [boxes[i], boxes[i + 1 + k]];
    return !one.contains(other) && Math.min(a.right, b.right) - Math.max(a.left, b.left) > 0.5 &&
      Math.min(a.bottom, b.bottom) - Math.max(a.top, b.top) > 0.5;
  }).map((other) => `${name(one)} and ${name(other)}`));
}, places);

const isSeen = (page, selector) => page.locator(selector).evaluate((one) => {
  const box = one.getBoundingClientRect();
  return box.top >= 0 && box.left >= 0 && box.bottom <= innerHeight && box.right <= innerWidth;
});

// On a phone the first screen is enough: the others stand below it.
async function fits(t, width, height, screens) {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t, { viewport: { width, height } }), simulator);
  await page.getByRole('button', { name: 'Demonstration' }).click();
  await page.locator('#messages li', { hasText: 'BMS_Ping' }).waitFor();
  assert.deepEqual(await overlaps(page), []);
  assert.equal(await overflow(page), 0);
  assert.ok(await isSeen(page, '#submit'));
  for (let screen = 0; screen < screens; ++screen) assert.ok(await isSeen(page, `#screen-${screen}`), `screen ${screen}`);
  await picture(page, `web-panel-${width}.png`);

  await simulator.stop();
  await page.locator('[data-state=lost]').waitFor();
  assert.ok(await isSeen(page, '.plate-lost'));
  assert.match(await page.locator('.plate').evaluate((plate) => getComputedStyle(plate).filter), /brightness/);
  assert.deepEqual(await overlaps(page), []);
  await picture(page, `web-panel-${width}-lost.png`);
}

test('at 1280 pixels nothing overlaps, and Send is seen with the screens', (t) => fits(t, 1280, 800, 3));

test('at 1024 pixels nothing overlaps, and Send is seen with the screens', (t) => fits(t, 1024, 768, 3));

test('at 820 pixels nothing overlaps, and Send is seen with the screens', (t) => fits(t, 820, 1180, 3));

test('at 390 pixels nothing overlaps, and Send is seen with the first screen', (t) => fits(t, 390, 844, 1));

test('what leads away from the page opens beside it, and buttons say what they are for', async (t) => {
  const page = await openPage(await startBrowser(t), await startSimulator(t));
  const links = await page.locator('.tools a').evaluateAll((all) => all.map((one) => [one.textContent, one.target, one.rel]));
  assert.deepEqual(links, [['Picture', '_blank', 'noopener'], ['State', '_blank', 'noopener']]);
  const names = await page.locator('.list-head button').evaluateAll((all) => all.map((one) => one.ariaLabel));
  assert.deepEqual(names, ['Clear the messages', 'Pause the messages', 'Clear the log', 'Pause the log']);
});
