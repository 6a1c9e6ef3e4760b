// What has gone wrong, with what to do about it, and what is worth knowing. The regions are live, so screen readers speak them.

import { button, byId, element } from './dom.js';
import { EngineError } from './engine.js';
import { t } from './texts.js';

/** @typedef {import('./app.js').App} App */

/**
 * @param {string} text
 * @param {string} [help] what to do
 */
export function showError(text, help = '') {
    const place = byId('alert', HTMLElement);
    place.replaceChildren(
        element('p', { id: 'alert-text' }, text), ...(help ? [element('p', { id: 'alert-help' }, help)] : []),
        button('×', () => clearError(), { id: 'alert-close', 'aria-label': t('close') }));
    place.hidden = false;
}

export function clearError() {
    const place = byId('alert', HTMLElement);
    place.hidden = true;
    place.replaceChildren();
}

/** @param {string} text */
export function showStatus(text) {
    byId('status', HTMLElement).textContent = text;
}

/** @param {unknown} error */
export function textOf(error) {
    return error instanceof Error ? error.message : String(error);
}

/** @param {App} app */
export function followFailures(app) {
    app.on('failed', ({ error, what }) => {
        const help = what === 'open' ? t('helpOpen') : what === 'settings' ? t('helpSettings')
            : error instanceof EngineError ? t('helpRender') : t('helpOther');
        showError(textOf(error), help);
    });
    app.on('calm', () => {
        clearError();
        showStatus('');
    });
}
