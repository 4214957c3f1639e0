#pragma once

#import <Foundation/Foundation.h>
#import <QuartzCore/QuartzCore.h>

#pragma clang assume_nonnull begin

@class NSEvent;
@class NSLayoutXAxisAnchor;
@class NSLayoutYAxisAnchor;
@class NSMenu;
@class NSWindow;

typedef CGFloat NSFontWeight;
typedef NSInteger NSControlStateValue;
typedef NSInteger NSModalResponse;
typedef NSInteger NSWindowLevel;
typedef NSString* NSAboutPanelOptionKey;
typedef NSString* NSDeviceDescriptionKey;

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular = 0,
  NSApplicationActivationPolicyAccessory = 1,
  NSApplicationActivationPolicyProhibited = 2,
};

typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) {
  NSWindowStyleMaskBorderless = 0,
};

typedef NS_ENUM(NSUInteger, NSBackingStoreType) {
  NSBackingStoreBuffered = 2,
};

typedef NS_OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
  NSWindowCollectionBehaviorCanJoinAllSpaces = 0x1,
  NSWindowCollectionBehaviorStationary = 0x10,
  NSWindowCollectionBehaviorIgnoresCycle = 0x40,
  NSWindowCollectionBehaviorFullScreenAuxiliary = 0x100,
};

typedef NS_ENUM(NSInteger, NSWindowAnimationBehavior) {
  NSWindowAnimationBehaviorDefault = 0,
  NSWindowAnimationBehaviorNone = 2,
};

typedef NS_ENUM(NSUInteger, NSWindowSharingType) {
  NSWindowSharingNone = 0,
  NSWindowSharingReadOnly = 1,
};

typedef NS_OPTIONS(unsigned long long, NSEventMask) {
  NSEventMaskKeyDown = 1024,
};

typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
  NSEventModifierFlagControl = 0x40000,
  NSEventModifierFlagOption = 0x80000,
  NSEventModifierFlagCommand = 0x100000,
};

typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
  NSViewWidthSizable = 2,
  NSViewHeightSizable = 16,
};

typedef NS_ENUM(NSInteger, NSTextAlignment) {
  NSTextAlignmentCenter = 1,
};

typedef NS_ENUM(NSUInteger, NSWindingRule) {
  NSWindingRuleEvenOdd = 1,
};

static const NSControlStateValue NSControlStateValueOff = 0;
static const NSControlStateValue NSControlStateValueOn = 1;
static const NSModalResponse NSAlertFirstButtonReturn = 1000;

extern NSFontWeight const NSFontWeightRegular;
extern NSFontWeight const NSFontWeightMedium;
extern NSFontWeight const NSFontWeightSemibold;
extern NSAttributedStringKey const NSFontAttributeName;
extern NSAttributedStringKey const NSForegroundColorAttributeName;
extern NSNotificationName const NSApplicationDidChangeScreenParametersNotification;
extern NSAboutPanelOptionKey const NSAboutPanelOptionApplicationName;
extern NSAboutPanelOptionKey const NSAboutPanelOptionApplicationVersion;
extern NSAboutPanelOptionKey const NSAboutPanelOptionVersion;
extern NSAboutPanelOptionKey const NSAboutPanelOptionCredits;

@interface NSColor : NSObject
@property(class, readonly, strong) NSColor* blackColor;
@property(class, readonly, strong) NSColor* whiteColor;
@property(class, readonly, strong) NSColor* clearColor;
@property(class, readonly, strong) NSColor* labelColor;
@property(class, readonly, strong) NSColor* secondaryLabelColor;
@property(class, readonly, strong) NSColor* windowBackgroundColor;
@property(readonly) CGColorRef CGColor;
+ (NSColor*)colorWithCalibratedRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha;
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
- (void)setFill;
- (void)setStroke;
@end

@interface NSFont : NSObject
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize;
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
@end

@interface NSString (NSStringDrawing)
- (NSSize)sizeWithAttributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attrs;
- (void)drawAtPoint:(NSPoint)point withAttributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attrs;
@end

@interface NSBezierPath : NSObject
@property CGFloat lineWidth;
@property NSWindingRule windingRule;
+ (NSBezierPath*)bezierPathWithRect:(NSRect)rect;
+ (NSBezierPath*)bezierPathWithRoundedRect:(NSRect)rect xRadius:(CGFloat)xRadius yRadius:(CGFloat)yRadius;
- (void)appendBezierPath:(NSBezierPath*)path;
- (void)fill;
- (void)stroke;
@end

@interface NSImage : NSObject
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
- (void)setTemplate:(BOOL)isTemplate;
@end

@interface NSCursor : NSObject
@property(class, readonly, strong) NSCursor* crosshairCursor;
@end

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(class, nullable, readonly, strong) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly, copy) NSDictionary<NSDeviceDescriptionKey, id>* deviceDescription;
@property(readonly) CGFloat backingScaleFactor;
@end

@interface NSEvent : NSObject
@property(class, readonly) NSPoint mouseLocation;
@property(readonly) NSPoint locationInWindow;
@property(readonly) unsigned short keyCode;
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:(NSEvent* _Nullable (^)(NSEvent* event))block;
+ (void)removeMonitor:(id)eventMonitor;
@end

