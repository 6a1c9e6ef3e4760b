// The pixels around the pointer, enlarged, with the exact values of the one in the middle.

import { byId, debounced } from './dom.js';
import { hexOfBytes } from './color.js';

/** @typedef {import('./app.js').App} App */
/** @typedef {import('./gestures.js').Point} Point */

const kSide = 11; // pixels, odd
const kAway = 24; // CSS pixels from the pointer
const kQuiet = 60; // milliseconds before the engine is asked

/**
 * @param {App} app
 * @returns {(pixel: Point | null, place: Point) => void}
 */
export function startLoupe(app) {
    const box = byId('loupe', HTMLElement);
    const canvas = byId('loupe-pixels', HTMLCanvasElement);
    const values = byId('loupe-values', HTMLElement);
    const stage = byId('stage', HTMLElement);
    canvas.width = kSide;
    canvas.height = kSide;
    let turn = 0;

    const ask = debounced(async (/** @type {Point} */ pixel, /** @type {number} */ asked) => {
        if (!app.hasPicture) {
            return;
        }
        try {
            const picked = await app.ops.pick(pixel.x, pixel.y);
            if (asked === turn) {
                const lines = [`${pixel.x}, ${pixel.y}   ${picked.hex}`, picked.source];
                values.textContent = [...lines, ...(picked.result === null ? [] : [`→ ${picked.result}`])].join('\n');
            }
        } catch {
            // The picture has changed meanwhile; the next move asks anew.
        }
    }, kQuiet);

    /** @param {Point} pixel */
    const draw = (pixel) => {
        const picture = app.picture;
        if (!picture) {
            return;
        }
        const half = (kSide - 1) / 2;
        const shown = new ImageData(kSide, kSide);
        for (let y = 0; y < kSide; ++y) {
            for (let x = 0; x < kSide; ++x) {
                const from = { x: pixel.x + x - half, y: pixel.y + y - half };
                if (from.x >= 0 && from.y >= 0 && from.x < picture.width && from.y < picture.height) {
                    const at = (from.y * picture.width + from.x) * 4;
                    shown.data.set(picture.bytes.subarray(at, at + 4), (y * kSide + x) * 4);
                }
            }
        }
        canvas.getContext('2d')?.putImageData(shown, 0, 0);
        const at = (pixel.y * picture.width + pixel.x) * 4;
        const [red, green, blue] = picture.bytes.subarray(at, at + 3);
        values.textContent = `${pixel.x}, ${pixel.y}   ${hexOfBytes(red, green, blue)}`;
    };

    return (pixel, place) => {
        ++turn;
        box.hidden = pixel === null;
        if (pixel === null) {
            return;
        }
        draw(pixel);
        ask(pixel, turn);
        const isRight = place.x + kAway + box.offsetWidth > stage.clientWidth;
        const isLow = place.y + kAway + box.offsetHeight > stage.clientHeight;
        const x = isRight ? place.x - kAway - box.offsetWidth : place.x + kAway;
        const y = isLow ? place.y - kAway - box.offsetHeight : place.y + kAway;
        box.style.transform = `translate(${Math.max(0, x)}px, ${Math.max(0, y)}px)`;
    };
}
