// SPDX-License-Identifier: Apache-2.0
// One page of the browser, in a context that shares nothing with others.
import { writeFileSync } from 'node:fs';
import { until } from './in_page.mjs';
import { Keyboard } from './keyboard.mjs';
import { Finder } from './locator.mjs';

const textOf = (argument) => (typeof argument === 'function' ? argument.toString() : JSON.stringify(argument));

export class Page extends Finder {
  #link;
  #session;
  #options;
  #onLoad = () => {};

  // What its scripts complain about, and the messages that it has sent over WebSockets, in hexadecimal.
  complaints = [];
  sent = [];

  static async open(link, context, options, limit) {
    const { targetId } = await link.call('Target.createTarget', { url: 'about:blank', browserContextId: context });
    const { sessionId } = await link.call('Target.attachToTarget', { targetId, flatten: true });
    const page = new Page(link, sessionId, options, limit);
    for (const domain of ['Page', 'Runtime', 'Network', 'Log']) await page.call(`${domain}.enable`);
    await page.call('Emulation.setFocusEmulationEnabled', { enabled: true });
    await page.setViewportSize(options.viewport);
    if (options.hasTouch) await page.call('Emulation.setTouchEmulationEnabled', { enabled: true });
    return page;
  }

  constructor(link, session, options, limit) {
    super(null, []);
    this.#link = link;
    this.#session = session;
    this.#options = options;
    this.limit = limit;
    this.keyboard = new Keyboard((method, params) => this.call(method, params));
    link.listen(session, (method, params) => this.#take(method, params));
  }

  call(method, params) {
    return this.#link.call(method, params, this.#session);
  }

  #take(method, params) {
    if (method === 'Page.loadEventFired') this.#onLoad();
    if (method === 'Runtime.exceptionThrown') this.complaints.push(params.exceptionDetails.exception?.description ?? params.exceptionDetails.text);
    if (method === 'Runtime.consoleAPICalled' && params.type === 'error') this.complaints.push(params.args.map(({ value }) => value).join(' '));
    if (method === 'Log.entryAdded' && params.entry.level === 'error') this.complaints.push(params.entry.text);
    if (method === 'Network.webSocketFrameSent') this.sent.push(Buffer.from(params.response.payloadData, 'base64').toString('hex'));
  }

  async goto(url) {
    const loaded = new Promise((resolve) => {
      this.#onLoad = resolve;
    });
    await this.call('Page.navigate', { url });
    await loaded;
  }

  async #evaluate(expression, returnByValue = true) {
    const { result, exceptionDetails } = await this.call('Runtime.evaluate', { expression, awaitPromise: true, returnByValue, userGesture: true });
    if (exceptionDetails) throw new Error(exceptionDetails.exception?.description ?? exceptionDetails.text);
    return returnByValue ? result.value : result;
  }

  // Calls a function in the page with arguments that are functions, texts of such, or data.
  run(action, first, second, ...others) {
    const called = typeof second === 'string' ? second : textOf(second);
    return this.#evaluate(`(${action})(${[textOf(first), called, ...others.map(textOf)].join(', ')})`);
  }

  // A function and its argument, or a script.
  evaluate(action, argument) {
    return this.#evaluate(typeof action === 'string' ? `${action}; null` : `(${action})(${textOf(argument)})`);
  }

  async waitForFunction(condition, argument) {
    await this.run(until, this.limit, condition, argument);
  }

  async clickAt(x, y) {
    const button = { x, y, button: 'left', clickCount: 1 };
    await this.call('Input.dispatchMouseEvent', { type: 'mouseMoved', x, y });
    await this.call('Input.dispatchMouseEvent', { type: 'mousePressed', ...button });
    await this.call('Input.dispatchMouseEvent', { type: 'mouseReleased', ...button });
  }

  async setFiles(expression, files) {
    const { objectId } = await this.#evaluate(expression, false);
    await this.call('DOM.setFileInputFiles', { files, objectId });
  }

  async setViewportSize({ width, height }) {
    const { deviceScaleFactor = 1, isMobile = false } = this.#options;
    await this.call('Emulation.setDeviceMetricsOverride', { width, height, deviceScaleFactor, mobile: isMobile });
  }

  async screenshot({ path, fullPage = false }) {
    const { cssContentSize } = await this.call('Page.getLayoutMetrics');
    const clip = fullPage ? { ...cssContentSize, scale: 1 } : undefined;
    const { data } = await this.call('Page.captureScreenshot', { format: 'png', captureBeyondViewport: fullPage, clip });
    writeFileSync(path, Buffer.from(data, 'base64'));
  }
}
