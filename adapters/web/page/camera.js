// Where the picture lies on the stage: zoom and place, in CSS pixels of the stage.

import { byId } from './dom.js';
import { numberText, t } from './texts.js';

/** @typedef {import('./app.js').App} App */

const kMost = 64; // CSS pixels a side of one of the picture's
const kStep = 1.25;
const kLeastVisible = 32; // CSS pixels of the picture that stay on the stage

export class Camera {
    /** @param {App} app */
    constructor(app) {
        this.app = app;
        this.stage = byId('stage', HTMLElement);
        this.sheet = byId('sheet', HTMLElement);
        this.zoom = 1;
        this.left = 0;
        this.top = 0;
        this.isFitted = true;
        /** @type {(() => void)[]} */
        this.moved = [];
        this.size = '';
        app.on('opened', () => {
            const size = `${this.width}x${this.height}`;
            if (size !== this.size) {
                this.size = size;
                this.fit();
            }
        });
        new ResizeObserver(() => (this.isFitted ? this.fit() : this.apply())).observe(this.stage);
        byId('zoom-in', HTMLElement).addEventListener('click', () => this.zoomBy(2));
        byId('zoom-out', HTMLElement).addEventListener('click', () => this.zoomBy(0.5));
        byId('zoom-fit', HTMLElement).addEventListener('click', () => this.fit());
        byId('zoom-full', HTMLElement).addEventListener('click', () => this.zoomTo(1));
    }

    get width() {
        return this.app.picture?.width ?? 1;
    }

    get height() {
        return this.app.picture?.height ?? 1;
    }

    get fittingZoom() {
        return Math.min(this.stage.clientWidth / this.width, this.stage.clientHeight / this.height) || 1;
    }

    fit() {
        this.isFitted = true;
        this.zoom = this.fittingZoom;
        this.left = (this.stage.clientWidth - this.width * this.zoom) / 2;
        this.top = (this.stage.clientHeight - this.height * this.zoom) / 2;
        this.apply();
    }

    /**
     * The point of the stage stays over the same pixel.
     * @param {number} zoom
     * @param {number} [x]
     * @param {number} [y]
     */
    zoomTo(zoom, x = this.stage.clientWidth / 2, y = this.stage.clientHeight / 2) {
        const next = Math.min(Math.max(kMost, this.fittingZoom), Math.max(Math.min(1, this.fittingZoom) / 4, zoom));
        this.left = x - (x - this.left) * next / this.zoom;
        this.top = y - (y - this.top) * next / this.zoom;
        this.zoom = next;
        this.isFitted = false;
        this.apply();
    }

    /** @param {number} factor @param {number} [x] @param {number} [y] */
    zoomBy(factor, x, y) {
        this.zoomTo(this.zoom * factor, x, y);
    }

    /** @param {number} steps @param {number} x @param {number} y */
    zoomSteps(steps, x, y) {
        this.zoomBy(kStep ** steps, x, y);
    }

    /** @param {number} x @param {number} y */
    pan(x, y) {
        this.left += x;
        this.top += y;
        this.isFitted = false;
        this.apply();
    }

    /**
     * The picture's pixel at a point of the stage; null outside.
     * @param {number} x
     * @param {number} y
     */
    pixelAt(x, y) {
        const pixel = { x: Math.floor((x - this.left) / this.zoom), y: Math.floor((y - this.top) / this.zoom) };
        const isInside = pixel.x >= 0 && pixel.y >= 0 && pixel.x < this.width && pixel.y < this.height;
        return isInside && this.app.picture ? pixel : null;
    }

    apply() {
        const keep = (/** @type {number} */ start, /** @type {number} */ length, /** @type {number} */ stage) =>
            Math.min(stage - kLeastVisible, Math.max(kLeastVisible - length, start));
        this.left = keep(this.left, this.width * this.zoom, this.stage.clientWidth);
        this.top = keep(this.top, this.height * this.zoom, this.stage.clientHeight);
        // Whole device pixels, or single pixels of the picture come out in two widths.
        const whole = (/** @type {number} */ place) => Math.round(place * devicePixelRatio) / devicePixelRatio;
        this.sheet.style.width = `${this.width * this.zoom}px`;
        this.sheet.style.height = `${this.height * this.zoom}px`;
        this.sheet.style.transform = `translate(${whole(this.left)}px, ${whole(this.top)}px)`;
        this.sheet.classList.toggle('pixelated', this.zoom >= 1);
        byId('zoom-level', HTMLElement).textContent = t('percent', { value: numberText(this.zoom * 100) });
        for (const each of this.moved) {
            each();
        }
    }
}
