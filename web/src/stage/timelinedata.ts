// The shown timeline as data: its entries ("anims"), grouped by element and property, as the
// keyframe records of the studio replace them. The stage only ever holds the current timeline of
// the current layout, so a record brings the whole new list of one keyframe (or one playback row).

import { arr, int, isObj, num, type Obj, str } from '../player/read';

type Entry = { readonly [key: string]: unknown };

function sameTrack(entry: Entry, el: number, p: string): boolean {
    return entry['el'] === el && entry['p'] === p;
}

export class TimelineData {
    private entries_: Entry[];
    private readonly labels_: { [name: string]: number };
    private readonly base_: Obj;
    /** Set when the entries changed since the runtime was last built from them. */
    dirty = false;

    constructor(raw: unknown) {
        this.base_ = isObj(raw) ? raw : {};
        this.entries_ = arr(this.base_['anims']).filter(isObj);
        const labels = this.base_['l'];
        this.labels_ = {};
        if (isObj(labels)) {
            for (const name of Object.keys(labels)) {
                const time = labels[name];
                if (typeof time === 'number') {
                    this.labels_[name] = time;
                }
            }
        }
    }

    get id(): number {
        return int(this.base_['id'], -1);
    }

    get entries(): readonly Entry[] {
        return this.entries_;
    }

    /** The timeline object a runtime is built from. */
    toData(): Obj {
        return { ...this.base_, anims: this.entries_.slice(), l: { ...this.labels_ } };
    }

    /** The entries of one (element, property) become `anims`; an empty list drops the track. */
    replaceTrack(el: number, p: string, anims: readonly unknown[]): void {
        this.entries_ = this.entries_.filter((entry) => !sameTrack(entry, el, p));
        for (const entry of anims) {
            if (isObj(entry)) {
                // Entries of a keyframe record may leave out their element or key; they are this track's.
                this.entries_.push({ ...entry, el, p });
            }
        }
        this.dirty = true;
    }

    /** Replaces every track that `anims` names (an added animation brings several). */
    replaceTracksOf(anims: readonly unknown[]): void {
        const groups = new Map<string, { el: number; p: string; list: unknown[] }>();
        for (const entry of anims) {
            if (!isObj(entry) || typeof entry['el'] !== 'number' || typeof entry['p'] !== 'string') {
                continue;
            }
            const key = entry['el'] + ':' + entry['p'];
            let group = groups.get(key);
            if (!group) {
                group = { el: entry['el'], p: entry['p'], list: [] };
                groups.set(key, group);
            }
            group.list.push(entry);
        }
        for (const group of groups.values()) {
            this.replaceTrack(group.el, group.p, group.list);
        }
    }

    /** Drops every track that `anims` names. */
    removeTracksOf(anims: readonly unknown[]): void {
        for (const entry of anims) {
            if (isObj(entry) && typeof entry['el'] === 'number' && typeof entry['p'] === 'string') {
                this.removeTrack(entry['el'], entry['p']);
            }
        }
    }

    removeTrack(el: number, p: string): void {
        const before = this.entries_.length;
        this.entries_ = this.entries_.filter((entry) => !sameTrack(entry, el, p));
        this.dirty = this.dirty || this.entries_.length !== before;
    }

    /** Drops everything the timeline does to one element. */
    removeElement(el: number): void {
        const before = this.entries_.length;
        this.entries_ = this.entries_.filter((entry) => entry['el'] !== el);
        this.dirty = this.dirty || this.entries_.length !== before;
    }

    setLabel(name: unknown, time: unknown): void {
        if (typeof name === 'string' && name !== '') {
            this.labels_[name] = Math.max(0, num(time, 0));
            this.dirty = true;
        }
    }

    removeLabel(name: unknown): void {
        if (typeof name === 'string' && name in this.labels_) {
            delete this.labels_[name];
            this.dirty = true;
        }
    }

    renameLabel(from: unknown, to: unknown): void {
        const old = str(from, '');
        if (old in this.labels_ && typeof to === 'string' && to !== '') {
            const time = this.labels_[old]!;
            delete this.labels_[old];
            this.labels_[to] = time;
            this.dirty = true;
        }
    }
}
