// Proves that the bundle's property lists are well formed and say what the rest of the tree says.
//
// usage: node bundle.mjs <source tree>

import {existsSync, readFileSync} from 'node:fs';
import {join} from 'node:path';

const [root] = process.argv.slice(2);
const problems = [];
const read = (path) => readFileSync(join(root, path), 'utf8');

// The keys of a property list that holds nothing but texts and truth values.
function propertyList(path) {
  const text = read(path).replace(/<!--[\s\S]*?-->/g, '');
  const head = /^<\?xml version="1\.0" encoding="UTF-8"\?>\n<!DOCTYPE plist [^>]*>\n<plist version="1\.0">\s*<dict>/;
  const body = head.test(text) && /<dict>([\s\S]*)<\/dict>\s*<\/plist>\n$/.exec(text);
  const values = new Map();
  const entry = /\s*<key>([^<&]+)<\/key>\s*(?:<string>([^<&]*)<\/string>|<(true|false)\/>)\s*/y;
  while (body && entry.lastIndex < body[1].length) {
    const at = entry.lastIndex;
    const [, key, string, truth] = entry.exec(body[1]) ?? [];
    if (key === undefined || values.has(key)) {
      problems.push(`${path} cannot be read at: ${body[1].slice(at, at + 60).trim()}`);
      return values;
    }
    values.set(key, string ?? truth === 'true');
  }
  if (!body || values.size === 0) problems.push(`${path} is no property list`);
  return values;
}

function expect(where, actual, expected) {
  if (actual !== expected) problems.push(`${where} is ${JSON.stringify(actual)}, not ${JSON.stringify(expected)}`);
}

const found = (path, pattern) => pattern.exec(read(path))?.[1];
const info = propertyList('Resources/Mac/Info.plist');
const identity = 'Quillfade/Basics/Identity.h';
const version = found(identity, /applicationVersion = "([^"]+)"/);
const name = found(identity, /applicationName = "([^"]+)"/);
expect('CFBundleIdentifier', info.get('CFBundleIdentifier'), found(identity, /applicationIdentifier = "([^"]+)"/));
expect('CFBundleName', info.get('CFBundleName'), name);
expect('CFBundleShortVersionString', info.get('CFBundleShortVersionString'), version);
expect('CFBundleVersion', info.get('CFBundleVersion'), version);
expect('the version of the project', found('CMakeLists.txt', /project\(Quillfade VERSION ([\d.]+)/), version);
const executable = found('Platform/Mac/CMakeLists.txt', /OUTPUT_NAME (\w+)/);
expect('CFBundleExecutable', info.get('CFBundleExecutable'), executable);
expect('LSUIElement', info.get('LSUIElement'), true);
const leastSystem = found('Scripts/mac-app', /DEPLOYMENT_TARGET=([\d.]+)/);
expect('LSMinimumSystemVersion', info.get('LSMinimumSystemVersion'), leastSystem);
if (!info.get('NSScreenCaptureUsageDescription')) problems.push('nothing says why the screen is captured');
const iconPath = join(root, 'Resources/Mac', String(info.get('CFBundleIconFile')));
const icon = existsSync(iconPath) ? readFileSync(iconPath) : Buffer.alloc(8);
if (icon.toString('ascii', 0, 4) !== 'icns' || icon.readUInt32BE(4) !== icon.length) {
  problems.push(`${iconPath} is no icon`);
}
const entitlements = propertyList('Resources/Mac/Quillfade.entitlements');
expect('the sandbox', entitlements.get('com.apple.security.app-sandbox'), false);

for (const problem of problems) console.error(`bundle: ${problem}`);
console.log(`the bundle's property lists; ${problems.length} problems`);
process.exit(problems.length === 0 ? 0 : 1);
