// The text of texts, divs and shapes: "txt" is [html, font family, size, colour, highlight colour,
// weight, italic, underline, strikeout, horizontal alignment, vertical alignment, line height,
// indent, word spacing, letter spacing].

import { Prop } from './contracts';
import type { ElementView } from './elementview';
import { arr, bool, num, readColor, str } from './read';

const TEXT_COLOR = [67, 67, 67, 255];
const shownHtml = new WeakMap<ElementView, string>();
const TRANSPARENT = [0, 0, 0, 0];

// Qt alignment flags of the studio.
const ALIGN_LEFT = 1;
const ALIGN_RIGHT = 2;
const ALIGN_JUSTIFY = 8;
const ALIGN_TOP = 32;
const ALIGN_BOTTOM = 64;

export function horizontalAlign(flags: number): string {
    return flags & ALIGN_JUSTIFY ? 'justify' : flags & ALIGN_LEFT ? 'left' : flags & ALIGN_RIGHT ? 'right' : 'center';
}

export function verticalAlign(flags: number): string {
    return flags & ALIGN_TOP ? 'flex-start' : flags & ALIGN_BOTTOM ? 'flex-end' : 'center';
}

/** A family as the data writes it ("'Open Sans'" or a list), made safe to put in a style. */
export function fontFamily(raw: string): string {
    const cleaned = raw.replace(/[;{}<>\\]/g, '').trim();
    return cleaned === '' ? 'Arial' : cleaned;
}

/** Builds the two layers of a text: a flex column that aligns vertically, and the lines. */
export function createTextLayers(view: ElementView): void {
    const doc = view.node.ownerDocument;
    const layer = doc.createElement('div');
    layer.className = 'vetra-text';
    const style = layer.style;
    style.position = 'absolute';
    style.left = '0';
    style.top = '0';
    style.width = '100%';
    style.height = '100%';
    style.display = 'flex';
    style.flexDirection = 'column';
    style.boxSizing = 'border-box';
    const content = doc.createElement('div');
    content.style.flex = '0 0 auto';
    content.style.maxWidth = '100%';
    layer.appendChild(content);
    view.node.appendChild(layer);
    view.textLayer_ = layer;
    view.textContent = content;
}

export function applyText(view: ElementView, raw: unknown): void {
    const layer = view.textLayer_;
    const content = view.textContent;
    if (!layer || !content) {
        return;
    }
    const txt = arr(raw);
    const html = str(txt[0], '');
    // Compared with what was set, not with innerHTML, which the browser rewrites in its own form.
    if (!view.textReplaced_ && shownHtml.get(view) !== html) {
        shownHtml.set(view, html);
        content.innerHTML = html;
    }
    const base = view.base;
    base[Prop.FontSize] = num(txt[2], 18);
    readColor(txt[3], view.baseColor_, Prop.TextColor * 4, TEXT_COLOR);
    readColor(txt[4], view.baseColor_, Prop.HighlightColor * 4, TRANSPARENT);
    base[Prop.LineHeight] = num(txt[11], 120);
    base[Prop.TextIndent] = num(txt[12], 0);
    base[Prop.WordSpace] = num(txt[13], 0);
    base[Prop.LetterSpace] = num(txt[14], 0);

    const style = layer.style;
    style.fontFamily = fontFamily(str(txt[1], 'Arial'));
    style.fontWeight = txt[5] === 'bold' ? 'bold' : 'normal';
    style.fontStyle = bool(txt[6], false) ? 'italic' : 'normal';
    const decorations: string[] = [];
    if (bool(txt[7], false)) {
        decorations.push('underline');
    }
    if (bool(txt[8], false)) {
        decorations.push('line-through');
    }
    style.textDecoration = decorations.length > 0 ? decorations.join(' ') : 'none';
    style.textAlign = horizontalAlign(num(txt[9], 4));
    style.justifyContent = verticalAlign(num(txt[10], 128));
}
