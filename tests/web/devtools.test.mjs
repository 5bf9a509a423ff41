// SPDX-License-Identifier: Apache-2.0
// What the tests drive the browser with: where it fails, they fail with it, and nothing is left.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { BrowserLink } from './devtools/browser_link.mjs';
import { startBrowser, temporaryFolder } from './support.mjs';

// The address of a server that takes connections in place of a browser.
async function startServer(t, take) {
  const server = createServer(take);
  t.after(() => server.close());
  server.listen(0, '127.0.0.1');
  await once(server, 'listening');
  return `ws://127.0.0.1:${server.address().port}/`;
}

// Runs browser.mjs with a program in place of the browser; its exit status.
async function runKeeper(folder, program, words) {
  mkdirSync(join(folder, 'temporary'));
  const child = spawn(process.execPath, [fileURLToPath(new URL('browser.mjs', import.meta.url)), ...words], {
    stdio: 'ignore',
    env: { ...process.env, CHROMIUM: program, BROWSER_ADDRESS: join(folder, 'address'), TMPDIR: join(folder, 'temporary') },
  });
  return (await once(child, 'exit'))[0];
}

test('a browser that refuses the connection is an error', async (t) => {
  const url = await startServer(t, (socket) => socket.end('HTTP/1.1 403 Forbidden\r\n\r\n'));
  await assert.rejects(BrowserLink.open(url), /403 Forbidden/);
});

test('each call of a browser that has gone is an error', async (t) => {
  const url = await startServer(t, (socket) => {
    socket.once('data', () => {
      socket.write('HTTP/1.1 101 Switching Protocols\r\n\r\n');
      socket.once('data', () => socket.destroy());
    });
  });
  const link = await BrowserLink.open(url);
  await assert.rejects(link.call('Browser.getVersion'), /the browser has gone/);
  await assert.rejects(link.call('Browser.getVersion'), /the browser has gone/);
});

test('a browser that cannot be started is an error and leaves no folder', async (t) => {
  const folder = temporaryFolder(t);
  assert.equal(await runKeeper(folder, '/nowhere/at/all', []), 1);
  assert.match(readFileSync(join(folder, 'address.log'), 'utf8'), /ENOENT/);
  assert.deepEqual(readdirSync(join(folder, 'temporary')), []);
});

test('a browser for which nobody waits any more is ended', async (t) => {
  const folder = temporaryFolder(t);
  const program = join(folder, 'browser');
  const pidFile = join(folder, 'pid');
  writeFileSync(program, `#!/bin/sh\necho $$ >'${pidFile}'\necho 'DevTools listening on ws://127.0.0.1:1/' >&2\nexec sleep 300\n`, { mode: 0o755 });
  await runKeeper(folder, program, ['keep', String(process.pid)]);
  const pid = Number(readFileSync(pidFile, 'utf8'));
  assert.throws(() => process.kill(pid), { code: 'ESRCH' }); // ends it, if it is there
  assert.deepEqual(readdirSync(join(folder, 'temporary')), []);
});

test('a click waits until nothing lies over what is clicked', async (t) => {
  const page = await (await startBrowser(t)).newPage();
  await page.evaluate(() => {
    document.body.innerHTML = '<button>Press</button><div style="position: fixed; inset: 0"></div>';
    document.querySelector('button').onclick = (event) => { event.target.textContent = 'Pressed'; };
    let frames = 10;
    const next = () => (frames-- > 0 ? requestAnimationFrame(next) : document.querySelector('div').remove());
    next();
  });
  await page.getByRole('button', { name: 'Press' }).click();
  assert.equal(await page.locator('button').textContent(), 'Pressed');
});

test('a click waits until what is clicked has come to rest', async (t) => {
  const page = await (await startBrowser(t)).newPage();
  await page.evaluate(() => {
    document.body.innerHTML = '<button style="position: fixed; top: 0; width: 60px">Press</button>';
    const button = document.querySelector('button');
    button.onclick = () => { button.textContent = 'Pressed'; };
    let frames = 20;
    const next = () => {
      button.style.left = `${frames * 70}px`;
      if (frames-- > 0) requestAnimationFrame(next);
    };
    next();
  });
  await page.getByRole('button', { name: 'Press' }).click();
  assert.equal(await page.locator('button').textContent(), 'Pressed');
});
