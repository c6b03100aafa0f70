// Scene transitions. Each scene sits in a frame of the stage's size; a transition moves, fades or
// clips the two frames and, at its end, leaves the incoming frame alone on the stage.

import { easingValue } from './easing';
import { cssNum, int, num } from './read';

export const enum TransitionType {
    None = 0,
    Fade = 1,
    Push = 2,
    Wipe = 3,
    Cover = 4,
    Uncover = 5,
}

export interface TransitionPlan {
    readonly type: number;
    readonly duration: number;
    readonly easing: number;
    readonly direction: number;
}

export const NO_TRANSITION: TransitionPlan = { type: 0, duration: 0, easing: 0, direction: 0 };

/** Reads [type, duration, easing?, direction?] as the scene's "st" and jump actions give it. */
export function readTransition(raw: unknown): TransitionPlan {
    if (!Array.isArray(raw)) {
        return NO_TRANSITION;
    }
    const type = int(raw[0], 0);
    const duration = Math.max(0, num(raw[1], 0));
    if (type < TransitionType.Fade || type > TransitionType.Uncover || duration === 0) {
        return NO_TRANSITION;
    }
    const easing = int(raw[2], 0);
    const direction = int(raw[3], 0);
    return {
        type,
        duration,
        easing: easing >= 0 ? easing : 0,
        direction: direction >= 0 && direction <= 7 ? direction : 0,
    };
}

/** Unit vector of the side the incoming scene comes from: from left, top, right, bottom, then the corners. */
const FROM: readonly (readonly [number, number])[] = [
    [-1, 0],
    [0, -1],
    [1, 0],
    [0, 1],
    [-1, -1],
    [1, -1],
    [-1, 1],
    [1, 1],
];

export function createFrame(doc: Document): HTMLElement {
    const frame = doc.createElement('div');
    frame.className = 'vetra-scene-frame';
    const style = frame.style;
    style.position = 'absolute';
    style.left = '0';
    style.top = '0';
    style.width = '100%';
    style.height = '100%';
    return frame;
}

function resetFrame(frame: HTMLElement): void {
    const style = frame.style;
    style.transform = '';
    style.opacity = '';
    style.clipPath = '';
    style.zIndex = '';
}

export class SceneTransition {
    private startTime_ = NaN;
    private done_ = false;
    private readonly dx_: number;
    private readonly dy_: number;

    constructor(
        private readonly outgoing_: HTMLElement | null,
        private readonly incoming_: HTMLElement,
        private readonly plan_: TransitionPlan,
        private readonly width_: number,
        private readonly height_: number,
        private readonly onDone_: () => void,
    ) {
        const from = FROM[plan_.direction] || FROM[0]!;
        this.dx_ = from[0];
        this.dy_ = from[1];
        const uncover = plan_.type === TransitionType.Uncover;
        incoming_.style.zIndex = uncover ? '1' : '2';
        if (outgoing_) {
            outgoing_.style.zIndex = uncover ? '2' : '1';
        }
        this.apply_(0);
    }

    /** Moves the frames to the state at `now`; answers whether more frames are needed. */
    tick(now: number): boolean {
        if (this.done_) {
            return false;
        }
        if (isNaN(this.startTime_)) {
            this.startTime_ = now;
        }
        const progress = Math.min(1, (now - this.startTime_) / this.plan_.duration);
        if (progress >= 1) {
            this.finish();
            return false;
        }
        this.apply_(progress);
        return true;
    }

    /** Jumps to the end: the incoming scene alone, in place. */
    finish(): void {
        if (this.done_) {
            return;
        }
        this.done_ = true;
        resetFrame(this.incoming_);
        if (this.outgoing_) {
            resetFrame(this.outgoing_);
        }
        this.onDone_();
    }

    private apply_(progress: number): void {
        let p = progress;
        try {
            p = easingValue(this.plan_.easing, progress);
        } catch {
            p = progress;
        }
        if (!isFinite(p)) {
            p = progress;
        }
        const w = this.width_;
        const h = this.height_;
        const inStyle = this.incoming_.style;
        const outStyle = this.outgoing_ ? this.outgoing_.style : null;
        switch (this.plan_.type) {
            case TransitionType.Fade:
                inStyle.opacity = cssNum(p);
                if (outStyle) {
                    outStyle.opacity = cssNum(1 - p);
                }
                break;
            case TransitionType.Push:
                inStyle.transform = translate(this.dx_ * w * (1 - p), this.dy_ * h * (1 - p));
                if (outStyle) {
                    outStyle.transform = translate(-this.dx_ * w * p, -this.dy_ * h * p);
                }
                break;
            case TransitionType.Wipe: {
                // The revealed part grows from the side the scene comes from.
                const hidden = (1 - p) * 100;
                const top = this.dy_ < 0 ? 0 : this.dy_ > 0 ? hidden : 0;
                const bottom = this.dy_ < 0 ? hidden : 0;
                const left = this.dx_ > 0 ? hidden : 0;
                const right = this.dx_ < 0 ? hidden : 0;
                inStyle.clipPath =
                    'inset(' + cssNum(top) + '% ' + cssNum(right) + '% ' + cssNum(bottom) + '% ' + cssNum(left) + '%)';
                break;
            }
            case TransitionType.Cover:
                inStyle.transform = translate(this.dx_ * w * (1 - p), this.dy_ * h * (1 - p));
                break;
            case TransitionType.Uncover:
                if (outStyle) {
                    outStyle.transform = translate(-this.dx_ * w * p, -this.dy_ * h * p);
                }
                break;
            default:
                break;
        }
    }
}

function translate(x: number, y: number): string {
    return 'translate3d(' + cssNum(x) + 'px,' + cssNum(y) + 'px,0)';
}
