// The loading indicator shown while a document's files load: a ring of marks of which a moving
// head is fully drawn and the marks behind it fade, after the project's diameter, density (mark
// count), range (length of the fading tail, 1 = half the ring), speed, colour and mark shape.

import { clamp, int, isObj, num, str } from './read';

export interface IndicatorOptions {
    readonly diameter: number;
    readonly density: number;
    readonly range: number;
    readonly speed: number;
    readonly color: string;
    readonly shape: string;
}

const SHAPES = ['oval', 'spiral', 'square', 'rect', 'roundRect'];

/** The "li" object of the load script, or null when it asks for no indicator. */
export function readIndicator(raw: unknown): IndicatorOptions | null {
    if (!isObj(raw)) {
        return null;
    }
    const color = str(raw['color'], '#2090e6');
    const shape = str(raw['shape'], 'oval');
    return {
        diameter: clamp(int(raw['diameter'], 60) || 60, 10, 400),
        density: clamp(int(raw['density'], 9) || 9, 3, 160),
        range: clamp(num(raw['range'], 1) || 1, 0.1, 2),
        speed: clamp(int(raw['speed'], 1) || 1, 1, 50),
        color: /^#[0-9a-f]{3,8}$/i.test(color) || /^[a-z]+$/i.test(color) ? color : '#2090e6',
        shape: SHAPES.indexOf(shape) >= 0 ? shape : 'oval',
    };
}

export class LoadingIndicator {
    readonly node: HTMLCanvasElement;
    private readonly context_: CanvasRenderingContext2D | null;
    private frame_ = 0;
    private startTime_ = NaN;
    private progress_ = 0;

    constructor(
        container: HTMLElement,
        private readonly options_: IndicatorOptions,
    ) {
        const doc = container.ownerDocument;
        const size = options_.diameter;
        const ratio = (doc.defaultView && doc.defaultView.devicePixelRatio) || 1;
        this.node = doc.createElement('canvas');
        this.node.className = 'vetra-indicator';
        this.node.width = Math.round(size * ratio);
        this.node.height = Math.round(size * ratio);
        const style = this.node.style;
        style.position = 'absolute';
        style.left = '50%';
        style.top = '50%';
        style.width = size + 'px';
        style.height = size + 'px';
        style.marginLeft = -size / 2 + 'px';
        style.marginTop = -size / 2 + 'px';
        style.zIndex = '10';
        this.node.setAttribute('role', 'progressbar');
        this.node.setAttribute('aria-valuemin', '0');
        this.node.setAttribute('aria-valuemax', '100');
        container.appendChild(this.node);
        this.context_ = this.node.getContext('2d');
        if (this.context_) {
            this.context_.scale(ratio, ratio);
        }
        this.schedule_();
    }

    /** Share of the files loaded, 0 to 1. */
    setProgress(value: number): void {
        this.progress_ = clamp(value, 0, 1);
        this.node.setAttribute('aria-valuenow', String(Math.round(this.progress_ * 100)));
    }

    private schedule_(): void {
        const win = this.node.ownerDocument.defaultView;
        if (win && typeof win.requestAnimationFrame === 'function') {
            this.frame_ = win.requestAnimationFrame((now) => this.draw_(now));
        }
    }

    private draw_(now: number): void {
        this.frame_ = 0;
        if (isNaN(this.startTime_)) {
            this.startTime_ = now;
        }
        const c = this.context_;
        if (c) {
            const o = this.options_;
            const size = o.diameter;
            const count = o.density;
            const turns = ((now - this.startTime_) / 1000) * (0.5 + o.speed * 0.25);
            const head = Math.floor(turns * count) % count;
            const tail = Math.max(1, Math.round((count * o.range) / 2));
            const markSize = Math.max(2, Math.min(size / 5, (Math.PI * size) / count / 1.6));
            const radius = size / 2 - markSize / 2 - 1;
            c.clearRect(0, 0, size, size);
            c.fillStyle = o.color;
            for (let i = 0; i < count; ++i) {
                const behind = (head - i + count) % count;
                const alpha = behind < tail ? 1 - behind / tail : 0.08;
                const angle = (i / count) * Math.PI * 2 - Math.PI / 2;
                c.save();
                c.globalAlpha = alpha;
                c.translate(size / 2 + Math.cos(angle) * radius, size / 2 + Math.sin(angle) * radius);
                c.rotate(angle + Math.PI / 2);
                this.mark_(c, o.shape, markSize, behind < tail ? 1 - behind / (tail * 2) : 0.5);
                c.restore();
            }
        }
        this.schedule_();
    }

    private mark_(c: CanvasRenderingContext2D, shape: string, size: number, grow: number): void {
        const half = size / 2;
        c.beginPath();
        switch (shape) {
            case 'spiral':
                c.arc(0, 0, half * grow, 0, Math.PI * 2);
                break;
            case 'square':
                c.rect(-half, -half, size, size);
                break;
            case 'rect':
                c.rect(-half / 2, -half, half, size);
                break;
            case 'roundRect': {
                const w = half;
                const r = w / 2;
                c.moveTo(-w / 2 + r, -half);
                c.arcTo(w / 2, -half, w / 2, half, r);
                c.arcTo(w / 2, half, -w / 2, half, r);
                c.arcTo(-w / 2, half, -w / 2, -half, r);
                c.arcTo(-w / 2, -half, w / 2, -half, r);
                break;
            }
            default:
                c.arc(0, 0, half, 0, Math.PI * 2);
                break;
        }
        c.fill();
    }

    destroy(): void {
        const win = this.node.ownerDocument.defaultView;
        if (this.frame_ && win) {
            win.cancelAnimationFrame(this.frame_);
        }
        this.frame_ = 0;
        if (this.node.parentNode) {
            this.node.parentNode.removeChild(this.node);
        }
    }
}
