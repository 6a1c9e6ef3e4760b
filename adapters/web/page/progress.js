// Where the page stands, for eyes, for screen readers and, at the root element, for whoever drives the page.

import { byId } from './dom.js';
import { numberText, t } from './texts.js';

/** @typedef {import('./app.js').App} App */
/** @typedef {'starting' | 'rendering' | 'draft' | 'ready' | 'error'} Phase */

const kShownAfter = 250; // milliseconds; a bar that flashes tells nothing

const bar = byId('progress', HTMLProgressElement);
let timer = 0;

/** @param {Phase} phase */
export function setPhase(phase) {
    document.documentElement.dataset.state = phase;
    const isBusy = phase === 'starting' || phase === 'rendering' || phase === 'draft';
    byId('stage', HTMLElement).setAttribute('aria-busy', String(isBusy));
    window.clearTimeout(timer);
    if (isBusy) {
        timer = window.setTimeout(() => { bar.hidden = false; }, kShownAfter);
    } else {
        bar.hidden = true;
    }
}

/**
 * As long as a picture with gaps is on the stage, whatever is on its way.
 * @param {boolean} isDraft
 */
function markDraft(isDraft) {
    byId('draft', HTMLElement).hidden = !isDraft;
    byId('after', HTMLElement).classList.toggle('is-draft', isDraft);
}

/**
 * @param {number} current
 * @param {number} total
 */
export function showProgress(current, total) {
    if (total > 0) {
        bar.max = total;
        bar.value = current;
    } else {
        bar.removeAttribute('value');
    }
}

/** @param {App} app */
export function followRenders(app) {
    const timing = byId('timing', HTMLElement);
    let frames = 0; // that came whole, of the newest settings
    app.on('started', () => {
        bar.removeAttribute('value');
        setPhase('rendering');
    });
    app.on('opened', () => {
        document.documentElement.dataset.frame = String(app.frame);
        markDraft(false);
    });
    app.on('failed', ({ what }) => {
        if (what === 'render' || !app.picture) {
            setPhase('error');
        }
    });
    app.on('rendered', ({ picture, job, isDraft }) => {
        const isNewest = job.settings === app.settings.format() && job.pass === app.pass && job.frame === app.frame;
        if (isNewest && !isDraft) {
            frames += 1;
            document.documentElement.dataset.renders = String(frames);
            document.documentElement.dataset.milliseconds = String(picture.milliseconds);
        }
        markDraft(picture.width < (app.picture?.width ?? 0) || picture.height < (app.picture?.height ?? 0));
        setPhase(!isNewest ? 'rendering' : isDraft ? 'draft' : 'ready');
        const milliseconds = numberText(picture.milliseconds);
        timing.textContent = t(isDraft ? 'draftTime' : 'fullTime', { milliseconds });
    });
}
