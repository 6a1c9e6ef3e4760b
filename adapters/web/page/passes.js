// The passes of a settings file as tabs, the keys of which are those of every list of tabs.

import { byId, button } from './dom.js';
import { t } from './texts.js';

/** @typedef {import('./app.js').App} App */

/** @param {App} app */
export function startPasses(app) {
    const list = byId('passes', HTMLElement);

    const show = () => {
        const { passes, passCount } = app.settings;
        const hadFocus = list.contains(document.activeElement);
        list.replaceChildren(...Array.from({ length: passCount }, (_, pass) =>
            button(passes.length > 0 ? t('passName', { name: passes[pass] }) : t('onlyPass'), () => app.choosePass(pass), {
                role: 'tab', id: `pass-${pass}`, 'aria-controls': 'pass-panel', 'aria-selected': String(pass === app.pass),
                tabindex: pass === app.pass ? 0 : -1
            })));
        byId('pass-panel', HTMLElement).setAttribute('aria-labelledby', `pass-${app.pass}`);
        byId('remove-pass', HTMLButtonElement).hidden = passCount < 2;
        if (hadFocus) {
            byId(`pass-${app.pass}`, HTMLElement).focus();
        }
    };

    list.addEventListener('keydown', (event) => {
        const last = app.settings.passCount - 1;
        const to = /** @type {Record<string, number>} */ ({
            ArrowLeft: Math.max(0, app.pass - 1), ArrowRight: Math.min(last, app.pass + 1), Home: 0, End: last
        })[event.key];
        if (to !== undefined) {
            event.preventDefault();
            app.choosePass(to);
        }
    });
    byId('add-pass', HTMLElement).addEventListener('click', () => app.addPass());
    byId('remove-pass', HTMLElement).addEventListener('click', () => app.removePass());
    app.on('settings', show);
    show();
    return { show };
}
