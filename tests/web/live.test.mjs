// SPDX-License-Identifier: Apache-2.0
// What the page shows, and what it sends.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { buttonctl, comparedScreen, openPage, ownRoot, settled, shell, startBrowser, startDriver, startSimulator, temporaryFolder, waitForRows } from './support.mjs';

const message = (page, text) => page.locator('#messages li', { hasText: text });

test('a message from buttonctl appears on the panel and in the lists', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await buttonctl(simulator, 'text', '1', '3', 'Channel 7');
  await buttonctl(simulator, 'led', '5', 'on');
  await buttonctl(simulator, 'status', '31', 'on');
  await buttonctl(simulator, 'toggle', '1', 'on');
  await settled(page, 4);
  await message(page, 'BMS_TFTTextLine').waitFor();
  assert.match(await message(page, 'BMS_TFTTextLine').innerText(), /screen_id 1 line_id 3 flag 1 n 10 Channel 7$/);
  await page.locator('#log li', { hasText: 'buttondriver: Got a TFT text line message' }).waitFor();
  const pressed = await page.locator('button[aria-pressed=true]').evaluateAll((all) => all.map((one) => one.ariaLabel));
  assert.deepEqual(pressed.sort(), ['Button LED 5', 'Status LED 31', 'Toggle indicator 1']);
  const screen = await comparedScreen(page, 1);
  assert.equal(screen.different, 0);
  assert.ok(screen.lit > 100, `${screen.lit} pixels are lit`);
  assert.deepEqual(page.complaints, []);
});

test('the canvases have the very pixels of the pictures, at every intensity', async (t) => {
  const root = ownRoot(t);
  const simulator = await startSimulator(t, { root });
  const page = await openPage(await startBrowser(t), simulator);
  await page.getByRole('button', { name: 'Demonstration' }).click();
  await message(page, 'BMS_Ping').waitFor();
  let messages = (await simulator.state()).counters.messages;
  for (const [percent, intensity] of [[100, '63'], [50, '31'], [1, '0']]) {
    writeFileSync(join(root, 'etc/rv1000e/buttonlevel'), `scr ${percent}\n`);
    await buttonctl(simulator, 'reconfig');
    await settled(page, ++messages);
    await page.locator(`#intensity[aria-valuenow="${intensity}"]`).waitFor();
    for (const screen of [0, 1, 2]) {
      const { different, lit } = await comparedScreen(page, screen);
      assert.equal(different, 0, `screen ${screen} at ${percent} percent`);
      assert.ok(lit > 1000, `screen ${screen}: ${lit} pixels are lit`);
    }
  }
  assert.deepEqual(page.complaints, []);
});

test('a message sent from the page reaches the panel', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await page.getByLabel('text', { exact: true }).fill('Grüße');
  await page.getByLabel('line id').fill('2');
  await page.locator('#fields').getByLabel('screen').selectOption('-1');
  await page.getByRole('button', { name: 'Send', exact: true }).click();
  await message(page, 'Grüße').waitFor();
  const { screens } = await simulator.state();
  const lines = ['', '', 'Grüße'];
  assert.deepEqual(screens, Array(3).fill({ text: lines, drawn: lines }));
  assert.equal(await page.locator('#result').innerText(), 'Sent, 26 bytes');
});

test('pressing a key or a lamp turns its light over', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  for (const name of ['Button LED 23', 'Status LED 0', 'Toggle indicator 0']) {
    const button = page.getByRole('button', { name, exact: true });
    await button.click();
    await page.locator(`[aria-label="${name}"][aria-pressed=true]`).waitFor();
    await button.click();
    await page.locator(`[aria-label="${name}"][aria-pressed=false]`).waitFor();
  }
});

// A picture of 40 x 24 pixels, the left half white.
const picture = (page) => page.evaluate(async () => {
  const canvas = new OffscreenCanvas(40, 24);
  const context = canvas.getContext('2d');
  context.fillRect(0, 0, 40, 24);
  context.fillStyle = '#fff';
  context.fillRect(0, 0, 20, 24);
  const blob = await canvas.convertToBlob({ type: 'image/png' });
  return Array.from(new Uint8Array(await blob.arrayBuffer()));
});

