// The effect's parameter table as controls: ranges, choices and groups as the table has them, greying as the effect rules it.

import { button, byId, element, onAttention } from './dom.js';
import { hexOf } from './color.js';
import { arranged, numberProblem } from './params.js';
import { slotOf } from './slots.js';
import { slotReason, stageWords } from './report.js';
import { currentLanguage, numberText, t } from './texts.js';

/**
 * @typedef {import('./app.js').App} App
 * @typedef {import('./layers.js').Layers} Layers
 * @typedef {import('./ops.js').Parameter} Parameter
 * @typedef {import('./slots.js').Slot} Slot
 * @typedef {import('./ops.js').Rendered} Rendered
 * @typedef {HTMLInputElement | HTMLSelectElement | HTMLButtonElement} Input
 * @typedef {{row: HTMLElement, inputs: Input[], show: (value: string) => void}} Control
 */

const kTintDelay = 120; // milliseconds that a pointer rests on a slot

export class Controls {
    /**
     * @param {App} app
     * @param {Layers} layers
     */
    constructor(app, layers) {
        this.app = app;
        this.layers = layers;
        /** By label. @type {Map<string, Control>} */
        this.controls = new Map();
        /** Which groups were on when they were shown last, by label. @type {Map<string, boolean>} */
        this.wasOn = new Map();
        this.tintTimer = 0;
        /** The slot whose range is being set: its tint follows. @type {Slot | null} */
        this.ranged = null;
        app.on('state', () => this.showState());
        app.on('rendered', ({ picture, job, isDraft }) => {
            if (job.pass === app.pass && !isDraft) { // a draft counts the pixels of a smaller picture
                this.showCounts(picture);
            }
        });
        app.on('rendered', ({ isDraft }) => {
            if (!isDraft && this.ranged) {
                void this.layers.showSlot(this.ranged);
            }
        });
        app.on('armed', () => this.showArmed());
        this.build();
    }

    /** Anew, as a change of language asks for. */
    build() {
        this.controls.clear();
        const { single, groups } = arranged(this.app.parameters);
        byId('single-controls', HTMLElement).replaceChildren(...single.map((each) => this.controlOf(each).row));
        byId('groups', HTMLElement).replaceChildren(...groups.map(({ group, members }, place) => {
            const words = element('span', { class: 'stage-words', id: `stage-${place}-words` });
            const summary = element('summary', {}, element('span', { id: `group-${group.id}-name` }, group.label), words);
            const rows = element('div', { role: 'group', 'aria-labelledby': `group-${group.id}-name` },
                ...members.map((each) => this.controlOf(each).row));
            this.explain(summary, group);
            const isOpen = place === 0 || this.wasOn.get(group.label) === true;
            return element('details', { id: `group-${group.id}`, class: 'group', open: isOpen, 'data-stage': place },
                summary, rows);
        }));
        this.showState();
        if (this.app.rendered) {
            this.showCounts(this.app.rendered);
        }
        this.showArmed();
    }

    // ---- making

    /** @param {Parameter} parameter */
    controlOf(parameter) {
        const id = `param-${parameter.id}`;
        const control = parameter.kind === 'checkbox' ? this.checkBox(parameter, id)
            : parameter.kind === 'color' ? this.color(parameter, id)
                : parameter.kind === 'popup' ? this.popup(parameter, id) : this.number(parameter, id);
        control.row.dataset.control = parameter.label;
        control.row.append(element('span', { class: 'note', id: `${id}-note`, hidden: true }));
        this.explain(control.row, parameter);
        if (parameter.hint) {
            control.row.append(element('span', { class: 'offscreen', id: `${id}-hint` }, parameter.hint[currentLanguage()]));
            for (const input of control.inputs) {
                input.setAttribute('aria-describedby', `${id}-note ${id}-hint`);
            }
        }
        this.tintFrom(control.row, parameter.label);
        this.controls.set(parameter.label, control);
        return control;
    }

