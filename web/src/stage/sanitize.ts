// Project text is HTML written by authors or pasted from anywhere. On the stage it is shown, never
// run: scripts, frames, handlers and script URLs are taken out before the renderer sets it as
// innerHTML. (The page's content security policy forbids inline script as a second wall.)

const DROPPED_ELEMENTS = new Set([
    'script',
    'iframe',
    'frame',
    'frameset',
    'object',
    'embed',
    'applet',
    'base',
    'meta',
    'link',
    'style',
    'form',
    'noscript',
    'template',
    'portal',
]);

const URL_ATTRIBUTES = new Set(['href', 'src', 'xlink:href', 'action', 'formaction', 'poster', 'background', 'srcset']);

function unsafeUrl(value: string): boolean {
    const compact = value.replace(/[\u0000-\u0020]+/g, '').toLowerCase();
    if (compact.startsWith('data:')) {
        return !/^data:image\/(png|gif|jpe?g|webp|bmp);/.test(compact);
    }
    return /^(javascript|vbscript|livescript|mhtml):/.test(compact);
}

function clean(node: Element): void {
    for (const child of Array.from(node.children)) {
        if (DROPPED_ELEMENTS.has(child.localName.toLowerCase())) {
            child.remove();
            continue;
        }
        for (const attribute of Array.from(child.attributes)) {
            const name = attribute.name.toLowerCase();
            if (name.startsWith('on') || name === 'srcdoc' || name === 'formaction') {
                child.removeAttribute(attribute.name);
            } else if (URL_ATTRIBUTES.has(name) && unsafeUrl(attribute.value)) {
                child.removeAttribute(attribute.name);
            }
        }
        clean(child);
    }
}

/** The HTML with everything that could run or load a document removed; plain text passes unchanged. */
export function sanitizeHtml(html: string): string {
    if (!/[<&]/.test(html)) {
        return html;
    }
    // A parsed document runs nothing and loads nothing.
    const doc = new DOMParser().parseFromString('<!DOCTYPE html><body>' + html, 'text/html');
    clean(doc.body);
    return doc.body.innerHTML;
}

/** Cleans the HTML of a "txt" array in place. */
export function sanitizeTextBlock(txt: unknown): void {
    if (Array.isArray(txt) && typeof txt[0] === 'string') {
        txt[0] = sanitizeHtml(txt[0]);
    }
}
