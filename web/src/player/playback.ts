// Playback entries ("p": "pb") of one element in one layout row: the runs with which a timeline
// starts, plays and pauses a media element or a symbol instance.
//
// An entry is {"el", "t", "d", "a": [action, position, speed?]}: at timeline time t the element
// stands at position (ms of its own time) and, for the Start, Play and Play From actions, plays
// at speed for d ms of timeline; Pause and Pause At carry no speed and hold the position. The
// export has already resolved how runs follow each other (a run cut short by the next mark, a Play
// that continues where the element stood), so the state of the element at any timeline time is
// the state of the last entry that started by then:
//
//   inside a run:     playing, at position + speed * (time - t)
//   after a run:      standing at the run's end, position + speed * d
//   a pause entry:    standing at its position
//   before any entry: whatever the element does on its own
//
// The track tells its target only what changes: when playback crosses an entry it passes on that
// entry's action; a seek, a start, a pause or a change of speed of the timeline puts the target in
// the state of the new time. A run that ends by itself during playback is left to end by itself,
// so that a looping medium keeps looping.

import type { PlaybackTarget } from './contracts';
import { isNum as isNumber } from './read';

/** The action families of playback entries: symbols 20 to 24, media 40 to 44. */
const SYMBOL_START = 20;
const MEDIA_START = 40;
const KIND_PLAY_FROM = 2;
const KIND_PAUSE = 3;
const KIND_PAUSE_AT = 4;

function familyOf(action: number): number {
    if (action >= SYMBOL_START && action <= SYMBOL_START + KIND_PAUSE_AT) {
        return SYMBOL_START;
    }
    if (action >= MEDIA_START && action <= MEDIA_START + KIND_PAUSE_AT) {
        return MEDIA_START;
    }
    return -1;
}

const enum Mode {
    /** Nothing said to the target yet (or nothing since the timeline went before every entry). */
    Untouched,
    Running,
    /** The run of the state's entry, held still because the timeline is not playing. */
    Held,
    /** After a run or at a pause entry: standing still. */
    Standing,
}

interface RawPlayback {
    readonly order: number;
    readonly time: number;
    readonly duration: number;
    readonly action: number;
    readonly position: number;
    readonly speed: number;
}

export class PlaybackTrack {
    readonly elementId: number;
    /** The end of the last run. */
    readonly endTime: number;

    private readonly m_count: number;
    private readonly m_times: Float64Array;
    private readonly m_durations: Float64Array;
    private readonly m_actions: Int32Array;
    private readonly m_positions: Float64Array;
    /** NaN for the pause entries. */
    private readonly m_speeds: Float64Array;
    private m_target: PlaybackTarget | null = null;
    private m_mode = Mode.Untouched;
    private m_entry = -1;

    private constructor(elementId: number, entries: readonly RawPlayback[]) {
        this.elementId = elementId;
        const count = entries.length;
        this.m_count = count;
        this.m_times = new Float64Array(count);
        this.m_durations = new Float64Array(count);
        this.m_actions = new Int32Array(count);
        this.m_positions = new Float64Array(count);
        this.m_speeds = new Float64Array(count);
        let endTime = 0;
        entries.forEach((entry, i) => {
            this.m_times[i] = entry.time;
            this.m_durations[i] = entry.duration;
            this.m_actions[i] = entry.action;
            this.m_positions[i] = entry.position;
            this.m_speeds[i] = entry.speed;
            endTime = Math.max(endTime, entry.time + entry.duration);
        });
        this.endTime = endTime;
    }

    /** One track per element from a row's entries; entries that are not playback marks are skipped. */
    static build(entries: unknown): PlaybackTrack[] {
        if (!Array.isArray(entries)) {
            return [];
        }
        const groups = new Map<number, RawPlayback[]>();
        entries.forEach((item: unknown, order) => {
            if (typeof item !== 'object' || item === null) {
                return;
            }
            const entry = item as { [key: string]: unknown };
            const action = entry['a'];
            if (entry['p'] !== 'pb' || !isNumber(entry['el']) || !isNumber(entry['t']) || !Array.isArray(action)) {
                return;
            }
            const kind = action[0];
            if (!isNumber(kind) || familyOf(kind) < 0) {
                return;
            }
            const pause = kind - familyOf(kind) >= KIND_PAUSE;
            const speed = action[2];
            const raw: RawPlayback = {
                order,
                time: entry['t'],
                duration: isNumber(entry['d']) && entry['d'] > 0 ? entry['d'] : 0,
                action: kind,
                position: isNumber(action[1]) && action[1] > 0 ? action[1] : 0,
                speed: pause ? NaN : isNumber(speed) && speed !== 0 ? speed : 1,
            };
            let group = groups.get(entry['el']);
            if (!group) {
                group = [];
                groups.set(entry['el'], group);
            }
            group.push(raw);
        });
        const tracks: PlaybackTrack[] = [];
        groups.forEach((group, elementId) => {
            group.sort((a, b) => a.time - b.time || a.order - b.order);
            tracks.push(new PlaybackTrack(elementId, group));
        });
        return tracks;
    }

