// SPDX-License-Identifier: Apache-2.0
// The side of the page that sends: a form for each message, and the same as a line for a shell.
import { catalogue } from '../protocol/catalogue.js';
import { commandLine } from './command_line.js';
import { remarkOn } from './first_values.js';
import { MessageForm, rawName } from './message_form.js';
import { refusalAmong } from './refusals.js';

const element = (id) => document.getElementById(id);
const groups = [['handled', 'The panel acts on'], ['ignored', 'The panel ignores'], ['answer', 'Sent by the daemon itself']];

// Milliseconds in which a line of the log is about what was sent.
const refusalTime = 3000;

export class Composer {
  #sentAt = -Infinity;
  #link;
  #form;
  #forms = new Map();
  #daemonPort = 0;

  constructor(link) {
    this.#link = link;
    this.#fillChoice();
    element('message-type').addEventListener('change', () => this.#choose(element('message-type').value));
    element('form').addEventListener('submit', (event) => {
      event.preventDefault();
      this.#send();
    });
    element('fields').addEventListener('input', () => this.#refresh());
    element('copy').addEventListener('click', () => this.#copy());
    this.#choose('BMS_TFTTextLine');
  }

  set daemonPort(port) {
    this.#daemonPort = port;
    this.#refresh();
  }

  showAnswer(name, milliseconds) {
    this.#say(milliseconds === null ? name : `${name} after ${milliseconds.toFixed(1)} ms`);
  }

  // Lines of the log that have just come.
  takeLog(entries) {
    const refusal = performance.now() - this.#sentAt < refusalTime ? refusalAmong(entries) : null;
    if (refusal === null) return;
    this.#sentAt = -Infinity;
    this.#say(`The daemon logs: ${refusal}`, true);
  }

  showFault(reason) {
    this.#say(reason, true);
  }

  #fillChoice() {
    const choice = element('message-type');
    for (const [handling, label] of groups) {
      const group = document.createElement('optgroup');
      group.label = label;
      for (const type of catalogue.types)
        if (type.handling === handling) group.append(new Option(type.name, type.name));
      choice.append(group);
    }
    const group = document.createElement('optgroup');
    group.label = 'Anything';
    group.append(new Option('Raw bytes', rawName));
    choice.append(group);
    choice.value = 'BMS_TFTTextLine';
  }

  #choose(name) {
    if (!this.#forms.has(name)) {
      const form = new MessageForm(name);
      if (form.picture) form.picture.onchange = () => this.#refresh();
      this.#forms.set(name, form);
    }
    this.#form = this.#forms.get(name);
    const meaning = this.#form.type?.meaning ?? 'any bytes, as one message';
    element('meaning').textContent = `${meaning[0].toUpperCase()}${meaning.slice(1)}.`;
    element('remark').textContent = remarkOn(this.#form.type);
    element('fields').replaceChildren(...this.#form.inputs.map((input) => input.element));
    this.#say('');
    this.#refresh();
  }

  #refresh() {
    const isWrong = this.#form.check();
    element('submit').disabled = isWrong;
    element('copy').disabled = isWrong;
    if (isWrong) {
      element('command').textContent = this.#form.picture && !this.#form.picture.bitmap ? 'Choose a picture first.' : '–';
      return;
    }
    const { bytes, parts } = this.#form.read();
    element('command').textContent = commandLine(this.#form.name, parts, bytes, this.#daemonPort);
  }

  #send() {
    if (this.#form.check()) return;
    const { bytes } = this.#form.read();
    if (!this.#link.send(bytes)) return;
    this.#sentAt = performance.now();
    this.#say(`Sent, ${bytes.length.toLocaleString('en')} bytes`);
  }

  #say(text, isBad = false) {
    element('result').textContent = text;
    element('result').classList.toggle('bad', isBad);
  }

  async #copy() {
    const text = element('command').textContent;
    try {
      await navigator.clipboard.writeText(text);
      this.#say('Copied');
    } catch {
      // Without a secure origin there is no clipboard: the line stands ready to be copied by hand.
      getSelection().selectAllChildren(element('command'));
      this.#say('Selected, ready to be copied');
    }
  }
}
