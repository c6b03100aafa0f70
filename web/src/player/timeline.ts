// One timeline of a shown scene as the player runs it: the playhead, its speed and direction,
// labels, triggers, the timeline's own events, and the animation entries of the layout in use.
//
// Time only moves in tick, which the document's frame loop calls with the frame's timestamp; the
// values at a time depend on nothing but that time, so a seek shows exactly what playback passing
// the same time shows.
//
// Triggers fire as the playhead passes them while playing, each once per pass: a pass starts where
// playing starts after a seek or a restart and includes the triggers at that very time; pausing and
// playing on continues the same pass, so a trigger that paused the timeline does not fire again
// when it is resumed. Turning round starts a pass in the other direction from where the playhead
// stands. Several triggers at one time fire in their order. An action run by a trigger (or by an
// event listener) that seeks, pauses or changes the speed takes effect at once: the rest of that
// frame's work is left to the next frame.
//
// Events: 150 Update whenever the playhead has moved (every frame of playback, and seeks), 151 Play
// when playing starts, 152 Pause when pause stops it, 153 Complete when playback reaches the end
// (the start when going backward) and stops there, 154 Speed Change and 155 Reverse when play or
// start changes the amount or the sign of the speed, 156 Seek for an explicit move of the playhead
// (seek, play from, pause at).

import type { TimelineApi, TimelineHost } from './contracts';
import { PropertyTrack } from './entries';
import { PlaybackTrack } from './playback';
import { isNum as isNumber, isObj as isObject } from './read';

export const enum TimelineEvent {
    Update = 150,
    Play = 151,
    Pause = 152,
    Complete = 153,
    SpeedChange = 154,
    Reverse = 155,
    Seek = 156,
}

interface LayoutRow {
    readonly h: number;
    readonly v: number;
    readonly tracks: readonly PropertyTrack[];
    readonly playbacks: readonly PlaybackTrack[];
    /** element id * 256 + property of every track, to tell which values a layout switch drops. */
    readonly keys: ReadonlySet<number>;
    readonly endTime: number;
}

interface Trigger {
    readonly time: number;
    readonly actions: readonly unknown[][];
}

function trackKey(elementId: number, prop: number): number {
    return elementId * 256 + prop;
}

function buildRow(h: number, v: number, entries: unknown): LayoutRow {
    const tracks = PropertyTrack.build(entries);
    const playbacks = PlaybackTrack.build(entries);
    let endTime = 0;
    const keys = new Set<number>();
    for (const track of tracks) {
        endTime = Math.max(endTime, track.endTime);
        keys.add(trackKey(track.elementId, track.prop));
    }
    for (const playback of playbacks) {
        endTime = Math.max(endTime, playback.endTime);
    }
    return { h, v, tracks, playbacks, keys, endTime };
}

const NO_ROW: LayoutRow = { h: NaN, v: NaN, tracks: [], playbacks: [], keys: new Set(), endTime: 0 };

export class TimelineRuntime implements TimelineApi {
    readonly id: number;
    readonly name: string;

    private readonly m_host: TimelineHost;
    private readonly m_rows: readonly LayoutRow[];
    /** Entries given without layouts, used for every layout. */
    private readonly m_anyLayout: LayoutRow | null;
    private readonly m_labels = new Map<string, number>();
    /** In time order; equal times keep the order of the data. */
    private readonly m_triggers: readonly Trigger[];
    private readonly m_triggerTimes: Float64Array;
    private readonly m_fixedEnd: number;

    private m_row: LayoutRow = NO_ROW;
    private m_bound = false;
    private m_duration = 0;
    private m_time = 0;
    private m_speed = 1;
    private m_playing = false;
    /** Whether this timeline has put its values on the elements (played, sought or paused at). */
    private m_active = false;
    /** Frame time and playhead from which playback counts; NaN until the first frame. */
    private m_anchorNow = NaN;
    private m_anchorTime = 0;
    private m_lastNow = NaN;
    /** The next trigger of the pass in the direction of the speed (index into m_triggers). */
    private m_nextTrigger = 0;
    /** Grows with every change of playhead, playing state or speed, so that a caller learns that
     *  a listener it ran has taken over. */
    private m_generation = 0;

