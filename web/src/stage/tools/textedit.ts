// Editing the text of an element in place: the text layer of the element's view becomes editable,
// so what is typed shows in the element's own font, size and alignment, turned and zoomed with it.
// The studio hears that editing began (and where its text tools belong), is told the format at
// the caret whenever it changes, and runs its editor commands here. Escape or a press outside the
// text ends the edit: changed text goes to the studio as one command, cleaned of anything that
// could run. Pasted text arrives as plain text; the studio's own paste command brings HTML.

import type { StageElement, StageHost, TextEditTool } from '../contracts';
import { arr, bool, num, str } from '../../player/read';
import { type TextFormat, textRecord } from './records';
import { sanitizeHtml } from './sanitize';
import { type CaretFormat, readCaretFormat, runEditorCommand, selectAll } from './textcommands';

/** Shortcuts of the studio's text tools: an editor command, its modifiers and its key. */
interface Shortcut {
    readonly cmd: string;
    readonly modifiers: string;
    readonly key: string;
}

let shortcuts: Shortcut[] = [];

function modifierText(meta: boolean, alt: boolean, shift: boolean): string {
    return (meta ? 'm' : '') + (alt ? 'a' : '') + (shift ? 's' : '');
}

/**
 * Takes the studio's shortcut table (a JSON array of {"cmd", "pattern"}, patterns such as
 * "meta+shift+l"), which applies to every text edit from then on. Unreadable entries are skipped.
 */
export function setTextEditShortcuts(json: string): void {
    let list: unknown = [];
    try {
        list = JSON.parse(json);
    } catch {
        list = [];
    }
    const table: Shortcut[] = [];
    for (const item of arr(list)) {
        const entry = item as { cmd?: unknown; pattern?: unknown };
        const cmd = str(entry.cmd, '');
        const parts = str(entry.pattern, '').toLowerCase().split('+');
        const key = parts.pop() ?? '';
        if (cmd === '' || key === '') {
            continue;
        }
        // The studio writes Control as "meta"; either key counts, as on every platform one of them is meant.
        table.push({
            cmd,
            key,
            modifiers: modifierText(
                parts.some((p) => p === 'meta' || p === 'ctrl'),
                parts.indexOf('alt') >= 0,
                parts.indexOf('shift') >= 0,
            ),
        });
    }
    shortcuts = table;
}

/** The editable text of an element's view, or null when it shows none. */
export function textContentOf(element: StageElement): HTMLElement | null {
    return element.node.querySelector<HTMLElement>(':scope > .vetra-text > div');
}

const DEFAULT_COLOR = [67, 67, 67, 255];
const NO_COLOR = [0, 0, 0, 0];

function colorOf(raw: unknown, fallback: readonly number[]): number[] {
    const a = arr(raw);
    return a.length >= 4 ? [0, 1, 2, 3].map((i) => Math.round(num(a[i], fallback[i] as number))) : fallback.slice();
}

/**
 * The element-wide format, as the element's data holds it, to go with changed text unchanged.
 * A single family comes without the quotes the data puts around it.
 */
export function elementTextFormat(element: StageElement): TextFormat {
    const txt = arr(element.data()['txt']);
    let family = str(txt[1], 'Arial');
    if (family.indexOf(',') < 0) {
        family = family.replace(/^'(.*)'$/, '$1');
    }
    return {
        bold: txt[5] === 'bold',
        italic: bool(txt[6], false),
        underline: bool(txt[7], false),
        strikeOut: bool(txt[8], false),
        fontSize: num(txt[2], 18),
        family,
        color: colorOf(txt[3], DEFAULT_COLOR),
        highlight: colorOf(txt[4], NO_COLOR),
        wordSpace: num(txt[13], 0),
        letterSpace: num(txt[14], 0),
    };
}

