// Plants one mistake at a time in a copy of the sources and proves that the check finds it.
//
// usage: node mistakes.mjs <source tree> <installed typings>

import {spawnSync} from 'node:child_process';
import {cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {tmpdir} from 'node:os';
import {join} from 'node:path';

const [root, typings] = process.argv.slice(2);
const appKit = 'Tests/Mac/declarations/AppKit/AppKit.h';

// what: [file, text, its replacement]…, the step that must fail, what it must say.
const mistakes = [
  {what: 'a wrong selector in the adapter',
   edits: [['Platform/Mac/Application.mm', 'activateIgnoringOtherApps:YES', 'activateIgnoringOtherApplications:YES']],
   step: ['compile', 'Platform/Mac/Application.mm'], says: /activateIgnoringOtherApplications/},
  {what: 'the same wrong selector in the declarations',
   edits: [[appKit, 'activateIgnoringOtherApps:', 'activateIgnoringOtherApplications:']],
   step: ['declarations'], says: /activateIgnoringOtherApplications:\] is not in the typings/},
  {what: 'a wrong argument count in the adapter',
   edits: [['Platform/Mac/Windows.mm', '[window_ orderOut:nil]', '[window_ orderOut]']],
   step: ['compile', 'Platform/Mac/Windows.mm'], says: /orderOut/},
  {what: 'a wrong argument count in the declarations',
   edits: [[appKit, '- (void)terminate:(nullable id)sender;', '- (void)terminate;']],
   step: ['declarations'], says: /terminate\] takes 0 arguments, in the typings 1/},
  {what: 'a wrong argument count of a function',
   edits: [['Tests/Mac/declarations/Carbon/Carbon.h', 'GetApplicationEventTarget(void)',
            'GetApplicationEventTarget(UInt32 inOptions)']],
   step: ['declarations'], says: /GetApplicationEventTarget\(\) takes 1 arguments, in the typings 0/},
  {what: 'a wrong argument type in the declarations',
   edits: [[appKit, '- (BOOL)openURL:(NSURL*)url;', '- (BOOL)openURL:(NSString*)url;']],
   step: ['declarations'], says: /openURL:\] has the type/},
  {what: 'a protocol method that the adapter forgets',
   edits: [['Platform/Mac/Menu.mm', '- (void)menuDidClose:', '- (void)menuHasClosed:']],
   step: ['compile', 'Platform/Mac/Menu.mm'], says: /menuDidClose/},
  {what: 'a protocol method that does not exist',
   edits: [['Tests/Mac/declarations/ScreenCaptureKit/ScreenCaptureKit.h', 'didStopWithError:', 'didEndWithError:']],
   step: ['declarations'], says: /didEndWithError:\] is not in the typings/},
  {what: 'a misspelt class',
   edits: [[appKit, '@interface NSStatusBarButton :', '@interface NSStatusBarButtn :']],
   step: ['declarations'], says: /NSStatusBarButtn is not in the typings/},
  {what: 'a misspelt property',
   edits: [['Tests/Mac/declarations/ScreenCaptureKit/ScreenCaptureKit.h', 'BOOL showsCursor;', 'BOOL showCursor;']],
   step: ['declarations'], says: /SCStreamConfiguration\.showCursor is not in the typings/},
  {what: 'a property that can only be read, declared as one that can be set',
   edits: [[appKit, '(class, readonly, strong) NSStatusBar* systemStatusBar;',
            '(class, strong) NSStatusBar* systemStatusBar;']],
   step: ['declarations'], says: /systemStatusBar can only be read/},
  {what: 'a wrong constant in the declarations',
   edits: [[appKit, 'NSWindowCollectionBehaviorStationary = 0x10', 'NSWindowCollectionBehaviorStationary = 0x20']],
   step: ['declarations'], says: /NSWindowCollectionBehaviorStationary is 32, in the typings 16/},
  {what: 'a misspelt constant',
   edits: [[appKit, 'NSWindowSharingNone', 'NSWindowNone']],
   step: ['declarations'], says: /NSWindowNone is not in the typings/},
  {what: 'a wrong constant in a port',
   edits: [['Platform/Windows.h', 'unsigned stationary = 0x10;', 'unsigned stationary = 0x20;']],
   step: ['compile', 'Platform/Mac/Windows.mm'], says: /static assertion failed/},
  {what: 'an exception that is none',
   edits: [['Tests/Mac/not-in-typings.txt', 'nil: ', 'CFRetain: ']],
   step: ['declarations'], says: /CFRetain is listed as not in the typings/},
  {what: 'an Objective-C object that keeps its C++ side alive',
   edits: [['Platform/Mac/Menu.mm', 'weak_ptr<platform::MenuDelegate> _delegate;',
            'shared_ptr<platform::MenuDelegate> _delegate;']],
   step: ['rules'], says: /QLFMenuDelegate holds a std::shared_ptr/},
  {what: 'a block that uses a member',
   edits: [['Platform/Mac/CaptureStream.mm', '[forwarder close]', '[forwarder_ close]']],
   step: ['rules'], says: /a block uses "forwarder_"/},
  {what: 'an override that overrides nothing',
   edits: [['Platform/Mac/ResponderView.mm', '- (void)resetCursorRects {', '- (void)resetCursorRectangles {']],
   step: ['rules'], says: /nothing declares -\[QLFResponderView resetCursorRectangles\]/},
  {what: 'a text of the application in the adapter',
   edits: [['Platform/Mac/Dialogs.mm', 'nsString(alert.messageText)', '@"Screen Recording permission needed"']],
   step: ['rules'], says: /is not the adapter's to choose/},
  {what: 'an operation that is gone',
   edits: [['Platform/Mac/CaptureContent.mm', 'made.queueDepth =', 'made.width =']],
   step: ['operations'], says: /SCStreamConfiguration queueDepth: not found/},
  {what: 'another version in the bundle',
   edits: [['Resources/Mac/Info.plist', '<string>1.1</string>', '<string>1.2</string>']],
   step: ['bundle'], says: /CFBundleVersion is "1\.2", not "1\.1"/},
];

