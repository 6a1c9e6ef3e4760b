// When two labels of the effect are the same one, as the command has it.

/** @param {string} text */
export function trimmed(text) {
    return text.replace(/^[ \t]+|[ \t]+$/g, '');
}

/**
 * A key that is equal for equal labels: without case (of ASCII alone) and blanks around colons.
 * @param {string} label
 */
export function labelKey(label) {
    return label.split(':').map(trimmed).join(':').replace(/[A-Z]/g, (letter) => letter.toLowerCase());
}

/**
 * @param {string} a
 * @param {string} b
 */
export function sameLabel(a, b) {
    return labelKey(a) === labelKey(b);
}
