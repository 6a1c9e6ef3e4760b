// The frames of a sequence: which one is shown, and the way to the others.

import { byId, debounced } from './dom.js';
import { t } from './texts.js';

/** @typedef {import('./app.js').App} App */

const kQuiet = 80; // milliseconds that a slider rests before its frame is read

/** @param {App} app */
export function startFrameBar(app) {
    const slider = byId('frame-slider', HTMLInputElement);
    const label = byId('frame-label', HTMLElement);
    const picture = byId('picture-label', HTMLElement);

    const show = (place = app.place) => {
        const frame = app.frames[place];
        byId('framebar', HTMLElement).hidden = app.frames.length < 2;
        slider.max = String(Math.max(0, app.frames.length - 1));
        slider.value = String(place);
        label.textContent = frame ? t('frameOf', { frame: frame.frame, place: place + 1, count: app.frames.length }) : '';
        slider.setAttribute('aria-valuetext', label.textContent);
        picture.textContent = app.picture ? `${app.picture.name} · ${app.picture.form}` : '';
        byId('frame-first', HTMLButtonElement).disabled = place === 0;
        byId('frame-previous', HTMLButtonElement).disabled = place === 0;
        byId('frame-next', HTMLButtonElement).disabled = place >= app.frames.length - 1;
        byId('frame-last', HTMLButtonElement).disabled = place >= app.frames.length - 1;
    };
    const open = debounced((/** @type {number} */ place) => void app.showFrame(place), kQuiet);
    /** @param {number} place */
    const go = (place) => {
        const inside = Math.min(app.frames.length - 1, Math.max(0, place));
        show(inside);
        open(inside);
    };

    slider.addEventListener('input', () => go(Number(slider.value)));
    byId('frame-first', HTMLElement).addEventListener('click', () => go(0));
    byId('frame-previous', HTMLElement).addEventListener('click', () => go(Number(slider.value) - 1));
    byId('frame-next', HTMLElement).addEventListener('click', () => go(Number(slider.value) + 1));
    byId('frame-last', HTMLElement).addEventListener('click', () => go(app.frames.length - 1));
    app.on('opened', () => show());
    app.on('frames', () => show());
    app.on('failed', () => show());
    return { show: () => show() };
}
