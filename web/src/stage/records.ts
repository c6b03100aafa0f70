// The studio's records (dataChangedToJS) applied to the stage's working copy of the scene and to
// its picture. Each record is read on its own: one that cannot be read is logged and skipped. What
// the stage cannot follow exactly (an element coming back without its data, a switch of timeline,
// a change of inherited layouts) asks for a fresh scene, once, when the command's closing record
// arrives.

import { ParamType } from './contracts';
import { Kind } from '../player/elementview';
import { arr, int, isObj, type Obj } from '../player/read';
import type { StageRenderer } from './render';
import {
    attachElement,
    detachElement,
    findElement,
    type BreakpointState,
    type ElementData,
    type SceneData,
} from './scenedata';
import type { TimelineData } from './timelinedata';

export const COMMAND_FINISHED = 41;

/** What applying records touches. */
export interface RecordHost {
    readonly data: SceneData;
    readonly renderer: StageRenderer;
    readonly timeline: TimelineData | null;
    readonly selection: Set<number>;
    /** The stage cannot follow this record; a fresh scene is asked for after the command. */
    requestRefresh(reason: string): void;
    /** Stage size, alignment or breakpoints changed. */
    containerChanged(): void;
    resourcesChanged(): void;
}

export interface ParsedRecord {
    readonly cmd: number;
    readonly undo: boolean;
    readonly params: readonly unknown[];
    readonly types: readonly number[];
}

export class RecordError extends Error {}

/** Reads the JSON of one record: "cmd", "isUndoCmd" and the values of "params". */
export function parseRecord(json: unknown): ParsedRecord {
    const parsed: unknown = typeof json === 'string' ? JSON.parse(json) : json;
    if (!isObj(parsed) || typeof parsed['cmd'] !== 'number') {
        throw new RecordError('a record without "cmd"');
    }
    const params: unknown[] = [];
    const types: number[] = [];
    for (const entry of arr(parsed['params'])) {
        params.push(isObj(entry) ? entry['value'] : undefined);
        types.push(isObj(entry) ? int(entry['type'], 0) : 0);
    }
    return { cmd: int(parsed['cmd'], 0), undo: parsed['isUndoCmd'] === true, params, types };
}

/** Records that change nothing the stage shows (or that the studio follows with a whole scene). */
const NOT_SHOWN = new Set([
    // Scenes, editing symbol and layout blocks: the studio sends the scene itself.
    5, 6, 7, 43, 62, 83, 84, 85, 86, 87, 92, 100, 1037,
    // Timelines other than the shown one, names, events, functions, export settings.
    8, 9, 10, 12, 34, 35, 36, 37, 38, 44, 45, 46, 48, 51, 53, 54, 55, 63, 65, 66, 67, 68, 70, 71, 72, 73, 74, 75, 76,
    77, 79, 82, 94, 95, 96, 97, 98, 99, 101, 102,
    // Element settings without a look on the stage.
    1007, 1013, 1014, 1015, 1016, 1018, 1020, 1022, 1025, 1026, 1027, 1028, 1029, 1035, 1040,
]);

/** Keys of an element object that its layout block writes (stage form). */
const BLOCK_KEYS = ['r', 't', 'l', 'f', 'sh', 'fe', 'wc', 'o', 'of', 'd', 'cl', 'txt', 'lr', 'ir', 's', 'pso'];

function num(value: unknown): number {
    if (typeof value !== 'number' || !isFinite(value)) {
        throw new RecordError('a number was expected');
    }
    return value;
}

function allZero(values: readonly unknown[]): boolean {
    return values.every((value) => value === 0 || value === '0%' || value === '0px');
}

/** Writes a key of the block, or removes it where the stage form leaves an empty value out. */
function setOrDrop(element: ElementData, key: string, value: unknown, drop: boolean): void {
    if (drop) {
        delete element[key];
    } else {
        element[key] = value;
    }
}

export class RecordApplier {
    /** Ids of elements whose look changed in this command; their views take their data again at the end. */
    private readonly touched_ = new Set<number>();
    private selectionChanged_ = false;

