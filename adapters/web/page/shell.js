// The command line that does what the page shows.

import { patternOf } from './sequence.js';

/** @typedef {import('./settings.js').Settings} Settings */

/**
 * One word of a POSIX shell.
 * @param {string} text
 */
export function quoted(text) {
    return /^[A-Za-z0-9_./:@%+,=-]+$/.test(text) ? text : `'${text.replace(/'/g, `'\\''`)}'`;
}

/**
 * A file's name that is no option.
 * @param {string} name
 */
function fileWord(name) {
    return quoted(name.startsWith('-') ? `./${name}` : name);
}

/** @param {string} name */
export function softName(name) {
    return `${name.replace(/\.[^.]*$/, '')}-soft.png`;
}

/**
 * @param {Settings} settings
 * @param {string[]} names of the pictures
 * @param {number} frame of the picture where there is one
 * @param {string} settingsFile by which the settings go that options cannot say
 */
export function commandLine(settings, names, frame, settingsFile) {
    const pattern = patternOf(names);
    const input = pattern === null ? names.map(fileWord).join(' ') : fileWord(pattern);
    const output = names.length === 1 ? fileWord(softName(names[0]))
        : pattern === null ? 'soft --mkdir' : `${quoted(`soft/${pattern.replace(/\.[^.]*$/, '')}.png`)} --mkdir`;
    const words = ['kovalune render', input, '-o', output];
    if (settings.hasSections || settings.hasKeys || settings.entries.some((line) => isArea(line.label))) {
        words.push('--params', fileWord(settingsFile));
    } else {
        // Without a file the user's remembered defaults would count.
        words.push('--factory', ...settings.entries.map((line) => `--set ${quoted(`${line.label}=${line.value}`)}`));
    }
    if (settings.hasKeys && names.length === 1) {
        words.push('--frame', String(frame));
    }
    return words.join(' ');
}

/**
 * Where a pass works is no parameter, and a file's alone to say.
 * @param {string} label
 */
function isArea(label) {
    return /^(mask|mask by|invert mask|region)$/i.test(label);
}
