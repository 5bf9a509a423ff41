// SPDX-License-Identifier: Apache-2.0
// Elements of a page, by how they are found. They are looked for again each time, and waited for.
import { act, enter, middleOf } from './in_page.mjs';

// What a text is to be like: contained, small or capital; the same; or a regular expression.
const wantedText = (text, isExact = false) =>
  text instanceof RegExp ? { pattern: text.source, flags: text.flags } : { wanted: text.replace(/\s+/g, ' ').trim(), isExact };

export class Finder {
  constructor(page, steps) {
    this.page = page;
    this.steps = steps;
  }

  #with(step) {
    return new Locator(this.page ?? this, [...this.steps, step]);
  }

  locator(css, { hasText } = {}) {
    return this.#with({ kind: 'css', css, text: hasText === undefined ? undefined : wantedText(hasText) });
  }

  getByRole(role, { name, exact }) {
    return this.#with({ kind: 'role', role, text: wantedText(name, exact) });
  }

  getByLabel(label, { exact } = {}) {
    return this.#with({ kind: 'label', text: wantedText(label, exact) });
  }

  getByText(text) {
    return this.#with({ kind: 'text', text: wantedText(text) });
  }

  nth(place) {
    return this.#with({ place });
  }

  first() {
    return this.nth(0);
  }
}

class Locator extends Finder {
  #act(action, argument, how = {}) {
    return this.page.run(act, { steps: this.steps, limit: this.page.limit, ...how }, action, argument);
  }

  async waitFor() {
    await this.#act(() => null, null, { isSeen: true });
  }

  evaluate(action, argument) {
    return this.page.run(act, { steps: this.steps, limit: this.page.limit }, `([first], argument) => (${action})(first, argument)`, argument);
  }

  evaluateAll(action) {
    return this.#act(action, undefined, { isAtOnce: true });
  }

  async click({ force = false } = {}) {
    const { x, y } = await this.#act(middleOf, force, { isSeen: true, isEnabled: !force, isStill: true, isPatient: true });
    await this.page.clickAt(x, y);
  }

  async fill(value) {
    await this.#act(enter, value, { isSeen: true, isEnabled: true });
  }

  async selectOption(value) {
    await this.fill(value);
  }

  async setInputFiles(file) {
    await this.page.setFiles(`(${act})(${JSON.stringify({ steps: this.steps, limit: this.page.limit })}, ([first]) => first)`, [file]);
  }

  innerText() {
    return this.evaluate((element) => element.innerText);
  }

  textContent() {
    return this.evaluate((element) => element.textContent);
  }

  inputValue() {
    return this.evaluate((element) => element.value);
  }

  getAttribute(name) {
    return this.evaluate((element, attribute) => element.getAttribute(attribute), name);
  }

  isDisabled() {
    return this.evaluate((element) => element.disabled);
  }

  isVisible() {
    return this.#act(([element]) => element?.checkVisibility({ checkVisibilityCSS: true }) ?? false, null, { isAtOnce: true });
  }

  count() {
    return this.#act((found) => found.length, null, { isAtOnce: true });
  }
}
