// SPDX-License-Identifier: Apache-2.0
// One browser for all tests of the page: to start one takes longer than most tests.
//
//   node browser.mjs            starts it, writes its address to BROWSER_ADDRESS, and ends; the browser runs on
//   node browser.mjs keep PID   keeps it until the process PID has ended
import { spawn } from 'node:child_process';
import { createRequire } from 'node:module';
import { openSync, readFileSync, renameSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const { CHROMIUM, BROWSER_ADDRESS, NODE_MODULES_FOLDER } = process.env;

function isRunning(pid) {
  try {
    process.kill(pid, 0);
    return true;
  } catch {
    return false;
  }
}

async function keep(pid) {
  const { chromium } = createRequire(join(NODE_MODULES_FOLDER, 'package.json'))('playwright-core');
  const server = await chromium.launchServer({
    executablePath: CHROMIUM,
    headless: true,
    host: '127.0.0.1',
    timeout: 60_000,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
  // Complete as soon as it is there.
  writeFileSync(`${BROWSER_ADDRESS}.new`, server.wsEndpoint());
  renameSync(`${BROWSER_ADDRESS}.new`, BROWSER_ADDRESS);
  process.send('started');
  process.disconnect();
  const look = setInterval(async () => {
    if (isRunning(pid)) return;
    clearInterval(look);
    await server.close();
  }, 500);
}

// The tests are run by this script's parent, which waits until all that has its standard error is gone: so the keeper
// gets a file instead.
function start() {
  rmSync(BROWSER_ADDRESS, { force: true });
  const log = `${BROWSER_ADDRESS}.log`;
  const keeper = spawn(process.execPath, [fileURLToPath(import.meta.url), 'keep', String(process.ppid)],
    { detached: true, stdio: ['ignore', 'ignore', openSync(log, 'w'), 'ipc'] });
  keeper.once('message', () => process.exit(0));
  keeper.once('exit', () => {
    console.error(readFileSync(log, 'utf8'));
    process.exit(1);
  });
}

if (process.argv[2] === 'keep') await keep(Number(process.argv[3]));
else start();
