// SPDX-License-Identifier: Apache-2.0
// The form: what it holds at first, what it does not let pass, and what it says of what became of a message.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { openPage, settled, startBrowser, startSimulator } from './support.mjs';

async function choose(page, name) {
  await page.locator('#message-type').selectOption(name);
}

const send = (page) => page.getByRole('button', { name: 'Send', exact: true }).click();

test('what a form holds at first is nothing that the daemon refuses', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  const names = await page.locator('#message-type optgroup:first-child option').evaluateAll((all) => all.map((one) => one.value));
  assert.equal(names.length, 11);
  let sent = 0;
  for (const name of names) {
    await choose(page, name);
    // Those with a picture wait for one.
    if ((await page.locator('#fields input[type=file]').count()) > 0) continue;
    const states = page.locator('#fields').getByLabel('state');
    const choices = (await states.count()) > 0 ? await states.locator('option').evaluateAll((all) => all.map((one) => one.value)) : [null];
    for (const choice of choices) {
      if (choice !== null) await states.selectOption(choice);
      await send(page);
      await settled(page, ++sent);
    }
  }
  assert.equal(sent, 13);
  await page.locator('#messages li').nth(sent - 1).waitFor();
  await page.locator('#log li', { hasText: 'opcode =  22' }).nth(1).waitFor();
  assert.equal(await page.locator('#log li', { hasText: /must|[Ii]nvalid|unhandled/ }).count(), 0);
});

test('the time is asked for when a button blinks, and is not 0', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await choose(page, 'BMS_SetLEDState');
  const time = page.locator('#fields').getByLabel('time');
  const state = page.locator('#fields').getByLabel('state');
  assert.equal(await time.isVisible(), false);
  await state.selectOption('-1');
  assert.equal(await time.inputValue(), '500');
  await time.fill('0');
  await page.getByText('1 or more, please.').waitFor();
  assert.ok(await page.locator('#submit').isDisabled());
  // What is wrong with a field that is not needed keeps nobody from sending.
  await state.selectOption('1');
  assert.equal(await page.locator('#command').innerText(), `buttonctl -p ${simulator.daemonPort} led 5 on`);
  await send(page);
  await settled(page, 1);
  assert.deepEqual(page.sent, ['00000011000000050000000100000000']);
});

const outOfRange = [
  ['BMS_SetLEDState', 'button id', '24', 'From 0 to 23, please.'],
  ['BMS_SetLEDState', 'button id', '-2', 'From 0 to 23, please.'],
  ['BMS_SetLEDStatusIndicator', 'button id', '32', 'From 0 to 31, please.'],
  ['BMS_SetLEDToggleIndicator', 'button id', '2', 'From 0 to 1, please.'],
  ['BMS_SetButtonColour', 'value 1', '256', 'From 0 to 255, please.'],
  ['BMS_SetParameter', 'parameter', '7', 'From 8 to 9, please.'],
  ['raw', 'bytes', '', 'This would be an empty message: some bytes, please.'],
  ['raw', 'bytes', '123', 'Two hexadecimal digits for each byte, please.'],
];

test('a value out of its range is marked and not sent', async (t) => {
  const page = await openPage(await startBrowser(t), await startSimulator(t));
  for (const [name, label, value, fault] of outOfRange) {
    await choose(page, name);
    const input = page.locator('#fields').getByLabel(label, { exact: true });
    const usual = await input.inputValue();
    await input.fill(value);
    assert.equal(await input.getAttribute('aria-invalid'), 'true', `${name} ${label} ${value}`);
    await page.getByText(fault).waitFor();
    assert.ok(await page.locator('#submit').isDisabled());
    await input.fill(usual);
    assert.equal(await input.getAttribute('aria-invalid'), null);
  }
  await choose(page, 'BMS_SetLEDState');
  await page.locator('#fields').getByLabel('button id').fill('-1');
  assert.equal(await page.locator('#submit').isDisabled(), false, 'all buttons');
});

const refused = [
  ['00000011 0000004d 00000001 00000000', 'The daemon logs: buttondriver:invalid button id 77, setLEDState()'],
  ['00000011 00000005 ffffffff 00000000', 'The daemon logs: buttondriver: button id 5 must have a non-zero time to use blinking.'],
  ['00000010 00000007', 'The daemon logs: Invalid screen ID 7.'],
  ['00000013 00000000 00000000 00000000 00000004 41414141', "The daemon logs: Invalid BMP Signature ('A', 'A')!  Exiting."],
  ['00000006 00000001 00000077', 'The daemon logs: invalid image data, size = 119'],
  ['00000063', 'The daemon logs: ButtonSetterImpl::process_messages, unhandled switch case 99'],
];

test('what the daemon refuses is told beside Send', async (t) => {
  const page = await openPage(await startBrowser(t), await startSimulator(t));
  await choose(page, 'raw');
  for (const [bytes, answer] of refused) {
    await page.locator('#fields').getByLabel('bytes').fill(bytes);
    await send(page);
    await page.locator('#result.bad', { hasText: answer }).waitFor();
  }
  await choose(page, 'BMS_Ping');
  await send(page);
  await page.locator('#result:not(.bad)', { hasText: 'BMS_PingReply after' }).waitFor();
});

test('a message that the panel ignores says so', async (t) => {
  const page = await openPage(await startBrowser(t), await startSimulator(t));
  await choose(page, 'BMS_SetButtonColour');
  assert.equal(await page.locator('#remark').innerText(), 'The panel does nothing with it: the daemon logs it as unhandled.');
  await choose(page, 'BMS_TFTTextLine');
  assert.equal(await page.locator('#remark').isVisible(), false);
});
