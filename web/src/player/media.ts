// Audio and video elements as actions and timelines drive them. Browsers play media forward only,
// so a negative rate steps the position back on a timer.

import { type MediaApi, type PlaybackTarget, Prop } from './contracts';
import { type ElementView, Group } from './elementview';

const STEP_MS = 40;

export class MediaController implements MediaApi, PlaybackTarget {
    readonly node: HTMLMediaElement;
    private backward_ = 0;
    private timer_: number | null = null;
    private rate_ = 1;

    constructor(private readonly view_: ElementView) {
        this.node = view_.media as HTMLMediaElement;
    }

    private get win_(): Window | null {
        return this.node.ownerDocument.defaultView;
    }

    private stopStepping_(): void {
        if (this.timer_ !== null) {
            const win = this.win_;
            if (win) {
                win.clearInterval(this.timer_);
            }
            this.timer_ = null;
        }
        this.backward_ = 0;
    }

    private stepBack_(): void {
        const next = this.node.currentTime - (this.backward_ * STEP_MS) / 1000;
        if (next <= 0) {
            this.node.currentTime = 0;
            this.stopStepping_();
            return;
        }
        this.node.currentTime = next;
    }

    play(rate?: number, from?: number): void {
        const speed = typeof rate === 'number' && isFinite(rate) && rate !== 0 ? rate : 1;
        this.rate_ = speed;
        if (typeof from === 'number' && isFinite(from)) {
            this.seek(from);
        }
        this.stopStepping_();
        if (speed < 0) {
            this.node.pause();
            this.backward_ = -speed;
            const win = this.win_;
            if (win) {
                this.timer_ = win.setInterval(() => this.stepBack_(), STEP_MS);
            }
            return;
        }
        this.node.playbackRate = speed;
        const started = this.node.play();
        if (started && typeof started.catch === 'function') {
            // A browser that refuses to start sound without a gesture says so here; the page goes on.
            started.catch(() => undefined);
        }
    }

    start(rate?: number): void {
        const speed = typeof rate === 'number' && isFinite(rate) && rate !== 0 ? rate : 1;
        const duration = this.node.duration;
        this.play(speed, speed < 0 ? (isFinite(duration) ? duration * 1000 : 0) : 0);
    }

    pause(at?: number): void {
        this.stopStepping_();
        this.node.pause();
        if (typeof at === 'number' && isFinite(at)) {
            this.seek(at);
        }
    }

    get playing(): boolean {
        return this.timer_ !== null || !this.node.paused;
    }

    toggle(): void {
        if (this.playing) {
            this.pause();
        } else {
            this.play(this.rate_);
        }
    }

    seek(ms: number): void {
        if (!isFinite(ms)) {
            return;
        }
        try {
            this.node.currentTime = Math.max(0, ms / 1000);
        } catch {
            // Media that has not loaded its metadata yet may refuse; the position stays.
        }
    }

    mute(on?: boolean): void {
        this.node.muted = on !== false;
    }

    toggleMute(): void {
        this.node.muted = !this.node.muted;
    }

    setVolume(percent: number): void {
        if (!isFinite(percent)) {
            return;
        }
        const value = Math.max(0, Math.min(100, percent));
        this.view_.base[Prop.Volume] = value;
        this.view_.clearAnimated(Prop.Volume);
        this.view_.markDirty_(Group.Volume);
    }

    fullScreen(): void {
        const node = this.node as HTMLMediaElement & { webkitRequestFullscreen?: () => void };
        try {
            if (typeof node.requestFullscreen === 'function') {
                const request = node.requestFullscreen();
                if (request && typeof request.catch === 'function') {
                    request.catch(() => undefined);
                }
            } else if (typeof node.webkitRequestFullscreen === 'function') {
                node.webkitRequestFullscreen();
            }
        } catch {
            // Full screen needs a user gesture in most browsers.
        }
    }

    /** Playback entries of a timeline: kinds Start, Play, Play From, Pause, Pause At in this order. */
    playback(kind: number, position: number, speed: number): void {
        switch (kind % 20) {
            case 0:
            case 1:
            case 2:
                this.play(isFinite(speed) && speed !== 0 ? speed : 1, position);
                break;
            case 3:
            case 4:
                this.pause(position);
                break;
            default:
                break;
        }
    }

    destroy(): void {
        this.stopStepping_();
        this.node.pause();
    }
}
