"""The mistakes that the check must find, and how one is planted in a copy of the sources."""

import contextlib
from dataclasses import dataclass

APP_KIT = "Tests/Mac/declarations/AppKit/AppKit.h"
CARBON = "Tests/Mac/declarations/Carbon/Carbon.h"
SCREEN_CAPTURE_KIT = "Tests/Mac/declarations/ScreenCaptureKit/ScreenCaptureKit.h"


class NothingToSpoil(Exception):
    """The sources do not hold the text that the mistake replaces."""


@dataclass(frozen=True)
class Mistake:
    what: str
    file: str
    text: str
    replacement: str
    step: tuple[str, ...]  # that must fail
    says: str  # what it must say, as a pattern
    in_facts: bool = True  # whether the facts tell what the mistake asks of them


MISTAKES = [
    Mistake("a wrong selector in the adapter",
            "Platform/Mac/Toolkit/Application.mm",
            "activateIgnoringOtherApps:YES", "activateIgnoringOtherApplications:YES",
            ("compile", "Platform/Mac/Toolkit/Application.mm"), r"activateIgnoringOtherApplications"),
    Mistake("the same wrong selector in the declarations",
            APP_KIT, "activateIgnoringOtherApps:", "activateIgnoringOtherApplications:",
            ("declarations",), r"activateIgnoringOtherApplications:\] is not in the typings"),
    Mistake("a wrong argument count in the adapter",
            "Platform/Mac/Windows/Windows.mm", "[window_ orderOut:nil]", "[window_ orderOut]",
            ("compile", "Platform/Mac/Windows/Windows.mm"), r"orderOut"),
    Mistake("a wrong argument count in the declarations",
            APP_KIT, "- (void)terminate:(nullable id)sender;", "- (void)terminate;",
            ("declarations",), r"terminate\] takes 0 arguments, in the typings 1"),
    Mistake("a wrong argument count of a function",
            CARBON, "GetApplicationEventTarget(void)", "GetApplicationEventTarget(UInt32 inOptions)",
            ("declarations",), r"GetApplicationEventTarget\(\) takes 1 arguments, in the typings 0"),
    Mistake("a wrong argument type in the declarations",
            APP_KIT, "- (BOOL)openURL:(NSURL*)url;", "- (BOOL)openURL:(NSString*)url;",
            ("declarations",), r"openURL:\] has the type"),
    Mistake("a protocol method that the adapter forgets",
            "Platform/Mac/Tray/Menu.mm", "- (void)menuDidClose:", "- (void)menuHasClosed:",
            ("compile", "Platform/Mac/Tray/Menu.mm"), r"menuDidClose"),
    Mistake("a protocol method that does not exist",
            SCREEN_CAPTURE_KIT, "didStopWithError:", "didEndWithError:",
            ("declarations",), r"didEndWithError:\] is not in the typings"),
    Mistake("a misspelt class",
            APP_KIT, "@interface NSStatusBarButton :", "@interface NSStatusBarButtn :",
            ("declarations",), r"NSStatusBarButtn is not in the typings"),
    Mistake("a misspelt property",
            SCREEN_CAPTURE_KIT, "BOOL showsCursor;", "BOOL showCursor;",
            ("declarations",), r"SCStreamConfiguration\.showCursor is not in the typings"),
    Mistake("a property that can only be read, declared as one that can be set",
            APP_KIT, "(class, readonly, strong) NSStatusBar* systemStatusBar;",
            "(class, strong) NSStatusBar* systemStatusBar;",
            ("declarations",), r"systemStatusBar can only be read"),
    Mistake("a wrong constant in the declarations",
            APP_KIT, "NSWindowCollectionBehaviorStationary = 0x10", "NSWindowCollectionBehaviorStationary = 0x20",
            ("declarations",), r"NSWindowCollectionBehaviorStationary is 32, in the typings 16"),
    Mistake("a misspelt constant",
            APP_KIT, "NSWindowSharingNone", "NSWindowNone",
            ("declarations",), r"NSWindowNone is not in the typings"),
    Mistake("a wrong constant in a port",
            "Platform/Windows.h", "unsigned stationary = 0x10;", "unsigned stationary = 0x20;",
            ("compile", "Platform/Mac/Windows/Windows.mm"), r"static assertion failed"),
    Mistake("an exception that is none",
            "Tests/Mac/not-in-typings.txt", "nil: ", "CFRetain: ",
            ("declarations",), r"CFRetain is listed as not in the typings"),
    Mistake("a declaration of which the facts do not tell",
            APP_KIT, "- (void)orderFrontRegardless;", "- (void)orderBack:(nullable id)sender;",
            ("declarations",), r"facts\.txt does not tell of NSWindow\.orderBack: run Scripts/mac-facts",
            in_facts=False),
    Mistake("an exception of which the facts do not tell",
            "Tests/Mac/facts.txt", "dispatch_get_main_queue: no function\n", "",
            ("declarations",), r"facts\.txt does not tell of dispatch_get_main_queue: run Scripts/mac-facts",
            in_facts=False),
    Mistake("facts of another version of the typings",
            "Tests/Mac/package.json", '-node-api": "', '-node-api": "1',
            ("declarations",), r"facts\.txt does not tell of the package .*: run Scripts/mac-facts",
            in_facts=False),
    Mistake("an Objective-C object that keeps its C++ side alive",
            "Platform/Mac/Tray/Menu.mm", "weak_ptr<platform::MenuDelegate> _delegate;",
            "shared_ptr<platform::MenuDelegate> _delegate;",
            ("rules",), r"QLFMenuDelegate holds a std::shared_ptr"),
    Mistake("a block that uses a member",
            "Platform/Mac/Capture/CaptureStream.mm", "[forwarder close]", "[forwarder_ close]",
            ("rules",), r'a block uses "forwarder_"'),
    Mistake("an override that overrides nothing",
            "Platform/Mac/Views/ResponderView.mm", "- (void)resetCursorRects {", "- (void)resetCursorRectangles {",
            ("rules",), r"nothing declares -\[QLFResponderView resetCursorRectangles\]"),
    Mistake("a text of the application in the adapter",
            "Platform/Mac/Windows/Dialogs.mm", "foundation::nsString(alert.messageText)", '@"Screen Recording permission needed"',
            ("rules",), r"is not the adapter's to choose"),
    Mistake("an operation that is gone",
            "Platform/Mac/Capture/CaptureContent.mm", "made.queueDepth =", "made.width =",
            ("operations",), r"SCStreamConfiguration queueDepth: not found"),
    Mistake("another version in the bundle",
            "Resources/Mac/Info.plist", "<string>1.1</string>", "<string>1.2</string>",
            ("bundle",), r'CFBundleVersion is "1\.2", not "1\.1"'),
]


@contextlib.contextmanager
def planted(mistake, copy):
    path = copy / mistake.file
    original = path.read_text()
    if mistake.text not in original:
        raise NothingToSpoil(f'{mistake.file} has no "{mistake.text}" to spoil')
    path.write_text(original.replace(mistake.text, mistake.replacement))
    try:
        yield
    finally:
        path.write_text(original)