/** Inline styles the edit changes on the text node, put back when it ends. */
const EDIT_STYLES: { readonly [property: string]: string } = {
    outline: '1px dashed #2f7de1',
    'outline-offset': '2px',
    cursor: 'text',
    'user-select': 'text',
    '-webkit-user-select': 'text',
    'pointer-events': 'auto',
    'min-width': '1px',
    'min-height': '1em',
};

export class InPlaceTextEditor implements TextEditTool {
    readonly name = 'editText';
    readonly elementId: number;
    private readonly host_: StageHost;
    private content_: HTMLElement;
    /** The text as it was, exactly, to put back when the edit is dropped. */
    private readonly shownHtml_: string;
    /** The same, cleaned, to tell whether anything changed. */
    private readonly startHtml_: string;
    private savedStyles_: { [property: string]: [string, string] } = {};
    private lastFormat_ = '';
    private done_ = false;
    private readonly onSelection_ = () => this.reportFormat_(false);
    private readonly onKey_ = (e: KeyboardEvent) => this.contentKey_(e);
    private readonly onPaste_ = (e: ClipboardEvent) => this.paste_(e);
    private readonly onDrop_ = (e: DragEvent) => this.drop_(e);
    private readonly onPress_ = (e: Event) => e.stopPropagation();

    constructor(host: StageHost, element: StageElement, content: HTMLElement) {
        this.host_ = host;
        this.elementId = element.id;
        this.content_ = content;
        this.shownHtml_ = content.innerHTML;
        this.startHtml_ = sanitizeHtml(content.innerHTML, content.ownerDocument);
        this.attach_(content);
        selectAll(content);
        const r = element.node.getBoundingClientRect();
        host.notify('setEditingText', true, Math.round(r.left), Math.round(r.top));
        this.reportFormat_(true);
    }

    pointerDown(e: PointerEvent): boolean {
        if (this.done_) {
            return false;
        }
        if (e.target instanceof Node && this.content_.contains(e.target)) {
            return true;
        }
        // A press elsewhere ends the edit and then does what it does on the stage.
        this.stop(false);
        return false;
    }

    pointerMove(_e: PointerEvent): void {}

    pointerUp(_e: PointerEvent): void {}

    keyDown(e: KeyboardEvent): boolean {
        if (this.done_) {
            return false;
        }
        if (e.key === 'Escape') {
            this.stop(false);
            return true;
        }
        // While text is edited, keys belong to the text and never act on the stage's selection.
        return true;
    }

    refresh(): void {
        if (this.done_ || this.content_.isConnected) {
            return;
        }
        // The stage was rebuilt under the edit: carry what was typed over to the new text node.
        const element = this.host_.element(this.elementId);
        const content = element ? textContentOf(element) : null;
        if (!content) {
            this.cancel();
            this.host_.endTool(this);
            return;
        }
        const html = this.content_.innerHTML;
        this.content_ = content;
        content.innerHTML = html;
        this.attach_(content);
        content.focus();
    }

    cancel(): void {
        if (this.done_) {
            return;
        }
        this.content_.innerHTML = this.shownHtml_;
        this.detach_();
    }

    stop(immediately: boolean): void {
        if (this.done_) {
            return;
        }
        if (immediately) {
            this.content_.innerHTML = this.shownHtml_;
        } else {
            const html = this.innerHtml();
            const element = this.host_.element(this.elementId);
            if (element && html !== this.startHtml_) {
                this.host_.submit([textRecord(this.elementId, html, elementTextFormat(element))], 'Change Text');
            }
        }
        this.detach_();
        this.host_.endTool(this);
    }

    execCommand(name: string, value: string): void {
        if (this.done_) {
            return;
        }
        this.content_.focus();
        runEditorCommand(this.content_, name, value);
        this.reportFormat_(false);
    }

    innerHtml(): string {
        return sanitizeHtml(this.content_.innerHTML, this.content_.ownerDocument);
    }

    currentFormat(): CaretFormat {
        const layer = this.content_.parentElement ?? this.content_;
        return readCaretFormat(this.content_, layer);
    }

