// Keyframe entries of one layout row of a timeline, parsed once into one track per animated
// (element, property) and evaluated at any time the way the studio's model evaluates its keys.
//
// The export turns each keyframe into moves (a start value eased to an end value over a duration)
// and jumps (duration 0: the value changes at that instant). Read in time order they give the
// model's value at every time: before the first entry its start value, inside a move the eased
// interpolation, after an entry its end value until the next entry takes over. Where entries share
// a start time the later one in the list wins, which is how the export orders a jump and the move
// that leaves the same key.
//
// The arithmetic is the model's: doubles as start + (end - start) * eased; whole-number properties
// (display, border width, font size, spacing, indent, shadow values, hue, blur) truncated after the
// same sum; colours per channel, truncated and kept within 0..255. Positions on a motion path come
// from motionpath.ts.

import { type AnimTarget, Prop, PROP_BY_KEY, Unit } from './contracts';
import { easingValue, normalizeEasing } from './easing';
import { buildTravel, orientationOf, type Polyline } from './motionpath';
import { isNum as isNumber } from './read';

export const enum TrackKind {
    Number,
    Integer,
    Color,
    Location,
}

/** How the model's bound property of each animatable key holds its value. */
export function trackKindOf(prop: Prop): TrackKind {
    switch (prop) {
        case Prop.Location:
            return TrackKind.Location;
        case Prop.BorderColor:
        case Prop.BackgroundColor:
        case Prop.TextColor:
        case Prop.HighlightColor:
        case Prop.ShadowColor:
            return TrackKind.Color;
        case Prop.Display:
        case Prop.BorderWidth:
        case Prop.GradientAngle:
        case Prop.FontSize:
        case Prop.LetterSpace:
        case Prop.WordSpace:
        case Prop.TextIndent:
        case Prop.ShadowBlur:
        case Prop.ShadowAngle:
        case Prop.ShadowDistance:
        case Prop.FilterHue:
        case Prop.FilterBlur:
            return TrackKind.Integer;
        default:
            return TrackKind.Number;
    }
}

/** Numbers stored per entry value; an evaluated location also carries its angle. */
function strideOf(kind: TrackKind): number {
    return kind === TrackKind.Color ? 4 : kind === TrackKind.Location ? 2 : 1;
}

/** The property of an export key, or undefined for keys the player does not animate. */
export function propOfKey(key: unknown): Prop | undefined {
    return typeof key === 'string' && Object.prototype.hasOwnProperty.call(PROP_BY_KEY, key)
        ? PROP_BY_KEY[key]
        : undefined;
}

/** "12px", "50%", "45deg", "1" or a plain number; NaN for anything else. */
function scalarOf(value: unknown): number {
    if (isNumber(value)) {
        return value;
    }
    if (typeof value !== 'string') {
        return NaN;
    }
    const number = parseFloat(value);
    return isFinite(number) ? number : NaN;
}

function unitOf(value: unknown, prop: Prop): Unit {
    if (typeof value !== 'string') {
        return prop === Prop.GradientAngle ? Unit.Deg : Unit.None;
    }
    const text = value.trim();
    if (text.endsWith('px')) {
        return Unit.Px;
    }
    if (text.endsWith('%')) {
        return Unit.Percent;
    }
    if (text.endsWith('deg')) {
        return Unit.Deg;
    }
    return Unit.None;
}

/** Appends the numbers of one value to out; false when the value has the wrong form. */
function readValue(kind: TrackKind, value: unknown, out: number[]): boolean {
    switch (kind) {
        case TrackKind.Color: {
            if (!Array.isArray(value) || value.length < 3) {
                return false;
            }
            for (let i = 0; i < 4; ++i) {
                const channel = i < value.length ? value[i] : 255;
                if (!isNumber(channel)) {
                    return false;
                }
                out.push(channel);
            }
            return true;
        }
        case TrackKind.Location: {
            if (!Array.isArray(value) || value.length < 2 || !isNumber(value[0]) || !isNumber(value[1])) {
                return false;
            }
            out.push(value[0], value[1]);
            return true;
        }
        default: {
            const number = scalarOf(value);
            if (!isFinite(number)) {
                return false;
            }
            out.push(number);
            return true;
        }
    }
}

