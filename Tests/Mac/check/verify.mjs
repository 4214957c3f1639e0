// Proves that everything the declaration headers declare exists in the typings of the real frameworks, under the same
// name, with the same number of arguments, of the same kind and, where the typings have values, with the same value.
//
// usage: node verify.mjs <declarations> <typings package> <exceptions>

import {readFileSync} from 'node:fs';
import {readDeclarations} from './declarations.mjs';
import {isKindOf, membersNamed, readTypings} from './typings.mjs';
import {TypeComparison} from './types.mjs';

const [declarationsRoot, typingsRoot, exceptionsPath] = process.argv.slice(2);
const declared = readDeclarations(declarationsRoot);
const typings = readTypings(typingsRoot);
const types = new TypeComparison(declared);
const problems = [];
const missing = new Set();
let proved = 0;
let values = 0;

// "name: reason" a line.
const exceptions = new Map(readFileSync(exceptionsPath, 'utf8').split('\n')
  .filter((line) => line !== '' && !line.startsWith('#'))
  .map((line) => [line.slice(0, line.indexOf(':')), line.slice(line.indexOf(':') + 1).trim()]));

function absent(name) {
  missing.add(name);
  if (!exceptions.has(name)) problems.push(`${name} is not in the typings`);
}

function compare(where, type, text, self) {
  if (!types.matches(type, text, self)) problems.push(`${where} has the type "${type}", in the typings "${text}"`);
}

function compareCall(where, call, entry, self) {
  if (call.parameters.length !== entry.parameters.length) {
    problems.push(`${where} takes ${call.parameters.length} arguments, in the typings ${entry.parameters.length}`);
    return;
  }
  call.parameters.forEach((type, index) => {
    compare(`argument ${index + 1} of ${where}`, type, entry.parameters[index], self);
  });
  compare(`the result of ${where}`, call.result, entry.result, self);
  proved++;
}

// The typings run the parts of a selector together: initWithFilter:delegate: is initWithFilterDelegate.
function runTogether(selector) {
  const parts = selector.split(':').filter((part) => part !== '');
  return parts[0] + parts.slice(1).map((part) => part[0].toUpperCase() + part.slice(1)).join('');
}

function verifyMethod(owner, method) {
  const where = `${method.isStatic ? '+' : '-'}[${owner} ${method.selector}]`;
  const candidates = membersNamed(typings, owner, runTogether(method.selector))
    .filter((member) => member.isStatic === method.isStatic);
  if (candidates.length === 0) return absent(where);
  const entry = candidates.find((member) => member.isMethod);
  if (entry) compareCall(where, method, entry, owner);
  else if (method.parameters.length > 0) problems.push(`${where} is a property in the typings`);
  else proved++;
}

function verifyProperty(owner, property) {
  const where = `${owner}.${property.name}`;
  const entry = membersNamed(typings, owner, property.name).find((member) => member.isStatic === property.isStatic);
  if (!entry) return absent(where);
  if (entry.isMethod) return void problems.push(`${where} is a method in the typings`);
  if (entry.isReadOnly && !property.isReadOnly) problems.push(`${where} can only be read in the typings`);
  compare(where, property.type, entry.type, owner);
  const {getter} = property;
  if (getter && membersNamed(typings, owner, getter).length === 0) absent(`${owner}.${getter}`);
  proved++;
}

function verifyMembers(owner) {
  owner.methods.forEach((method) => verifyMethod(owner.name, method));
  owner.properties.forEach((property) => verifyProperty(owner.name, property));
}

function verifyType(owner, kind, parents) {
  if (!typings.types.get(owner.name)?.kinds.has(kind)) return absent(owner.name);
  proved++;
  for (const parent of parents) {
    const known = parent === 'NSObject' && kind === 'interface' ? 'NSObjectProtocol' : parent;
    if (!isKindOf(typings, owner.name, known)) problems.push(`${owner.name} is no ${parent} in the typings`);
  }
}

// The typings leave out what the enumerators have in common with the name of their enumeration. What is left out must
// be the beginning of that name, up to a word that only says what kind of thing it is.
const kindWords = new Set(['', 's', 'Type', 't', '_t']);

function verifyEnum({name, enumerators}) {
  const real = typings.enums.get(name);
  if (!real) return absent(name);
  for (const enumerator of enumerators) {
    const key = [...real.keys()].filter((one) => enumerator.name.endsWith(one)).sort((a, b) => b.length - a.length)[0];
    const stem = key && enumerator.name.slice(0, -key.length);
    const isStem = key && name.toLowerCase().startsWith(stem.toLowerCase().replace(/_$/, '')) &&
      kindWords.has(name.slice(stem.replace(/_$/, '').length));
    if (!key || !(isStem || exceptions.has(enumerator.name))) {
      problems.push(`${enumerator.name} is not in the typings of ${name}`);
      continue;
    }
    if (!isStem) missing.add(enumerator.name);
    if (real.get(key) !== enumerator.value) {
      problems.push(`${enumerator.name} is ${enumerator.value}, in the typings ${real.get(key)}`);
    }
    proved++;
    values++;
  }
}

function verifyConstant({name, type}) {
  const text = typings.constants.get(name);
  if (text === undefined) return absent(name);
  compare(name, type, text);
  proved++;
}

function verifyFunction(one) {
  const entry = typings.functions.get(one.name);
  if (!entry) return absent(one.name);
  compareCall(`${one.name}()`, one, entry);
}

function verifyStruct({name, fields}) {
  const real = typings.types.get(name);
  if (!real) return absent(name);
  const theirs = real.members.filter((member) => !member.isMethod);
  const list = (members) => members.map((member) => member.name).join(', ');
  if (list(fields) !== list(theirs)) {
    problems.push(`${name} has the fields ${list(fields)}, in the typings ${list(theirs)}`);
  }
  fields.forEach((field, index) => compare(`${name}.${field.name}`, field.type, theirs[index]?.type ?? ''));
  proved++;
}

for (const name of declared.forward) if (!typings.types.has(name)) absent(name);
declared.structs.forEach(verifyStruct);
declared.enums.forEach(verifyEnum);
declared.constants.forEach(verifyConstant);
declared.functions.forEach(verifyFunction);
declared.macros.forEach((name) => typings.constants.has(name) ? proved++ : absent(name));
for (const owner of declared.protocols) {
  if (owner.name !== 'NSObject') verifyType(owner, 'interface', owner.protocols);
  verifyMembers(owner.name === 'NSObject' ? {...owner, name: 'NSObjectProtocol'} : owner);
}
for (const owner of declared.interfaces) {
  if (!owner.category) verifyType(owner, 'class', owner.superclass ? [owner.superclass] : []);
  verifyMembers(owner);
}
for (const name of exceptions.keys()) {
  if (!missing.has(name)) problems.push(`${name} is listed as not in the typings, but is there or is not declared`);
}

for (const problem of problems) console.error(`verify: ${problem}`);
for (const [name, reason] of exceptions) console.log(`not in the typings: ${name} (${reason})`);
console.log(`typedefs, which the typings resolve: ${declared.typedefs.map(({name}) => name).join(' ')}`);
const unvalued = declared.constants.filter(({value}) => value !== undefined);
console.log(`constants without a value in the typings: ${unvalued.map(({name}) => name).join(' ')}`);
console.log(`${proved} declarations proved, ${values} of them with their values; ${problems.length} problems`);
process.exit(problems.length === 0 ? 0 : 1);
