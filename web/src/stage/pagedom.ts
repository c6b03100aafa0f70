// The fixed parts of the stage page's document (canvas/index.html) and the project's web fonts.

export interface PageElements {
    readonly root: HTMLElement;
    readonly viewport: HTMLElement;
    readonly world: HTMLElement;
    readonly stage: HTMLElement;
    readonly glass: HTMLElement;
    readonly overlay: HTMLElement;
    readonly toolLayer: HTMLElement;
    readonly rulerTop: HTMLCanvasElement;
    readonly rulerLeft: HTMLCanvasElement;
    readonly barH: HTMLElement;
    readonly barV: HTMLElement;
    readonly status: HTMLElement;
    readonly projectCss: HTMLStyleElement;
}

export function pageElements(doc: Document): PageElements {
    const get = <T extends HTMLElement>(id: string): T => {
        const node = doc.getElementById(id);
        if (!node) {
            throw new Error(`the page has no #${id}`);
        }
        return node as T;
    };
    return {
        root: get('canvas-root'),
        viewport: get('viewport'),
        world: get('world'),
        stage: get('stage'),
        glass: get('glass'),
        overlay: get('overlay'),
        toolLayer: get('tool-layer'),
        rulerTop: get('ruler-top'),
        rulerLeft: get('ruler-left'),
        barH: get('breakpoints-h'),
        barV: get('breakpoints-v'),
        status: get('status'),
        projectCss: get('project-css'),
    };
}

/** Links the web fonts among the project's resources in place of `old`; answers the new links. */
export function loadFonts(
    doc: Document,
    resources: Map<number, unknown[]> | null,
    old: readonly HTMLLinkElement[],
): HTMLLinkElement[] {
    for (const link of old) {
        link.remove();
    }
    const families: string[] = [];
    for (const entry of resources?.values() ?? []) {
        // A font entry: id, 4, name, the family query, and 1 while the font is not deleted.
        if (entry[1] === 4 && typeof entry[3] === 'string' && entry[3] !== '' && entry[4] !== 0) {
            families.push(entry[3]);
        }
    }
    if (families.length === 0) {
        return [];
    }
    const link = doc.createElement('link');
    link.rel = 'stylesheet';
    link.href = 'https://fonts.googleapis.com/css?family=' + families.join('|');
    doc.head.appendChild(link);
    return [link];
}