const copy = mkdtempSync(join(tmpdir(), 'quillfade-mac-'));
process.on('exit', () => rmSync(copy, {recursive: true, force: true}));
for (const path of ['CMakeLists.txt', 'Platform', 'Quillfade', 'Resources/Mac', 'Scripts', 'Tests/Mac']) {
  cpSync(join(root, path), join(copy, path), {recursive: true});
}

function run(step) {
  const environment = {...process.env, QUILLFADE_MAC_TYPINGS: typings};
  return spawnSync(join(copy, 'Scripts/check-mac'), step, {env: environment, encoding: 'utf8'});
}

// Why the mistake was not found as it should be; nothing when it was.
function plant({edits, step, says}) {
  const originals = edits.map(([file]) => [file, readFileSync(join(copy, file), 'utf8')]);
  try {
    for (const [file, text, replacement] of edits) {
      const original = readFileSync(join(copy, file), 'utf8');
      if (!original.includes(text)) return `${file} has no "${text}" to spoil`;
      writeFileSync(join(copy, file), original.replaceAll(text, replacement));
    }
    const {status, stderr} = run(step);
    if (status === 0) return 'the check passed';
    return says.test(stderr) ? undefined : `the check failed otherwise:\n${stderr}`;
  } finally {
    for (const [file, original] of originals) writeFileSync(join(copy, file), original);
  }
}

let failures = 0;
for (const mistake of mistakes) {
  const failure = plant(mistake);
  if (failure === undefined) continue;
  console.error(`mistakes: ${mistake.what}: ${failure}`);
  failures++;
}
// The copy as it was passes the steps in which the mistakes were found.
for (const step of ['declarations', 'rules', 'operations', 'bundle']) {
  if (run([step]).status === 0) continue;
  console.error(`mistakes: the sources fail "${step}" without any mistake`);
  failures++;
}
console.log(`${mistakes.length} planted mistakes, ${failures} not found`);
process.exit(failures === 0 ? 0 : 1);
