// The settings in the address after '#', so that a link is a setting and a reload keeps it.

import { debounced } from './dom.js';
import { fragmentOf, settingsTextOf } from './link.js';

/** @typedef {import('./app.js').App} App */

const kQuiet = 150; // milliseconds; browsers bear few changes of the address a second

/** @param {App} app */
export async function startAddress(app) {
    const write = debounced(() => {
        const fragment = fragmentOf(app.settings, app.parameters);
        if (fragment !== location.hash.slice(1)) {
            history.replaceState(null, '', `#${fragment}`);
        }
    }, kQuiet);
    const read = async () => {
        const text = settingsTextOf(location.hash, app.parameters);
        if (text !== settingsTextOf(fragmentOf(app.settings, app.parameters), app.parameters)) {
            await app.load(text);
        }
    };
    window.addEventListener('hashchange', () => void read());
    if (location.hash.length > 1) {
        await read();
    }
    app.on('settings', write);
}