    constructor(data: unknown, host: TimelineHost) {
        const object = isObject(data) ? data : {};
        this.m_host = host;
        this.id = isNumber(object['id']) ? object['id'] : -1;
        this.name = typeof object['n'] === 'string' ? object['n'] : '';

        const rows: LayoutRow[] = [];
        const layouts = object['ra'];
        if (Array.isArray(layouts)) {
            for (const row of layouts) {
                if (!Array.isArray(row) || !isNumber(row[0]) || !isNumber(row[1])) {
                    continue;
                }
                // The first row of a layout counts, as when the studio reads its own file.
                if (rows.some((known) => known.h === row[0] && known.v === row[1])) {
                    continue;
                }
                rows.push(buildRow(row[0], row[1], row[2]));
            }
        }
        this.m_rows = rows;
        this.m_anyLayout = rows.length === 0 && Array.isArray(object['anims']) ? buildRow(NaN, NaN, object['anims']) : null;

        let fixedEnd = 0;
        const labels = object['l'];
        if (isObject(labels)) {
            for (const name of Object.keys(labels)) {
                const time = labels[name];
                if (isNumber(time)) {
                    this.m_labels.set(name, Math.max(0, time));
                    fixedEnd = Math.max(fixedEnd, time);
                }
            }
        }
        const triggers: Trigger[] = [];
        const triggerData = object['t'];
        if (Array.isArray(triggerData)) {
            for (const trigger of triggerData) {
                if (!Array.isArray(trigger) || !isNumber(trigger[0]) || !Array.isArray(trigger[1])) {
                    continue;
                }
                const actions = (trigger[1] as unknown[]).filter((action): action is unknown[] => Array.isArray(action));
                triggers.push({ time: Math.max(0, trigger[0]), actions });
                fixedEnd = Math.max(fixedEnd, trigger[0]);
            }
        }
        // Array.prototype.sort is stable, so triggers of one time keep their order.
        triggers.sort((a, b) => a.time - b.time);
        this.m_triggers = triggers;
        this.m_triggerTimes = Float64Array.from(triggers, (trigger) => trigger.time);
        this.m_fixedEnd = fixedEnd;
        this.selectRow_(0, 0);
    }

    // TimelineApi

    get duration(): number {
        return this.m_duration;
    }

    get time(): number {
        return this.m_time;
    }

    get playing(): boolean {
        return this.m_playing;
    }

    get speed(): number {
        return this.m_speed;
    }

    labelTime(label: string): number | undefined {
        return this.m_labels.get(label);
    }

    play(speed?: number, from?: number | string): void {
        const events: number[] = [];
        this.changeSpeed_(speed, events);
        if (from !== undefined) {
            const time = this.resolve_(from);
            if (time !== undefined) {
                this.moveTo_(time, true, events);
            }
        }
        // At the end in the direction of play, playing starts over, as in the studio.
        if (this.m_speed > 0 ? this.m_time >= this.m_duration : this.m_time <= 0) {
            this.moveTo_(this.m_speed > 0 ? 0 : this.m_duration, false, events);
        }
        this.begin_(events);
        this.emitAll_(events);
    }

    start(speed?: number): void {
        const events: number[] = [];
        this.changeSpeed_(speed, events);
        this.moveTo_(this.m_speed > 0 ? 0 : this.m_duration, false, events);
        this.begin_(events);
        this.emitAll_(events);
    }

    pause(at?: number | string): void {
        const events: number[] = [];
        if (this.m_playing) {
            this.m_playing = false;
            ++this.m_generation;
            for (const playback of this.m_row.playbacks) {
                playback.hold(this.m_time);
            }
            events.push(TimelineEvent.Pause);
        }
        if (at !== undefined) {
            const time = this.resolve_(at);
            if (time !== undefined) {
                this.moveTo_(time, true, events);
            }
        }
        this.emitAll_(events);
    }

    toggle(): void {
        if (this.m_playing) {
            this.pause();
        } else {
            this.play();
        }
    }

    seek(to: number | string): void {
        const time = this.resolve_(to);
        if (time === undefined) {
            return;
        }
        const events: number[] = [];
        this.moveTo_(time, true, events);
        this.emitAll_(events);
    }

