// Elements of a page. All texts are set as text, never as markup.

/**
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {Record<string, string>} attributes
 * @param {(Node | string)[]} children strings become text
 * @returns {HTMLElementTagNameMap[Tag]}
 */
export function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes))
        made.setAttribute(name, value);
    made.append(...children);
    return made;
}
