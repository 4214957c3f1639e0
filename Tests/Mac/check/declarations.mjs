// Reads the declaration headers. They keep to a small part of the language; anything else is an error.

import {readdirSync, readFileSync} from 'node:fs';
import {join} from 'node:path';
import {Reader} from './tokens.mjs';

const ignoredMarks = new Set(['nullable', 'nonnull', '_Nullable', '_Nonnull', '__unsafe_unretained', 'const',
                              'struct']);
const propertyMarks = new Set(['readonly', 'class', 'nullable', 'copy', 'strong', 'weak', 'assign', 'nonatomic',
                               'unsafe_unretained', 'null_resettable']);

const directive =
  /^#(pragma once|pragma clang assume_nonnull (begin|end)|import <\w+\/\w+\.h>|include <std\w+\.h>)$/;

// A type as text: without nullability, and without the name of what has the type.
function typeText(tokens) {
  return tokens.filter((token) => !ignoredMarks.has(token)).join(' ');
}

// "unsigned long name" -> type and name; the name of a block or function pointer stands after its caret or star.
function typeAndName(reader, tokens) {
  const inner = tokens.findIndex((token, index) => (token === '^' || token === '*') && tokens[index - 1] === '(');
  if (inner >= 0 && /^[A-Za-z_]\w*$/.test(tokens[inner + 1] ?? '')) {
    return {name: tokens[inner + 1], type: typeText([...tokens.slice(0, inner + 1), ...tokens.slice(inner + 2)])};
  }
  const array = tokens.indexOf('[');
  const end = array >= 0 ? array : tokens.length;
  const name = tokens[end - 1];
  if (!/^[A-Za-z_]\w*$/.test(name ?? '') || end < 2) reader.fail(`no name in "${tokens.join(' ')}"`);
  return {name, type: typeText(tokens.slice(0, end - 1)) + (array >= 0 ? ' *' : '')};
}

// The comma-separated parts outside brackets; none for nothing and for "void".
export function splitList(tokens) {
  const parts = [[]];
  let depth = 0;
  for (const token of tokens) {
    if (/^[([{<]$/.test(token)) depth++;
    if (/^[)\]}>]$/.test(token)) depth--;
    if (token === ',' && depth === 0) parts.push([]);
    else parts.at(-1).push(token);
  }
  return parts.filter((part) => part.length > 0 && part.join(' ') !== 'void');
}

function readEnumerators(reader) {
  reader.expect('{');
  const enumerators = [];
  for (const part of splitList(reader.balanced('}'))) {
    if (part.length !== 3 || part[1] !== '=') reader.fail(`an enumerator needs a name and a value: ${part.join(' ')}`);
    enumerators.push({name: part[0], value: Number(part[2].replace(/u?l*$/i, ''))});
  }
  return enumerators;
}

function readTypedef(reader, found) {
  if (['NS_ENUM', 'NS_OPTIONS'].includes(reader.peek())) {
    reader.next();
    reader.expect('(');
    const [underlying, [name]] = splitList(reader.balanced(')'));
    found.enums.push({name, underlying: underlying.join(' '), enumerators: readEnumerators(reader)});
  } else if (reader.peek() === 'struct' && reader.peek(1) === '{') {
    reader.next();
    const fields = readFields(reader);
    found.structs.push({name: reader.identifier(), fields});
  } else {
    const {name, type} = typeAndName(reader, reader.until(';'));
    if (name !== type) found.typedefs.push({name, type});
  }
  reader.expect(';');
}

function readFields(reader) {
  reader.expect('{');
  const fields = [];
  while (!reader.accept('}')) {
    fields.push(typeAndName(reader, reader.until(';')));
    reader.expect(';');
  }
  return fields;
}

export function readMethod(reader) {
  const isStatic = reader.next() === '+';
  reader.expect('(');
  const result = typeText(reader.balanced(')'));
  let selector = '';
  const parameters = [];
  do {
    selector += reader.identifier();
    if (!reader.accept(':')) break;
    selector += ':';
    reader.expect('(');
    parameters.push(typeText(reader.balanced(')')));
    reader.identifier();
  } while (/^[A-Za-z_]\w*$/.test(reader.peek()));
  return {isStatic, selector, result, parameters};
}

function readProperty(reader) {
  const marks = reader.accept('(') ? splitList(reader.balanced(')')) : [];
  let getter;
  for (const mark of marks) {
    if (mark[0] === 'getter' && mark.length === 3) getter = mark[2];
    else if (mark.length !== 1 || !propertyMarks.has(mark[0])) reader.fail(`unknown property mark ${mark.join('')}`);
  }
  const {name, type} = typeAndName(reader, reader.until(';'));
  reader.expect(';');
  const has = (mark) => marks.some(([first]) => first === mark);
  return {name, type, getter, isReadOnly: has('readonly'), isStatic: has('class')};
}

