// SPDX-License-Identifier: Apache-2.0
// The panel's own lettering: strokes on a grid 12 high, as the picture of the panel has them.
const gridHeight = 12;
let glyphs = {};

export async function loadLettering() {
  glyphs = await (await fetch('lettering.json')).json();
}

// One stroke a letter of "MLQ" and its points, every coordinate one hexadecimal digit.
function pathOf(strokes, left) {
  return strokes.replace(/([MLQ])([0-9a-f]+)/g, (_, kind, digits) => {
    const numbers = [...digits].map((digit, i) => parseInt(digit, 16) + (i % 2 === 0 ? left : 0));
    return `${kind}${numbers.join(' ')}`;
  });
}

// An SVG of `text` that only eyes see; `height` is that of the capitals in CSS pixels.
export function lettered(text, { height, stroke, spacing }) {
  let left = 0;
  let path = '';
  for (const character of text) {
    const glyph = glyphs[character] ?? { width: 3, strokes: '' };
    path += pathOf(glyph.strokes, left);
    left += glyph.width + spacing * gridHeight;
  }
  const width = Math.max(left - spacing * gridHeight, 0.1);
  const scale = height / gridHeight;
  const svg = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
  svg.setAttribute('class', 'lettering');
  svg.setAttribute('viewBox', `0 0 ${width} ${gridHeight}`);
  svg.setAttribute('width', width * scale);
  svg.setAttribute('height', height);
  svg.setAttribute('stroke-width', stroke / scale);
  svg.setAttribute('aria-hidden', 'true');
  const shape = document.createElementNS('http://www.w3.org/2000/svg', 'path');
  shape.setAttribute('d', path);
  svg.append(shape);
  return svg;
}

// The text itself stays for those who listen to the page.
export function letterAll(root) {
  for (const place of root.querySelectorAll('[data-lettering]')) {
    const isTitle = place.closest('h1') !== null;
    const style = isTitle
      ? { height: 17, stroke: place.classList.contains('second') ? 1.3 : 2.4, spacing: 0.42 }
      : { height: 8.5, stroke: 1.25, spacing: 0.5 };
    const text = document.createElement('span');
    text.className = 'unseen';
    text.textContent = place.textContent;
    place.replaceChildren(lettered(place.dataset.lettering, style), text);
  }
}