    constructor(private readonly host_: RecordHost) {}

    /** Applies one record; answers whether it closed a command. Throws RecordError for unreadable ones. */
    apply(record: ParsedRecord): void {
        const host = this.host_;
        const { cmd, params: p } = record;
        if (NOT_SHOWN.has(cmd) || cmd === COMMAND_FINISHED) {
            return;
        }
        switch (cmd) {
            case 1:
                this.elementAdded_(record);
                return;
            case 2:
                this.elementRemoved_(record);
                return;
            case 3:
                this.elementMoved_(num(p[0]), num(p[1]), p[2], num(p[3]), num(p[4]));
                return;
            case 4:
                this.elementReordered_(num(p[0]), num(p[1]));
                return;
            case 11:
                host.requestRefresh('the shown timeline changed');
                return;
            case 33:
                this.selected_(num(p[0]), p[1] === true);
                return;
            case 59:
                host.data.containerW = Math.max(1, num(p[0]));
                host.containerChanged();
                return;
            case 60:
                host.data.containerH = Math.max(1, num(p[0]));
                host.containerChanged();
                return;
            case 61:
                host.data.docAlign = num(p[0]);
                host.containerChanged();
                return;
            case 89:
            case 90:
            case 91:
                this.breakpoints_(p);
                return;
            case 39:
            case 40:
            case 47:
            case 49:
            case 50:
            case 52:
            case 103:
                this.resources_(p);
                return;
            case 1044:
                this.sceneKey_('pso', arr(p[0]).slice());
                return;
            default:
                break;
        }
        if (this.timelineRecord_(record)) {
            return;
        }
        if (this.elementRecord_(cmd, p)) {
            return;
        }
        host.requestRefresh(`record ${cmd}`);
    }

    /** The ids whose views must take their data again, and whether the selection changed; both cleared. */
    takeChanges(): { touched: number[]; selection: boolean } {
        const result = { touched: [...this.touched_], selection: this.selectionChanged_ };
        this.touched_.clear();
        this.selectionChanged_ = false;
        return result;
    }

    // The tree

    private elementAdded_(record: ParsedRecord): void {
        const p = record.params;
        if (record.undo) {
            // Undoing an insert takes the element out again.
            const value = p[0];
            const id = isObj(value) ? int(value['id'], -1) : -1;
            this.removeById_(id);
            return;
        }
        const element = p[0];
        if (!isObj(element) || record.types[0] !== ParamType.Element) {
            throw new RecordError('record 1 without its element');
        }
        this.insert_(element as ElementData, num(p[1]), num(p[2]), num(p[3]));
    }

    private elementRemoved_(record: ParsedRecord): void {
        const id = num(record.params[0]);
        if (record.undo) {
            // The element is back, but the record does not carry it.
            this.host_.requestRefresh('an element came back');
            return;
        }
        this.removeById_(id);
    }

    private parentView_(parentId: number, parentKind: number) {
        const renderer = this.host_.renderer;
        if (parentKind === Kind.Scene || parentId === 0) {
            return { view: renderer.scene.view, data: this.host_.data.scene };
        }
        const view = renderer.view(parentId);
        const place = findElement(this.host_.data.scene, parentId);
        return view && place ? { view, data: place.element } : null;
    }

    private insert_(element: ElementData, index: number, parentId: number, parentKind: number): void {
        const id = int(element['id'], -1);
        this.removeById_(id);
        const parent = this.parentView_(parentId, parentKind);
        if (!parent) {
            this.host_.requestRefresh('an element was added to an unknown parent');
            return;
        }
        const at = attachElement(parent.data, element, index);
        this.host_.renderer.insert(element, parent.view, at);
        if (element['selected'] === true) {
            this.host_.selection.add(id);
            this.selectionChanged_ = true;
        }
    }

