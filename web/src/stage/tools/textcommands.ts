// The editor commands the studio's text tools send while a text is edited on the stage, run on the
// selection of the edit, and the format at the caret that the text tools show in return.
//
// Toggles, alignment, lists and indents are the browser's own editing commands. Sizes, families,
// colours and spacings have no usable browser command (fontSize knows only seven steps), so they
// are set as inline styles on spans around the selected text; line height and indent belong to
// the paragraphs the selection touches.

import { CARET_MARK, sanitizeHtml } from './sanitize';

/** Commands the browser runs as they are, by the lower-case name the studio may send. */
const NATIVE: { readonly [name: string]: string } = {
    bold: 'bold',
    italic: 'italic',
    underline: 'underline',
    strikethrough: 'strikeThrough',
    superscript: 'superscript',
    subscript: 'subscript',
    justifyleft: 'justifyLeft',
    justifycenter: 'justifyCenter',
    justifyright: 'justifyRight',
    justifyfull: 'justifyFull',
    indent: 'indent',
    outdent: 'outdent',
    insertunorderedlist: 'insertUnorderedList',
    insertorderedlist: 'insertOrderedList',
    removeformat: 'removeFormat',
    unlink: 'unlink',
    copy: 'copy',
    cut: 'cut',
    delete: 'delete',
    undo: 'undo',
    redo: 'redo',
};

/** Commands that set an inline style on the selected text, and the CSS property they set. */
const INLINE: { readonly [name: string]: string } = {
    fontname: 'font-family',
    fontsize: 'font-size',
    forecolor: 'color',
    backcolor: 'background-color',
    hilitecolor: 'background-color',
    letterspace: 'letter-spacing',
    wordspace: 'word-spacing',
};

/** Commands that set a style on the paragraphs of the selection. */
const BLOCK: { readonly [name: string]: string } = {
    lineheight: 'line-height',
    textindent: 'text-indent',
};

const BLOCK_TAGS = new Set(['p', 'div', 'li', 'h1', 'h2', 'h3', 'h4', 'h5', 'h6', 'blockquote', 'pre']);

function selectionIn(edit: HTMLElement): Range | null {
    const selection = edit.ownerDocument.getSelection();
    if (!selection || selection.rangeCount === 0) {
        return null;
    }
    const range = selection.getRangeAt(0);
    return edit.contains(range.commonAncestorContainer) ? range : null;
}

function select(edit: HTMLElement, range: Range): void {
    const selection = edit.ownerDocument.getSelection();
    if (selection) {
        selection.removeAllRanges();
        selection.addRange(range);
    }
}

export function selectAll(edit: HTMLElement): void {
    const range = edit.ownerDocument.createRange();
    range.selectNodeContents(edit);
    select(edit, range);
}

/** A length value as the studio sends it: "14px", or a bare number meaning pixels. */
function cssLength(value: string): string {
    const trimmed = value.trim();
    return /^-?\d+(\.\d+)?$/.test(trimmed) ? trimmed + 'px' : trimmed;
}

/** The text nodes the range covers, split so that each lies wholly inside it. */
function coveredTextNodes(range: Range): Text[] {
    const doc = range.startContainer.ownerDocument ?? document;
    if (range.startContainer.nodeType === Node.TEXT_NODE && range.startOffset > 0) {
        const start = range.startContainer as Text;
        const endsHere = range.endContainer === start;
        const endOffset = range.endOffset;
        const rest = start.splitText(range.startOffset);
        range.setStart(rest, 0);
        if (endsHere) {
            range.setEnd(rest, endOffset - start.length);
        }
    }
    if (range.endContainer.nodeType === Node.TEXT_NODE) {
        const end = range.endContainer as Text;
        if (range.endOffset < end.length) {
            end.splitText(range.endOffset);
        }
    }
    const nodes: Text[] = [];
    const root = range.commonAncestorContainer;
    if (root.nodeType === Node.TEXT_NODE) {
        return (root as Text).length > 0 ? [root as Text] : [];
    }
    const walker = doc.createTreeWalker(root, NodeFilter.SHOW_TEXT);
    for (let node = walker.nextNode(); node; node = walker.nextNode()) {
        const text = node as Text;
        if (text.length > 0 && range.intersectsNode(text)) {
            nodes.push(text);
        }
    }
    return nodes;
}

function styledSpan(doc: Document, property: string, value: string): HTMLSpanElement {
    const span = doc.createElement('span');
    span.style.setProperty(property, value);
    return span;
}

