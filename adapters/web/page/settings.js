// A settings file as the page edits it: its lines in their order, so that remarks and keys survive. Values never change in
// place: each edit makes new Settings, which undo can hold on to. Whether labels and values are right is the engine's to say.

import { sameLabel, trimmed } from './label.js';

/**
 * @typedef {object} Line
 * @property {'setting' | 'section' | 'text'} kind 'text' is a remark, a blank line, or what only the engine can refuse
 * @property {number} pass whose it is; kCommon above the first section
 * @property {string} text of a 'text'; else empty
 * @property {string} label of a setting, as it was written
 * @property {number | null} frame of a key
 * @property {string} value
 */

const kCommon = -1;
const kVersionLine = /^\[version=\s*[12]\.0\s*\]$/i;
const kPassLine = /^\[pass (.*)\]$/is;

export class Settings {
    /**
     * @param {readonly Line[]} lines
     * @param {readonly string[]} passes names of the sections
     */
    constructor(lines, passes) {
        this.lines = lines;
        this.passes = passes;
    }

    /** @param {string} text */
    static parse(text) {
        /** @type {Line[]} */
        const lines = [];
        /** @type {string[]} */
        const passes = [];
        let pass = kCommon;
        for (const raw of text.replace(/^\uFEFF/, '').split(/\r?\n/)) {
            const inner = trimmed(raw);
            const section = kPassLine.exec(inner);
            if (section) {
                const name = trimmed(section[1]);
                pass = passes.indexOf(name);
                if (pass < 0) {
                    pass = passes.push(name) - 1;
                }
                lines.push(sectionLine(pass));
            } else if (!kVersionLine.test(inner)) {
                lines.push(lineOf(inner, pass));
            }
        }
        return new Settings(lines, passes);
    }

    /** The text of the settings file. */
    format() {
        const isNewer = this.hasSections || this.hasKeys;
        const lines = this.lines.map((line) => this.textOf(line));
        return (`[Version=${isNewer ? '2.0' : '1.0'}]\n` + lines.join('\n')).replace(/\n+$/, '') + '\n';
    }

    /** @param {Line} line */
    textOf(line) {
        if (line.kind === 'section') {
            return `[Pass ${this.passes[line.pass]}]`;
        }
        return line.kind === 'text' ? line.text : `${line.label}${line.frame === null ? '' : '@' + line.frame}=${line.value}`;
    }

    get hasSections() {
        return this.passes.length > 0;
    }

    get hasKeys() {
        return this.lines.some((line) => line.frame !== null);
    }

    /** The settings alone, without remarks. */
    get entries() {
        return this.lines.filter((line) => line.kind === 'setting');
    }

    get passCount() {
        return Math.max(1, this.passes.length);
    }

    /**
     * With these values in a pass's own lines. A parameter with keys there stays as it is.
     * @param {number} pass
     * @param {Record<string, string>} values
     */
    with(pass, values) {
        const own = this.hasSections ? pass : kCommon;
        let lines = [...this.lines];
        for (const [label, value] of Object.entries(values)) {
            lines = withValue(lines, own, label, value);
        }
        return new Settings(lines, this.passes);
    }

    /** With one more pass at the end. The lines of a file without sections become its first pass. */
    withNextPass() {
        let lines = [...this.lines];
        let passes = [...this.passes];
        if (!this.hasSections) {
            const first = lines.findIndex((line) => line.kind === 'setting');
            const start = first < 0 ? lines.length : first;
            lines = lines.map((line, place) => (place < start ? line : { ...line, pass: 0 }));
            lines.splice(start, 0, sectionLine(0));
            passes = ['1'];
        }
        let number = passes.length + 1;
        while (passes.includes(String(number))) {
            ++number;
        }
        const pass = passes.push(String(number)) - 1;
        while (lines.length > 0 && isBlank(lines[lines.length - 1])) {
            lines.pop();
        }
        lines.push(lineOf('', pass - 1), sectionLine(pass));
        return new Settings(lines, passes);
    }

    /** @param {number} pass */
    withoutPass(pass) {
        const lines = this.lines.filter((line) => line.pass !== pass)
            .map((line) => (line.pass > pass ? { ...line, pass: line.pass - 1 } : line));
        return new Settings(lines, this.passes.filter((_, place) => place !== pass));
    }
}

/** @param {number} pass @returns {Line} */
function sectionLine(pass) {
    return { kind: 'section', pass, text: '', label: '', frame: null, value: '' };
}

/** @param {Line} line */
function isBlank(line) {
    return line.kind === 'text' && trimmed(line.text) === '';
}

/**
 * @param {string} inner
 * @param {number} pass
 * @returns {Line}
 */
function lineOf(inner, pass) {
    const equals = inner.indexOf('=');
    if (equals < 0 || /^[;#[]/.test(inner)) {
        return { kind: 'text', pass, text: inner, label: '', frame: null, value: '' };
    }
    const name = trimmed(inner.slice(0, equals));
    const key = /^(.*?)[ \t]*@[ \t]*(-?\d+)$/.exec(name);
    return {
        kind: 'setting', pass, text: '', label: key ? key[1] : name, frame: key ? Number(key[2]) : null,
        value: trimmed(inner.slice(equals + 1))
    };
}

/**
 * @param {Line} line
 * @param {number} pass
 * @param {string} label
 */
function isKeyOf(line, pass, label) {
    return line.kind === 'setting' && line.pass === pass && line.frame !== null && sameLabel(line.label, label);
}

/**
 * @param {Line[]} lines
 * @param {number} pass
 * @param {string} label
 * @param {string} value
 */
function withValue(lines, pass, label, value) {
    if (lines.some((line) => isKeyOf(line, pass, label))) {
        return lines;
    }
    // A colour may stand there by its components, which the whole colour would set again: an error.
    const components = ['r', 'g', 'b'].map((each) => `${label}.${each}`);
    const left = lines.filter((line) => line.kind !== 'setting' || line.pass !== pass ||
        !components.some((each) => sameLabel(line.label, each)));
    const at = left.findIndex((line) => line.kind === 'setting' && line.pass === pass && sameLabel(line.label, label));
    if (at >= 0) {
        left[at] = { ...left[at], value };
        return left;
    }
    left.splice(endOf(left, pass), 0, { kind: 'setting', pass, text: '', label, frame: null, value });
    return left;
}

/**
 * Where a pass's next line goes: after its last setting, so that remarks above the next section stay there.
 * @param {Line[]} lines
 * @param {number} pass
 */
function endOf(lines, pass) {
    for (let place = lines.length - 1; place >= 0; --place) {
        if (lines[place].pass === pass && lines[place].kind !== 'text') {
            return place + 1;
        }
    }
    const firstSection = lines.findIndex((line) => line.kind === 'section');
    return firstSection < 0 ? lines.length : firstSection;
}
