// What every part of the page needs of the document.

/**
 * The element with this id; the page is wrong without it.
 * @template {HTMLElement} T
 * @param {string} id
 * @param {{new (): T}} type
 * @returns {T}
 */
export function byId(id, type) {
    const found = document.getElementById(id);
    if (!(found instanceof type)) {
        throw new Error(`the page has no ${type.name} '${id}'`);
    }
    return found;
}

/**
 * A new element. True is an attribute without a value; null and false leave it out.
 * @template {keyof HTMLElementTagNameMap} K
 * @param {K} tag
 * @param {Record<string, string | number | boolean | null>} [attributes]
 * @param {...(Node | string)} children
 * @returns {HTMLElementTagNameMap[K]}
 */
export function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (value !== null && value !== false) {
            made.setAttribute(name, value === true ? '' : String(value));
        }
    }
    made.append(...children);
    return made;
}

/**
 * A button that cannot send a form.
 * @param {string} text
 * @param {() => void} press
 * @param {Record<string, string | number | boolean | null>} [attributes]
 */
export function button(text, press, attributes = {}) {
    const made = element('button', { type: 'button', ...attributes }, text);
    made.addEventListener('click', press);
    return made;
}

/**
 * Calls once it has been quiet for a while; the last arguments count.
 * @template {unknown[]} A
 * @param {(...args: A) => void} call
 * @param {number} milliseconds
 * @returns {(...args: A) => void}
 */
export function debounced(call, milliseconds) {
    let timer = 0;
    return (...args) => {
        window.clearTimeout(timer);
        timer = window.setTimeout(() => call(...args), milliseconds);
    };
}

/**
 * Whether keys belong to what is typed there.
 * @param {EventTarget | null} target
 */
export function isTyping(target) {
    return target instanceof HTMLSelectElement || target instanceof HTMLTextAreaElement ||
        (target instanceof HTMLInputElement && ['text', 'number', 'color'].includes(target.type));
}

/**
 * Calls while the pointer is over an element, or the focus of the keyboard in it: not that of a finger or a click, which stays
 * long after the hand has gone elsewhere.
 * @param {HTMLElement} place
 * @param {() => void} enter
 * @param {() => void} leave
 */
export function onAttention(place, enter, leave) {
    place.addEventListener('pointerenter', enter);
    place.addEventListener('pointerleave', leave);
    place.addEventListener('focusin', (event) => {
        if (event.target instanceof Element && event.target.matches(':focus-visible')) {
            enter();
        }
    });
    place.addEventListener('focusout', leave);
}

/**
 * Hands a file to the visitor.
 * @param {Blob} blob
 * @param {string} name
 */
export function download(blob, name) {
    const url = URL.createObjectURL(blob);
    element('a', { href: url, download: name }).click();
    window.setTimeout(() => URL.revokeObjectURL(url), 60000); // some browsers read it late
}

/**
 * Whether the text is on the clipboard. Pages from disk have no clipboard of the newer kind.
 * @param {string} text
 */
export async function copyText(text) {
    try {
        await navigator.clipboard.writeText(text);
        return true;
    } catch {
        const field = element('textarea', { class: 'offscreen', 'aria-hidden': 'true' });
        const focused = document.activeElement;
        const open = document.querySelector('dialog[open]') ?? document.body; // what a modal dialog leaves usable
        field.value = text;
        open.append(field);
        field.select();
        const isDone = document.execCommand('copy');
        field.remove();
        if (focused instanceof HTMLElement) {
            focused.focus();
        }
        return isDone;
    }
}
