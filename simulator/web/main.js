// SPDX-License-Identifier: Apache-2.0
// Puts the page together: what comes over the link goes to the panel and the lists, what the reader does goes back.
import { Link } from './protocol/link.js';
import { loadLettering, letterAll } from './panel/lettering.js';
import { Panel } from './panel/panel.js';
import { RunningList } from './lists/running_list.js';
import { messageRow, logRow } from './lists/rows.js';
import { Composer } from './send/composer.js';
import { Announcer } from './panel/announcer.js';
import { demonstration } from './send/demonstration.js';
import { catalogue } from './protocol/catalogue.js';

const element = (id) => document.getElementById(id);

function showLink(state, text) {
  element('link').dataset.state = state;
  element('link-text').textContent = text;
}

function showCounters(counters) {
  for (const [name, value] of Object.entries(counters)) {
    const place = document.querySelector(`[data-counter="${name}"]`);
    if (!place) continue;
    // What is not known is left out.
    place.parentElement.hidden = value === null || (name === 'refused_transfers' && value === 0);
    if (value !== null) place.textContent = value.toLocaleString('en');
  }
}

// Without a daemon in the simulator, nothing can be sent, and nobody knows of messages.
function showDriver(hasDaemon) {
  for (const place of document.querySelectorAll('[data-driver]')) place.hidden = (place.dataset.driver === 'daemon') !== hasDaemon;
}

async function start() {
  await loadLettering();
  letterAll(document);

  const announcer = new Announcer(element('announcer'));
  const messages = new RunningList('messages', messageRow);
  const log = new RunningList('log', logRow);
  const link = new Link();
  const panel = new Panel((name, values) => hasDaemon && link.send(catalogue.encode(name, values)));
  const composer = new Composer(link);
  let isFirstUpdate = true;
  let hasDaemon = true;

  link.onopen = (welcome) => {
    hasDaemon = welcome.daemon_port !== null;
    showLink('live', hasDaemon ? `Live, daemon on port ${welcome.daemon_port}` : 'Live, driven from outside');
    showDriver(hasDaemon);
    panel.setPassive(!hasDaemon);
    if (hasDaemon) composer.daemonPort = welcome.daemon_port;
    isFirstUpdate = true;
    panel.clear();
    messages.clear();
    log.clear();
  };
  link.onlost = () => showLink('lost', 'Connection lost, trying again');
  link.onrows = (screen, firstRow, pixels) => panel.showRows(screen, firstRow, pixels);
  link.onanswer = (name, milliseconds) => composer.showAnswer(name, milliseconds);
  link.onnotsent = (reason) => composer.showFault(reason);
  link.onupdate = (update) => {
    if (update.lamps) panel.showLamps(update.lamps);
    if (update.screens) {
      const changes = panel.showTexts(update.screens);
      if (!isFirstUpdate) announcer.say(changes);
    }
    if (update.counters) showCounters(update.counters);
    if (update.messages) messages.add(update.messages, update.messages_left_out);
    if (update.log) log.add(update.log, update.log_left_out);
    isFirstUpdate = false;
  };

  element('reset').addEventListener('click', async () => {
    const answer = await fetch('reset', { method: 'POST' });
    if (!answer.ok) return;
    messages.clear();
    log.clear();
    announcer.say(['The panel has been reset.']);
  });
  element('demonstration').addEventListener('click', () => {
    for (const message of demonstration()) link.send(message);
  });
  link.open();
}

start();
