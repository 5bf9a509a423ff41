// SPDX-License-Identifier: Apache-2.0
// A keyboard for a page.
const control = 2;
const codes = { Tab: 9, Enter: 13, Escape: 27, Space: 32, End: 35, Home: 36, ArrowLeft: 37, ArrowUp: 38, ArrowRight: 39, ArrowDown: 40 };
const texts = { Enter: '\r', Space: ' ' };

export class Keyboard {
  #call;

  constructor(call) {
    this.#call = call;
  }

  // A key by its name, "Control+A" as well.
  async press(name) {
    if (name.startsWith('Control+')) {
      const key = name.slice(-1).toLowerCase();
      await this.#strike({ key, windowsVirtualKeyCode: name.charCodeAt(name.length - 1), modifiers: control,
        commands: key === 'a' ? ['selectAll'] : [] });
      return;
    }
    const key = name === 'Space' ? ' ' : name;
    await this.#strike({ key, code: name, windowsVirtualKeyCode: codes[name], text: texts[name] });
  }

  async type(text) {
    for (const key of text) await this.#strike({ key, text: key });
  }

  async #strike({ text, commands, ...key }) {
    await this.#call('Input.dispatchKeyEvent', { type: text ? 'keyDown' : 'rawKeyDown', text, commands, ...key });
    await this.#call('Input.dispatchKeyEvent', { type: 'keyUp', ...key });
  }
}