// The body of an interface or a protocol.
export function readMembers(reader) {
  const members = {methods: [], properties: []};
  while (!reader.accept('@end')) {
    if (reader.accept('@optional') || reader.accept('@required')) continue;
    if (reader.accept('@property')) {
      members.properties.push(readProperty(reader));
    } else if (reader.peek() === '-' || reader.peek() === '+') {
      members.methods.push(readMethod(reader));
      reader.expect(';');
    } else {
      reader.fail(`"${reader.peek()}" declares no method and no property`);
    }
  }
  return members;
}

const names = (tokens) => splitList(tokens).map((part) => part.join(' '));

export function readInterface(reader) {
  const name = reader.identifier();
  if (reader.accept('(')) {
    const category = reader.identifier();
    reader.expect(')');
    return {name, category, protocols: [], generics: [], ...readMembers(reader)};
  }
  const generics = reader.accept('<') ? names(reader.balanced('>')).map((text) => text.split(' ').at(-1)) : [];
  // Without a superclass, what stands in the brackets are the protocols of a root class.
  const hasSuper = reader.accept(':');
  const superclass = hasSuper ? reader.identifier() : undefined;
  const bracketed = reader.accept('<') ? names(reader.balanced('>')) : [];
  return {name, superclass, generics, protocols: hasSuper ? bracketed : generics, ...readMembers(reader)};
}

function readProtocol(reader, found) {
  const name = reader.identifier();
  if (reader.accept(';')) return;
  const protocols = reader.accept('<') ? names(reader.balanced('>')) : [];
  found.protocols.push({name, protocols, ...readMembers(reader)});
}

function readFunctionOrConstant(reader, found) {
  reader.accept('static');
  const isExtern = reader.accept('extern');
  const head = reader.until(';', '=');
  if (reader.accept('=')) {
    const {name, type} = typeAndName(reader, head);
    found.constants.push({name, type, value: Number(reader.next())});
  } else if (isExtern) {
    found.constants.push(typeAndName(reader, head));
  } else {
    const open = head.indexOf('(');
    if (open < 2 || head.at(-1) !== ')') reader.fail(`"${head.join(' ')}" is no function`);
    const {name, type} = typeAndName(reader, head.slice(0, open));
    const parameters = splitList(head.slice(open + 1, -1)).map((part) => typeAndName(reader, part).type);
    found.functions.push({name, result: type, parameters});
  }
  reader.expect(';');
}

function readDeclaration(reader, found) {
  if (reader.accept('typedef')) return readTypedef(reader, found);
  if (reader.accept('@protocol')) return readProtocol(reader, found);
  if (reader.accept('@interface')) return void found.interfaces.push(readInterface(reader));
  if (reader.accept('@class')) {
    found.forward.push(...names(reader.until(';')).map((text) => text.split(' ')[0]));
    return reader.expect(';');
  }
  if (reader.accept('__attribute__')) {
    reader.expect('(');
    return void reader.balanced(')');
  }
  if (reader.accept('enum')) {
    if (reader.accept(':')) reader.until('{');
    found.constants.push(...readEnumerators(reader).map((one) => ({...one, type: 'int'})));
    return reader.expect(';');
  }
  if (reader.peek() === 'struct' && reader.peek(2) === '{') {
    reader.next();
    found.structs.push({name: reader.identifier(), fields: readFields(reader)});
    return reader.expect(';');
  }
  return readFunctionOrConstant(reader, found);
}

// Everything that the headers below `root` declare, and what each macro of theirs is called.
export function readDeclarations(root) {
  const found = {enums: [], structs: [], typedefs: [], constants: [], functions: [], interfaces: [], protocols: [],
                 forward: [], macros: []};
  for (const folder of readdirSync(root).sort()) {
    const path = join(root, folder, `${folder}.h`);
    const lines = readFileSync(path, 'utf8').replaceAll('\\\n', '').split('\n').map((line) => {
      if (!line.startsWith('#')) return line;
      const macro = /^#define (\w+)/.exec(line);
      if (macro) found.macros.push(macro[1]);
      else if (!directive.test(line)) throw new Error(`${path}: unknown directive: ${line}`);
      return '';
    });
    const reader = new Reader(lines.join('\n'), path);
    while (!reader.done) readDeclaration(reader, found);
  }
  return found;
}
