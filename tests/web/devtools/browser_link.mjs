// SPDX-License-Identifier: Apache-2.0
// Calls and events of the browser's DevTools protocol.
import { openWebSocket } from './web_socket.mjs';

export class BrowserLink {
  #socket = null;
  #lastId = 0;
  #hasEnded = false;
  #calls = new Map();
  #listeners = new Map();

  static async open(url) {
    const link = new BrowserLink();
    link.#socket = await openWebSocket(url, (text) => link.#take(JSON.parse(text)), () => link.#end());
    return link;
  }

  // Resolves with what the method returns; `session` is that of a page, none for the browser itself.
  call(method, params = {}, session = undefined) {
    const id = ++this.#lastId;
    return new Promise((resolve, reject) => {
      if (this.#hasEnded) {
        reject(new Error(`${method}: the browser has gone`));
        return;
      }
      this.#calls.set(id, { resolve, reject, method });
      this.#socket.send(JSON.stringify({ id, method, params, sessionId: session }));
    });
  }

  // `listener` gets the events of a page, as method and params.
  listen(session, listener) {
    this.#listeners.set(session, listener);
  }

  close() {
    this.#socket.end();
  }

  #take({ id, result, error, method, params, sessionId }) {
    if (id === undefined) {
      this.#listeners.get(sessionId)?.(method, params);
      return;
    }
    const call = this.#calls.get(id);
    this.#calls.delete(id);
    if (error) call.reject(new Error(`${call.method}: ${error.message}`));
    else call.resolve(result);
  }

  #end() {
    this.#hasEnded = true;
    for (const { reject, method } of this.#calls.values()) reject(new Error(`${method}: the browser has gone`));
    this.#calls.clear();
  }
}
