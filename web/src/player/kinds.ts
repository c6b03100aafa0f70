// The DOM of each element kind. Every element is a positioned box (`.vetra-element`) whose look
// comes from its block; kinds add what is inside the box: the lines of a text, the outline of a
// shape, an image, a media player, a widget's frame or a symbol's own stage.

import { Prop } from './contracts';
import { applyBlock, type BlockContext } from './blocks';
import { ElementView, Kind, type ViewOwner } from './elementview';
import { layoutBlock } from './layout';
import { arr, bool, int, isObj, num, type Obj, str } from './read';
import { ShapeView } from './shapeview';
import { applyText, createTextLayers } from './textfont';

/** What building a scene's views needs from the document. */
export interface BuildContext extends BlockContext {
    readonly owner_: ViewOwner;
    /** Takes note of a new view and of the element object it shows, parents before children. */
    register_(view: ElementView, element: Obj): void;
    readonly layout: readonly [number, number];
    /** URLs of the files of an audio or video resource, best first. */
    mediaUrls_(resourceId: number): string[];
    /** URL of the file of an image or HTML resource, '' when there is none. */
    fileUrl_(resourceId: number): string;
    /** The address a widget may load for the URL the studio stored, or '' when it may not. */
    widgetUrl_(url: string): string;
    /** A media element was made; the document drives it. */
    addMedia_(view: ElementView, element: Obj): void;
    /** A symbol instance was made; the document opens the symbol inside it. */
    addSymbol_(view: ElementView, element: Obj): void;
    /** Sandbox flags for widget frames; the editor's stage sets them, the exported player does not. */
    readonly widgetSandbox_?: string;
}

function box(doc: Document, className: string): HTMLElement {
    const node = doc.createElement('div');
    node.className = className;
    return node;
}

function fillLayer(node: HTMLElement): void {
    const style = node.style;
    style.position = 'absolute';
    style.left = '0';
    style.top = '0';
    style.width = '100%';
    style.height = '100%';
}

function buildImage(ctx: BuildContext, view: ElementView, element: Obj): void {
    const layer = box(view.node.ownerDocument, 'vetra-image');
    fillLayer(layer);
    const url = ctx.fileUrl_(int(element['rs'], -1));
    if (url !== '') {
        layer.style.backgroundImage = 'url("' + url.replace(/"/g, '%22') + '")';
    }
    layer.style.backgroundRepeat = 'no-repeat';
    layer.setAttribute('role', 'img');
    const name = str(element['n'], '');
    if (name !== '') {
        layer.setAttribute('aria-label', name);
    }
    view.node.appendChild(layer);
    view.imageLayer_ = layer;
}

function buildMedia(ctx: BuildContext, view: ElementView, element: Obj): void {
    const doc = view.node.ownerDocument;
    const media = doc.createElement(view.kind === Kind.Audio ? 'audio' : 'video');
    media.className = 'vetra-media';
    for (const url of ctx.mediaUrls_(int(element['rs'], -1))) {
        const source = doc.createElement('source');
        source.src = url;
        media.appendChild(source);
    }
    media.controls = bool(element['ct'], false);
    media.loop = bool(element['lo'], false);
    media.preload = bool(element['pl'], false) ? 'auto' : 'metadata';
    if (media instanceof HTMLVideoElement) {
        media.playsInline = true;
    }
    view.base[Prop.Volume] = num(element['vol'], 100);
    view.node.appendChild(media);
    view.media = media;
    ctx.addMedia_(view, element);
}

function buildWidget(ctx: BuildContext, view: ElementView, element: Obj): void {
    const frame = view.node.ownerDocument.createElement('iframe');
    frame.className = 'vetra-widget';
    frame.setAttribute('frameborder', '0');
    frame.setAttribute('allowfullscreen', '');
    if (ctx.widgetSandbox_ !== undefined) {
        frame.setAttribute('sandbox', ctx.widgetSandbox_);
    }
    const srcdoc = str(element['srcdoc'], '');
    let url = '';
    if (bool(element['useresource'], false)) {
        url = ctx.fileUrl_(int(element['rs'], -1));
    } else {
        url = ctx.widgetUrl_(str(element['url'], ''));
    }
    if (srcdoc !== '') {
        frame.srcdoc = srcdoc;
    } else if (url !== '') {
        frame.src = url;
    }
    view.node.appendChild(frame);
}

/** Class of the box of each kind, for authors' style sheets and for the player's own rules. */
function classOf(kind: number): string {
    switch (kind) {
        case Kind.Text:
            return 'vetra-element vetra-kind-text';
        case Kind.Div:
            return 'vetra-element vetra-kind-div';
        case Kind.Image:
            return 'vetra-element vetra-kind-image';
        case Kind.Audio:
        case Kind.Video:
            return 'vetra-element vetra-kind-media';
        case Kind.Widget:
            return 'vetra-element vetra-kind-widget';
        case Kind.Symbol:
            return 'vetra-element vetra-kind-symbol';
        case Kind.Shape:
        case Kind.Freeform:
            return 'vetra-element vetra-kind-shape';
        default:
            return 'vetra-element vetra-kind-group';
    }
}

/** Builds the view of one element object and, in order, of its children. */
export function buildView(ctx: BuildContext, element: Obj, parent: ElementView, container: HTMLElement): ElementView {
    const kind = int(element['k'], Kind.Group);
    const node = box(container.ownerDocument, '');
    // The model's width is that of the content; a border adds to it.
    node.style.boxSizing = 'content-box';
    const view = new ElementView(int(element['id'], -1), kind, node, parent, ctx.owner_);
    view.baseClass_ = classOf(kind);
    node.className = view.baseClass_;
    container.appendChild(node);
    ctx.register_(view, element);

    switch (kind) {
        case Kind.Text:
        case Kind.Div:
            createTextLayers(view);
            view.hooks_ = { applyBlock: (v, block) => applyText(v, block['txt']) };
            break;
        case Kind.Shape:
        case Kind.Freeform:
            view.hooks_ = new ShapeView(view);
            createTextLayers(view);
            break;
        case Kind.Image:
            buildImage(ctx, view, element);
            break;
        case Kind.Audio:
        case Kind.Video:
            buildMedia(ctx, view, element);
            break;
        case Kind.Widget:
            buildWidget(ctx, view, element);
            break;
        case Kind.Symbol:
            ctx.addSymbol_(view, element);
            break;
        default:
            break;
    }
    applyBlock(view, layoutBlock(element, ctx.layout[0], ctx.layout[1]), ctx);

    for (const child of arr(element['elems'])) {
        if (isObj(child)) {
            buildView(ctx, child, view, node);
        }
    }
    return view;
}
