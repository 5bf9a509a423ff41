// SPDX-License-Identifier: Apache-2.0
// The page without a mouse, and without eyes.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { buttonctl, openPage, settled, startBrowser, startSimulator } from './support.mjs';

const focused = (page) => page.evaluate(() => {
  const element = document.activeElement;
  return element.getAttribute('aria-label') ?? element.id ?? element.textContent;
});

async function tabTo(page, name) {
  for (let i = 0; i < 60; ++i) {
    if ((await focused(page)) === name) return;
    await page.keyboard.press('Tab');
  }
  assert.fail(`the tabulator key does not lead to ${name}`);
}

test('the keys of the panel are pressed with the keyboard', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await tabTo(page, 'Button LED 0');
  const steps = [['ArrowRight', 1], ['ArrowDown', 5], ['End', 23], ['ArrowUp', 19], ['ArrowLeft', 18], ['Home', 0], ['ArrowLeft', 0]];
  for (const [key, id] of steps) {
    await page.keyboard.press(key);
    assert.equal(await focused(page), `Button LED ${id}`, key);
  }
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('Space');
  await page.locator('[aria-label="Button LED 1"][aria-pressed=true]').waitFor();
  await page.keyboard.press('Enter');
  await page.locator('[aria-label="Button LED 1"][aria-pressed=false]').waitFor();
});

test('each group of lamps is one stop of the tabulator key', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await tabTo(page, 'Toggle indicator 0');
  const stops = [];
  for (let i = 0; i < 4; ++i) {
    stops.push(await focused(page));
    await page.keyboard.press('Tab');
  }
  assert.deepEqual([...stops, await focused(page)], ['Toggle indicator 0', 'Enlarge screen 0', 'Status LED 0', 'Button LED 0', 'message-type']);
});

test('a message is chosen, filled in and sent with the keyboard', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await page.keyboard.press('Tab');
  assert.match(await page.evaluate(() => document.activeElement.textContent), /^Skip to sending/);
  await page.keyboard.press('Enter');
  await page.keyboard.press('Tab');
  assert.equal(await focused(page), 'message-type');
  await page.keyboard.type('BMS_SetLEDStatus');
  await page.keyboard.press('Tab');
  await page.keyboard.press('Control+A');
  await page.keyboard.type('9');
  await page.keyboard.press('Enter');
  await settled(page, 1);
  assert.deepEqual((await simulator.state()).status_leds.indexOf(true), 9);
});

test('a value that cannot be sent is told where it stands', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  const line = page.getByLabel('line id');
  await line.fill('three');
  assert.equal(await line.getAttribute('aria-invalid'), 'true');
  await page.getByText('A whole number, please.').waitFor();
  assert.ok(await page.locator('#submit').isDisabled());
  await line.fill('3');
  assert.equal(await line.getAttribute('aria-invalid'), null);
  await page.getByLabel('text', { exact: true }).fill('€');
  await page.getByText('The panel knows only the characters of Latin-1.').waitFor();
});

test('a screen is described by its last texts, and changes are announced', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await buttonctl(simulator, 'text', '1', '0', 'Channel 7');
  await buttonctl(simulator, 'subtext', '1', '2', '3', '12:30');
  await settled(page, 2);
  await page.call('DOM.enable');
  const { root } = await page.call('DOM.getDocument');
  const { nodeId } = await page.call('DOM.querySelector', { nodeId: root.nodeId, selector: '#screen-1' });
  const { nodes } = await page.call('Accessibility.getPartialAXTree', { nodeId, fetchRelatives: false });
  assert.equal(nodes[0].name.value, 'Screen 1');
  assert.equal(nodes[0].description.value, 'Line 0: Channel 7. Line 2: 12:30.');
  await page.waitForFunction(() => document.getElementById('announcer').textContent.includes('Screen 1, line 2: 12:30.'));
  assert.equal(await page.locator('#announcer').getAttribute('aria-live'), 'polite');
});
