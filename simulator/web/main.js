// SPDX-License-Identifier: Apache-2.0
// Puts the page together: what comes over the link goes to the panel and the lists, what the reader does goes back.
import { Link } from './protocol/link.js';
import { loadLettering, letterAll } from './panel/lettering.js';
import { Panel } from './panel/panel.js';
import { RunningList } from './lists/running_list.js';
import { moveBetweenRows } from './lists/row_keys.js';
import { messageRows, logRows } from './lists/rows.js';
import { Composer } from './send/composer.js';
import { Announcer } from './panel/announcer.js';
import { demonstration } from './send/demonstration.js';
import { catalogue } from './protocol/catalogue.js';
import { News } from './protocol/news.js';

const element = (id) => document.getElementById(id);

function showLink(state, text) {
  element('link').dataset.state = state;
  document.body.dataset.link = state;
  element('link-text').textContent = text;
}

function showCounters(counters) {
  for (const [name, value] of Object.entries(counters)) {
    const place = document.querySelector(`[data-counter="${name}"]`);
    if (!place) continue;
    // What is not known is left out.
    place.parentElement.hidden = value === null || (name === 'refused_transfers' && value === 0);
    const text = value === null ? place.textContent : value.toLocaleString('en');
    if (place.textContent !== text) place.textContent = text;
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
  let daemonPort = null;
  const messages = new RunningList('messages', messageRows(() => daemonPort));
  moveBetweenRows(element('messages'));
  const log = new RunningList('log', logRows);
  const link = new Link();
  const panel = new Panel((name, values) => hasDaemon && link.send(catalogue.encode(name, values)));
  const composer = new Composer(link);
  let isFirst = true;
  let hasDaemon = true;
  const news = new News(({ lamps, blinking, screens, counters }) => {
    panel.draw();
    if (lamps) panel.showLamps(lamps);
    if (blinking) panel.showBlinking(blinking);
    if (counters) showCounters(counters);
    const changes = screens ? panel.showTexts(screens) : [];
    if (!isFirst) announcer.say(changes);
    // Before its first lamps there may be rows of the screens, which are no whole panel yet.
    else if (lamps) showLive();
  });

  // From here on, what is seen is the panel, and what comes is a change.
  function showLive() {
    isFirst = false;
    showLink('live', hasDaemon ? `Live, daemon on port ${daemonPort}` : 'Live, driven from outside');
  }

  link.onopen = (welcome) => {
    hasDaemon = welcome.daemon_port !== null;
    showDriver(hasDaemon);
    panel.setPassive(!hasDaemon);
    daemonPort = welcome.daemon_port;
    if (hasDaemon) composer.daemonPort = daemonPort;
    isFirst = true;
    element('told').textContent = '';
    news.forget();
    panel.clear();
    messages.clear();
    log.clear();
  };
  link.onlost = () => {
    news.forget();
    showLink('lost', 'Connection lost, trying again');
  };
  link.onrows = (screen, firstRow, pixels) => {
    panel.takeRows(screen, firstRow, pixels);
    news.add({});
  };
  link.onanswer = (name, milliseconds) => composer.showAnswer(name, milliseconds);
  link.onnotsent = (reason) => composer.showFault(reason);
  link.onupdate = ({ messages: entries, messages_left_out: leftOut, log: lines, log_left_out: linesLeftOut, ...things }) => {
    news.add(things);
    if (entries) messages.add(entries, leftOut);
    if (lines) {
      log.add(lines, linesLeftOut);
      composer.takeLog(lines);
    }
  };

  element('reset').addEventListener('click', async () => {
    const answer = await fetch('reset', { method: 'POST' }).catch(() => null);
    element('told').textContent = answer?.ok ? '' : `Not reset: ${answer ? await answer.text() : 'the simulator does not answer'}.`;
    if (!answer?.ok) return;
    messages.clear();
    log.clear();
    announcer.say(['The panel has been reset.']);
  });
  element('demonstration').addEventListener('click', () => {
    const isSent = demonstration().map((message) => link.send(message)).every(Boolean);
    element('told').textContent = isSent ? '' : 'No demonstration: there is no connection to the simulator.';
  });
  link.open();
}

start();