function applyInlineStyle(edit: HTMLElement, property: string, value: string): void {
    const range = selectionIn(edit);
    const doc = edit.ownerDocument;
    if (!range) {
        return;
    }
    if (range.collapsed) {
        // Nothing selected: what is typed next takes the format, through an invisible placeholder.
        const span = styledSpan(doc, property, value);
        const mark = doc.createTextNode(CARET_MARK);
        span.appendChild(mark);
        range.insertNode(span);
        const caret = doc.createRange();
        caret.setStart(mark, 1);
        caret.collapse(true);
        select(edit, caret);
        return;
    }
    const spans: HTMLSpanElement[] = [];
    for (const text of coveredTextNodes(range)) {
        const parent = text.parentNode;
        if (!parent) {
            continue;
        }
        const span = styledSpan(doc, property, value);
        parent.replaceChild(span, text);
        span.appendChild(text);
        spans.push(span);
    }
    const first = spans[0];
    const last = spans[spans.length - 1];
    if (first && last) {
        const selected = doc.createRange();
        selected.setStartBefore(first);
        selected.setEndAfter(last);
        select(edit, selected);
    }
}

/** The paragraph holding a node; the edit's children are wrapped in one when they have none. */
function blockOf(edit: HTMLElement, node: Node): HTMLElement {
    for (let n: Node | null = node; n && n !== edit; n = n.parentNode) {
        if (n.nodeType === Node.ELEMENT_NODE && BLOCK_TAGS.has((n as Element).localName)) {
            return n as HTMLElement;
        }
    }
    const wrapper = edit.ownerDocument.createElement('div');
    while (edit.firstChild) {
        wrapper.appendChild(edit.firstChild);
    }
    edit.appendChild(wrapper);
    return wrapper;
}

function applyBlockStyle(edit: HTMLElement, property: string, value: string): void {
    const range = selectionIn(edit);
    if (!range) {
        return;
    }
    const blocks = new Set<HTMLElement>();
    const texts = range.collapsed ? [] : coveredTextNodes(range);
    for (const node of texts.length > 0 ? texts : [range.startContainer]) {
        blocks.add(blockOf(edit, node));
    }
    blocks.forEach((block) => block.style.setProperty(property, value));
}

function setListStyle(edit: HTMLElement, type: string): void {
    const range = selectionIn(edit);
    if (!range) {
        return;
    }
    const lists = new Set<HTMLElement>();
    for (let n: Node | null = range.startContainer; n && n !== edit; n = n.parentNode) {
        if (n.nodeType === Node.ELEMENT_NODE && /^(ul|ol)$/.test((n as Element).localName)) {
            lists.add(n as HTMLElement);
        }
    }
    edit.querySelectorAll('ul, ol').forEach((list) => {
        if (range.intersectsNode(list)) {
            lists.add(list as HTMLElement);
        }
    });
    lists.forEach((list) => list.style.setProperty('list-style-type', type));
}

/**
 * Runs one editor command on the edit; false for a command it does not know. The edit must hold
 * the focus; without a selection inside it, the command acts on all of its text.
 */
export function runEditorCommand(edit: HTMLElement, name: string, value: string): boolean {
    const doc = edit.ownerDocument;
    const key = name.toLowerCase();
    if (key === 'selectall') {
        selectAll(edit);
        return true;
    }
    if (key === 'mcesetcontent') {
        edit.innerHTML = sanitizeHtml(value, doc);
        return true;
    }
    if (!selectionIn(edit)) {
        selectAll(edit);
    }
    const native = NATIVE[key];
    if (native) {
        doc.execCommand('styleWithCSS', false, 'false');
        doc.execCommand(native, false);
        return true;
    }
    switch (key) {
        case 'inserttext':
            doc.execCommand('insertText', false, value);
            return true;
        case 'pastehtml':
        case 'inserthtml':
        case 'mceinsertcontent':
            doc.execCommand('insertHTML', false, sanitizeHtml(value, doc));
            return true;
        case 'changeliststyletype':
            setListStyle(edit, value);
            return true;
        default:
            break;
    }
    const inline = INLINE[key];
    if (inline) {
        applyInlineStyle(edit, inline, /spac|size/.test(inline) ? cssLength(value) : value);
        return true;
    }
    const block = BLOCK[key];
    if (block) {
        applyBlockStyle(edit, block, block === 'text-indent' ? cssLength(value) : value);
        return true;
    }
    return false;
}

export interface Rgba {
    r: number;
    g: number;
    b: number;
    a: number;
}

