// The records the stage sends: typed parameter entries, the element geometry record and the
// envelope of one submitCommandFromJS call.

import { ParamType, type ParamEntry, type StageRecord } from './contracts';
import type { PropertyValues } from './geometry';

export function intParam(value: number): ParamEntry {
    return { type: ParamType.Int, value: Math.round(value) };
}

export function doubleParam(value: number): ParamEntry {
    return { type: ParamType.Double, value: isFinite(value) ? value : 0 };
}

export function boolParam(value: boolean): ParamEntry {
    return { type: ParamType.Bool, value };
}

export function record(cmd: number, params: ParamEntry[]): StageRecord {
    return { cmd, isUndoCmd: false, params };
}

/** Record 1000: element id, three unused ints, the property numbers, then one double per property. */
export function geometryRecord(id: number, values: PropertyValues): StageRecord {
    return record(1000, [
        intParam(id),
        intParam(0),
        intParam(0),
        intParam(0),
        { type: ParamType.IntList, value: values.map(([prop]) => prop) },
        ...values.map(([, value]) => doubleParam(value)),
    ]);
}

/** Record 33: select or deselect one element. */
export function selectionRecord(id: number, selected: boolean): StageRecord {
    return record(33, [intParam(id), boolParam(selected)]);
}

export interface CommandContext {
    readonly sceneId: number;
    readonly symbolResourceId: number;
    readonly responsive: boolean;
    readonly hLayoutId: number;
    readonly vLayoutId: number;
}

/** The JSON text of one submitCommandFromJS call. */
export function commandJson(context: CommandContext, records: readonly StageRecord[], text: string): string {
    return JSON.stringify({
        actions: records,
        sceneId: context.sceneId,
        symbolResourceId: context.symbolResourceId,
        responsive: context.responsive,
        hLayoutId: context.hLayoutId,
        vLayoutId: context.vLayoutId,
        text,
    });
}