    /** @param {Parameter} parameter @param {string} id @returns {Control} */
    checkBox({ label }, id) {
        const box = element('input', { type: 'checkbox', id });
        box.addEventListener('change', () => this.app.set({ [label]: box.checked ? 'on' : 'off' }));
        const row = element('div', { class: 'row is-check' }, box, element('label', { for: id }, label));
        return { row, inputs: [box], show: (value) => { box.checked = value === 'on'; } };
    }

    /** @param {Parameter} parameter @param {string} id @returns {Control} */
    popup({ label, choices = [] }, id) {
        const list = element('select', { id }, ...choices.filter((each) => each.selectable)
            .map((each) => element('option', { value: each.label }, each.label)));
        list.addEventListener('change', () => this.app.set({ [label]: list.value }));
        const row = element('div', { class: 'row is-popup' }, element('label', { for: id }, label), list);
        return { row, inputs: [list], show: (value) => { list.value = value; } };
    }

    /** @param {Parameter} parameter @param {string} id @returns {Control} */
    number(parameter, id) {
        const { label, kind, min = 0, max = 0, sliderMin = min, sliderMax = max, precision = 0 } = parameter;
        const step = kind === 'integer' ? 1 : 10 ** -precision;
        const slider = element('input',
            { type: 'range', id: `${id}-slider`, min: sliderMin, max: sliderMax, step, 'aria-label': label });
        const field = element('input', { type: 'number', id, min, max, step: 'any', inputmode: 'decimal' });
        slider.addEventListener('input', () => {
            field.value = slider.value;
            this.forgive(id, field);
            this.app.set({ [label]: slider.value }, label);
        });
        slider.addEventListener('change', () => this.app.history.endGesture());
        field.addEventListener('change', () => {
            const problem = numberProblem(parameter, field.value);
            const takes = t(problem === 'whole' ? 'takesWhole' : 'takesRange', { min, max });
            this.complain(id, field, problem === null ? '' : takes);
            if (problem === null) {
                this.app.set({ [label]: String(Number(field.value)) }); // "1e2" and "3.0" are no whole numbers in a file
            }
        });
        const row = element('div', { class: 'row is-number' }, element('label', { for: id }, label), slider, field);
        return { row, inputs: [slider, field], show: (value) => {
            slider.value = value;
            if (document.activeElement !== field || Number(field.value) !== Number(value)) {
                field.value = value;
            }
            this.forgive(id, field);
        } };
    }

    /** @param {Parameter} parameter @param {string} id @returns {Control} */
    color({ label }, id) {
        const slot = slotOf(label);
        const name = t('pickFor', { label });
        const swatch = button('', () => this.app.arm(this.app.armed === slot ? null : slot),
            { id: `${id}-pick`, class: 'color-button', 'aria-pressed': 'false', 'aria-label': name, title: name });
        const field = element('input', { type: 'text', id, size: 8, maxlength: 11, spellcheck: 'false', autocomplete: 'off' });
        field.addEventListener('change', () => {
            const hex = hexOf(field.value);
            this.complain(id, field, hex === null ? t('takesColor') : '');
            if (hex !== null) {
                this.app.set({ [label]: hex });
            }
        });
        const count = element('span', { class: 'count', id: `${id}-count` });
        const row = element('div', { class: 'row is-color' }, element('label', { for: id }, label), count, swatch, field);
        return { row, inputs: [swatch, field], show: (value) => {
            swatch.style.backgroundColor = value;
            field.value = value;
            this.forgive(id, field);
        } };
    }

    /**
     * Tells below the control what it takes instead.
     * @param {string} id
     * @param {HTMLInputElement} field
     * @param {string} text
     */
    complain(id, field, text) {
        field.setAttribute('aria-invalid', String(text !== ''));
        this.note(id, text);
    }

    /**
     * Takes the complaint back, but no other note.
     * @param {string} id
     * @param {HTMLInputElement} field
     */
    forgive(id, field) {
        if (field.getAttribute('aria-invalid') === 'true') {
            this.complain(id, field, '');
        }
    }

