// Writing SVG path data. Coordinates are rounded to thousandths of a pixel: finer detail cannot be
// seen, and a shorter string is cheaper for the renderer to set while a shape's size animates.

/** One number of path data: at most three decimals, never "-0", and 0 for what overflowed. */
export function formatNumber(value: number): string {
    const rounded = Math.round(value * 1000) / 1000;
    return rounded === 0 || !isFinite(rounded) ? '0' : String(rounded);
}

/** Collects absolute commands only (M, L, C, A, Z), so readers never need to track a pen. */
export class PathWriter {
    private data_ = '';

    move_(x: number, y: number): void {
        this.data_ += 'M' + formatNumber(x) + ' ' + formatNumber(y);
    }

    line_(x: number, y: number): void {
        this.data_ += 'L' + formatNumber(x) + ' ' + formatNumber(y);
    }

    cubic_(x1: number, y1: number, x2: number, y2: number, x: number, y: number): void {
        this.data_ +=
            'C' +
            formatNumber(x1) + ' ' + formatNumber(y1) + ' ' +
            formatNumber(x2) + ' ' + formatNumber(y2) + ' ' +
            formatNumber(x) + ' ' + formatNumber(y);
    }

    /** Elliptical arc; `rotation` in degrees. A zero radius is drawn by browsers as a straight line. */
    arc_(rx: number, ry: number, rotation: number, large: boolean, sweep: boolean, x: number, y: number): void {
        this.data_ +=
            'A' +
            formatNumber(Math.abs(rx)) + ' ' + formatNumber(Math.abs(ry)) + ' ' + formatNumber(rotation) +
            (large ? ' 1' : ' 0') + (sweep ? ' 1 ' : ' 0 ') +
            formatNumber(x) + ' ' + formatNumber(y);
    }

    close_(): void {
        this.data_ += 'Z';
    }

    /** A closed polygon from flat [x0, y0, x1, y1, ...] coordinates. */
    polygon_(points: readonly number[]): void {
        const count = points.length >> 1;
        for (let i = 0; i < count; ++i) {
            const x = points[2 * i] as number;
            const y = points[2 * i + 1] as number;
            if (i === 0) {
                this.move_(x, y);
            } else {
                this.line_(x, y);
            }
        }
        if (count > 0) {
            this.close_();
        }
    }

    toString(): string {
        return this.data_;
    }
}

// Shapes read untrusted numbers with the same helpers as the rest of the player: finiteOr gives a
// finite number or the fallback.
export { clamp, num as finiteOr } from './read';
