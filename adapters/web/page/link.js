// Settings as the part of an address after '#'. Parameters go by their ids, which never change, so that links stay short:
// "54=0&62=3264B4"; a key is "107_12=32", a pass "p=skin", and what the parameters do not have goes by its own name.

import { Settings } from './settings.js';
import { sameLabel } from './label.js';

/** @typedef {import('./ops.js').Parameter} Parameter */

const kNothing = '-'; // settings that say nothing; an address without any has none

/**
 * @param {Settings} settings
 * @param {Parameter[]} parameters
 * @returns {string} without the '#'
 */
export function fragmentOf(settings, parameters) {
    const pairs = new URLSearchParams();
    for (const line of settings.lines) {
        if (line.kind === 'section') {
            pairs.append('p', settings.passes[line.pass]);
        } else if (line.kind === 'setting') {
            const parameter = parameters.find((each) => isSettable(each) && sameLabel(each.label, line.label));
            const value = parameter?.kind === 'color' ? line.value.replace(/^#/, '') : line.value;
            const frame = line.frame === null ? '' : (parameter ? '_' : '@') + line.frame;
            pairs.append((parameter ? String(parameter.id) : line.label) + frame, value);
        }
    }
    return pairs.toString() || kNothing;
}

/**
 * @param {string} fragment with or without its '#'
 * @param {Parameter[]} parameters
 * @returns {string} the text of a settings file
 */
export function settingsTextOf(fragment, parameters) {
    const written = fragment.replace(/^#/, '');
    /** @type {string[]} */
    const lines = [];
    new URLSearchParams(written === kNothing ? '' : written).forEach((value, name) => {
        lines.push(lineOf(name, value, parameters));
    });
    return Settings.parse(lines.join('\n')).format();
}

/**
 * The settings file's line for one part of the address.
 * @param {string} name
 * @param {string} value
 * @param {Parameter[]} parameters
 */
function lineOf(name, value, parameters) {
    const byId = /^(\d+)(?:_(-?\d+))?$/.exec(name);
    const parameter = byId && parameters.find((each) => isSettable(each) && each.id === Number(byId[1]));
    if (name === 'p') {
        return `[Pass ${value}]`;
    }
    if (!byId || !parameter) {
        return `${name}=${value}`;
    }
    const isBareHex = parameter.kind === 'color' && /^[0-9a-f]{6}$/i.test(value);
    return `${parameter.label}${byId[2] === undefined ? '' : '@' + byId[2]}=${isBareHex ? '#' : ''}${value}`;
}

/** @param {Parameter} parameter */
function isSettable(parameter) {
    return !['group', 'group end', 'other'].includes(parameter.kind);
}
