// SPDX-License-Identifier: Apache-2.0
// The page when its simulator ends and comes again.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { buttonctl, comparedScreen, openPage, settled, startBrowser, startSimulator, waitForRows } from './support.mjs';

test('the page says that the connection is lost, and comes back by itself with the new state', async (t) => {
  const first = await startSimulator(t);
  const page = await openPage(await startBrowser(t), first);
  await buttonctl(first, 'text', '0', '0', 'Before');
  await buttonctl(first, 'led', '3', 'on');
  await settled(page, 2);

  await first.stop();
  await page.locator('[data-state=lost]').waitFor();
  assert.equal(await page.locator('#link-text').innerText(), 'Connection lost, trying again');
  await page.getByRole('button', { name: 'Send', exact: true }).click();
  await page.getByText('There is no connection to the simulator.').waitFor();

  const second = await startSimulator(t, { httpPort: first.httpPort });
  await page.locator('[data-state=live]').waitFor();
  await settled(page, 0);
  await waitForRows(page, 'messages', 0);
  assert.equal(await page.locator('[aria-label="Button LED 3"]').getAttribute('aria-pressed'), 'false');
  assert.deepEqual(await comparedScreen(page, 0), { different: 0, lit: 0 });

  await buttonctl(second, 'text', '0', '1', 'After');
  await settled(page, 1);
  assert.equal(await page.locator('#screen-0-text').innerText(), 'Line 1: After.');
  assert.equal((await comparedScreen(page, 0)).different, 0);
});

test('without the simulator a reset and a demonstration are told not to have been', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await simulator.stop();
  await page.locator('[data-state=lost]').waitFor();
  await page.getByRole('button', { name: 'Reset' }).click();
  await page.locator('#told', { hasText: 'Not reset: the simulator does not answer.' }).waitFor();
  await page.getByRole('button', { name: 'Demonstration' }).click();
  await page.locator('#told', { hasText: 'No demonstration: there is no connection to the simulator.' }).waitFor();
  await startSimulator(t, { httpPort: simulator.httpPort });
  await page.locator('[data-state=live]').waitFor();
  assert.equal(await page.locator('#told').isVisible(), false);
});

// Keeps back what the page of a simulator wants to do in its next frame, until `frame()` is called in it. The promise
// `isTold` is kept when it has been told of the whole panel.
async function openWithoutFrames(t, simulator) {
  const page = await (await startBrowser(t)).newPage();
  await page.call('Page.addScriptToEvaluateOnNewDocument', { source: `
    const held = [];
    window.requestAnimationFrame = (action) => held.push(action);
    window.frame = () => held.splice(0).forEach((action) => action(performance.now()));
    window.isTold = new Promise((resolve) => {
      window.WebSocket = class extends WebSocket {
        constructor(url) {
          super(url);
          this.addEventListener('message', ({ data }) => /"lamps"/.test(data) && setTimeout(resolve));
        }
      };
    });` });
  await page.goto(simulator.url);
  await page.evaluate(() => window.isTold);
  return page;
}

test('the page is live once it shows the panel, and not before', async (t) => {
  const simulator = await startSimulator(t);
  await buttonctl(simulator, 'led', '7', 'on');
  const page = await openWithoutFrames(t, simulator);
  const seen = () => page.evaluate(() => [document.getElementById('link').dataset.state,
    document.querySelector('[aria-label="Button LED 7"]').getAttribute('aria-pressed')]);
  assert.deepEqual(await seen(), ['connecting', 'false']);
  await page.evaluate(() => window.frame());
  assert.deepEqual(await seen(), ['live', 'true']);
});

test('a page that has lost its simulator before it showed the panel is not live', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openWithoutFrames(t, simulator);
  await simulator.stop();
  await page.evaluate(async () => {
    while (document.getElementById('link').dataset.state !== 'lost') await new Promise((resolve) => setTimeout(resolve, 5));
    window.frame();
  });
  assert.equal(await page.locator('#link-text').textContent(), 'Connection lost, trying again');
});
