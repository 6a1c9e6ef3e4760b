// The page's words in the visitor's language. Labels of controls are the effect's own and stay as they are.

import { texts as en } from './texts.en.js';
import { texts as ja } from './texts.ja.js';

/** @typedef {keyof typeof en} TextKey */
/** @typedef {'en' | 'ja'} Language */

/** @type {Record<Language, Record<TextKey, string>>} */
const kTexts = { en, ja };
const kStored = 'kovalune-language';

/** @type {Language} */
let language = startLanguage();

/** @returns {Language} */
function startLanguage() {
    let stored = null;
    try {
        stored = localStorage.getItem(kStored);
    } catch {
        // A page that may store nothing forgets the choice.
    }
    return (stored ?? navigator.language).startsWith('ja') ? 'ja' : 'en';
}

export function currentLanguage() {
    return language;
}

/** @param {Language} chosen */
export function chooseLanguage(chosen) {
    language = chosen;
    try {
        localStorage.setItem(kStored, chosen);
    } catch {
        // as above
    }
}

/**
 * @param {TextKey} key
 * @param {Record<string, string | number>} [values] for the {names} in the text
 */
export function t(key, values = {}) {
    return kTexts[language][key].replace(/\{(\w+)\}/g, (whole, name) => String(values[name] ?? whole));
}

/** @param {number} value @param {number} [digits] after the point */
export function numberText(value, digits = 0) {
    return value.toLocaleString(language, { minimumFractionDigits: digits, maximumFractionDigits: digits });
}

/**
 * Fills in the words of the document: data-text for what stands in an element, data-label for its name where it shows none,
 * data-tip for its tooltip.
 */
export function applyTexts() {
    document.documentElement.lang = language;
    const told = /** @type {NodeListOf<HTMLElement>} */ (document.querySelectorAll('[data-text], [data-label], [data-tip]'));
    for (const each of Array.from(told)) {
        const { text, label, tip } = each.dataset;
        if (text) {
            each.textContent = t(/** @type {TextKey} */ (text));
        }
        if (label) {
            each.setAttribute('aria-label', t(/** @type {TextKey} */ (label)));
        }
        if (tip) {
            each.setAttribute('title', t(/** @type {TextKey} */ (tip)));
        }
    }
}
