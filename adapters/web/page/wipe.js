// Before and after: a line that parts the visible picture, left of it the drawing; and a key that shows the drawing while
// it is held.

import { byId, isTyping } from './dom.js';

/** @typedef {import('./camera.js').Camera} Camera */

const kHoldKey = 'b';

/** @param {Camera} camera */
export function startWipe(camera) {
    const slider = byId('wipe', HTMLInputElement);
    const line = byId('wipe-line', HTMLElement);
    const hold = byId('hold', HTMLButtonElement);
    let isHeld = false;

    /** Left and right end of the picture's visible part, on the stage. */
    const visible = () => {
        const start = Math.max(0, camera.left);
        const end = Math.min(camera.stage.clientWidth, camera.left + camera.width * camera.zoom);
        return { start, end: Math.max(end, start + 1) };
    };
    const apply = () => {
        const { start, end } = visible();
        const x = start + (end - start) * Number(slider.value) / 100;
        const share = isHeld ? 100 : Math.min(100, Math.max(0, (x - camera.left) / (camera.width * camera.zoom) * 100));
        byId('before', HTMLElement).style.clipPath = `inset(0 ${100 - share}% 0 0)`;
        byId('after', HTMLElement).style.clipPath = `inset(0 0 0 ${share}%)`;
        line.style.transform = `translateX(${x}px)`;
        line.classList.toggle('is-open', Number(slider.value) > 0);
        hold.setAttribute('aria-pressed', String(isHeld));
    };
    /** @param {boolean} held */
    const setHeld = (held) => {
        isHeld = held;
        apply();
    };

    slider.addEventListener('input', apply);
    camera.moved.push(apply);
    line.addEventListener('pointerdown', (event) => {
        line.setPointerCapture(event.pointerId);
        event.stopPropagation(); // no pan
        event.preventDefault();
    });
    line.addEventListener('pointermove', (event) => {
        if (line.hasPointerCapture(event.pointerId)) {
            const { start, end } = visible();
            const x = event.clientX - camera.stage.getBoundingClientRect().left;
            slider.value = String(Math.min(100, Math.max(0, (x - start) / (end - start) * 100)));
            apply();
        }
    });

    hold.addEventListener('pointerdown', () => setHeld(true));
    for (const end of ['pointerup', 'pointercancel', 'pointerleave', 'blur']) {
        hold.addEventListener(end, () => setHeld(false));
    }
    hold.addEventListener('keydown', (event) => {
        if (event.key === ' ' || event.key === 'Enter') {
            setHeld(true);
        }
    });
    hold.addEventListener('keyup', () => setHeld(false));
    document.addEventListener('keydown', (event) => {
        const isPlain = !event.ctrlKey && !event.metaKey && !event.altKey;
        if (isPlain && event.key.toLowerCase() === kHoldKey && !isTyping(event.target)) {
            setHeld(true);
        }
    });
    document.addEventListener('keyup', (event) => {
        if (event.key.toLowerCase() === kHoldKey) {
            setHeld(false);
        }
    });
    window.addEventListener('blur', () => setHeld(false));
    apply();
}
