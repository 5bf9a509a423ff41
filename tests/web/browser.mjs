// SPDX-License-Identifier: Apache-2.0
// One browser for all tests of the page: to start one takes longer than most tests.
//
//   node browser.mjs            starts it, writes its address to BROWSER_ADDRESS, and ends; the browser runs on
//   node browser.mjs keep PID   keeps it until the process PID has ended
import { spawn } from 'node:child_process';
import { mkdtempSync, openSync, readFileSync, renameSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const { CHROMIUM, BROWSER_ADDRESS } = process.env;

function isRunning(pid) {
  try {
    process.kill(pid, 0);
    return true;
  } catch {
    return false;
  }
}

function keep(pid) {
  const folder = mkdtempSync(join(tmpdir(), 'buttondriver-browser-'));
  const browser = spawn(CHROMIUM, ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
    '--disable-background-networking', '--disable-component-update', '--disable-sync', '--disable-dev-shm-usage',
    '--disable-background-timer-throttling', '--disable-backgrounding-occluded-windows', '--disable-renderer-backgrounding',
    '--hide-scrollbars', '--remote-debugging-port=0', `--user-data-dir=${folder}`, 'about:blank'],
  { stdio: ['ignore', 'ignore', 'pipe'] });
  let said = '';
  browser.stderr.on('data', (data) => {
    process.stderr.write(data);
    if (said === null) return;
    said += data;
    const address = /^DevTools listening on (ws:\S+)\s/m.exec(said)?.[1];
    if (!address) return;
    said = null;
    // Complete as soon as it is there.
    writeFileSync(`${BROWSER_ADDRESS}.new`, address);
    renameSync(`${BROWSER_ADDRESS}.new`, BROWSER_ADDRESS);
    if (process.connected) {
      process.send('started');
      process.disconnect();
    } else {
      browser.kill(); // nobody waits for it any more
    }
  });
  browser.once('error', (error) => {
    console.error(error.message);
    process.exit(1);
  });
  browser.once('exit', () => process.exit(1));
  // Also after a fault in this script. The browser's other processes may write to the folder for a moment yet.
  process.once('exit', () => {
    browser.kill();
    rmSync(folder, { recursive: true, force: true, maxRetries: 10, retryDelay: 100 });
  });
  const look = setInterval(() => {
    if (isRunning(pid)) return;
    clearInterval(look);
    browser.kill();
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

if (process.argv[2] === 'keep') keep(Number(process.argv[3]));
else start();
