// The records the tools send to the studio. Each builder gives one record in the form the studio's
// command building reads: numbered parameters with their type codes.

import { ElementKind, type ParamEntry, ParamType, type PathAnchor, type Rect, type StageRecord } from '../contracts';

/** Record ids, as the studio numbers its actions. */
export const enum RecordId {
    Insert = 1,
    ChangeGeometry = 1000,
    ChangeText = 1008,
    ChangeFreeformPath = 1036,
    SetEditPoint = 1037,
}

/** Geometry property numbers of the studio. */
export const enum GeometryProp {
    Left = 0,
    Top = 2,
    Width = 4,
    Height = 5,
}

/** The div shape codes the studio reads from an inserted element. */
export const enum DivShape {
    RoundedRect = 12,
    Ellipse = 21,
}

export function intParam(value: number): ParamEntry {
    return { type: ParamType.Int, value: Math.round(value) };
}

export function doubleParam(value: number): ParamEntry {
    return { type: ParamType.Double, value };
}

export function boolParam(value: boolean): ParamEntry {
    return { type: ParamType.Bool, value };
}

export function stringParam(value: string): ParamEntry {
    return { type: ParamType.String, value };
}

function round3(value: number): number {
    return Math.round(value * 1000) / 1000;
}

/** The path parameter: the anchors as a JSON array in a string. */
export function pathParam(points: readonly PathAnchor[]): ParamEntry {
    return stringParam(JSON.stringify(points));
}

/**
 * Insertion of a new element of `kind` with its box in stage pixels. `extra` are the parameters
 * that follow the element: the shape type and adjustments of a shape, the type and path of a
 * freeform. `divShape` makes a div a rounded rectangle or an ellipse.
 */
export function insertRecord(kind: ElementKind, box: Rect, extra: readonly ParamEntry[], divShape?: DivShape): StageRecord {
    const element: { [key: string]: unknown } = {
        type: kind,
        id: 0,
        path: { l: round3(box.x), t: round3(box.y), w: round3(box.w), h: round3(box.h) },
    };
    if (divShape !== undefined) {
        element['shapeType'] = divShape;
    }
    return { cmd: RecordId.Insert, params: [{ type: ParamType.Element, value: element }, ...extra] };
}

export function freeformPathRecord(id: number, points: readonly PathAnchor[]): StageRecord {
    return { cmd: RecordId.ChangeFreeformPath, params: [intParam(id), pathParam(points)] };
}

/** Marks a freeform as being in point editing or not; the studio scales keyframes differently then. */
export function editPointRecord(id: number, editing: boolean): StageRecord {
    return { cmd: RecordId.SetEditPoint, params: [intParam(id), boolParam(editing)] };
}

/** New values of some geometry properties: the three unread parameters, the property list, the values. */
export function geometryRecord(id: number, values: readonly (readonly [GeometryProp, number])[]): StageRecord {
    return {
        cmd: RecordId.ChangeGeometry,
        params: [
            intParam(id),
            intParam(0),
            intParam(0),
            intParam(0),
            { type: ParamType.IntList, value: values.map(([prop]) => prop) },
            ...values.map(([, value]) => doubleParam(round3(value))),
        ],
    };
}

/** The element-wide text format that goes with changed text. Colours are r, g, b, a from 0 to 255. */
export interface TextFormat {
    bold: boolean;
    italic: boolean;
    underline: boolean;
    strikeOut: boolean;
    fontSize: number;
    family: string;
    color: readonly number[];
    highlight: readonly number[];
    wordSpace: number;
    letterSpace: number;
}

export function textRecord(id: number, html: string, format: TextFormat): StageRecord {
    const color = (c: readonly number[], i: number) => intParam(Math.max(0, Math.min(255, c[i] ?? 0)));
    return {
        cmd: RecordId.ChangeText,
        params: [
            intParam(id),
            stringParam(html),
            boolParam(format.bold),
            boolParam(format.italic),
            boolParam(format.underline),
            boolParam(format.strikeOut),
            intParam(format.fontSize),
            stringParam(format.family),
            color(format.color, 0),
            color(format.color, 1),
            color(format.color, 2),
            color(format.color, 3),
            color(format.highlight, 0),
            color(format.highlight, 1),
            color(format.highlight, 2),
            color(format.highlight, 3),
            intParam(format.wordSpace),
            intParam(format.letterSpace),
        ],
    };
}
