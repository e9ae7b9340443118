"use strict";

/**
 * What the report knows: the data that the program wrote into this page.
 *
 * @typedef {{length: number, digest?: string}} Bytes
 * @typedef {string | number | Bytes | null} Value
 * @typedef {{name: string, from: Value, to: Value}} FieldChange
 * @typedef {"first" | "second"} Side of the comparison
 * @typedef {[number, number, number, number]} Box left, top, right, bottom in page units
 * @typedef {{customer: number | null, first: number | null, second: number | null,
 *   field?: FieldChange, text?: string}} Example
 * @typedef {{id: string, kind: string, type: string, fields: string[], page: number | null, list: string,
 *   place?: [number, number], distance?: [number, number], pages: number, customers: number,
 *   pairs: number, allPairs: boolean, counts: boolean, ignoredBy?: string, examples: Example[],
 *   picture?: {page: number, side: Side, box: Box}, drawn: number[], ids: number[],
 *   search?: string}} Group
 * @typedef {{path: string, label: string, resolution: number, customers: number, pages: number,
 *   size?: number, time?: number}} CaptureFile
 * @typedef {{bits: number, names: string[], pagesCompared: number, pagesDiffering: number,
 *   pagesAdded: number, pagesRemoved: number, customersAdded: number, customersRemoved: number,
 *   groups: number, changes: number, ignored: Record<string, number>,
 *   smallestPositionTolerance: number | null, smallestLineTolerance: number,
 *   changesNotGrouped: number, complete: boolean}} Summary
 * @typedef {{page: number, customer: number, id: string, first: number | null, second: number | null,
 *   firstName?: string, secondName?: string, bits: number, names: string[], changes: number,
 *   view: string}} PageEntry
 * @typedef {{path: string, customer: number, id: string, page: number, what: string}} Damage
 * @typedef {{redacted: boolean, first: CaptureFile, second: CaptureFile, positionTolerance: number,
 *   lineTolerance: number, verdictEnd: string, customersCompared: number, customersDiffering: number,
 *   pagesWithChanges: number, damagedPages: number, objectsLeftOut: number,
 *   summary: Summary, damages: Damage[], fileChanges: {fields?: FieldChange[]}[],
 *   pages: PageEntry[], list: {groups: Group[], customers: string[]}}} ReportData
 * @typedef {{group: string, kind: string, type: string, list: string, first: number | null,
 *   second: number | null, counts: boolean, ignoredBy?: string, text?: string,
 *   distance?: [number, number], fields?: FieldChange[], fieldsLeftOut?: number,
 *   firstOutlines: Box[], secondOutlines: Box[]}} Change
 * @typedef {{bits: number, by: string, list: string, first: number | null, second: number | null}} Reason
 * @typedef {Omit<PageEntry, "changes" | "view"> & {firstDrawing: string, secondDrawing: string,
 *   stored: number[], why?: Reason[], changes: Change[], changesLeftOut: number}} PageData
 */

/** @type {ReportData} */
const report = JSON.parse(document.getElementById("data")?.textContent ?? "");

const groups = report.list.groups;
const groupById = new Map(groups.map((group) => [group.id, group]));

const modes = ["Side by side", "Slider", "Blink", "Overlay", "Differences"];
