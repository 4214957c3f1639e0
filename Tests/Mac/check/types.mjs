// Compares a declared type with the typings' type, as far as the typings tell types apart.

import {splitTop} from './typings.mjs';

const numeric = /^(unsigned |signed |long |short |int |char |double |float |size_t |u?int(8|16|32|64)_t )+$/;

export class TypeComparison {
  constructor(declarations) {
    this.typedefs = new Map(declarations.typedefs.map(({name, type}) => [name, type]));
    this.enums = new Map(declarations.enums.map((one) => [one.name, one]));
    this.structs = new Set(declarations.structs.map(({name}) => name));
    this.classes = new Set([...declarations.forward, ...declarations.interfaces.map(({name}) => name)]);
    this.generics = new Set(declarations.interfaces.flatMap(({generics}) => generics));
  }

  // What a declared type is: a word, and for some a name.
  declared(type) {
    if (this.enums.has(type)) return ['enum', type];
    if (this.structs.has(type)) return ['struct', type];
    if (this.generics.has(type) || type === 'id') return ['object', undefined];
    if (this.typedefs.has(type)) return this.declared(this.typedefs.get(type));
    if (type.includes('( ^') || type.includes('( *')) return this.declaredCall(type);
    switch (type) {
      case 'void': return ['void'];
      case 'bool': return ['boolean'];
      case 'instancetype': return ['self'];
      case 'Class': return ['object', undefined];
      case 'SEL': case 'NSString *': case 'char *': return ['string'];
      case 'void *': return ['pointer'];
    }
    if (numeric.test(type + ' ')) return ['number'];
    const protocol = /^id < (\w+) >$/.exec(type);
    if (protocol) return ['object', protocol[1]];
    const named = /^(\w+)( <.*>)? \*$/.exec(type);
    if (named && this.classes.has(named[1])) return ['object', named[1]];
    return ['pointer'];
  }

  declaredCall(type) {
    const parameters = type.slice(type.lastIndexOf(') (') + 3, -1).trim();
    const count = parameters === '' || parameters === 'void' ? 0 : splitTop(parameters, ',').length;
    return ['call', count];
  }

  // Whether the typings' `text` says the same as `type`, as a member of `self`.
  matches(type, text, self) {
    const [kind, name] = this.declared(type);
    const bare = splitTop(text, '|')[0] ?? '';
    const enumeration = /^interop\.Enum<typeof (\w+)>$/.exec(bare)?.[1];
    const isSelf = bare === 'this' || bare === 'InstanceType<This>';
    const isAny = bare === 'interop.Object';
    const isPointer = bare.startsWith('interop.Pointer');
    switch (kind) {
      case 'enum': return enumeration === name;
      case 'struct': return bare === name;
      case 'self': return isSelf || isAny || bare === self;
      case 'string': return bare === 'string' || isPointer;
      // Core Foundation's objects are pointers here and objects there.
      case 'pointer': return isPointer || isAny || bare.startsWith('unknown');
      case 'call': return bare.includes('=>') && splitTop(bare.slice(1, bare.indexOf(') =>')), ',').length === name;
      case 'object':
        if (name === undefined) return isAny || /^[A-Z]\w*$/.test(bare);
        return bare.replace(/<.*>$/, '') === name || (isSelf && self === name);
      default: return bare === kind;
    }
  }
}
