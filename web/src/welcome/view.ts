// DOM side of the welcome page. The markup lives in vtwelcome.html; this module fills in texts and
// the recent list and switches between the connecting, ready and offline states. Everything that
// comes from the studio is set as text, never parsed as markup.

import type { RecentEntry } from './recent';
import { format, type StringKey, type Strings } from './strings';

export interface WelcomeActions {
    newProject(): void;
    openProject(): void;
    openRecent(path: string): void;
}

export type WelcomeState = 'connecting' | 'ready' | 'offline';

export interface WelcomeView {
    setState(state: WelcomeState): void;
    setVersion(version: string): void;
    setRecent(entries: readonly RecentEntry[]): void;
}

/** Sets the text of every element that names a string key in its data-i18n attribute. */
export function applyStrings(root: ParentNode, strings: Strings): void {
    root.querySelectorAll<HTMLElement>('[data-i18n]').forEach((element) => {
        const key = element.dataset['i18n'] as StringKey;
        if (Object.prototype.hasOwnProperty.call(strings, key)) {
            element.textContent = strings[key];
        }
    });
}

/** Builds one list item per entry; `open` receives the entry's path unchanged. */
export function renderRecentItems(
    doc: Document,
    entries: readonly RecentEntry[],
    open: (path: string) => void,
): HTMLLIElement[] {
    return entries.map((entry) => {
        const item = doc.createElement('li');
        const button = doc.createElement('button');
        button.type = 'button';
        button.className = 'recent-item';
        button.title = entry.path;
        button.addEventListener('click', () => open(entry.path));

        const icon = doc.createElement('span');
        icon.className = 'recent-icon';
        icon.setAttribute('aria-hidden', 'true');
        icon.textContent = initialOf(entry.name);

        const text = doc.createElement('span');
        text.className = 'recent-text';
        const name = doc.createElement('span');
        name.className = 'recent-name';
        name.textContent = entry.name;
        // The end of a long folder path tells more than its start, so the folder is clipped at the
        // left: the outer span runs right-to-left, the inner one keeps the path's own order.
        const folder = doc.createElement('span');
        folder.className = 'recent-folder';
        const folderText = doc.createElement('span');
        folderText.dir = 'ltr';
        folderText.textContent = entry.folder;
        folder.append(folderText);
        text.append(name, folder);

        button.append(icon, text);
        item.append(button);
        return item;
    });
}

/** First letter or digit of the name, for the badge next to it; a neutral mark otherwise. */
export function initialOf(name: string): string {
    const match = /[\p{L}\p{N}]/u.exec(name);
    return match ? match[0].toLocaleUpperCase() : '#';
}

/**
 * A double click on a card is two clicks, and the studio would open its dialog twice. The gate
 * lets an action through unless the same one passed less than `windowMs` ago.
 */
export function repeatGate(windowMs = 700, now: () => number = () => Date.now()): (key: string) => boolean {
    const last = new Map<string, number>();
    return (key) => {
        const time = now();
        const previous = last.get(key);
        if (previous !== undefined && time - previous < windowMs) {
            return false;
        }
        last.set(key, time);
        return true;
    };
}

function required<T extends HTMLElement>(doc: Document, id: string): T {
    const element = doc.getElementById(id);
    if (!element) {
        throw new Error(`vtwelcome.html has no #${id}`);
    }
    return element as T;
}

/** Wires the page's markup to the actions and returns the handle main.ts drives it with. */
export function bindWelcomeView(doc: Document, strings: Strings, actions: WelcomeActions): WelcomeView {
    applyStrings(doc, strings);

    const newButton = required<HTMLButtonElement>(doc, 'new-project');
    const openButton = required<HTMLButtonElement>(doc, 'open-project');
    const version = required<HTMLElement>(doc, 'version');
    const status = required<HTMLElement>(doc, 'status');
    const list = required<HTMLUListElement>(doc, 'recent-list');
    const empty = required<HTMLElement>(doc, 'recent-empty');
    const emptyTitle = required<HTMLElement>(doc, 'recent-empty-title');
    const emptyHint = required<HTMLElement>(doc, 'recent-empty-hint');

    let state: WelcomeState = 'connecting';
    let entries: readonly RecentEntry[] = [];

    const gate = repeatGate();
    const allowed = (key: string): boolean => state === 'ready' && gate(key);
    newButton.addEventListener('click', () => allowed('new') && actions.newProject());
    openButton.addEventListener('click', () => allowed('open') && actions.openProject());
    const openRecent = (path: string): void => {
        if (allowed(`recent:${path}`)) {
            actions.openRecent(path);
        }
    };

    const render = (): void => {
        doc.body.dataset['state'] = state;
        const enabled = state === 'ready';
        newButton.disabled = !enabled;
        openButton.disabled = !enabled;
        status.hidden = state !== 'offline';

        const shown = state === 'connecting' ? [] : entries;
        list.replaceChildren(...renderRecentItems(doc, shown, openRecent));
        list.querySelectorAll('button').forEach((button) => {
            button.disabled = !enabled;
        });
        list.hidden = shown.length === 0;
        empty.hidden = shown.length !== 0;
        emptyTitle.textContent =
            state === 'connecting' ? strings.connecting : state === 'offline' ? strings.recentUnavailable : strings.noRecent;
        emptyHint.hidden = state !== 'ready';
    };
    render();

    return {
        setState(next) {
            // Offline is final: the studio gives the page a new address when it restarts.
            if (state === 'offline') {
                return;
            }
            state = next;
            render();
        },
        setVersion(text) {
            version.textContent = format(strings.version, { version: text });
            version.hidden = text === '';
        },
        setRecent(next) {
            entries = next;
            render();
        },
    };
}
