// Cleaning of edited text before it leaves the page or enters the edit. Text HTML ends up in the
// project and in every export, so it may hold formatting and links but nothing that runs: no
// scripts, no frames or plug-ins, no event attributes, no script addresses.

import { isSafeUrl } from '../../player/read';

/** Elements removed with everything inside them. */
const DROPPED = new Set([
    'script',
    'style',
    'iframe',
    'frame',
    'frameset',
    'object',
    'embed',
    'applet',
    'link',
    'meta',
    'base',
    'template',
    'noscript',
    'form',
    'input',
    'button',
    'textarea',
    'select',
    'svg',
    'math',
    'audio',
    'video',
    'canvas',
    'portal',
]);

/** Attributes that hold an address. */
const URL_ATTRIBUTES = new Set(['href', 'src', 'action', 'formaction', 'xlink:href', 'background', 'poster', 'cite']);

/** Attributes that are never kept: they run code, embed documents or belong to the editing itself. */
const DROPPED_ATTRIBUTES = new Set(['srcdoc', 'srcset', 'contenteditable', 'autofocus']);

/** The placeholder put in an empty run so the caret can carry a format; it is never sent. */
export const CARET_MARK = '\u200b';

function cleanElement(element: Element): void {
    for (const attribute of Array.from(element.attributes)) {
        const name = attribute.name.toLowerCase();
        const value = attribute.value;
        if (
            name.startsWith('on') ||
            DROPPED_ATTRIBUTES.has(name) ||
            (URL_ATTRIBUTES.has(name) && !isSafeUrl(value)) ||
            (name === 'style' && /expression\s*\(|javascript:|behavior\s*:|-moz-binding/i.test(value))
        ) {
            element.removeAttribute(attribute.name);
        }
    }
}

function cleanChildren(parent: Node): void {
    let child = parent.firstChild;
    while (child) {
        const next = child.nextSibling;
        if (child.nodeType === Node.ELEMENT_NODE) {
            const element = child as Element;
            if (DROPPED.has(element.localName)) {
                parent.removeChild(element);
            } else {
                cleanElement(element);
                cleanChildren(element);
            }
        } else if (child.nodeType === Node.TEXT_NODE) {
            const text = child as Text;
            if (text.data.indexOf(CARET_MARK) >= 0) {
                text.data = text.data.split(CARET_MARK).join('');
            }
        } else {
            // Comments and processing instructions carry nothing the text needs.
            parent.removeChild(child);
        }
        child = next;
    }
}

/**
 * The HTML with everything that could run taken out. It is parsed in an inert template, so
 * nothing in it loads or runs while it is being cleaned.
 */
export function sanitizeHtml(html: string, doc: Document = document): string {
    const template = doc.createElement('template');
    template.innerHTML = html;
    cleanChildren(template.content);
    return template.innerHTML;
}
