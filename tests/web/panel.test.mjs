// SPDX-License-Identifier: Apache-2.0
// What the panel on the page shows beside its lights and pixels.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { buttonctl, limit, openPage, startBrowser, startSimulator } from './support.mjs';

const enlargedPixels = (page) => page.evaluate(() => {
  const pixels = (canvas) => [...new Uint32Array(canvas.getContext('2d').getImageData(0, 0, 128, 128).data.buffer)];
  const large = document.querySelector('#enlarged canvas');
  const shown = pixels(document.getElementById('screen-1'));
  return { side: large.getBoundingClientRect().width, rendering: getComputedStyle(large).imageRendering,
    lit: shown.filter((pixel) => pixel !== 0xff000000).length, isSame: pixels(large).every((pixel, i) => pixel === shown[i]) };
});

test('a click on a screen enlarges it, and Escape makes it small again', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await page.getByRole('button', { name: 'Enlarge screen 1' }).click();
  await page.locator('#enlarged[open]').waitFor();
  await buttonctl(simulator, 'text', '1', '0', 'Large');
  await page.waitForFunction(() => document.querySelector('#screen-1-text').textContent.includes('Large'));
  const { side, rendering } = await enlargedPixels(page);
  assert.equal(side, 7 * 128, 'as many whole pixels as 1080 have room for');
  assert.equal(rendering, 'pixelated');
  // It goes on showing what is new. The words of a text can come before its pixels.
  const end = Date.now() + limit;
  for (let seen = {}; !(seen.isSame && seen.lit > 100); seen = await enlargedPixels(page)) {
    assert.ok(Date.now() < end, `${seen.lit} pixels are lit, the enlarged ones are ${seen.isSame ? '' : 'not '}the same`);
  }
  await page.keyboard.press('Escape');
  await page.waitForFunction(() => !document.getElementById('enlarged').open);
  assert.equal(await page.evaluate(() => document.activeElement.getAttribute('aria-label')), 'Enlarge screen 1');
});

test('a button that blinks shows its period', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  const title = () => page.locator('.key').nth(5).getAttribute('title');
  await buttonctl(simulator, 'led', '5', 'blink', '250');
  await page.locator('.key[title*="250"]').waitFor();
  assert.equal(await title(), 'Blinks, every 250 ms the other way');
  await buttonctl(simulator, 'led', '5', 'off');
  await page.waitForFunction(() => document.querySelectorAll('.key[title]:not([title=""])').length === 0);
});
