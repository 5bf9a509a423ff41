// SPDX-License-Identifier: Apache-2.0
// Says politely what has changed on the screens, and not everything when much has.
const interval = 1000;
const mostSentences = 6;

export class Announcer {
  #waiting = [];
  #leftOut = 0;
  #timer = null;

  constructor(element) {
    this.element = element;
  }

  say(sentences) {
    this.#waiting.push(...sentences);
    if (this.#waiting.length === 0) return;
    const tooMany = this.#waiting.length - mostSentences;
    if (tooMany > 0) {
      this.#waiting.splice(0, tooMany);
      this.#leftOut += tooMany;
    }
    this.#timer ??= setTimeout(() => this.#speak(), interval);
  }

  #speak() {
    this.#timer = null;
    const spoken = this.#leftOut > 0 ? [...this.#waiting, `${this.#leftOut} more changes.`] : this.#waiting;
    this.element.textContent = spoken.join(' ');
    this.#waiting = [];
    this.#leftOut = 0;
  }
}
