// Holds the adapter's sources to the rules that no compiler checks:
//  - an Objective-C class holds a C++ object only by std::weak_ptr;
//  - no block uses `this` or a member;
//  - every method that an Objective-C class implements is declared: by itself, a superclass or a protocol;
//  - no text and no number of the application's stands in the adapter.
//
// usage: node adapter.mjs <adapter> <declarations>

import {readdirSync, readFileSync} from 'node:fs';
import {join} from 'node:path';
import {readDeclarations, readInterface, readMethod} from './declarations.mjs';
import {Reader, tokenize} from './tokens.mjs';

const [adapterRoot, declarationsRoot] = process.argv.slice(2);
const declared = readDeclarations(declarationsRoot);
const interfaces = new Map(declared.interfaces.filter((one) => !one.category).map((one) => [one.name, one]));
const protocols = new Map(declared.protocols.map((one) => [one.name, one]));
const problems = [];
const count = {classes: 0, methods: 0, blocks: 0};

// What the system wants to be told in text, and the failures that only this adapter has.
const texts = new Set(['', 'NSScreenNumber', 'The system gave no reason.', 'The display to capture is no longer there.',
                       'On macOS a running instance takes no commands from the command line.',
                       'On macOS the cover is never part of what other programs capture: start them as usual.',
                       'On macOS there is nothing to install: start programs as usual.',
                       'com.apple.screenIsLocked', 'com.apple.screenIsUnlocked', 'com.apple.screensaver.didstart',
                       'com.apple.screensaver.didstop']);
const numbers = new Set(['0', '1']);

const sources = readdirSync(adapterRoot).filter((name) => /\.(h|mm)$/.test(name)).sort()
  .map((name) => ({name, text: readFileSync(join(adapterRoot, name), 'utf8').replace(/^#.*$/gm, '')}));

// A reader that stands behind each occurrence of `keyword`.
function* readersAfter(source, keyword) {
  const reader = new Reader(source.text, source.name);
  for (let index = 0; index < reader.tokens.length; index++) {
    if (reader.tokens[index].value !== keyword) continue;
    reader.position = index + 1;
    yield reader;
  }
}

function collectInterfaces(source) {
  for (const reader of readersAfter(source, '@interface')) {
    const one = readInterface(reader);
    interfaces.set(one.name, one);
    count.classes++;
    for (const {name, type} of one.properties) {
      if (type !== 'BOOL') problems.push(`${source.name}: the property ${one.name}.${name} is no truth value`);
    }
  }
}

function checkState(source, reader, className) {
  if (!reader.accept('{')) return;
  while (!reader.accept('}')) {
    const type = reader.until(';').slice(0, -1).join('');
    if (!/^std::weak_ptr<.*>$/.test(type)) {
      problems.push(`${source.name}: ${className} holds a ${type}, not a std::weak_ptr`);
    }
    reader.expect(';');
  }
}

function declares(owner, method) {
  const getsProperty = (one) => [one.name, one.getter].includes(method.selector);
  return owner.methods.some((one) => one.selector === method.selector && one.isStatic === method.isStatic) ||
    owner.properties.some(getsProperty) ||
    owner.protocols.some((name) => protocols.has(name) && declares(protocols.get(name), method));
}

function checkImplementation(source, reader) {
  const className = reader.identifier();
  checkState(source, reader, className);
  while (!reader.accept('@end')) {
    const method = readMethod(reader);
    reader.expect('{');
    reader.balanced('}');
    count.methods++;
    let owner = interfaces.get(className);
    while (owner && !declares(owner, method)) owner = interfaces.get(owner.superclass);
    if (!owner) problems.push(`${source.name}: nothing declares -[${className} ${method.selector}]`);
  }
}

function checkBlocks(source) {
  for (const reader of readersAfter(source, '^')) {
    reader.until('{', ';', ')');
    if (!reader.accept('{')) continue;
    count.blocks++;
    for (const token of reader.balanced('}')) {
      if (token === 'this' || /^[a-z]\w*_$/.test(token)) problems.push(`${source.name}: a block uses "${token}"`);
    }
  }
}

function checkLiterals(source) {
  for (const {value, line} of tokenize(source.text)) {
    const text = /^@?"(.*)"$/.exec(value);
    const isStrange = text ? !texts.has(text[1]) : /^\d/.test(value) && !numbers.has(value);
    if (isStrange) problems.push(`${source.name}:${line}: ${value} is not the adapter's to choose`);
  }
}

sources.forEach(collectInterfaces);
for (const source of sources) {
  for (const reader of readersAfter(source, '@implementation')) checkImplementation(source, reader);
  checkBlocks(source);
  checkLiterals(source);
}
for (const problem of problems) console.error(`adapter: ${problem}`);
console.log(`${count.classes} Objective-C classes, ${count.methods} methods and ${count.blocks} blocks in ` +
            `${sources.length} files; ${problems.length} problems`);
process.exit(problems.length === 0 && count.classes > 0 && count.blocks > 0 ? 0 : 1);
