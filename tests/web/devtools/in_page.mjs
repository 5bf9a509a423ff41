// SPDX-License-Identifier: Apache-2.0
// What runs in the page itself, sent there as text: each function stands alone.

// Looks for elements step by step and does `action` with the first ones that there are; waits for them until `limit`
// milliseconds have gone. With `isSeen`, the first one is also to be seen, with `isEnabled` not disabled, and with
// `isStill` in the same place for two frames; with `isPatient`, the action is tried again as long as it throws.
export async function act({ steps, isSeen, isEnabled, isStill, isPatient, isAtOnce, limit }, action, argument) {
  const flat = (text) => text.replace(/\s+/g, ' ').trim();
  const fits = (text, { pattern, flags, wanted, isExact }) => {
    if (pattern !== undefined) return new RegExp(pattern, flags).test(flat(text));
    return isExact ? flat(text) === wanted : flat(text).toLowerCase().includes(wanted.toLowerCase());
  };
  const nameOf = (element) => element.getAttribute('aria-label') ?? [...(element.labels ?? [])].map((one) => one.textContent).join(' ');
  const kinds = {
    css: (root, { css, text }) => [...root.querySelectorAll(css)].filter((one) => !text || fits(one.textContent, text)),
    role: (root, { role, text }) => [...root.querySelectorAll(`${role}, [role=${role}]`)]
      .filter((one) => fits(one.getAttribute('aria-label') ?? one.textContent, text)),
    label: (root, { text }) => [...root.querySelectorAll('[aria-label], input, select, textarea')].filter((one) => fits(nameOf(one), text)),
    text: (root, { text }) => [...root.querySelectorAll('*')]
      .filter((one) => fits(one.textContent, text) && ![...one.children].some((child) => fits(child.textContent, text))),
  };
  const find = () => {
    let found = [document];
    for (const step of steps) {
      if (step.place !== undefined) found = found.slice(step.place, step.place + 1);
      else found = [...new Set(found.flatMap((root) => kinds[step.kind](root, step)))];
    }
    return found;
  };
  let lastBox = '';
  let framesInPlace = 0;
  const rests = (element) => {
    const box = JSON.stringify(element.getBoundingClientRect());
    framesInPlace = box === lastBox ? framesInPlace + 1 : 0;
    lastBox = box;
    return framesInPlace >= 2;
  };
  const isReady = ([first]) => first !== undefined && (!isSeen || first.checkVisibility({ checkVisibilityCSS: true }))
    && !(isEnabled && first.disabled) && (!isStill || rests(first));
  const start = performance.now();
  for (;;) {
    const found = find();
    const isLate = performance.now() - start > limit;
    if (isAtOnce || isReady(found)) {
      try {
        return action(found, argument);
      } catch (error) {
        if (!isPatient || isLate) throw error;
      }
    }
    if (isLate) throw new Error(`waited in vain for ${JSON.stringify(steps)}, of which there are ${found.length}`);
    await new Promise(requestAnimationFrame);
  }
}

// Waits until a function returns what is true.
export async function until(limit, condition, argument) {
  const start = performance.now();
  for (;;) {
    if (await condition(argument)) return;
    if (performance.now() - start > limit) throw new Error(`waited in vain for ${condition}`);
    await new Promise(requestAnimationFrame);
  }
}

// The middle of an element, which comes into view; throws while something lies over it.
export function middleOf([element], isForced) {
  element.scrollIntoView({ block: 'nearest', inline: 'nearest', behavior: 'instant' });
  const box = element.getBoundingClientRect();
  const middle = { x: box.left + box.width / 2, y: box.top + box.height / 2 };
  const top = document.elementFromPoint(middle.x, middle.y);
  if (!isForced && top !== element && !element.contains(top)) throw new Error(`${top?.outerHTML.slice(0, 80)} lies over ${element.outerHTML.slice(0, 80)}`);
  return middle;
}

export function enter([element], value) {
  element.focus();
  element.value = value;
  element.dispatchEvent(new Event('input', { bubbles: true }));
  element.dispatchEvent(new Event('change', { bubbles: true }));
}
