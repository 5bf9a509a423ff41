// SPDX-License-Identifier: Apache-2.0
// A WebSocket to the browser, as much of RFC 6455 as its DevTools protocol takes. Node.js 18 has none of its own.
import { randomBytes } from 'node:crypto';
import { connect } from 'node:net';

const [continuation, text, close, ping, pong] = [0, 1, 8, 9, 10];

function frame(opcode, payload) {
  const { length } = payload;
  const head = Buffer.alloc(length < 126 ? 2 : length < 65536 ? 4 : 10);
  head[0] = 0x80 | opcode;
  head[1] = 0x80 | (length < 126 ? length : length < 65536 ? 126 : 127);
  if (head.length === 4) head.writeUInt16BE(length, 2);
  if (head.length === 10) head.writeBigUInt64BE(BigInt(length), 2);
  const mask = randomBytes(4);
  return Buffer.concat([head, mask, payload.map((byte, i) => byte ^ mask[i & 3])]);
}

// The first frame of some bytes, null when it is not complete. A server's frames have no mask.
function cut(bytes) {
  if (bytes.length < 2) return null;
  const short = bytes[1] & 127;
  const headSize = short < 126 ? 2 : short === 126 ? 4 : 10;
  if (bytes.length < headSize) return null;
  const size = headSize + (short < 126 ? short : short === 126 ? bytes.readUInt16BE(2) : Number(bytes.readBigUInt64BE(2)));
  if (bytes.length < size) return { needed: size };
  return { isLast: bytes[0] >= 0x80, opcode: bytes[0] & 15, payload: bytes.subarray(headSize, size), rest: bytes.subarray(size) };
}

// Resolves with `send(text)` and `end()` once it is open. `onText` gets each message, `onEnd` is called at its end.
export async function openWebSocket(url, onText, onEnd) {
  const { hostname, port, pathname } = new URL(url);
  const socket = connect(Number(port), hostname);
  let chunks = [];
  let size = 0;
  let needed = 0;
  let parts = [];
  let isOpen = false;

  const takeFrames = (onOpen) => {
    let bytes = Buffer.concat(chunks);
    if (!isOpen) {
      const end = bytes.indexOf('\r\n\r\n');
      if (end < 0) return;
      const head = bytes.toString('latin1', 0, end);
      if (!head.startsWith('HTTP/1.1 101 ')) {
        socket.destroy(new Error(head));
        return;
      }
      isOpen = true;
      bytes = bytes.subarray(end + 4);
      onOpen();
    }
    needed = 0;
    for (let next = cut(bytes); next !== null; next = cut(bytes)) {
      if (next.needed) {
        ({ needed } = next);
        break;
      }
      bytes = next.rest;
      if (next.opcode === text || next.opcode === continuation) parts.push(next.payload);
      if (next.opcode === ping) socket.write(frame(pong, next.payload));
      if (next.opcode === close) socket.end();
      if (parts.length > 0 && next.isLast && next.opcode <= text) {
        const message = Buffer.concat(parts).toString('utf8');
        parts = [];
        onText(message);
      }
    }
    chunks = [bytes];
    size = bytes.length;
  };

  await new Promise((resolve, reject) => {
    socket.once('error', reject);
    socket.once('connect', () => socket.write(`GET ${pathname} HTTP/1.1\r\nHost: ${hostname}:${port}\r\nUpgrade: websocket\r\n` +
      `Connection: Upgrade\r\nSec-WebSocket-Key: ${randomBytes(16).toString('base64')}\r\nSec-WebSocket-Version: 13\r\n\r\n`));
    socket.on('data', (data) => {
      chunks.push(data);
      size += data.length;
      if (size >= needed) takeFrames(resolve);
    });
    socket.once('close', () => {
      reject(new Error('the browser has closed the connection'));
      onEnd();
    });
  });
  return { send: (message) => socket.write(frame(text, Buffer.from(message, 'utf8'))), end: () => socket.end(frame(close, Buffer.alloc(0))) };
}