@protocol NSStandardKeyBindingResponding <NSObject>
@optional
- (void)cancelOperation:(nullable id)sender;
@end

@interface NSResponder : NSObject <NSStandardKeyBindingResponding>
@property(readonly) BOOL acceptsFirstResponder;
- (void)mouseDown:(NSEvent*)event;
- (void)mouseDragged:(NSEvent*)event;
- (void)mouseUp:(NSEvent*)event;
- (void)keyDown:(NSEvent*)event;
@end

@interface NSLayoutConstraint : NSObject
+ (void)activateConstraints:(NSArray<NSLayoutConstraint*>*)constraints;
@end

@interface NSLayoutAnchor<AnchorType> : NSObject
- (NSLayoutConstraint*)constraintEqualToAnchor:(NSLayoutAnchor<AnchorType>*)anchor;
@end

@interface NSLayoutXAxisAnchor : NSLayoutAnchor <NSLayoutXAxisAnchor*>
@end

@interface NSLayoutYAxisAnchor : NSLayoutAnchor <NSLayoutYAxisAnchor*>
@end

@interface NSView : NSResponder
@property NSRect frame;
@property NSRect bounds;
@property NSAutoresizingMaskOptions autoresizingMask;
@property BOOL wantsLayer;
@property(nullable, strong) CALayer* layer;
@property(getter=isHidden) BOOL hidden;
@property BOOL needsDisplay;
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
@property(nullable, copy) NSString* toolTip;
@property BOOL translatesAutoresizingMaskIntoConstraints;
@property(readonly, strong) NSLayoutXAxisAnchor* centerXAnchor;
@property(readonly, strong) NSLayoutYAxisAnchor* centerYAnchor;
- (instancetype)initWithFrame:(NSRect)frameRect;
- (void)addSubview:(NSView*)view;
- (void)layout;
- (void)drawRect:(NSRect)dirtyRect;
- (void)resetCursorRects;
- (void)addCursorRect:(NSRect)rect cursor:(NSCursor*)object;
- (NSPoint)convertPoint:(NSPoint)point fromView:(nullable NSView*)view;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view;
@end

@interface NSControl : NSView
@property(copy) NSString* stringValue;
@property(nullable, strong) NSFont* font;
@property NSTextAlignment alignment;
@end

@interface NSTextField : NSControl
@property(nullable, copy) NSColor* textColor;
+ (instancetype)labelWithString:(NSString*)stringValue;
@end

@interface NSButton : NSControl
@property(nullable, strong) NSImage* image;
@end

@interface NSStatusBarButton : NSButton
@end

@interface NSWindow : NSResponder
@property(nullable, strong) NSView* contentView;
@property(readonly) NSRect frame;
@property NSWindowLevel level;
@property NSWindowCollectionBehavior collectionBehavior;
@property BOOL ignoresMouseEvents;
@property BOOL hasShadow;
@property(getter=isOpaque) BOOL opaque;
@property(null_resettable, copy) NSColor* backgroundColor;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(getter=isMovable) BOOL movable;
@property NSWindowAnimationBehavior animationBehavior;
@property NSWindowSharingType sharingType;
@property(readonly) BOOL canBecomeKeyWindow;
@property(readonly) BOOL canBecomeMainWindow;
@property(readonly, getter=isVisible) BOOL visible;
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag;
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;
- (void)orderFrontRegardless;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)makeKeyWindow;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (void)orderOut:(nullable id)sender;
- (NSRect)convertRectToScreen:(NSRect)rect;
@end

// Optional in the system's own headers, as are the methods of NSMenuDelegate. Required here, so that a class which
// forgets one fails the check.
@protocol NSApplicationDelegate <NSObject>
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
@property(readonly, copy) NSArray<NSWindow*>* windows;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)activateIgnoringOtherApps:(BOOL)ignoreOtherApps;
- (void)run;
- (void)terminate:(nullable id)sender;
- (void)orderFrontStandardAboutPanelWithOptions:(NSDictionary<NSAboutPanelOptionKey, id>*)optionsDictionary;
@end

@interface NSAlert : NSObject
@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
- (NSButton*)addButtonWithTitle:(NSString*)title;
- (NSModalResponse)runModal;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
- (BOOL)openURL:(NSURL*)url;
@end

@interface NSMenuItem : NSObject
@property(nullable, strong) NSMenu* submenu;
@property NSEventModifierFlags keyEquivalentModifierMask;
@property(getter=isEnabled) BOOL enabled;
@property NSControlStateValue state;
@property(nullable, weak) id target;
@property NSInteger tag;
@property(nullable, strong) id representedObject;
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)string action:(nullable SEL)selector keyEquivalent:(NSString*)charCode;
@end

@protocol NSMenuDelegate <NSObject>
- (void)menuWillOpen:(NSMenu*)menu;
- (void)menuDidClose:(NSMenu*)menu;
@end

@interface NSMenu : NSObject
@property(nullable, weak) id<NSMenuDelegate> delegate;
@property(readonly) NSInteger numberOfItems;
- (void)addItem:(NSMenuItem*)newItem;
- (void)removeAllItems;
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property(nullable, strong) NSMenu* menu;
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

#pragma clang assume_nonnull end
