// Cuts a declaration header or an adapter source into tokens.

const pattern = new RegExp([
  /\s+/, /\/\/[^\n]*/, /\/\*[\s\S]*?\*\//,              // blanks and comments
  /@?[A-Za-z_]\w*/, /\d[\w.]*/,                         // names and numbers
  /@?"(?:[^"\\\n]|\\.)*"/, /'(?:[^'\\\n]|\\.)*'/,        // texts
  /::|->|\.\.\./, /[\s\S]/,                            // signs
].map(({source}) => source).join('|'), 'g');

export function tokenize(text) {
  const tokens = [];
  let line = 1;
  for (const [value] of text.matchAll(pattern)) {
    if (!/^(\s|\/\/|\/\*)/.test(value)) tokens.push({value, line});
    line += value.split('\n').length - 1;
  }
  return tokens;
}

// Reads tokens one after the other and ends the run at the first that does not fit.
export class Reader {
  constructor(text, name) {
    this.tokens = tokenize(text);
    this.name = name;
    this.position = 0;
  }
  get done() { return this.position >= this.tokens.length; }
  peek(ahead = 0) { return this.tokens[this.position + ahead]?.value; }
  next() {
    if (this.done) this.fail('unexpected end of file');
    return this.tokens[this.position++].value;
  }
  accept(value) {
    if (this.peek() !== value) return false;
    this.position++;
    return true;
  }
  expect(value) { if (!this.accept(value)) this.fail(`expected "${value}" before "${this.peek()}"`); }
  identifier() {
    const value = this.next();
    if (!/^[A-Za-z_]\w*$/.test(value)) this.fail(`expected a name instead of "${value}"`);
    return value;
  }
  // The tokens up to one of `ends` outside all brackets; the end itself is left. In code, as opposed to declarations,
  // an angle bracket may be a comparison.
  until(...ends) {
    const [opening, closing] = ends.includes('}') ? ['([{', ')]}'] : ['([{<', ')]}>'];
    const taken = [];
    let depth = 0;
    while (depth > 0 || !ends.includes(this.peek())) {
      const value = this.next();
      if (opening.includes(value)) depth++;
      if (closing.includes(value)) depth--;
      taken.push(value);
    }
    return taken;
  }
  // The tokens between a bracket that was just read and its partner, which is read too.
  balanced(close) {
    const taken = this.until(close);
    this.expect(close);
    return taken;
  }
  fail(message) {
    const line = this.tokens[Math.min(this.position, this.tokens.length - 1)]?.line ?? 0;
    throw new Error(`${this.name}:${line}: ${message}`);
  }
}