    /** @param {string} id @param {string} text */
    note(id, text) {
        const note = document.getElementById(`${id}-note`);
        if (note) {
            note.textContent = text;
            note.hidden = text === '';
        }
    }

    /**
     * The hint stands in one line below the controls while pointer or focus is on one: so touch and keys see it too.
     * @param {HTMLElement} place
     * @param {Parameter} parameter
     */
    explain(place, { hint }) {
        if (hint) {
            const text = hint[currentLanguage()];
            place.title = text;
            for (const start of ['pointerenter', 'focusin']) {
                place.addEventListener(start, () => { byId('hint', HTMLElement).textContent = text; });
            }
        }
    }

    /**
     * Pointer or focus on a slot tints what it selects.
     * @param {HTMLElement} row
     * @param {string} label
     */
    tintFrom(row, label) {
        const slot = slotOf(label);
        if (!slot) {
            return;
        }
        onAttention(row, () => {
            this.ranged = label === slot.range ? slot : null;
            window.clearTimeout(this.tintTimer);
            this.tintTimer = window.setTimeout(() => void this.layers.showSlot(slot), kTintDelay);
        }, () => {
            this.ranged = null;
            window.clearTimeout(this.tintTimer);
            this.layers.clearTint();
        });
    }

    // ---- showing

    showState() {
        const state = this.app.state?.passes[this.app.pass];
        if (!state) {
            return;
        }
        const keyed = new Set(state.keyed);
        for (const [label, control] of this.controls) {
            const isKeyed = keyed.has(label);
            const wasKeyed = control.row.classList.contains('is-keyed');
            control.show(state.values[label] ?? '');
            control.row.classList.toggle('is-grey', state.enabled[label] === false);
            control.row.classList.toggle('is-keyed', isKeyed);
            for (const input of control.inputs) {
                input.disabled = state.enabled[label] === false || isKeyed;
            }
            if (isKeyed || wasKeyed) {
                this.note(control.inputs[control.inputs.length - 1].id, isKeyed ? t('keyed', { frame: this.app.frame }) : '');
            }
        }
        this.openStagesThatCameOn(state.values);
    }

    /** @param {Record<string, string>} values */
    openStagesThatCameOn(values) {
        for (const { group, members } of arranged(this.app.parameters).groups) {
            const slot = slotOf(members.find((each) => each.kind === 'color')?.label ?? '');
            const isOn = slot === null || slot.stage === 0 || values[slot.enable] === 'on';
            if (isOn && this.wasOn.get(group.label) !== true) {
                byId(`group-${group.id}`, HTMLDetailsElement).open = true;
            }
            this.wasOn.set(group.label, isOn);
        }
    }

    /**
     * What each slot and stage selects.
     * @param {Rendered} rendered
     */
    showCounts(rendered) {
        const { name = '', report = null } = rendered.passes[this.app.pass] ?? {};
        const ownNotes = rendered.notes.filter((note) => name === '' || note.startsWith(`'${name}': `));
        for (const [place, stage] of (report?.stages ?? []).entries()) {
            const words = document.getElementById(`stage-${place}-words`);
            if (words) {
                words.textContent = stageWords(stage);
            }
        }
        const colors = (report?.stages ?? []).flatMap((stage) => stage.colors ?? []);
        for (const parameter of this.app.parameters.filter((each) => each.kind === 'color')) {
            const color = colors.find((each) => each.label === parameter.label);
            const count = byId(`param-${parameter.id}-count`, HTMLElement);
            count.textContent = color ? t('pixels', { count: numberText(color.selected) }) : '';
            if (!this.app.state?.passes[this.app.pass]?.keyed.includes(parameter.label)) {
                this.note(`param-${parameter.id}`, color?.selected === 0 ? slotReason(parameter.label, ownNotes) : '');
            }
        }
    }

    showArmed() {
        for (const [label, control] of this.controls) {
            for (const input of control.inputs) {
                if (input instanceof HTMLButtonElement) {
                    const isArmed = this.app.armed !== null && this.app.armed.label === label;
                    input.setAttribute('aria-pressed', String(isArmed));
                }
            }
        }
    }
}
