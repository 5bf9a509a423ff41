// SPDX-License-Identifier: Apache-2.0
// What the tests of the page need: a simulator, which is ended again, a window of the browser, buttonctl.
import { spawn, execFile } from 'node:child_process';
import { cpSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { after } from 'node:test';
import { promisify } from 'node:util';
import { BrowserLink } from './devtools/browser_link.mjs';
import { Page } from './devtools/page.mjs';

const { BUTTONDRIVER, BUTTONDRIVER_SIM, DRIVER_PRELOAD, BUTTONCTL, BROWSER_ADDRESS, OUTPUT_FOLDER } = process.env;

export const outputFolder = OUTPUT_FOLDER;
export const limit = 20_000;

export function temporaryFolder(t) {
  const folder = mkdtempSync(join(tmpdir(), 'buttondriver-web-'));
  t.after(() => rmSync(folder, { recursive: true, force: true }));
  return folder;
}

// A copy of the ready-made root, whose files a test may change.
export function ownRoot(t) {
  const root = temporaryFolder(t);
  cpSync(join(dirname(BUTTONDRIVER_SIM), '../share/buttondriver/panel-root'), root, { recursive: true });
  return root;
}

// A simulator on free ports, or with its page on `httpPort`; without a daemon where it is given a `device`, the path of
// a socket. Resolves once it serves.
export async function startSimulator(t, { httpPort = 0, root, device } = {}) {
  const what = device ? ['--device', device] : [...(root ? ['--root', root] : []), 'map', '', '0'];
  const child = spawn(BUTTONDRIVER_SIM, ['--http', String(httpPort), ...what], { stdio: ['ignore', 'pipe', 'ignore'] });
  const ended = new Promise((resolve) => child.once('exit', resolve));
  const stop = async () => {
    child.kill('SIGTERM');
    await ended;
  };
  t.after(stop);
  const printed = await new Promise((resolve, reject) => {
    let text = '';
    child.stdout.on('data', (data) => {
      text += data;
      if (/page on .*\n/.test(text)) resolve(text);
    });
    ended.then(() => reject(new Error(`the simulator has ended: ${text}`)));
  });
  const url = /page on (\S+)/.exec(printed)[1];
  return {
    url,
    httpPort: new URL(url).port,
    daemonPort: /listening on port (\d+)/.exec(printed)?.[1],
    stop,
    state: async () => (await fetch(new URL('state.json', url))).json(),
  };
}

// A daemon on a free port that has the socket `device` in place of the device.
export function startDriver(t, device) {
  const env = { ...process.env, LD_PRELOAD: DRIVER_PRELOAD, BUTTONDRIVER_DEVICE: device,
    BUTTONDRIVER_TEST_ROOT: temporaryFolder(t) };
  const child = spawn(BUTTONDRIVER, ['map', '127.0.0.1', '0'],
    { stdio: 'ignore', env });
  const ended = new Promise((resolve) => child.once('exit', resolve));
  const stop = async () => {
    child.kill('SIGTERM');
    await ended;
  };
  t.after(stop);
  return { stop };
}

const run = promisify(execFile);

export async function buttonctl(simulator, ...words) {
  await run(BUTTONCTL, ['-p', simulator.daemonPort, ...words], { timeout: limit });
}

// Runs a line as a shell does, in a folder.
export async function shell(line, folder) {
  const environment = { ...process.env, PATH: `${dirname(BUTTONCTL)}:${process.env.PATH}` };
  return (await run('/bin/sh', ['-c', line], { cwd: folder, env: environment, timeout: limit })).stdout;
}

let browser = null;

// A place for pages that shares nothing with those of other tests, in the one browser that browser.mjs keeps for all.
export async function startBrowser(t, options = {}) {
  browser ??= BrowserLink.open(readFileSync(BROWSER_ADDRESS, 'utf8'));
  const link = await browser;
  const { browserContextId } = await link.call('Target.createBrowserContext', { disposeOnDetach: true });
  t.after(() => link.call('Target.disposeBrowserContext', { browserContextId }));
  return { newPage: () => Page.open(link, browserContextId, { viewport: { width: 1600, height: 1080 }, ...options }, limit) };
}

after(async () => (await browser)?.close());

// The page of a simulator, live.
export async function openPage(browserPlace, simulator) {
  const page = await browserPlace.newPage();
  await page.goto(simulator.url);
  await page.locator('[data-state=live]').waitFor();
  return page;
}

// Waits until the page has been told of all that was accepted.
export async function settled(page, messages) {
  await page.waitForFunction((count) => {
    const counter = (name) => document.querySelector(`[data-counter=${name}]`).textContent.replaceAll(',', '');
    return counter('messages') === count && counter('queue_length') === '0';
  }, String(messages));
}

// Waits until a list has so many rows: it changes a few times a second only.
export async function waitForRows(page, list, count) {
  await page.waitForFunction(([id, rows]) => document.querySelectorAll(`#${id} li`).length === rows, [list, count]);
}

// How many pixels of a screen on the page are other than in the server's picture of it, and how many are not black.
export function comparedScreen(page, screen) {
  return page.evaluate(async (id) => {
    const bitmap = await createImageBitmap(await (await fetch(`/screen/${id}.png`)).blob());
    const canvas = new OffscreenCanvas(128, 128);
    const context = canvas.getContext('2d');
    context.drawImage(bitmap, 0, 0);
    const expected = new Uint32Array(context.getImageData(0, 0, 128, 128).data.buffer);
    const shown = document.getElementById(`screen-${id}`).getContext('2d').getImageData(0, 0, 128, 128);
    const pixels = new Uint32Array(shown.data.buffer);
    const black = 0xff000000;
    return {
      different: pixels.filter((pixel, i) => pixel !== expected[i]).length,
      lit: pixels.filter((pixel) => pixel !== black).length,
    };
  }, screen);
}
