// Type-checked reading of the data script. Every value in it may be missing or of another type in
// a damaged or hand-edited export; these helpers give a fallback instead of throwing.

export type Obj = { readonly [key: string]: unknown };

export function isObj(value: unknown): value is Obj {
    return typeof value === 'object' && value !== null && !Array.isArray(value);
}

export function obj(value: unknown): Obj | null {
    return isObj(value) ? value : null;
}

export function arr(value: unknown): readonly unknown[] {
    return Array.isArray(value) ? value : EMPTY;
}

export function isNum(value: unknown): value is number {
    return typeof value === 'number' && isFinite(value);
}

export function num(value: unknown, fallback: number): number {
    return isNum(value) ? value : fallback;
}

export function int(value: unknown, fallback: number): number {
    return isNum(value) ? Math.trunc(value) : fallback;
}

export function str(value: unknown, fallback: string): string {
    return typeof value === 'string' ? value : fallback;
}

export function bool(value: unknown, fallback: boolean): boolean {
    return typeof value === 'boolean' ? value : fallback;
}

export const EMPTY: readonly unknown[] = [];

/** How a stored length is measured: the animation units plus the aspect ratio of sizes. */
export const enum LengthUnit {
    Px = 1,
    Percent = 2,
    /** Width as a share of the height or the other way round; the value is the ratio times 100. */
    Aspect = 4,
}

export interface Length {
    value: number;
    unit: LengthUnit;
}

/** Reads a length: a number of pixels, "50%" or "150a". Anything else gives the fallback. */
export function readLength(raw: unknown, fallback: number, fallbackUnit: LengthUnit, out: Length): Length {
    out.value = fallback;
    out.unit = fallbackUnit;
    if (typeof raw === 'number') {
        if (isFinite(raw)) {
            out.value = raw;
            out.unit = LengthUnit.Px;
        }
    } else if (typeof raw === 'string' && raw.length > 1) {
        const sign = raw.charAt(raw.length - 1);
        const value = parseFloat(raw.slice(0, -1));
        if (isFinite(value)) {
            if (sign === '%') {
                out.value = value;
                out.unit = LengthUnit.Percent;
            } else if (sign === 'a') {
                out.value = value;
                out.unit = LengthUnit.Aspect;
            } else if (/^-?[\d.]+(e-?\d+)?px$/i.test(raw)) {
                out.value = parseFloat(raw);
                out.unit = LengthUnit.Px;
            }
        }
    }
    return out;
}

/** CSS text of a number, short and without exponent for the magnitudes a stage uses. */
export function cssNum(value: number): string {
    if (!isFinite(value)) {
        return '0';
    }
    const rounded = Math.round(value * 10000) / 10000;
    return rounded === 0 ? '0' : String(rounded);
}

export function cssLength(value: number, unit: LengthUnit): string {
    return unit === LengthUnit.Percent ? cssNum(value) + '%' : cssNum(value) + 'px';
}

/** Colour arrays are [red, green, blue, alpha] with alpha from 0 to 255. */
export function readColor(raw: unknown, out: Float64Array, offset: number, fallback: readonly number[]): void {
    const a = Array.isArray(raw) && raw.length >= 4 ? raw : fallback;
    for (let i = 0; i < 4; ++i) {
        out[offset + i] = clamp(num(a[i], fallback[i]!), 0, 255);
    }
}

export function cssColor(r: number, g: number, b: number, a: number): string {
    return (
        'rgba(' +
        Math.round(clamp(r, 0, 255)) +
        ',' +
        Math.round(clamp(g, 0, 255)) +
        ',' +
        Math.round(clamp(b, 0, 255)) +
        ',' +
        cssNum(clamp(a, 0, 255) / 255) +
        ')'
    );
}

export function clamp(value: number, low: number, high: number): number {
    return value < low ? low : value > high ? high : value;
}

/** Path of a resource file below the resource folder, each part of the name escaped for a URL. */
export function resourceUrl(folder: string, file: string): string {
    if (file === '') {
        return '';
    }
    const parts = folder.split(/[\\/]+/).filter((part) => part !== '');
    const prefix = parts.map((part) => (part === '.' || part === '..' ? part : encodeURIComponent(part))).join('/');
    const leading = /^[\\/]/.test(folder) ? '/' : '';
    return (prefix === '' ? leading : leading + prefix + '/') + encodeURIComponent(file);
}

/** Addresses a page may load into a widget or open: web, mail and relative ones, never script URLs. */
export function isSafeUrl(url: string): boolean {
    const trimmed = url.replace(/[\u0000-\u0020]+/g, '');
    const scheme = /^([a-zA-Z][a-zA-Z0-9+.-]*):/.exec(trimmed);
    if (!scheme) {
        return true;
    }
    const name = scheme[1]!.toLowerCase();
    return name === 'http' || name === 'https' || name === 'mailto' || name === 'file';
}
