// "Same pixels?": small scenes rendered in the visitor's own browser, their hashes compared with those of every other machine.

import { byId, copyText } from './dom.js';
import { openEngine } from './engine.js';
import { textOf } from './messages.js';
import { Ops } from './ops.js';
import { numberText, t } from './texts.js';

/** @typedef {import('./app.js').App} App */

/**
 * One line on a run, as it stands in the dialog and in what is copied.
 * @param {Ops} ops
 */
async function checked(ops) {
    const { scenes, agree, seconds, first } = await ops.selfcheck();
    const run = t(ops.engine.isThreaded ? 'checkThreaded' : 'checkSingle', { threads: ops.engine.threads });
    const words = t('checkAgree', { agree, scenes, seconds: numberText(seconds, 1) });
    const other = first ? ` ${t('checkFirst', { scene: first.scene, expected: first.expected, found: first.found })}` : '';
    return { isGood: agree === scenes, text: `${run}: ${words}${other}` };
}

/**
 * @param {App} app
 * @param {string} version of the effect
 */
export function startSelfcheck(app, version) {
    const dialog = byId('selfcheck-dialog', HTMLDialogElement);
    const result = byId('selfcheck-result', HTMLElement);
    const copy = byId('selfcheck-copy', HTMLButtonElement);

    const run = async () => {
        dialog.dataset.state = 'running';
        result.textContent = t('checkRunning');
        copy.disabled = true;
        copy.textContent = t('copy');
        /** @type {string[]} */
        const lines = [];
        let isGood = true;
        /** @param {Ops} ops */
        const add = async (ops) => {
            const line = await checked(ops);
            isGood = isGood && line.isGood;
            lines.push(line.text);
            result.textContent = lines.join('\n');
        };
        try {
            await add(app.ops);
            if (app.ops.engine.isThreaded) {
                const single = await openEngine({ single: true });
                try {
                    await add(new Ops(single));
                } finally {
                    single.close();
                }
            }
        } catch (error) {
            isGood = false;
            lines.push(textOf(error));
        }
        result.textContent = [...lines, `Kovalune ${version}`, navigator.userAgent].join('\n');
        dialog.dataset.state = isGood ? 'good' : 'bad';
        copy.disabled = false;
    };

    byId('selfcheck', HTMLElement).addEventListener('click', () => {
        dialog.showModal();
        if (dialog.dataset.state !== 'running') {
            void run();
        }
    });
    copy.addEventListener('click', async () => {
        // On the button: what lies behind an open dialog is neither seen nor spoken.
        copy.textContent = t(await copyText(result.textContent ?? '') ? 'copied' : 'notCopied');
    });
    byId('selfcheck-close', HTMLElement).addEventListener('click', () => dialog.close());
}
