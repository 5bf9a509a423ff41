// SPDX-License-Identifier: Apache-2.0
// The panel: screens, keys and lamps. Pressing a key or a lamp sends the message that turns its light over.
import { panel as dimensions } from '../protocol/catalogue.js';
import { Enlarged } from './enlarged.js';
import { lettered } from './lettering.js';
import { Screen } from './screen.js';
import { moveWithArrows } from './arrow_keys.js';

const keyCount = dimensions.button_count;
const keysBelowEachScreen = keyCount / dimensions.screen_count;
const ledCount = dimensions.led_count;
const lampsInAGroup = 8;

const idsBelow = (count) => Array.from({ length: count }, (_, id) => id);
const element = (id) => document.getElementById(id);

function made(tag, className, ...children) {
  const result = document.createElement(tag);
  result.className = className;
  result.append(...children);
  return result;
}

function lampButton(className, label, ...children) {
  const button = made('button', className, ...children);
  button.type = 'button';
  button.setAttribute('aria-label', label);
  button.setAttribute('aria-pressed', 'false');
  return button;
}

const lamp = (className = 'lamp') => {
  const result = made('span', className);
  result.setAttribute('aria-hidden', 'true');
  return result;
};

const isOn = (button) => button.getAttribute('aria-pressed') === 'true';

export class Panel {
  // `send` gets the name of a message and its values.
  constructor(send) {
    this.screens = idsBelow(dimensions.screen_count).map((id) => new Screen(id));
    element('screens').append(...this.screens.map((screen) => screen.element));
    const enlarged = new Enlarged();
    for (const screen of this.screens) screen.enlarge.addEventListener('click', () => enlarged.open(screen));
    moveWithArrows(element('screens'), this.screens.map((screen) => screen.enlarge));
    this.keys = this.#makeKeys(send);
    this.status = this.#makeStatus(send);
    this.toggles = this.#makeToggles(send);
    this.keyless = this.#makeKeyless();
    this.intensity = -1;
    this.#showIntensity(dimensions.highest_intensity);
  }

  #makeKeys(send) {
    const keys = idsBelow(keyCount).map((id) => {
      const number = lettered(String(id), { height: 17, stroke: 2, spacing: 0.3 });
      const key = lampButton('key', `Button LED ${id}`, lamp('bar-lamp'), number);
      key.addEventListener('click', () =>
        send('BMS_SetLEDState', { button_id: id, state: isOn(key) ? 0 : 1, time: 0 }));
      return key;
    });
    for (let first = 0; first < keyCount; first += keysBelowEachScreen)
      element('keys').append(made('div', 'key-column', ...keys.slice(first, first + keysBelowEachScreen)));
    moveWithArrows(element('keys'), keys);
    return keys;
  }

  #makeStatus(send) {
    const lamps = idsBelow(ledCount).map((id) => {
      const number = lettered(String(id), { height: 7.5, stroke: 1.1, spacing: 0.4 });
      const button = lampButton('status', `Status LED ${id}`, lamp(), number);
      button.addEventListener('click', () =>
        send('BMS_SetLEDStatusIndicator', { button_id: id, state: isOn(button) ? 0 : 1 }));
      return button;
    });
    for (let first = 0; first < ledCount; first += lampsInAGroup)
      element('status').append(made('div', 'lamp-group', ...lamps.slice(first, first + lampsInAGroup)));
    moveWithArrows(element('status'), lamps);
    return lamps;
  }

  #makeToggles(send) {
    const toggles = idsBelow(dimensions.toggle_count).map((id) => {
      const number = lettered(String(id), { height: 9, stroke: 1.35, spacing: 0.5 });
      const button = lampButton('toggle', `Toggle indicator ${id}`, number, lamp());
      button.addEventListener('click', () =>
        send('BMS_SetLEDToggleIndicator', { button_id: id, state: isOn(button) ? 0 : 1 }));
      return button;
    });
    element('toggles').append(...toggles);
    moveWithArrows(element('toggles'), toggles);
    return toggles;
  }

  #makeKeyless() {
    const lamps = [];
    for (let id = keyCount; id < ledCount; ++id)
      lamps.push(made('span', '', lamp(), lettered(String(id), { height: 6, stroke: 1, spacing: 0.4 })));
    element('keyless').append(...lamps);
    return lamps;
  }

  takeRows(screen, firstRow, pixels) {
    this.screens[screen]?.takeRows(firstRow, pixels);
  }

  draw() {
    for (const screen of this.screens) screen.draw();
  }

  showLamps(lamps) {
    const press = (button, on) => {
      if (isOn(button) !== on) button.setAttribute('aria-pressed', String(on));
    };
    this.keys.forEach((key, id) => press(key, lamps.button_leds[id]));
    this.status.forEach((button, id) => press(button, lamps.status_leds[id]));
    this.toggles.forEach((button, id) => press(button, lamps.toggles[id]));
    this.keyless.forEach((place, i) => place.classList.toggle('is-on', lamps.button_leds[keyCount + i]));
    const lit = this.keyless.map((_, i) => keyCount + i).filter((id) => lamps.button_leds[id]);
    element('keyless').setAttribute('aria-label', `Button LEDs ${keyCount} to ${ledCount - 1}: ${lit.length ? `${lit.join(', ')} on` : 'all off'}`);
    this.#showIntensity(lamps.intensity);
  }

  // `blinking` has the buttons and the milliseconds of their phases.
  showBlinking(blinking) {
    const times = new Map(blinking.map(({ button, time }) => [button, time]));
    this.keys.forEach((key, id) => {
      const time = times.get(id);
      key.title = time === undefined ? '' : `Blinks, every ${time} ms the other way`;
    });
  }

  #showIntensity(intensity) {
    if (intensity === this.intensity) return;
    this.intensity = intensity;
    const window = element('intensity');
    window.setAttribute('aria-valuemax', dimensions.highest_intensity);
    window.setAttribute('aria-valuenow', intensity);
    const segments = window.querySelector('.segments');
    segments.style.setProperty('--levels', dimensions.highest_intensity);
    segments.style.setProperty('--lit', intensity);
    window.querySelector('.intensity-number').replaceChildren(
      lettered(String(intensity), { height: 13, stroke: 1.7, spacing: 0.35 }));
    for (const screen of this.screens) screen.setIntensity(intensity);
  }

  // Whether keys and lamps only show, and cannot be pressed.
  setPassive(isPassive) {
    for (const button of [...this.keys, ...this.status, ...this.toggles])
      if (isPassive) button.setAttribute('aria-disabled', 'true');
      else button.removeAttribute('aria-disabled');
  }

  // Returns what has changed, as sentences.
  showTexts(screens) {
    return screens.flatMap((screen, id) => this.screens[id].showTexts(screen.text));
  }

  clear() {
    for (const screen of this.screens) screen.clear();
  }
}