/** The anchor rows of a motion entry, or null when there are none or one is not six numbers. */
function rowsOf(value: unknown): number[][] | null {
    if (!Array.isArray(value) || value.length === 0) {
        return null;
    }
    const rows: number[][] = [];
    for (const row of value) {
        if (!Array.isArray(row) || row.length < 6) {
            return null;
        }
        for (let i = 0; i < 6; ++i) {
            if (!isNumber(row[i])) {
                return null;
            }
        }
        rows.push(row.slice(0, 6) as number[]);
    }
    return rows;
}

interface RawEntry {
    readonly order: number;
    readonly time: number;
    readonly duration: number;
    readonly easing: number;
    readonly start: unknown;
    readonly end: unknown;
    readonly rows: unknown;
    readonly autoOrient_: boolean;
}

/** One evaluation's numbers on their way to the target; the player runs one frame at a time. */
const SCRATCH = new Float64Array(4);

function same(a: number, b: number): boolean {
    return a === b || (Number.isNaN(a) && Number.isNaN(b));
}

/**
 * One animated property of one element (id 0 is the scene) in one layout row: its entries in
 * time order as flat arrays, evaluated without allocating.
 */
export class PropertyTrack {
    readonly elementId: number;
    readonly prop: Prop;
    readonly kind: TrackKind;
    readonly unit: Unit;
    /** Whether an element on this motion path turns with it ("ao"). */
    readonly autoOrient_: boolean;
    /** The end of the last entry: the time from which the value holds. */
    readonly endTime: number;

    private readonly m_count: number;
    /**
     * Every number of the track in one block, so that a frame reads one array per track: the
     * entries' times, durations and easings, their start and end values (stride numbers each),
     * and the four numbers last written to the target.
     */
    private readonly m_data: Float64Array;
    private readonly m_startsAt: number;
    private readonly m_endsAt: number;
    private readonly m_writtenAt: number;
    private readonly m_travels: readonly (Polyline | null)[];
    private m_cursor = 0;
    private m_target: AnimTarget | null = null;

    private constructor(elementId: number, prop: Prop, kind: TrackKind, entries: readonly RawEntry[]) {
        this.elementId = elementId;
        this.prop = prop;
        this.kind = kind;
        const stride = strideOf(kind);
        const starts: number[] = [];
        const ends: number[] = [];
        const kept: RawEntry[] = [];
        const travels: (Polyline | null)[] = [];
        let unit = Unit.None;
        for (const entry of entries) {
            const startCount = starts.length;
            const endCount = ends.length;
            if (!readValue(kind, entry.start, starts) || !readValue(kind, entry.end, ends)) {
                starts.length = startCount;
                ends.length = endCount;
                continue;
            }
            if (kept.length === 0) {
                unit = unitOf(entry.start, prop);
            }
            kept.push(entry);
            if (kind === TrackKind.Location) {
                // The model places by anchors, not by key values: a move starts at its first row
                // and ends at its last, a jump goes from the first to the last anchor of its time.
                const rows = rowsOf(entry.rows);
                travels.push(rows ? buildTravel(rows) : null);
                if (rows) {
                    const first = rows[0]!;
                    const last = rows[rows.length - 1]!;
                    starts[startCount] = first[0]!;
                    starts[startCount + 1] = first[1]!;
                    ends[endCount] = last[0]!;
                    ends[endCount + 1] = last[1]!;
                }
            }
        }
        this.unit = unit;
        const count = kept.length;
        const values = starts.length || stride;
        this.m_count = count;
        this.m_startsAt = 3 * count;
        this.m_endsAt = this.m_startsAt + values;
        this.m_writtenAt = this.m_endsAt + values;
        const data = new Float64Array(this.m_writtenAt + 4);
        let endTime = 0;
        let autoOrient = false;
        kept.forEach((entry, i) => {
            data[i] = entry.time;
            data[count + i] = entry.duration;
            data[2 * count + i] = entry.easing;
            endTime = Math.max(endTime, entry.time + entry.duration);
            autoOrient = autoOrient || entry.autoOrient_;
        });
        data.set(starts, this.m_startsAt);
        data.set(ends, this.m_endsAt);
        data.fill(NaN, this.m_writtenAt);
        this.m_data = data;
        this.m_travels = travels;
        this.endTime = endTime;
        this.autoOrient_ = autoOrient;
    }