    private attach_(content: HTMLElement): void {
        this.savedStyles_ = {};
        for (const property of Object.keys(EDIT_STYLES)) {
            this.savedStyles_[property] = [content.style.getPropertyValue(property), content.style.getPropertyPriority(property)];
            content.style.setProperty(property, EDIT_STYLES[property] as string);
        }
        content.contentEditable = 'true';
        content.spellcheck = false;
        content.addEventListener('keydown', this.onKey_);
        content.addEventListener('paste', this.onPaste_);
        content.addEventListener('drop', this.onDrop_);
        // The stage must not start a selection or a drag from a press that places the caret.
        content.addEventListener('pointerdown', this.onPress_);
        content.addEventListener('mousedown', this.onPress_);
        content.ownerDocument.addEventListener('selectionchange', this.onSelection_);
        content.focus();
    }

    private detach_(): void {
        this.done_ = true;
        const content = this.content_;
        content.removeEventListener('keydown', this.onKey_);
        content.removeEventListener('paste', this.onPaste_);
        content.removeEventListener('drop', this.onDrop_);
        content.removeEventListener('pointerdown', this.onPress_);
        content.removeEventListener('mousedown', this.onPress_);
        content.ownerDocument.removeEventListener('selectionchange', this.onSelection_);
        content.removeAttribute('contenteditable');
        content.removeAttribute('spellcheck');
        for (const property of Object.keys(this.savedStyles_)) {
            const [value, priority] = this.savedStyles_[property] as [string, string];
            if (value === '') {
                content.style.removeProperty(property);
            } else {
                content.style.setProperty(property, value, priority);
            }
        }
        if (content.getAttribute('style') === '') {
            content.removeAttribute('style');
        }
        const selection = content.ownerDocument.getSelection();
        if (selection && selection.rangeCount > 0 && content.contains(selection.getRangeAt(0).commonAncestorContainer)) {
            selection.removeAllRanges();
        }
        content.blur();
        this.host_.notify('setEditingText', false, 0, 0);
    }

    /** Tells the studio the format at the caret when it differs from what it was last told. */
    private reportFormat_(always: boolean): void {
        if (this.done_) {
            return;
        }
        const json = JSON.stringify(this.currentFormat());
        if (always || json !== this.lastFormat_) {
            this.lastFormat_ = json;
            this.host_.notify('onTextFormatChanged', json);
        }
    }

    private contentKey_(e: KeyboardEvent): void {
        if (e.key === 'Escape') {
            // Handled where the stage passes keys on, or here when it does not.
            e.stopPropagation();
            e.preventDefault();
            this.stop(false);
            return;
        }
        const modifiers = modifierText(e.ctrlKey || e.metaKey, e.altKey, e.shiftKey);
        const key = e.key.toLowerCase();
        const shortcut = shortcuts.find((s) => s.key === key && s.modifiers === modifiers);
        if (shortcut) {
            e.preventDefault();
            this.execCommand(shortcut.cmd, '');
        }
        // Keys typed into the text are not the stage's business (Delete would remove the element).
        e.stopPropagation();
    }

    private paste_(e: ClipboardEvent): void {
        e.preventDefault();
        e.stopPropagation();
        const text = e.clipboardData ? e.clipboardData.getData('text/plain') : '';
        if (text !== '') {
            this.content_.ownerDocument.execCommand('insertText', false, text);
        }
    }

    private drop_(e: DragEvent): void {
        e.preventDefault();
        e.stopPropagation();
        const text = e.dataTransfer ? e.dataTransfer.getData('text/plain') : '';
        const doc = this.content_.ownerDocument;
        const at = doc.caretRangeFromPoint(e.clientX, e.clientY);
        if (text === '' || !at || !this.content_.contains(at.startContainer)) {
            return;
        }
        const selection = doc.getSelection();
        selection?.removeAllRanges();
        selection?.addRange(at);
        doc.execCommand('insertText', false, text);
    }
}