/** The format at the caret, in the keys the studio's text tools read. */
export type CaretFormat = {
    foreground: Rgba;
    background: Rgba;
    bold: boolean;
    italic: boolean;
    underline: boolean;
    strikethrough: boolean;
    subscript: boolean;
    superscript: boolean;
    fontname: string;
    fontsize: number;
    /** 1 left, 2 centre, 4 right, 8 justified. */
    alignment: number;
    cancopy: boolean;
};

/** A computed CSS colour, "rgb(...)" or "rgba(...)", with alpha from 0 to 255. */
export function parseCssColor(text: string): Rgba {
    const match = /rgba?\(\s*([\d.]+)[\s,]+([\d.]+)[\s,]+([\d.]+)(?:[\s,/]+([\d.]+%?))?\s*\)/.exec(text);
    if (!match) {
        return { r: 0, g: 0, b: 0, a: 0 };
    }
    const alphaText = match[4];
    let alpha = 1;
    if (alphaText !== undefined) {
        alpha = alphaText.endsWith('%') ? parseFloat(alphaText) / 100 : parseFloat(alphaText);
    }
    return {
        r: Math.round(Number(match[1])),
        g: Math.round(Number(match[2])),
        b: Math.round(Number(match[3])),
        a: Math.round(Math.max(0, Math.min(1, alpha)) * 255),
    };
}

const ALIGNMENT: { readonly [css: string]: number } = { left: 1, start: 1, center: 2, right: 4, end: 4, justify: 8 };

/**
 * The format where the selection ends, read from the computed styles, so formats the element
 * gives its whole text count as well as those inside the edited HTML. `root` is the outermost
 * node whose styles still belong to the text (the element's text layer).
 */
export function readCaretFormat(edit: HTMLElement, root: HTMLElement): CaretFormat {
    const doc = edit.ownerDocument;
    const view = doc.defaultView as Window;
    const selection = doc.getSelection();
    const range = selectionIn(edit);
    // A selection tells the format of its first character, a caret that of the text before it.
    let node: Node = edit;
    if (range && !range.collapsed) {
        const walker = doc.createTreeWalker(range.commonAncestorContainer, NodeFilter.SHOW_TEXT);
        for (let n = walker.currentNode.nodeType === Node.TEXT_NODE ? walker.currentNode : walker.nextNode(); n; n = walker.nextNode()) {
            if ((n as Text).length > 0 && range.intersectsNode(n)) {
                node = n;
                break;
            }
        }
    } else if (range) {
        const container = range.startContainer;
        const before = container.nodeType === Node.ELEMENT_NODE ? container.childNodes[range.startOffset - 1] : undefined;
        node = before ?? container;
    }
    const element = (node.nodeType === Node.ELEMENT_NODE ? node : node.parentNode) as HTMLElement;
    const style = view.getComputedStyle(element);
    let underline = false;
    let strikethrough = false;
    let subscript = false;
    let superscript = false;
    let background: Rgba = { r: 0, g: 0, b: 0, a: 0 };
    let alignment = 0;
    // Decorations do not inherit in CSS: each ancestor up to the text layer may draw its own.
    const top = root.contains(edit) ? root : edit;
    for (let n: Node | null = element; n; n = n.parentNode) {
        const e = n as HTMLElement;
        const s = view.getComputedStyle(e);
        const line = s.textDecorationLine || s.textDecoration;
        underline = underline || line.indexOf('underline') >= 0;
        strikethrough = strikethrough || line.indexOf('line-through') >= 0;
        subscript = subscript || e.localName === 'sub' || s.verticalAlign === 'sub';
        superscript = superscript || e.localName === 'sup' || s.verticalAlign === 'super';
        if (background.a === 0) {
            background = parseCssColor(s.backgroundColor);
        }
        if (alignment === 0 && s.display !== 'inline') {
            alignment = ALIGNMENT[s.textAlign] ?? 0;
        }
        if (e === top) {
            break;
        }
    }
    const weight = style.fontWeight;
    return {
        foreground: parseCssColor(style.color),
        background,
        bold: weight === 'bold' || weight === 'bolder' || parseInt(weight, 10) >= 600,
        italic: style.fontStyle === 'italic' || style.fontStyle === 'oblique',
        underline,
        strikethrough,
        subscript,
        superscript,
        fontname: style.fontFamily.replace(/["']/g, ''),
        fontsize: Math.round(parseFloat(style.fontSize) || 0),
        alignment: alignment || 1,
        cancopy: selection !== null && !selection.isCollapsed && selection.rangeCount > 0 && edit.contains(selection.getRangeAt(0).commonAncestorContainer),
    };
}