    private removeById_(id: number): void {
        const place = findElement(this.host_.data.scene, id);
        const view = this.host_.renderer.view(id);
        if (place) {
            detachElement(place);
        }
        if (view) {
            this.host_.renderer.remove(view);
        }
        if (this.host_.selection.delete(id)) {
            this.selectionChanged_ = true;
        }
    }

    private elementMoved_(id: number, index: number, geometry: unknown, parentId: number, parentKind: number): void {
        const place = findElement(this.host_.data.scene, id);
        if (!place) {
            this.host_.requestRefresh('an unknown element moved');
            return;
        }
        const element = place.element;
        if (isObj(geometry)) {
            this.geometry_(element, geometry);
        }
        const selected = this.host_.selection.has(id);
        this.removeById_(id);
        this.insert_(element, index, parentId, parentKind);
        if (selected) {
            this.host_.selection.add(id);
        }
    }

    private elementReordered_(id: number, index: number): void {
        const place = findElement(this.host_.data.scene, id);
        const view = this.host_.renderer.view(id);
        if (!place || !view) {
            this.host_.requestRefresh('an unknown element changed order');
            return;
        }
        detachElement(place);
        attachElement(place.parent, place.element, index);
        this.host_.renderer.reorder(view, index);
    }

    private selected_(id: number, selected: boolean): void {
        if (id === 0 || !findElement(this.host_.data.scene, id)) {
            return;
        }
        const place = findElement(this.host_.data.scene, id);
        if (place) {
            place.element['selected'] = selected;
        }
        const set = this.host_.selection;
        if (selected !== set.has(id)) {
            if (selected) {
                set.add(id);
            } else {
                set.delete(id);
            }
            this.selectionChanged_ = true;
        }
    }

    // Container and resources

    private breakpoints_(p: readonly unknown[]): void {
        const direction = num(p[0]);
        const current = arr(p[1]);
        const state: BreakpointState = this.host_.data.breakpoints;
        if (current.length === 2) {
            state.hCurrent = int(current[0], state.hCurrent);
            state.vCurrent = int(current[1], state.vCurrent);
        }
        const pairs: [number, number][] = [];
        for (const item of p.slice(2)) {
            const pair = arr(item);
            if (pair.length === 2 && typeof pair[0] === 'number' && typeof pair[1] === 'number') {
                pairs.push([pair[0], pair[1]]);
            }
        }
        pairs.sort((a, b) => a[1] - b[1]);
        if (direction === 0) {
            state.h = pairs;
        } else {
            state.v = pairs;
        }
        this.host_.containerChanged();
    }

    private resources_(p: readonly unknown[]): void {
        const resources = this.host_.data.resources;
        const changed: number[] = [];
        for (const value of p) {
            for (const entry of arr(value)) {
                if (Array.isArray(entry) && typeof entry[0] === 'number') {
                    resources.set(entry[0], entry);
                    changed.push(entry[0]);
                }
            }
        }
        if (typeof p[1] === 'number' && p[1] >= 0) {
            changed.push(p[1]);
        }
        // Views of elements that show one of these files are built again.
        for (const view of this.host_.renderer.elementViews()) {
            const element = this.host_.renderer.elementOf(view);
            if (!element) {
                continue;
            }
            const fill = arr(element['f']);
            if (changed.includes(int(element['rs'], -1)) || (fill[0] === 3 && changed.includes(int(fill[1], -1)))) {
                this.touched_.add(view.id);
                if (
                    view.kind === Kind.Image ||
                    view.kind === Kind.Audio ||
                    view.kind === Kind.Video ||
                    view.kind === Kind.Widget ||
                    view.kind === Kind.Symbol
                ) {
                    this.rebuild_(view.id);
                }
            }
        }
        this.host_.resourcesChanged();
    }

    // Timeline

