// Reads the machine-made typings of the frameworks. They have one declaration a line, and so does this.

import {readFileSync} from 'node:fs';
import {join} from 'node:path';

// Where the declared frameworks' names are; "Runtime" holds the C library, dispatch and NSObject.
const files = ['Runtime', 'CoreFoundation', 'CoreServices', 'CoreGraphics', 'Foundation', 'QuartzCore', 'AppKit',
               'CoreMedia', 'CoreVideo', 'AVFoundation', 'ScreenCaptureKit', 'ServiceManagement', 'Carbon'];

// The parts of a text at `separator`, outside all brackets.
export function splitTop(text, separator) {
  const parts = [];
  let depth = 0;
  let start = 0;
  for (let index = 0; index < text.length; index++) {
    if ('([{<'.includes(text[index])) depth++;
    if (')]}'.includes(text[index]) || (text[index] === '>' && text[index - 1] !== '=')) depth--;
    if (depth === 0 && text.startsWith(separator, index)) {
      parts.push(text.slice(start, index).trim());
      start = index + separator.length;
    }
  }
  parts.push(text.slice(start).trim());
  return parts.filter((part) => part !== '');
}

// "(a: T, b: U): R" -> the types of the parameters and of the result.
function signature(text) {
  const result = splitTop(text, ':');
  // A class method that makes an instance of the class it is sent to names that class first.
  const parameters = splitTop(result[0].slice(1, -1), ',').filter((one) => !one.startsWith('this:'));
  return {
    parameters: parameters.map((one) => one.slice(one.indexOf(':') + 1).trim()),
    result: result.slice(1).join(':').trim(),
  };
}

function readMember(line, members) {
  const [, isStatic, isReadOnly, name, rest] = /^\s*(static )?(readonly )?([\w$]+)\??(.*);$/.exec(line) ?? [];
  if (name === undefined) return;
  const entry = {isStatic: isStatic !== undefined, isReadOnly: isReadOnly !== undefined};
  const call = rest.startsWith('<') ? rest.slice(rest.indexOf('>(') + 1) : rest;
  if (call.startsWith('(')) members.push({name, ...entry, isMethod: true, ...signature(call)});
  else members.push({name, ...entry, isMethod: false, type: rest.replace(/^:/, '').trim()});
}

function readType(found, head, lines, index) {
  const [, kind, name, tail] = /^declare (class|interface) (\w+)(.*)\{$/.exec(head);
  const parents = tail.replace(/<[^{]*?>/g, '').split(/\bextends\b|\bimplements\b|,/).map((text) => text.trim());
  const type = found.types.get(name) ?? {name, kinds: new Set(), parents: new Set(), members: []};
  type.kinds.add(kind);
  for (const parent of parents) if (parent !== '') type.parents.add(parent);
  for (; lines[index] !== '}'; index++) readMember(lines[index], type.members);
  found.types.set(name, type);
  return index;
}

function readEnum(found, name, lines, index) {
  const values = new Map();
  for (; lines[index] !== '};'; index++) {
    const member = /^  (\w+): (-?\d+),$/.exec(lines[index]);
    if (!member) throw new Error(`typings of ${name}: ${lines[index]}`);
    values.set(member[1], Number(member[2]));
  }
  found.enums.set(name, values);
  return index;
}

function readFile(found, text) {
  const lines = text.split('\n');
  for (let index = 0; index < lines.length; index++) {
    const line = lines[index];
    let match;
    if ((match = /^declare const (\w+): \{$/.exec(line))) index = readEnum(found, match[1], lines, index + 1);
    else if ((match = /^declare const (\w+): (.*);$/.exec(line))) found.constants.set(match[1], match[2]);
    else if ((match = /^declare function (\w+)(\(.*);$/.exec(line))) found.functions.set(match[1], signature(match[2]));
    else if (/^declare (class|interface) \w+.*\{$/.test(line)) index = readType(found, line, lines, index + 1);
  }
}

export function readTypings(root) {
  const found = {enums: new Map(), constants: new Map(), functions: new Map(), types: new Map()};
  for (const file of files) readFile(found, readFileSync(join(root, 'types', `${file}.d.ts`), 'utf8'));
  return found;
}

// Every member of that name of a class, its superclasses and their protocols, nearest first.
export function membersNamed(typings, typeName, memberName) {
  const seen = new Set();
  const queue = [typeName];
  const members = [];
  while (queue.length > 0) {
    const name = queue.shift();
    const type = typings.types.get(name);
    if (seen.has(name) || !type) continue;
    seen.add(name);
    members.push(...type.members.filter((member) => member.name === memberName));
    queue.push(...type.parents);
  }
  return members;
}

export function isKindOf(typings, typeName, ancestor) {
  const type = typings.types.get(typeName);
  if (!type) return false;
  return type.parents.has(ancestor) || [...type.parents].some((parent) => isKindOf(typings, parent, ancestor));
}
