// SPDX-License-Identifier: Apache-2.0
// The lists of messages and log lines, for somebody who reads them.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { buttonctl, openPage, shell, startBrowser, startSimulator, temporaryFolder, waitForRows } from './support.mjs';

const message = (page, text) => page.locator('#messages li', { hasText: text });

test('a list shows the rows that have every word of its filter', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  for (const [screen, text] of [['0', 'Channel 7'], ['1', 'Channel 8'], ['2', 'Ready']]) await buttonctl(simulator, 'text', screen, '0', text);
  await waitForRows(page, 'messages', 3);
  const filter = page.getByLabel('Filter the messages');
  for (const [words, rows] of [['channel', 2], ['8 CHANNEL', 1], ['nothing', 0], ['textline', 3], ['2000', 1]]) {
    await filter.fill(words);
    await waitForRows(page, 'messages', rows);
  }
  await filter.fill('ready');
  await waitForRows(page, 'messages', 1);
  await buttonctl(simulator, 'led', '5', 'on');
  await buttonctl(simulator, 'text', '0', '1', 'Ready too');
  await waitForRows(page, 'messages', 2);
  await filter.fill('');
  await waitForRows(page, 'messages', 5);
});

test('a list can be cleared', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await buttonctl(simulator, 'led', '5', 'on');
  await waitForRows(page, 'messages', 1);
  await page.getByRole('button', { name: 'Clear the messages' }).click();
  await waitForRows(page, 'messages', 0);
  await page.getByRole('button', { name: 'Clear the log' }).click();
  await waitForRows(page, 'log', 0);
  await buttonctl(simulator, 'led', '6', 'on');
  await waitForRows(page, 'messages', 1);
  await message(page, 'button_id 6').waitFor();
});

test('a list stands still while it is paused or a row is open', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  const note = (text) => page.locator('#messages-note', { hasText: text }).waitFor();
  const pause = page.getByRole('button', { name: 'Pause the messages' });
  await buttonctl(simulator, 'led', '5', 'on');
  await waitForRows(page, 'messages', 1);
  await pause.click();
  await buttonctl(simulator, 'led', '6', 'on');
  await note('1 new, held back');
  assert.equal(await page.locator('#messages li').count(), 1);
  await pause.click();
  await waitForRows(page, 'messages', 2);

  await message(page, 'button_id 5').locator('summary').click();
  await buttonctl(simulator, 'led', '7', 'on');
  await note('1 new, held back');
  assert.equal(await page.locator('#messages li').count(), 2);
  await message(page, 'button_id 5').locator('summary').click();
  await waitForRows(page, 'messages', 3);
});

test('a row opens to its bytes, and to a line for a shell that sends the same', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  const folder = temporaryFolder(t);
  const sent = [
    ['text 1 3 "it\'s Channel 7"', 'it\'s Channel 7'],
    ['subtext 0 2 3 12:30 --colour FFC25C', '12:30'],
    ['led 5 blink 250', 'time 250'],
    ['null 0102ff', 'TYPE_NULL_MESSAGE'],
    ['raw 00000011 00000005', 'button_id 5 state 0'],
    ['raw 0000000d 00000000 00000000 00000000 00000000 00000002 00000001 00000002', 'SetButtonImageList'],
    ['raw 00000063 01', 'unknown message'],
  ];
  for (const [i, [words, seen]] of sent.entries()) {
    await shell(`buttonctl -p ${simulator.daemonPort} ${words}`, folder);
    await waitForRows(page, 'messages', i + 1);
    const row = page.locator('#messages li').nth(i);
    assert.ok((await row.innerText()).includes(seen), await row.innerText());
    await row.locator('summary').click();
    const printed = (line) => shell(line.replace(/^buttonctl/, 'buttonctl --dry-run'), folder);
    const bytes = (await printed(`buttonctl ${words}`)).replace(/\s/g, '').slice(8);
    assert.equal((await row.locator('.hex').innerText()).replaceAll(' ', ''), bytes);
    assert.equal((await printed(await row.locator('.line').innerText())).replace(/\s/g, '').slice(8), bytes, words);
    await row.locator('summary').click();
  }
  assert.equal(await page.locator('.columns').innerText(), 'Time\nClient\nMessage');
});

test('of a long message the first bytes are shown, and no line', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await buttonctl(simulator, 'raw', `00000063${'41'.repeat(1000)}`);
  await waitForRows(page, 'messages', 1);
  await page.locator('#messages summary').click();
  await page.getByText('1,004 bytes, these are the first 512').waitFor();
  assert.equal(await page.locator('#messages .line').innerText(), 'Too long for a command line.');
});

test('the arrow keys move between the rows, and Enter opens one', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  for (const id of ['1', '2', '3']) await buttonctl(simulator, 'led', id, 'on');
  await waitForRows(page, 'messages', 3);
  const focused = () => page.evaluate(() => document.activeElement.textContent.replace(/\s+/g, ' '));
  await page.locator('#messages-pause').evaluate((button) => button.focus());
  await page.keyboard.press('Tab');
  for (const [key, id] of [['ArrowUp', 3], ['ArrowUp', 2], ['ArrowUp', 1], ['ArrowUp', 1], ['ArrowDown', 2]]) {
    await page.keyboard.press(key);
    assert.match(await focused(), new RegExp(`button_id ${id} `), key);
  }
  await page.keyboard.press('Enter');
  await page.locator('#messages .hex', { hasText: '00000011 00000002 00000001 00000000' }).waitFor();
});
