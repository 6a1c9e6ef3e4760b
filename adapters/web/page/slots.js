// The colour slots of the effect, and the labels by which the page knows them.

/** @typedef {{stage: number, color: number, label: string, enable: string, range: string}} Slot */

export const kViewLabel = 'View';
export const kColorsOfBase = 4;
export const kProcesses = 4;

/** @type {readonly Slot[]} */
export const kSlots = [
    ...Array.from({ length: kColorsOfBase }, (_, color) => ({
        stage: 0, color, label: `Color ${color + 1}`, enable: `Enable ${color + 1}`, range: `Color ${color + 1} Range`
    })),
    ...Array.from({ length: kProcesses }, (_, place) => ({
        stage: place + 1, color: 0, label: `${place + 1} : Color`, enable: `${place + 1} : Enable Process`,
        range: `${place + 1} : Color Range`
    }))
];

/**
 * The slot that a control is of: its colour, its check box or its range.
 * @param {string} label
 */
export function slotOf(label) {
    return kSlots.find((slot) => [slot.label, slot.enable, slot.range].includes(label)) ?? null;
}
