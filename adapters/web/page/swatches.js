// The picture's flat colours, the pairs among them that look like light and shadow, and settings for all of those at once.

import { button, byId, element, onAttention } from './dom.js';
import { showError, showStatus, textOf } from './messages.js';
import { numberText, t } from './texts.js';

/**
 * @typedef {import('./app.js').App} App
 * @typedef {import('./pairing.js').Pairing} Pairing
 * @typedef {import('./layers.js').Layers} Layers
 * @typedef {import('./ops.js').Colors} Colors
 * @typedef {import('./ops.js').Pair} Pair
 */

export class Swatches {
    /**
     * @param {App} app
     * @param {Pairing} pairing
     * @param {Layers} layers
     */
    constructor(app, pairing, layers) {
        this.app = app;
        this.pairing = pairing;
        this.layers = layers;
        /** @type {Colors | null} */
        this.colors = null;
        this.turn = 0;
        let isStale = false;
        app.on('opened', () => { isStale = true; });
        app.on('rendered', () => { // after something is to be seen
            if (isStale) {
                isStale = false;
                void this.ask();
            }
        });
        byId('suggest', HTMLElement).addEventListener('click', () => void this.suggest());
    }

    async ask() {
        const turn = ++this.turn;
        if (!this.app.hasPicture) {
            return; // they come with the frame that is rendered afterwards
        }
        try {
            const colors = await this.app.ops.colors();
            if (turn === this.turn) {
                this.colors = colors;
                this.show();
            }
        } catch (error) {
            showError(textOf(error), t('helpOther'));
        }
    }

    show() {
        const colors = this.colors;
        if (!colors) {
            return;
        }
        byId('swatches', HTMLElement).replaceChildren(...colors.colors.map((each) => element('li', {}, this.swatch(each))));
        const more = byId('swatches-more', HTMLElement);
        more.textContent = colors.more > 0 ? t('moreColors', { count: numberText(colors.more) }) : '';
        byId('pairs', HTMLElement).replaceChildren(...colors.pairs.map((pair) => this.pairRow(pair)));
        byId('pairs-none', HTMLElement).hidden = colors.pairs.length > 0;
    }

    /** @param {import('./ops.js').FlatColor} color */
    swatch({ hex, share }) {
        const name = t('swatchName', { color: hex, share: numberText(share, 1) });
        const made = button('', () => void this.pairing.take(hex),
            { class: 'swatch', 'data-color': hex, 'aria-label': name, title: name });
        made.style.backgroundColor = hex;
        onAttention(made, () => this.layers.showColor(hex), () => this.layers.clearTint());
        return made;
    }

    /** @param {Pair} pair */
    pairRow({ light, shadow, isHighlight, boundaryBlur }) {
        const chips = [light, shadow].map((hex) => {
            const chip = element('span', { class: 'chip', 'aria-hidden': 'true' });
            chip.style.backgroundColor = hex;
            return chip;
        });
        const words = t(isHighlight ? 'pairHighlight' : 'pairShadow', { light, shadow, blur: numberText(boundaryBlur, 1) });
        const apply = button(t('apply'), () => void this.pairing.pair(light, shadow),
            { 'data-light': light, 'data-shadow': shadow, 'aria-label': `${t('apply')}: ${words}` });
        return element('li', {}, ...chips, element('span', { class: 'grow' }, words), apply);
    }

    async suggest() {
        if (!this.app.hasPicture) {
            showStatus(t('isSaving'));
            return;
        }
        try {
            const { settings } = await this.app.ops.suggest();
            if (settings === '') {
                showStatus(t('nothingToSuggest'));
            } else if (await this.app.load(settings)) {
                showStatus(t('suggested'));
            }
        } catch (error) {
            showError(textOf(error), t('helpOther'));
        }
    }
}
