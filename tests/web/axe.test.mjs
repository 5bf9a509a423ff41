// SPDX-License-Identifier: Apache-2.0
// The page under the rules of axe, which is the one thing here that npm has to get.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { openPage, startBrowser, startSimulator } from './support.mjs';

const axeFile = join(process.env.NODE_MODULES_FOLDER, 'node_modules/axe-core/axe.min.js');

// A function that asserts that axe finds no fault in a part of the page, where `least` of its rules have something to
// look at.
async function withAxe(page) {
  await page.evaluate(readFileSync(axeFile, 'utf8'));
  return async (what, part = 'html', least = 10) => {
    const { violations, passes } = await page.evaluate((selector) => axe.run(selector), part);
    assert.deepEqual(violations.map((one) => `${one.id}: ${one.nodes.map((node) => node.html).join(' ')}`), [], what);
    assert.ok(passes.length >= least, `${passes.length} rules had something to look at`);
  };
}

test('axe finds no violation at the start', async (t) => {
  const page = await openPage(await startBrowser(t), await startSimulator(t));
  await (await withAxe(page))('at the start');
});

async function axeFindsNothingInTheDemonstration(t, options) {
  const page = await openPage(await startBrowser(t, options), await startSimulator(t));
  await page.getByRole('button', { name: 'Demonstration' }).click();
  await page.locator('#messages li', { hasText: 'BMS_Ping' }).waitFor();
  await (await withAxe(page))('with everything lit');
}

test('axe finds no violation with everything lit on a desk', (t) => axeFindsNothingInTheDemonstration(t, {}));

test('axe finds no violation with everything lit on a phone', (t) =>
  axeFindsNothingInTheDemonstration(t, { viewport: { width: 390, height: 844 } }));

test('axe finds no violation in the form of any message', async (t) => {
  const page = await openPage(await startBrowser(t), await startSimulator(t));
  const check = await withAxe(page);
  const names = await page.locator('#message-type option').evaluateAll((all) => all.map((one) => one.value));
  assert.equal(names.length, 20);
  for (const name of names) {
    await page.locator('#message-type').selectOption(name);
    // A form without fields has nothing to look at.
    await check(name, '#fields', (await page.locator('#fields input, #fields select').count()) ? 3 : 0);
  }
});
