// SPDX-License-Identifier: Apache-2.0
// The page while a client sends very much.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { connect } from 'node:net';
import { comparedScreen, openPage, settled, startBrowser, startSimulator } from './support.mjs';

const batches = 200;
const linesInABatch = 100;
const lineCount = batches * linesInABatch;

// Frames with text lines "Line FIRST", "Line FIRST + 1", and so on, over all screens and eight lines.
function textLines(first) {
  return Buffer.concat(Array.from({ length: linesInABatch }, (_, i) => {
    const text = Buffer.from(`Line ${first + i}\0`, 'latin1');
    const head = Buffer.alloc(24);
    [20 + text.length, 15, (first + i) % 3, (first + i) % 8, 1, text.length].forEach((word, place) => head.writeUInt32BE(word, place * 4));
    return Buffer.concat([head, text]);
  }));
}

// From now on the page counts what becomes of its lists, and what it asks of its layout.
const startToCount = (page) => page.evaluate(() => {
  const counts = { added: {}, changedAt: {}, asked: 0, longTasks: 0, longTaskTime: 0, since: performance.now() };
  for (const id of ['messages', 'log']) {
    counts.added[id] = 0;
    counts.changedAt[id] = [];
    new MutationObserver((changes) => {
      counts.changedAt[id].push(performance.now());
      counts.added[id] += changes.reduce((sum, change) => sum + change.addedNodes.length, 0);
    }).observe(document.getElementById(id), { childList: true });
  }
  for (const name of ['scrollHeight', 'clientHeight', 'scrollTop']) {
    const usual = Object.getOwnPropertyDescriptor(Element.prototype, name);
    Object.defineProperty(Element.prototype, name, { ...usual, get() { ++counts.asked; return usual.get.call(this); } });
  }
  new PerformanceObserver((list) => {
    for (const { duration } of list.getEntries()) {
      ++counts.longTasks;
      counts.longTaskTime += duration;
    }
  }).observe({ entryTypes: ['longtask'] });
  window.counts = counts;
});

test('a flood of messages neither fills the lists nor keeps the page busy', async (t) => {
  const simulator = await startSimulator(t);
  const page = await openPage(await startBrowser(t), simulator);
  await startToCount(page);
  const client = connect(simulator.daemonPort, '127.0.0.1');
  t.after(() => client.destroy());
  for (let i = 0; i < batches; ++i) {
    client.write(textLines(i * linesInABatch));
    await page.evaluate(() => new Promise((resolve) => requestAnimationFrame(() => resolve())));
  }
  await settled(page, lineCount);
  for (const screen of [0, 1, 2]) assert.equal((await comparedScreen(page, screen)).different, 0);
  assert.ok((await page.locator('#screen-1-text').innerText()).includes(`Line ${lineCount - 1}.`));
  await page.locator('#messages li', { hasText: `Line ${lineCount - 1}` }).waitFor();

  const counts = await page.evaluate(() => ({ ...window.counts, time: performance.now() - window.counts.since }));
  t.diagnostic(`${counts.longTasks} long tasks, ${Math.round(counts.longTaskTime)} of ${Math.round(counts.time)} ms`);
  for (const id of ['messages', 'log']) {
    const times = counts.changedAt[id];
    const gaps = times.slice(1).map((time, i) => time - times[i]);
    assert.ok(Math.min(...gaps) > 240, `${id} change after ${gaps.map(Math.round)} ms`);
    assert.ok(counts.added[id] < lineCount / 4, `${counts.added[id]} rows were added to the ${id}`);
    assert.ok((await page.locator(`#${id} li`).count()) <= 500);
  }
  assert.equal(counts.asked, 0, 'nothing is asked of the layout');
  // Most of the time nothing keeps the page from answering its reader.
  assert.ok(counts.longTaskTime < counts.time / 2, `${Math.round(counts.longTaskTime)} of ${Math.round(counts.time)} ms`);
  assert.match(await page.locator('#messages-note').innerText(), /^[\d,]+ left out, too many at once$/);
});
