// The pictures of the stage, one over the other: the drawing, the result, and a tint over what a colour selects. Canvases
// store premultiplied, so they are for the eye alone and are never read back.

import { byId } from './dom.js';
import { Cancelled } from './engine.js';
import { bytesOf } from './color.js';

/** @typedef {import('./app.js').App} App */
/** @typedef {import('./slots.js').Slot} Slot */

/**
 * @param {HTMLCanvasElement} canvas
 * @param {Uint8Array} rgba straight
 * @param {number} width
 * @param {number} height
 */
function paint(canvas, rgba, width, height) {
    if (canvas.width !== width || canvas.height !== height) {
        canvas.width = width;
        canvas.height = height;
    }
    const pixels = new Uint8ClampedArray(rgba.buffer, rgba.byteOffset, width * height * 4);
    canvas.getContext('2d')?.putImageData(new ImageData(pixels, width, height), 0, 0);
}

const kTint = [255, 0, 200, 190];
const kRest = [0, 0, 0, 110]; // darkens what is not selected, so that small regions are found

/**
 * @param {Uint8Array} mask 255 where it is selected
 * @returns {Uint8Array} RGBA
 */
function tintOf(mask) {
    const [on, off] = [kTint, kRest].map((color) => new Uint32Array(Uint8Array.from(color).buffer)[0]);
    const pixels = new Uint32Array(mask.length);
    for (let at = 0; at < mask.length; ++at) {
        pixels[at] = mask[at] ? on : off;
    }
    return new Uint8Array(pixels.buffer);
}

export class Layers {
    /** @param {App} app */
    constructor(app) {
        this.app = app;
        this.before = byId('before', HTMLCanvasElement);
        this.after = byId('after', HTMLCanvasElement);
        this.tint = byId('tint', HTMLCanvasElement);
        this.turn = 0; // of the tint that is wanted
        app.on('opened', () => {
            const picture = app.picture;
            if (picture) {
                paint(this.before, picture.bytes, picture.width, picture.height);
                paint(this.after, picture.bytes, picture.width, picture.height); // until it is rendered
                this.clearTint();
            }
        });
        app.on('rendered', ({ picture }) => paint(this.after, picture.bytes, picture.width, picture.height));
        app.on('settings', () => this.clearTint());
    }

    /** @param {Slot} slot */
    async showSlot(slot) {
        if (!this.app.hasPicture) {
            return;
        }
        const turn = ++this.turn;
        this.app.ops.engine.cancelSelections(); // of the slots that the pointer has left
        try {
            const place = { stage: slot.stage, color: slot.color };
            const { bytes, width, height } = await this.app.ops.select({ ...this.app.job, ...place });
            if (turn === this.turn) {
                this.showMask(bytes, width, height);
            }
        } catch (error) {
            if (!(error instanceof Cancelled)) {
                this.clearTint(); // what is wrong with the settings is told by the render
            }
        }
    }

    /** @param {string} hex whose own pixels are shown */
    showColor(hex) {
        ++this.turn;
        const picture = this.app.picture;
        if (picture) {
            const [red, green, blue] = bytesOf(hex);
            const { bytes, width, height } = picture;
            const mask = new Uint8Array(width * height);
            for (let at = 0, from = 0; at < mask.length; ++at, from += 4) {
                const isIt = bytes[from] === red && bytes[from + 1] === green && bytes[from + 2] === blue;
                mask[at] = isIt && bytes[from + 3] > 0 ? 255 : 0;
            }
            this.showMask(mask, width, height);
        }
    }

    /**
     * @param {Uint8Array} mask
     * @param {number} width
     * @param {number} height
     */
    showMask(mask, width, height) {
        paint(this.tint, tintOf(mask), width, height);
        this.tint.hidden = false;
    }

    clearTint() {
        ++this.turn;
        this.app.ops.engine.cancelSelections();
        this.tint.hidden = true;
    }
}
