// SPDX-License-Identifier: Apache-2.0
// Makes a group of buttons one stop of the tabulator key, in which the arrow keys move by what is seen.
export function moveWithArrows(group, buttons) {
  const choose = (chosen) => {
    for (const button of buttons) button.tabIndex = button === chosen ? 0 : -1;
  };
  const middle = (button) => {
    const box = button.getBoundingClientRect();
    return { x: box.left + box.width / 2, y: box.top + box.height / 2, height: box.height };
  };

  // The nearest button straight above or below.
  const vertical = (from, direction) => {
    const here = middle(from);
    let best = null;
    let bestDistance = Infinity;
    for (const button of buttons) {
      const there = middle(button);
      const dy = (there.y - here.y) * direction;
      if (dy < here.height / 2) continue;
      const distance = dy * 4 + Math.abs(there.x - here.x);
      if (distance < bestDistance) [best, bestDistance] = [button, distance];
    }
    return best;
  };

  const target = (from, key) => {
    const place = buttons.indexOf(from);
    switch (key) {
      case 'ArrowRight': return buttons[place + 1];
      case 'ArrowLeft': return buttons[place - 1];
      case 'ArrowDown': return vertical(from, 1);
      case 'ArrowUp': return vertical(from, -1);
      case 'Home': return buttons[0];
      case 'End': return buttons[buttons.length - 1];
      default: return undefined;
    }
  };

  choose(buttons[0]);
  group.addEventListener('keydown', (event) => {
    if (!buttons.includes(event.target) || event.ctrlKey || event.altKey || event.metaKey) return;
    if (!/^(Arrow|Home$|End$)/.test(event.key)) return;
    event.preventDefault();
    const next = target(event.target, event.key);
    if (!next) return;
    choose(next);
    next.focus();
  });
  group.addEventListener('focusin', (event) => {
    if (buttons.includes(event.target)) choose(event.target);
  });
}