    /**
     * Tracks of one row's entries ("p" "pb" and unknown keys are not tracks). Entries that cannot
     * be read are left out; a track without a readable entry is not made.
     */
    static build(entries: unknown): PropertyTrack[] {
        if (!Array.isArray(entries)) {
            return [];
        }
        const groups = new Map<string, { elementId: number; prop: Prop; entries: RawEntry[] }>();
        entries.forEach((item: unknown, order) => {
            if (typeof item !== 'object' || item === null) {
                return;
            }
            const entry = item as { [key: string]: unknown };
            const prop = propOfKey(entry['p']);
            const elementId = entry['el'];
            const time = entry['t'];
            if (prop === undefined || !isNumber(elementId) || !isNumber(time)) {
                return;
            }
            const duration = isNumber(entry['d']) && entry['d'] > 0 ? entry['d'] : 0;
            const key = `${elementId}:${prop}`;
            let group = groups.get(key);
            if (!group) {
                group = { elementId, prop, entries: [] };
                groups.set(key, group);
            }
            group.entries.push({
                order,
                time,
                duration,
                easing: normalizeEasing(entry['es']),
                start: entry['s'],
                end: entry['e'],
                rows: entry['cp'],
                autoOrient_: entry['ao'] === true,
            });
        });
        const tracks: PropertyTrack[] = [];
        groups.forEach((group) => {
            // In time order; the export's own order where times are equal.
            group.entries.sort((a, b) => a.time - b.time || a.order - b.order);
            const track = new PropertyTrack(group.elementId, group.prop, trackKindOf(group.prop), group.entries);
            if (track.m_count > 0) {
                tracks.push(track);
            }
        });
        return tracks;
    }

    get entryCount(): number {
        return this.m_count;
    }

    get target(): AnimTarget | null {
        return this.m_target;
    }

    bind(target: AnimTarget | null): void {
        this.m_target = target;
        this.m_data.fill(NaN, this.m_writtenAt);
    }

    /** Index of the last entry that starts at or before time; -1 before the first. */
    private find_(time: number): number {
        const times = this.m_data;
        const count = this.m_count;
        const cursor = this.m_cursor;
        // Playback moves forward a little at a time: the entry of the last call usually still holds.
        if (cursor < count && times[cursor]! <= time && (cursor + 1 === count || times[cursor + 1]! > time)) {
            return cursor;
        }
        let low = 0;
        let high = count;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (times[middle]! <= time) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        this.m_cursor = low > 0 ? low - 1 : 0;
        return low - 1;
    }

    /**
     * The value at time into out: one number, four colour channels, or x, y and the angle of a
     * location (NaN without auto-orientation). Times before 0 count as 0.
     */
    evaluate(time: number, out: Float64Array): void {
        if (!(time > 0)) {
            time = 0;
        }
        const index = this.find_(time);
        if (this.kind === TrackKind.Location) {
            this.evaluateLocation_(index, time, out);
            return;
        }
        const data = this.m_data;
        const stride = strideOf(this.kind);
        if (index < 0) {
            for (let i = 0; i < stride; ++i) {
                out[i] = data[this.m_startsAt + i]!;
            }
            return;
        }
        const count = this.m_count;
        const base = index * stride;
        const t0 = data[index]!;
        const duration = data[count + index]!;
        if (!(duration > 0) || time >= t0 + duration) {
            for (let i = 0; i < stride; ++i) {
                out[i] = data[this.m_endsAt + base + i]!;
            }
            return;
        }
        const progress = easingValue(data[2 * count + index]!, (time - t0) / duration);
        for (let i = 0; i < stride; ++i) {
            const from = data[this.m_startsAt + base + i]!;
            const value = from + (data[this.m_endsAt + base + i]! - from) * progress;
            if (this.kind === TrackKind.Number) {
                out[i] = value;
            } else if (this.kind === TrackKind.Integer) {
                out[i] = Math.trunc(value) + 0;
            } else {
                const channel = Math.trunc(value);
                out[i] = channel < 0 ? 0 : channel > 255 ? 255 : channel + 0;
            }
        }
    }

