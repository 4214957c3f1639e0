// Proves that each operation of the list is found where the list says; with --table, writes the list as a table.
//
// usage: node operations.mjs <list> <source tree> [--table]

import {existsSync, readFileSync} from 'node:fs';
import {basename, join} from 'node:path';

const [listPath, root, mode] = process.argv.slice(2);
const rows = [];
const problems = [];

function problemOf({file, functions, token}) {
  if (token === undefined) return 'four columns are needed';
  if (!existsSync(join(root, file))) return `there is no ${file}`;
  const text = readFileSync(join(root, file), 'utf8');
  if (!text.includes(token)) return `not found in ${file}: ${token}`;
  const unknown = functions.split(', ').find((name) => !new RegExp(`\\b${name.split('::').at(-1)}\\b`).test(text));
  return unknown && `${file} has no ${unknown}`;
}

let heading = '';
for (const line of readFileSync(listPath, 'utf8').split('\n')) {
  if (line.startsWith('## ')) heading = line.slice(3);
  if (line === '' || line.startsWith('#')) continue;
  const [operation, file, functions, token] = line.split(' | ');
  const row = {heading, operation, file, functions, token};
  const problem = problemOf(row);
  if (problem) problems.push(`${operation}: ${problem}`);
  rows.push(row);
}

for (const problem of problems) console.error(`operations: ${problem}`);
if (mode === '--table') {
  const shortened = (file) => file.startsWith('Platform/Mac/') ? basename(file) : file;
  console.log('| | operation | file | function |\n|---|---|---|---|');
  rows.forEach((row, index) => {
    const first = row.heading === rows[index - 1]?.heading ? '' : row.heading;
    console.log(`| ${first} | ${row.operation} | \`${shortened(row.file)}\` | \`${row.functions}\` |`);
  });
} else {
  console.log(`${rows.length} operations listed, ${problems.length} missing`);
}
process.exit(problems.length === 0 && rows.length > 0 ? 0 : 1);
