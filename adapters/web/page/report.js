// What each stage selected and changed, in words.

import { byId, element } from './dom.js';
import { numberText, t } from './texts.js';

/**
 * @typedef {import('./app.js').App} App
 * @typedef {import('./ops.js').StageReport} StageReport
 * @typedef {import('./ops.js').Rendered} Rendered
 */

/** @param {StageReport} stage */
export function stageWords(stage) {
    if (stage.state === 'off') {
        return t('stageOff');
    }
    if (stage.state === 'not in this view') {
        return t('stageNotInView');
    }
    return t('stageRun', { selected: numberText(stage.selected ?? 0), changed: numberText(stage.changed ?? 0) });
}

/**
 * Why a slot selects nothing. The engine's note tells the two reasons apart.
 * @param {string} label
 * @param {string[]} notes
 */
export function slotReason(label, notes) {
    const note = notes.find((each) => each.includes(`'${label}'`)) ?? '';
    return t(note.includes('beyond those') ? 'slotTaken' : 'slotEmpty');
}

/** @param {Rendered} rendered */
function showReport(rendered) {
    const rows = rendered.passes.flatMap(({ name, report }) => [
        ...(name === '' ? [] : [element('tr', {}, element('th', { colspan: 2, scope: 'colgroup' }, t('passName', { name })))]),
        ...report.stages.map((stage) => element('tr', { 'data-stage': stage.stage },
            element('th', { scope: 'row' }, stage.stage), element('td', {}, stageWords(stage), ...lostEdge(stage))))
    ]);
    byId('report-rows', HTMLElement).replaceChildren(...rows);
    byId('notes', HTMLElement).replaceChildren(...rendered.notes.map((note) => element('li', { lang: 'en' }, note)));
}

/** @param {StageReport} stage */
function lostEdge({ cutByKeepProcess = 0 }) {
    return cutByKeepProcess > 0 ? [element('br'), t('cutByKeep', { count: numberText(cutByKeepProcess) })] : [];
}

/** @param {App} app */
export function followReports(app) {
    app.on('rendered', ({ picture, isDraft }) => {
        if (!isDraft) { // the counts of a draft are those of a smaller picture
            showReport(picture);
        }
    });
    return { show: () => { if (app.rendered) { showReport(app.rendered); } } };
}
