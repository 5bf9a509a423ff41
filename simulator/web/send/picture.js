// SPDX-License-Identifier: Apache-2.0
// Pictures of all kinds, as the panel takes them.
import { panel } from '../protocol/catalogue.js';

const { button_image_width: buttonWidth, button_image_height: buttonHeight, button_image_bytes: buttonBytes } = panel;
const lightestDarkGrey = 127;
// 72 an inch; the panel does not look at it.
const pixelsPerMetre = 2835;

// The file as a bitmap, or null when the browser cannot read it.
export async function readPicture(file) {
  try {
    return await createImageBitmap(file);
  } catch {
    return null;
  }
}

function drawn(width, height, draw) {
  const canvas = document.createElement('canvas');
  canvas.width = width;
  canvas.height = height;
  const context = canvas.getContext('2d', { willReadFrequently: true });
  context.fillStyle = '#000';
  context.fillRect(0, 0, width, height);
  context.imageSmoothingQuality = 'high';
  draw(context);
  return context.getImageData(0, 0, width, height);
}

export const isOnScreen = (x, y) => x >= 0 && y >= 0 && x < panel.screen_width && y < panel.screen_height;

// The part of the screen right of and below a corner.
export function roomAt(x, y) {
  return { width: Math.max(panel.screen_width - x, 1), height: Math.max(panel.screen_height - y, 1) };
}

export function fitsAt(bitmap, x, y) {
  const room = roomAt(x, y);
  return x >= 0 && y >= 0 && bitmap.width <= room.width && bitmap.height <= room.height;
}

// As it is, or scaled to the room at the corner; proportions are kept, transparent parts are black.
export function screenPixels(bitmap, x, y, isFitted) {
  let { width, height } = bitmap;
  if (isFitted) {
    const room = roomAt(x, y);
    const scale = Math.min(room.width / width, room.height / height);
    width = Math.max(1, Math.round(width * scale));
    height = Math.max(1, Math.round(height * scale));
  }
  return drawn(width, height, (context) => context.drawImage(bitmap, 0, 0, width, height));
}

// An uncompressed 24-bit BMP file with a 40-byte information header, bottom row first.
export function bmpOf(image) {
  const headerSize = 54;
  const rowSize = Math.ceil((image.width * 3) / 4) * 4;
  const bytes = new Uint8Array(headerSize + rowSize * image.height);
  const view = new DataView(bytes.buffer);
  bytes.set([0x42, 0x4d]);
  view.setUint32(2, bytes.length, true);
  view.setUint32(10, headerSize, true);
  view.setUint32(14, 40, true);
  view.setInt32(18, image.width, true);
  view.setInt32(22, image.height, true);
  view.setUint16(26, 1, true);
  view.setUint16(28, 24, true);
  view.setUint32(34, bytes.length - headerSize, true);
  view.setUint32(38, pixelsPerMetre, true);
  view.setUint32(42, pixelsPerMetre, true);
  for (let y = 0; y < image.height; ++y) {
    let to = headerSize + (image.height - 1 - y) * rowSize;
    for (let x = 0; x < image.width; ++x) {
      const from = (y * image.width + x) * 4;
      bytes[to++] = image.data[from + 2];
      bytes[to++] = image.data[from + 1];
      bytes[to++] = image.data[from];
    }
  }
  return bytes;
}

// As many pixels as a button has, one bit each; null when the picture has another size.
export function buttonImage(bitmap) {
  if (bitmap.width !== buttonWidth || bitmap.height !== buttonHeight) return null;
  const { data } = drawn(buttonWidth, buttonHeight, (context) => context.drawImage(bitmap, 0, 0));
  const bytes = new Uint8Array(buttonBytes);
  for (let i = 0; i < buttonWidth * buttonHeight; ++i) {
    const grey = (data[i * 4] * 11 + data[i * 4 + 1] * 16 + data[i * 4 + 2] * 5) / 32;
    if (Math.floor(grey) > lightestDarkGrey) bytes[i >> 3] |= 0x80 >> (i & 7);
  }
  return bytes;
}
