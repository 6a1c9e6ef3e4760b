// Which frame a picture's name says it is, and the order of several.

const kNumber = /(?<![A-Za-z0-9])-\d+|\d+/g; // "-005" after a point is frame -5; the "-" of "cel-005" joins words

/**
 * @template T
 * @typedef {{item: T, name: string, frame: number}} Framed
 */

/** @param {string} name */
function stemOf(name) {
    return name.replace(/\.[^.]*$/, '');
}

/**
 * Sorted by the one number in which the names differ; where they differ in more, by the last number of each.
 * @template {{name: string}} T
 * @param {readonly T[]} items
 * @returns {Framed<T>[]}
 */
export function framesOf(items) {
    const place = differingPlace(items.map((item) => item.name));
    const frames = items.map((item) => {
        const numbers = stemOf(item.name).match(kNumber) ?? [];
        const number = Number(numbers[place ?? numbers.length - 1] ?? 0);
        return { item, name: item.name, frame: Number.isSafeInteger(number) ? number : 0 };
    });
    const byName = new Intl.Collator('en', { numeric: true });
    return frames.sort((a, b) => (place === null ? 0 : a.frame - b.frame) || byName.compare(a.name, b.name));
}

/**
 * Which number of the names counts frames; null where none does alone.
 * @param {string[]} names
 */
function differingPlace(names) {
    const rest = new Set(names.map((name) => name.replace(kNumber, '#')));
    if (names.length < 2 || rest.size !== 1) {
        return null;
    }
    const numbers = names.map((name) => stemOf(name).match(kNumber) ?? []);
    const differing = numbers[0].map((_, place) => place)
        .filter((place) => numbers.some((each) => each[place] !== numbers[0][place]));
    return differing.length === 1 ? differing[0] : null;
}

/**
 * "cel.####.png" for the command, the sign counting as a digit; null where the names are no row of that form.
 * @param {string[]} names
 */
export function patternOf(names) {
    const place = differingPlace(names);
    if (place === null) {
        return null;
    }
    const numbers = names.map((name) => (stemOf(name).match(kNumber) ?? [])[place]);
    const digits = Math.min(...numbers.map((number) => number.length));
    const stem = stemOf(names[0]);
    const isRow = numbers.every((number) => number.length === digits || /^-?[1-9]/.test(number));
    if (!isRow || /%|##/.test(stem)) {
        return null;
    }
    const mark = digits < 2 ? '%d' : '#'.repeat(digits);
    let at = -1;
    return stem.replace(kNumber, (number) => (++at === place ? mark : number)) + names[0].slice(stem.length);
}