    // The model places a motion by its anchors: the first keyed anchor before the first key, the
    // anchor itself at a key's own time, the path by length strictly between two keys, and the
    // last anchor of a key's time from that key on. The element only turns strictly inside a move.
    private evaluateLocation_(index: number, time: number, out: Float64Array): void {
        const data = this.m_data;
        const starts = this.m_startsAt;
        const ends = this.m_endsAt;
        out[2] = this.autoOrient_ ? 0 : NaN;
        if (index < 0) {
            out[0] = data[starts]!;
            out[1] = data[starts + 1]!;
            return;
        }
        const base = index * 2;
        const t0 = data[index]!;
        const duration = data[this.m_count + index]!;
        if (!(duration > 0) || time >= t0 + duration) {
            out[0] = data[ends + base]!;
            out[1] = data[ends + base + 1]!;
            return;
        }
        const travel = this.m_travels[index];
        if (time === t0 || (travel && !(travel.length > 0))) {
            out[0] = data[starts + base]!;
            out[1] = data[starts + base + 1]!;
            return;
        }
        const eased = easingValue(data[2 * this.m_count + index]!, (time - t0) / duration);
        // Curves that overshoot stay on the path: it has no length beyond its ends.
        const percent = eased < 0 ? 0 : eased > 1 ? 1 : eased;
        if (travel) {
            travel.pointAtPercent(percent, out, 0);
            if (this.autoOrient_) {
                out[2] = orientationOf(travel.angleAtPercent(percent));
            }
            return;
        }
        // No anchor rows: straight from the start value to the end value.
        for (let i = 0; i < 2; ++i) {
            const from = data[starts + base + i]!;
            out[i] = from + (data[ends + base + i]! - from) * percent;
        }
    }

    /**
     * Writes the value at time into the bound target. Unless force is set, a value equal to the
     * one written last is not written again.
     */
    apply(time: number, force: boolean): void {
        const target = this.m_target;
        if (!target) {
            return;
        }
        if (this.kind <= TrackKind.Integer) {
            // One number: no loops over channels.
            this.evaluate(time, SCRATCH);
            const number = SCRATCH[0]!;
            const at = this.m_writtenAt;
            if (!force && same(number, this.m_data[at]!)) {
                return;
            }
            this.m_data[at] = number;
            target.setNumber(this.prop, number, this.unit);
            return;
        }
        const value = SCRATCH;
        this.evaluate(time, value);
        const count = this.kind === TrackKind.Color ? 4 : 3;
        const data = this.m_data;
        const written = this.m_writtenAt;
        if (!force) {
            let unchanged = true;
            for (let i = 0; i < count; ++i) {
                unchanged = unchanged && same(value[i]!, data[written + i]!);
            }
            if (unchanged) {
                return;
            }
        }
        for (let i = 0; i < count; ++i) {
            data[written + i] = value[i]!;
        }
        if (this.kind === TrackKind.Color) {
            target.setColor(this.prop, value[0]!, value[1]!, value[2]!, value[3]!);
        } else {
            target.setLocation(value[0]!, value[1]!, value[2]!);
        }
    }

    /** Lets the layout's own value show again. */
    clear(): void {
        if (this.m_target) {
            this.m_target.clearAnimated(this.prop);
        }
        this.m_data.fill(NaN, this.m_writtenAt);
    }
}
