// The stage's editing tools: drawing shapes, point editing of freeforms, editing text in place.
// The stage creates them through these factories and passes them the pointer and the keys.

import { ElementKind, type DrawShape, type PointEditTool, type StageHost, type StageTool, type TextEditTool, type ToolFactories } from '../contracts';
import { BoxDrawTool } from './drawtool';
import { FreeformPointEditor } from './pointedit';
import { isLineType, isTracedType } from './shapekinds';
import { InPlaceTextEditor, textContentOf } from './textedit';
import { TraceDrawTool } from './tracetool';

export { setTextEditShortcuts } from './textedit';

export function createDrawTool(host: StageHost, shape: DrawShape): StageTool {
    if (shape.kind === 'autoshape' && isTracedType(shape.type)) {
        return new TraceDrawTool(host, shape.type);
    }
    return new BoxDrawTool(host, shape);
}

export function createPointEditTool(host: StageHost, elementId: number): PointEditTool | null {
    const element = host.element(elementId);
    if (!element || element.kind !== ElementKind.Freeform || isLineType(element.autoshapeType)) {
        return null;
    }
    return new FreeformPointEditor(host, element);
}

/** Kinds whose view carries text: texts, divs and shapes, but not the lines among freeforms. */
const TEXT_KINDS: readonly number[] = [ElementKind.Text, ElementKind.Div, ElementKind.Shape, ElementKind.Freeform];

export function createTextEditTool(host: StageHost, elementId: number): TextEditTool | null {
    const element = host.element(elementId);
    if (!element || TEXT_KINDS.indexOf(element.kind) < 0 || isLineType(element.autoshapeType)) {
        return null;
    }
    const content = textContentOf(element);
    return content ? new InPlaceTextEditor(host, element, content) : null;
}

export const toolFactories: ToolFactories = { createDrawTool, createPointEditTool, createTextEditTool };