    // Frames

    /**
     * Moves the playhead to where playback stands at frame time now (ms, the animation frame's
     * timestamp) and applies the values there. Returns whether the timeline wants more frames.
     */
    tick(now: number): boolean {
        if (!this.m_playing) {
            return false;
        }
        this.m_lastNow = now;
        if (Number.isNaN(this.m_anchorNow)) {
            // The first frame of playing: time starts counting here, the triggers at the start fire.
            this.m_anchorNow = now;
            this.m_anchorTime = this.m_time;
            this.fireTriggers_(this.m_time, this.m_generation);
            return this.m_playing;
        }
        const elapsed = now > this.m_anchorNow ? now - this.m_anchorNow : 0;
        let time = this.m_anchorTime + elapsed * this.m_speed;
        let ended = false;
        if (this.m_speed > 0 && time >= this.m_duration) {
            time = this.m_duration;
            ended = true;
        } else if (this.m_speed < 0 && time <= 0) {
            time = 0;
            ended = true;
        }
        const previous = this.m_time;
        this.m_time = time;
        this.applyValues_(false);
        // Indexed loops on the frame path: no iterator per frame.
        const playbacks = this.m_row.playbacks;
        for (let i = 0; i < playbacks.length; ++i) {
            playbacks[i]!.advance(previous, time, this.m_speed);
        }

        const generation = this.m_generation;
        if (time !== previous) {
            this.m_host.timelineEvent(TimelineEvent.Update, this);
            if (this.m_generation !== generation) {
                return this.m_playing;
            }
        }
        if (!this.fireTriggers_(time, generation)) {
            return this.m_playing;
        }
        if (ended) {
            this.m_playing = false;
            ++this.m_generation;
            this.m_host.timelineEvent(TimelineEvent.Complete, this);
        }
        return this.m_playing;
    }

    // Layouts

    /**
     * Uses the entries of layout (h, v). A layout without entries of its own animates nothing, as
     * in the studio; the values the old layout animated and the new one does not are given back to
     * the elements. A timeline that has shown its values shows those of the new layout at once.
     */
    setLayout(h: number, v: number): void {
        this.selectRow_(h, v);
    }

    /** Looks the elements up again, for a host that has rebuilt its views. */
    rebind(): void {
        this.bindRow_(this.m_row);
        if (this.m_active) {
            this.show_();
        }
    }

    /** Gives every animated value back to the elements and stops; the timeline is as new. */
    clearAnimated(): void {
        if (this.m_playing) {
            this.m_playing = false;
            ++this.m_generation;
        }
        for (const track of this.m_row.tracks) {
            track.clear();
        }
        this.m_active = false;
    }

    private selectRow_(h: number, v: number): void {
        const row = this.m_rows.find((known) => known.h === h && known.v === v) || this.m_anyLayout || NO_ROW;
        const old = this.m_row;
        if (row === old && this.m_bound) {
            return;
        }
        this.m_bound = true;
        if (row !== old) {
            for (const track of old.tracks) {
                if (!row.keys.has(trackKey(track.elementId, track.prop))) {
                    track.clear();
                }
            }
            for (const playback of old.playbacks) {
                playback.bind(null);
            }
            this.m_row = row;
        }
        this.bindRow_(row);
        this.m_duration = Math.max(this.m_fixedEnd, row.endTime);
        if (this.m_active) {
            this.show_();
        }
    }

    private bindRow_(row: LayoutRow): void {
        for (const track of row.tracks) {
            track.bind(this.m_host.animTarget(track.elementId));
        }
        for (const playback of row.playbacks) {
            playback.bind(this.m_host.playbackTarget(playback.elementId));
        }
    }

    // Inner workings

    /** A label's time or a number of ms, kept within the timeline; undefined for anything else. */
    private resolve_(to: number | string): number | undefined {
        const time = typeof to === 'string' ? this.m_labels.get(to) : isNumber(to) ? to : undefined;
        if (time === undefined) {
            return undefined;
        }
        return time < 0 ? 0 : time > this.m_duration ? this.m_duration : time;
    }

