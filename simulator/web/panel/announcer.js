// SPDX-License-Identifier: Apache-2.0
// Says politely what has changed on the screens, and not everything when much has.
const interval = 1000;
const mostSentences = 6;

export class Announcer {
  #waiting = [];
  #timer = null;

  constructor(element) {
    this.element = element;
  }

  say(sentences) {
    this.#waiting.push(...sentences);
    if (this.#waiting.length === 0 || this.#timer !== null) return;
    this.#timer = setTimeout(() => this.#speak(), interval);
  }

  #speak() {
    this.#timer = null;
    const left = this.#waiting.length - mostSentences;
    const spoken = left > 0 ? [...this.#waiting.slice(-mostSentences), `${left} more changes.`] : this.#waiting;
    this.element.textContent = spoken.join(' ');
    this.#waiting = [];
  }
}
