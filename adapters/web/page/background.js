// What lies behind transparent pixels on the stage: a checkerboard or one colour.

import { byId } from './dom.js';

export function startBackground() {
    const kind = byId('background', HTMLSelectElement);
    const color = byId('background-color', HTMLInputElement);
    const sheet = byId('sheet', HTMLElement);
    const apply = () => {
        const isColor = kind.value === 'color';
        color.hidden = !isColor;
        sheet.classList.toggle('checkered', !isColor);
        sheet.style.backgroundColor = isColor ? color.value : '';
    };
    kind.addEventListener('change', apply);
    color.addEventListener('input', apply);
    apply();
}