    private timelineRecord_(record: ParsedRecord): boolean {
        const { cmd, params: p, undo } = record;
        const isKeyframe = (cmd >= 19 && cmd <= 32) || cmd === 69 || cmd === 78 || cmd === 80 || cmd === 81;
        if (!isKeyframe && !(cmd >= 13 && cmd <= 18) && !(cmd >= 56 && cmd <= 58)) {
            return false;
        }
        const timeline = this.host_.timeline;
        if (!timeline) {
            this.host_.requestRefresh('a timeline change without a shown timeline');
            return true;
        }
        const object = isObj(p[0]) ? p[0] : null;
        switch (cmd) {
            case 13:
            case 14: {
                const label = object ?? {};
                const adding = (cmd === 13) !== undo;
                if (adding) {
                    timeline.setLabel(label['labelName'], label['timeStamp']);
                } else {
                    timeline.removeLabel(label['labelName']);
                }
                return true;
            }
            case 15:
                timeline.renameLabel(object?.['oldLabelName'], object?.['newLabelName']);
                return true;
            case 16:
                timeline.setLabel(object?.['labelName'], object?.['newTimeStamp']);
                return true;
            case 17:
                if (undo) {
                    timeline.removeTracksOf(arr(object?.['anims']));
                } else {
                    timeline.replaceTracksOf(arr(object?.['anims']));
                }
                return true;
            case 18:
                if (undo) {
                    this.host_.requestRefresh('an animation came back');
                } else {
                    timeline.removeElement(int(object?.['el'], -1));
                }
                return true;
            case 19:
                // A record without a keyframe still comes, as an empty object.
                if (!object || typeof object['el'] !== 'number') {
                    return true;
                }
                if (undo) {
                    timeline.removeTrack(int(object['el'], -1), String(object['p']));
                } else {
                    timeline.replaceTrack(int(object['el'], -1), String(object['p']), arr(object['anims']));
                }
                return true;
            case 20:
                if (undo) {
                    this.host_.requestRefresh('a keyframe came back');
                } else {
                    timeline.removeTrack(int(object?.['el'], -1), String(object?.['p']));
                }
                return true;
            default:
                // Keyframe, motion path and playback records bring the whole new list of their track.
                if (object && typeof object['el'] === 'number' && typeof object['p'] === 'string') {
                    timeline.replaceTrack(object['el'], object['p'], arr(object['anims']));
                }
                return true;
        }
    }

    // Element properties

    private element_(id: number): ElementData {
        const place = findElement(this.host_.data.scene, id);
        if (!place) {
            throw new RecordError(`no element ${id} on the stage`);
        }
        return place.element;
    }

    /**
     * The object a property record names: an element, or the scene (id 0 here). Scene ids and
     * element ids are counted apart, so without the kind an id can name both; then null.
     */
    private target_(id: number, kind: unknown): { id: number; element: ElementData } | null {
        const data = this.host_.data;
        if (kind === Kind.Scene) {
            return { id: 0, element: data.scene };
        }
        const place = findElement(data.scene, id);
        if (kind === undefined && id === data.sceneId && place) {
            return null;
        }
        if (place) {
            return { id, element: place.element };
        }
        if (id === data.sceneId || id === 0) {
            return { id: 0, element: data.scene };
        }
        throw new RecordError(`no element ${id} on the stage`);
    }

    private sceneKey_(key: string, value: unknown): void {
        this.host_.data.scene[key] = value;
        this.touched_.add(0);
    }

    private geometry_(element: ElementData, geometry: Obj): void {
        if (Array.isArray(geometry['r'])) {
            element['r'] = geometry['r'];
        }
        setOrDrop(element, 't', geometry['t'], !Array.isArray(geometry['t']));
    }

    private rebuild_(id: number): void {
        const place = findElement(this.host_.data.scene, id);
        const view = this.host_.renderer.view(id);
        if (!place || !view || !view.parent) {
            return;
        }
        const parent = view.parent;
        const index = parent.children.indexOf(view);
        this.host_.renderer.remove(view);
        this.host_.renderer.insert(place.element, parent, index);
    }

