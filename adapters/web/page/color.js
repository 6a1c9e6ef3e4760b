// Colours as #RRGGBB, the one form that the page writes.

/**
 * "#3264B4" of "3264b4", "#3264b4" or "50,100,180"; null for anything else.
 * @param {string} text
 * @returns {string | null}
 */
export function hexOf(text) {
    const hex = /^\s*#?([0-9a-f]{6})\s*$/i.exec(text);
    if (hex) {
        return '#' + hex[1].toUpperCase();
    }
    const numbers = /^\s*(\d{1,3})\s*,\s*(\d{1,3})\s*,\s*(\d{1,3})\s*$/.exec(text)?.slice(1).map(Number);
    return numbers?.every((each) => each <= 255) ? hexOfBytes(numbers[0], numbers[1], numbers[2]) : null;
}

/**
 * @param {number} red
 * @param {number} green
 * @param {number} blue
 */
export function hexOfBytes(red, green, blue) {
    return '#' + [red, green, blue].map((each) => each.toString(16).padStart(2, '0')).join('').toUpperCase();
}

/**
 * @param {string} hex
 * @returns {[number, number, number]}
 */
export function bytesOf(hex) {
    const byte = (/** @type {number} */ place) => parseInt(hex.slice(place, place + 2), 16);
    return [byte(1), byte(3), byte(5)];
}
