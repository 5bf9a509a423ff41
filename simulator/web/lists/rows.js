// SPDX-License-Identifier: Apache-2.0
// Rows of the running lists. What clients have sent is only ever set as text.
import { fillDetail } from './message_detail.js';

function made(tag, className, ...children) {
  const element = document.createElement(tag);
  if (className) element.className = className;
  element.append(...children);
  return element;
}

function setTime(element, milliseconds, withMilliseconds) {
  const date = new Date(milliseconds);
  const two = (number) => String(number).padStart(2, '0');
  const time = [date.getHours(), date.getMinutes(), date.getSeconds()].map(two).join(':');
  element.textContent = withMilliseconds ? `${time}.${String(date.getMilliseconds()).padStart(3, '0')}` : time;
  element.dateTime = date.toISOString();
}

// A message that opens: its row then has its bytes and its line for a shell. `daemonPort()` is for that line.
export function messageRows(daemonPort) {
  const entries = new WeakMap();
  return {
    make() {
      const details = made('details', '', made('summary', '', made('time'), made('span', 'client'), made('span', 'what')),
        made('div', 'detail'));
      // One stop of the tabulator key is the whole list.
      details.firstElementChild.tabIndex = -1;
      details.addEventListener('toggle', () => {
        details.lastElementChild.replaceChildren();
        if (details.open) fillDetail(details.lastElementChild, entries.get(details), daemonPort());
      });
      return made('li', '', details);
    },

    fill(row, entry) {
      const details = row.firstElementChild;
      const [time, client, what] = details.firstElementChild.children;
      entries.set(details, entry);
      setTime(time, entry.time, true);
      client.textContent = String(entry.client);
      what.replaceChildren(made('span', 'name', entry.name || 'unknown message'));
      for (const [name, value] of entry.fields)
        if (name !== 'opcode' || !entry.name) what.append(` ${name} `, made('b', '', String(value)));
      if (entry.text !== undefined) what.append(' ', made('q', '', entry.text));
      if (entry.rest !== undefined) what.append(` and ${entry.rest.toLocaleString('en')} bytes`);
    },

    textOf: ({ name, client, fields, text = '' }) =>
      `${name || 'unknown message'} ${client} ${fields.map((field) => field.join(' ')).join(' ')} ${text}`,
  };
}

export const logRows = {
  make: () => made('li', '', made('time'), made('span', 'text')),

  fill(row, entry) {
    row.className = entry.source;
    setTime(row.firstElementChild, entry.time, false);
    row.lastElementChild.textContent = entry.text;
  },

  textOf: ({ text }) => text,
};