    bind(target: PlaybackTarget | null): void {
        this.m_target = target;
        this.m_mode = Mode.Untouched;
        this.m_entry = -1;
    }

    /** Index of the last entry that starts at or before time; -1 before the first. */
    private find_(time: number): number {
        let low = 0;
        let high = this.m_count;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (this.m_times[middle]! <= time) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low - 1;
    }

    private isRunningAt_(index: number, time: number): boolean {
        const duration = this.m_durations[index]!;
        return this.m_speeds[index] === this.m_speeds[index] && duration > 0 && time < this.m_times[index]! + duration;
    }

    /** Where the element stands at time within or after the run of entry index. */
    private positionAt_(index: number, time: number): number {
        const speed = this.m_speeds[index]!;
        const position = this.m_positions[index]!;
        if (speed !== speed) {
            return position;
        }
        const elapsed = Math.min(time - this.m_times[index]!, this.m_durations[index]!);
        const result = position + speed * elapsed;
        return result > 0 ? result : 0;
    }

    /**
     * Puts the target in the state of time: playing at speed times the timeline's speed when the
     * timeline plays, else standing. A standing state that was said already is not said again.
     */
    sync(time: number, playing: boolean, timelineSpeed: number): void {
        this.enter_(this.find_(time), time, playing, timelineSpeed, false);
    }

    // crossed: playback just passed the start of entry index, whose own action then goes out.
    private enter_(index: number, time: number, playing: boolean, timelineSpeed: number, crossed: boolean): void {
        const target = this.m_target;
        if (!target) {
            return;
        }
        if (index < 0) {
            // Before every entry: an element the timeline has moved goes back to its start.
            if (this.m_mode !== Mode.Untouched) {
                target.playback(familyOf(this.m_actions[0]!) + KIND_PAUSE_AT, 0, NaN);
                this.m_mode = Mode.Untouched;
                this.m_entry = -1;
            }
            return;
        }
        const action = this.m_actions[index]!;
        const family = familyOf(action);
        const position = this.positionAt_(index, time);
        if (this.isRunningAt_(index, time)) {
            if (playing) {
                const sent = crossed || time === this.m_times[index] ? action : family + KIND_PLAY_FROM;
                target.playback(sent, position, this.m_speeds[index]! * timelineSpeed);
                this.m_mode = Mode.Running;
            } else {
                target.playback(family + KIND_PAUSE_AT, position, NaN);
                this.m_mode = Mode.Held;
            }
            this.m_entry = index;
            return;
        }
        if (!crossed && this.m_mode === Mode.Standing && this.m_entry === index) {
            return;
        }
        const pauseEntry = action - family >= KIND_PAUSE;
        target.playback(crossed && pauseEntry ? action : family + KIND_PAUSE_AT, position, NaN);
        this.m_mode = Mode.Standing;
        this.m_entry = index;
    }

    /**
     * Playback of the timeline moved from `from` to `to` (either way). Crossing the start of an
     * entry passes its action on; moving back into a run or out of one puts the target in the
     * state of the new time.
     */
    advance(from: number, to: number, timelineSpeed: number): void {
        if (!this.m_target || from === to || this.m_count === 0) {
            return;
        }
        const index = this.find_(to);
        if (to > from) {
            if (index >= 0 && this.m_times[index]! > from) {
                // The latest entry crossed decides; the earlier ones in this frame are over already.
                this.enter_(index, to, true, timelineSpeed, true);
            } else if (this.m_mode === Mode.Running && index === this.m_entry && !this.isRunningAt_(index, to)) {
                // The run ended by itself.
                this.m_mode = Mode.Standing;
            }
            return;
        }
        // Backwards: the state changes where an entry's start or a run's end lies in (to, from].
        const fromIndex = this.find_(from);
        const runEnd = index >= 0 ? this.m_times[index]! + this.m_durations[index]! : -Infinity;
        if (fromIndex !== index || (runEnd > to && runEnd <= from)) {
            this.enter_(index, to, true, timelineSpeed, false);
        }
    }

    /** The timeline stopped at time: a run in progress stops there too. */
    hold(time: number): void {
        if (!this.m_target || this.m_mode !== Mode.Running) {
            return;
        }
        const index = this.m_entry;
        this.m_target.playback(familyOf(this.m_actions[index]!) + KIND_PAUSE, this.positionAt_(index, time), NaN);
        this.m_mode = Mode.Held;
    }

    /** The timeline changed speed while playing: a run in progress follows. */
    respeed(time: number, timelineSpeed: number): void {
        if (this.m_mode === Mode.Running) {
            this.m_mode = Mode.Held;
            this.sync(time, true, timelineSpeed);
        }
    }
}