    /** Writes every value at the current time and puts the playback targets in step. */
    private show_(): void {
        this.m_active = true;
        this.applyValues_(true);
        for (const playback of this.m_row.playbacks) {
            playback.sync(this.m_time, this.m_playing, this.m_speed);
        }
    }

    private applyValues_(force: boolean): void {
        const tracks = this.m_row.tracks;
        const time = this.m_time;
        for (let i = 0; i < tracks.length; ++i) {
            tracks[i]!.apply(time, force);
        }
    }

    /** A jump of the playhead, explicit (a Seek event) or a restart: a new pass starts there. */
    private moveTo_(time: number, explicit: boolean, events: number[]): void {
        const moved = time !== this.m_time;
        this.m_time = time;
        ++this.m_generation;
        this.m_anchorTime = time;
        // While playing, counting goes on from the frame in which the jump happened.
        this.m_anchorNow = this.m_playing ? this.m_lastNow : NaN;
        this.startPass_(true);
        this.show_();
        if (explicit) {
            events.push(TimelineEvent.Seek);
        }
        if (moved) {
            events.push(TimelineEvent.Update);
        }
    }

    private changeSpeed_(speed: number | undefined, events: number[]): void {
        if (!isNumber(speed) || speed === 0 || speed === this.m_speed) {
            return;
        }
        const reversed = speed > 0 !== this.m_speed > 0;
        const rescaled = Math.abs(speed) !== Math.abs(this.m_speed);
        this.m_speed = speed;
        ++this.m_generation;
        this.m_anchorTime = this.m_time;
        this.m_anchorNow = this.m_playing ? this.m_lastNow : NaN;
        if (reversed) {
            this.startPass_(false);
            events.push(TimelineEvent.Reverse);
        }
        if (rescaled) {
            events.push(TimelineEvent.SpeedChange);
        }
        if (this.m_playing) {
            for (const playback of this.m_row.playbacks) {
                playback.respeed(this.m_time, this.m_speed);
            }
        }
    }

    private begin_(events: number[]): void {
        if (this.m_playing) {
            return;
        }
        this.m_playing = true;
        ++this.m_generation;
        // Frame times of an earlier run say nothing about this one.
        this.m_anchorNow = NaN;
        this.m_lastNow = NaN;
        this.show_();
        events.push(TimelineEvent.Play);
        this.m_host.wake();
    }

    /** Sends the events of one call in order, as long as no listener has taken over. */
    private emitAll_(events: readonly number[]): void {
        const generation = this.m_generation;
        for (const event of events) {
            this.m_host.timelineEvent(event, this);
            if (this.m_generation !== generation) {
                return;
            }
        }
    }

    /** A pass in the direction of the speed from the current time, with the triggers at that time or not. */
    private startPass_(inclusive: boolean): void {
        const times = this.m_triggerTimes;
        const time = this.m_time;
        if (this.m_speed > 0) {
            let next = 0;
            while (next < times.length && (inclusive ? times[next]! < time : times[next]! <= time)) {
                ++next;
            }
            this.m_nextTrigger = next;
        } else {
            let next = times.length - 1;
            while (next >= 0 && (inclusive ? times[next]! > time : times[next]! >= time)) {
                --next;
            }
            this.m_nextTrigger = next;
        }
    }

    /**
     * Fires the triggers of the pass up to time. False when an action took over (the playhead,
     * the playing state or the speed changed), which ends the frame's work.
     */
    private fireTriggers_(time: number, generation: number): boolean {
        const times = this.m_triggerTimes;
        if (this.m_speed > 0) {
            while (this.m_nextTrigger < times.length && times[this.m_nextTrigger]! <= time) {
                const trigger = this.m_triggers[this.m_nextTrigger++]!;
                this.m_host.runActions(trigger.actions, this);
                if (this.m_generation !== generation) {
                    return false;
                }
            }
        } else {
            while (this.m_nextTrigger >= 0 && times[this.m_nextTrigger]! >= time) {
                const trigger = this.m_triggers[this.m_nextTrigger--]!;
                this.m_host.runActions(trigger.actions, this);
                if (this.m_generation !== generation) {
                    return false;
                }
            }
        }
        return true;
    }
}