test('every message can be sent, and the line for a shell sends the same bytes', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  const folder = temporaryFolder(t);
  const file = join(folder, 'half white.png');
  writeFileSync(file, Buffer.from(await picture(page)));
  const names = await page.locator('#message-type option').evaluateAll((all) => all.map((one) => one.value));
  assert.equal(names.length, 20);
  for (const [i, name] of names.entries()) {
    await page.locator('#message-type').selectOption(name);
    if (await page.locator('#fields input[type=file]').count()) await page.locator('#fields input[type=file]').setInputFiles(file);
    await page.locator('#submit:not([disabled])').click();
    await settled(page, i + 1);
    await waitForRows(page, 'messages', i + 1);
    if (name !== 'raw') assert.match(await page.locator('#messages li').nth(i).innerText(), new RegExp(`\\b${name}\\b`));
    const line = await page.locator('#command').innerText();
    assert.match(line, new RegExp(`^buttonctl -p ${simulator.daemonPort} `));
    const printed = await shell(`${line.replace('buttonctl', 'buttonctl --dry-run')}`, folder);
    assert.ok(printed.replace(/\s/g, '').slice(8) === page.sent.at(-1), `${name}: ${line}`);
  }
  assert.deepEqual(page.complaints, []);
});

test('a picture that is dropped is scaled to fit the screen', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await page.locator('#message-type').selectOption('BMS_DrawTFTImage');
  assert.ok(await page.locator('#submit').isDisabled());
  await page.locator('.drop').evaluate(async (drop) => {
    const canvas = new OffscreenCanvas(400, 200);
    const context = canvas.getContext('2d');
    context.fillStyle = '#f00';
    context.fillRect(0, 0, 400, 200);
    const data = new DataTransfer();
    data.items.add(new File([await canvas.convertToBlob()], 'red.png', { type: 'image/png' }));
    drop.dispatchEvent(new DragEvent('drop', { dataTransfer: data, cancelable: true }));
  });
  await page.getByText('red.png, 128 × 64 pixels').waitFor();
  assert.equal(await page.locator('#command').innerText(), `buttonctl -p ${simulator.daemonPort} image 0 red.png --fit`);
  await page.locator('#submit').click();
  await settled(page, 1);
  const { different, lit } = await comparedScreen(page, 0);
  assert.equal(different, 0);
  assert.equal(lit, 128 * 64);
});

test('what clients send is text and never markup', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  const text = '<img src=x onerror=alert(1)><script>alert(2)</script>';
  await buttonctl(simulator, 'text', '0', '0', text);
  await message(page, text).waitFor();
  await page.locator('#log li').first().waitFor();
  assert.equal(await page.locator('main :is(img, script)').count(), 0);
  assert.ok((await page.locator('#screen-0-text').innerText()).includes('<img src=x onerror=alert(1)>'));
});

test('a reset makes the panel dark and empties the lists', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await page.getByRole('button', { name: 'Demonstration' }).click();
  await message(page, 'BMS_Ping').waitFor();
  await page.getByRole('button', { name: 'Reset' }).click();
  await page.waitForFunction(() => document.querySelectorAll('[aria-pressed=true]').length === 0);
  await settled(page, 0);
  await waitForRows(page, 'messages', 0);
  for (const screen of [0, 1, 2]) assert.deepEqual(await comparedScreen(page, screen), { different: 0, lit: 0 });
});

test('ten pages show the same', async (t) => {
  const simulator = await startSimulator(t);
  const browser = await startBrowser(t);
  const pages = [];
  for (let i = 0; i < 10; ++i) pages.push(await openPage(browser, simulator));
  await buttonctl(simulator, 'text', 'all', '0', 'To all of you');
  for (const page of pages) {
    await settled(page, 1);
    assert.equal((await comparedScreen(page, 2)).different, 0);
    await waitForRows(page, 'messages', 1);
  }
});

test('a panel that is driven from outside is shown without what only a daemon knows', async (t) => {
  const device = join(temporaryFolder(t), 'device');
  const page = await openPage(await startBrowser(t), await startSimulator(t, { device }));
  const drivers = page.locator('[data-counter=drivers]');
  assert.equal(await drivers.textContent(), '0');
  const driver = startDriver(t, device);
  await page.locator('#log li', { hasText: 'a driver has opened the device' }).waitFor();
  await page.locator('[data-counter=drivers]', { hasText: '1' }).waitFor();
  // The screens are made black at the daemon's start.
  await page.waitForFunction(() => document.querySelector('[data-counter=transfers]').textContent === '12');
  await page.getByText('Another program drives this panel').waitFor();
  for (const id of ['send', 'messages', 'demonstration', 'reset'])
    assert.equal(await page.locator(`#${id}`).isVisible(), false, id);
  for (const name of ['messages', 'queue_length', 'clients'])
    assert.equal(await page.locator(`[data-counter=${name}]`).isVisible(), false, name);
  await page.getByLabel('Button LED 5', { exact: true }).click({ force: true });
  assert.deepEqual(page.sent, []);
  await driver.stop();
  await page.locator('#log li', { hasText: 'the driver has gone' }).waitFor();
  await page.locator('[data-counter=drivers]', { hasText: '0' }).waitFor();
  assert.deepEqual(page.complaints, []);
});