    private elementRecord_(cmd: number, p: readonly unknown[]): boolean {
        if (cmd === 1019) {
            return false;
        }
        if (cmd === 1021 || cmd === 1023 || cmd === 1024) {
            const object = isObj(p[0]) ? p[0] : {};
            const id = int(object['elementId'], -1);
            const element = this.element_(id);
            const view = this.host_.renderer.view(id);
            if (cmd === 1021) {
                element['vol'] = object['volume'];
            } else if (cmd === 1023) {
                element['lo'] = object['loop'] === true;
                if (view?.media) {
                    view.media.loop = element['lo'] === true;
                }
            } else {
                element['ct'] = object['controls'] === true;
                if (view?.media) {
                    view.media.controls = element['ct'] === true;
                }
            }
            return true;
        }
        if (cmd < 1000 || cmd > 1044 || cmd === 1039 || cmd === 1004) {
            return false;
        }
        const target = this.target_(
            num(p[0]),
            cmd === 1000 || cmd === 1002 || cmd === 1012 || cmd === 1034 ? p[2] : undefined,
        );
        if (!target) {
            this.host_.requestRefresh(`record ${cmd} names the scene or an element alike`);
            return true;
        }
        const { id, element } = target;
        if (id === 0 && (cmd === 1005 || cmd === 1006 || cmd === 1034)) {
            // Locking or hiding the scene itself changes nothing on the stage.
            return true;
        }
        switch (cmd) {
            case 1000:
                if (!isObj(p[1])) {
                    throw new RecordError('record 1000 without geometry');
                }
                this.geometry_(element, p[1]);
                break;
            case 1001:
                setOrDrop(element, 'l', p[1], arr(p[1]).length === 0);
                break;
            case 1002:
                element['f'] = arr(p[1]).length > 0 ? p[1] : [0];
                break;
            case 1003:
                element['o'] = num(p[1]) * 100;
                break;
            case 1005:
                element['locked'] = p[1] === true;
                break;
            case 1006:
                element['visible'] = p[1] !== false;
                break;
            case 1008:
                element['txt'] = arr(p[1]).slice();
                break;
            case 1009: {
                const count = Math.max(0, int(p[1], 0));
                const shape = arr(element['s']);
                element['s'] = [shape[0] ?? 0, p.slice(2, 2 + count).map((value) => num(value))];
                break;
            }
            case 1010:
                setOrDrop(element, 'cl', p[1], typeof p[1] !== 'string' || p[1] === '');
                break;
            case 1011:
                setOrDrop(element, 'd', 0, num(p[1]) !== 0);
                break;
            case 1012:
                element['of'] = num(p[1]);
                break;
            case 1017:
                element['rs'] = num(p[1]);
                this.rebuild_(id);
                return true;
            case 1030:
                setOrDrop(element, 'lr', p[1], allZero(arr(p[1])));
                break;
            case 1031:
                element['useresource'] = p[1] === true;
                if (p[1] === true) {
                    element['rs'] = num(p[2]);
                } else {
                    element['url'] = typeof p[2] === 'string' ? p[2] : '';
                }
                this.rebuild_(id);
                return true;
            case 1032:
                element['srcdoc'] = typeof p[1] === 'string' ? p[1] : '';
                this.rebuild_(id);
                return true;
            case 1033:
                this.rebuild_(id);
                return true;
            case 1034:
                element['aspectRatioLocked'] = p[1] === true;
                return true;
            case 1036:
            case 1038: {
                if (!isObj(p[1])) {
                    // Not a freeform: nothing changed.
                    return true;
                }
                if (Array.isArray(p[1]['r'])) {
                    // A whole block: what it leaves out is at its default.
                    for (const key of BLOCK_KEYS) {
                        if (key !== 'pso') {
                            delete element[key];
                        }
                    }
                }
                Object.assign(element, p[1]);
                break;
            }
            case 1041:
                setOrDrop(element, 'wc', p[1], arr(p[1]).length === 0 || arr(p[1])[0] === 0);
                break;
            case 1042:
                setOrDrop(element, 'sh', p[1], arr(p[1]).length === 0);
                break;
            case 1043:
                element['fe'] = p[1];
                break;
            default:
                return false;
        }
        this.touched_.add(id);
        return true;
    }
}
