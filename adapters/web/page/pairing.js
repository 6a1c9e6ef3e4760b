// What a click on a colour means: it goes to the slot that waits for one; else the first is a light and the second its shadow.

import { button, byId, element } from './dom.js';
import { hexOfBytes } from './color.js';
import { showError, showStatus, textOf } from './messages.js';
import { t } from './texts.js';

/** @typedef {import('./app.js').App} App */
/** @typedef {import('./gestures.js').Point} Point */
/** @typedef {{kind: 'start'} | {kind: 'light', light: string} | {kind: 'full', light: string, shadow: string}} Step */

/**
 * @param {import('./ops.js').PairReply} reply
 * @param {string} light
 */
function problemText({ problem, color = '' }, light) {
    return problem === 'same colour' ? t('pairSame', { color })
        : problem === 'no border' ? t('pairApart', { light, shadow: color }) : t('pairNoFlat', { color });
}

export class Pairing {
    /** @param {App} app */
    constructor(app) {
        this.app = app;
        /** @type {Step} */
        this.step = { kind: 'start' };
        /** Over once the pairs that were asked for are placed. */
        this.placed = Promise.resolve();
        app.on('armed', () => this.go({ kind: 'start' }));
        app.on('opened', () => this.go({ kind: 'start' }));
        document.addEventListener('keydown', (event) => {
            if (event.key === 'Escape' && !document.querySelector('dialog[open]')) {
                this.giveUp();
            }
        });
        this.show();
    }

    /** @param {Step} step */
    go(step) {
        this.step = step;
        this.show();
    }

    giveUp() {
        if (this.app.armed || this.step.kind !== 'start') {
            this.app.arm(null);
            showStatus(t('gaveUp'));
        }
    }

    /** Whether the engine has another picture than the one that is seen; it is then told. */
    isAway() {
        if (this.app.isHeld) {
            showStatus(t('isSaving'));
        }
        return this.app.isHeld;
    }

    /** @param {Point} pixel */
    async clickPixel(pixel) {
        const picture = this.app.picture;
        if (!picture || this.isAway()) {
            return;
        }
        const at = (pixel.y * picture.width + pixel.x) * 4;
        const [red, green, blue, alpha] = picture.bytes.subarray(at, at + 4);
        let color = { hex: hexOfBytes(red, green, blue), transparent: alpha === 0 };
        if (picture.depth > 8) {
            color = await this.app.ops.pick(pixel.x, pixel.y); // as the effect rounds it, not as the screen shows it
        }
        if (color.transparent) {
            showStatus(t('transparentClicked'));
        } else {
            await this.take(color.hex);
        }
    }

    /** @param {string} hex a colour that was clicked, in the picture or in a list */
    async take(hex) {
        if (this.isAway()) {
            return;
        }
        const slot = this.app.armed;
        if (slot) {
            this.app.giveColor(slot, hex);
            this.app.arm(null);
            showStatus(t('given', { color: hex, label: slot.label }));
        } else if (this.step.kind === 'light') {
            const { light } = this.step;
            this.go({ kind: 'start' }); // the next click is a light again, although the engine has not answered yet
            await this.pair(light, hex);
        } else {
            this.go({ kind: 'light', light: hex });
        }
    }

    /**
     * Asks the engine for the settings of a pair, and takes them as one step of undo.
     * @param {string} light
     * @param {string} shadow
     */
    pair(light, shadow) {
        this.placed = this.placed.then(() => this.place(light, shadow)); // each finds what the one before has put in
        return this.placed;
    }

    /**
     * @param {string} light
     * @param {string} shadow
     */
    async place(light, shadow) {
        if (this.isAway()) {
            return;
        }
        try {
            const reply = await this.app.ops.pair({ ...this.app.job, light, shadow });
            if (reply.full) {
                this.go({ kind: 'full', light, shadow });
            } else if (reply.values) {
                this.app.set(reply.values);
                if (this.step.kind === 'full') {
                    this.go({ kind: 'start' });
                }
                showStatus(t('paired', { light, shadow, stage: reply.stage ?? 1 }));
            } else {
                this.go({ kind: 'light', light });
                showError(problemText(reply, light), t('helpPair'));
            }
        } catch (error) {
            this.go({ kind: 'start' });
            showError(textOf(error), t('helpOther'));
        }
    }

    /**
     * @param {string} light
     * @param {string} shadow
     */
    async pairInNextPass(light, shadow) {
        this.app.addPass();
        await this.pair(light, shadow);
    }

    show() {
        const guide = byId('guide', HTMLElement);
        const chip = (/** @type {string} */ hex) => {
            const made = element('span', { class: 'chip', 'aria-hidden': 'true' });
            made.style.backgroundColor = hex;
            return made;
        };
        const cancel = () => button(t('giveUp'), () => this.giveUp(), { id: 'guide-cancel' });
        const step = this.step;
        const slot = this.app.armed;
        guide.dataset.step = slot ? 'slot' : step.kind;
        if (slot) {
            guide.replaceChildren(element('span', {}, t('guideSlot', { label: slot.label })), cancel());
        } else if (step.kind === 'light') {
            guide.replaceChildren(chip(step.light), element('span', {}, t('guideShadow', { color: step.light })), cancel());
        } else if (step.kind === 'full') {
            const next = button(t('nextPass'), () => void this.pairInNextPass(step.light, step.shadow),
                { id: 'guide-next-pass', class: 'main-button' });
            guide.replaceChildren(chip(step.light), chip(step.shadow), element('span', {}, t('guideFull')), next, cancel());
        } else {
            guide.replaceChildren(element('span', {}, t('guideStart')));
        }
    }
}
