#pragma once

#import <CoreFoundation/CoreFoundation.h>

typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct EventHotKeyRefOpaque* EventHotKeyRef;
typedef OSType EventParamName;
typedef OSType EventParamType;
typedef unsigned long ByteCount;
typedef unsigned long ItemCount;
typedef UInt32 OptionBits;
typedef OSStatus (*EventHandlerUPP)(EventHandlerCallRef inHandlerCallRef, EventRef inEvent, void* inUserData);

struct EventTypeSpec {
  OSType eventClass;
  UInt32 eventKind;
};
typedef struct EventTypeSpec EventTypeSpec;

struct EventHotKeyID {
  OSType signature;
  UInt32 id;
};
typedef struct EventHotKeyID EventHotKeyID;

enum {
  noErr = 0,
};

enum {
  kEventClassKeyboard = 0x6B657962,
  kEventHotKeyPressed = 5,
};

enum {
  kEventParamDirectObject = 0x2D2D2D2D,
  typeEventHotKeyID = 0x686B6964,
};

enum {
  cmdKey = 0x100,
  optionKey = 0x800,
  controlKey = 0x1000,
};

EventTargetRef GetApplicationEventTarget(void);
OSStatus InstallEventHandler(EventTargetRef inTarget, EventHandlerUPP inHandler, ItemCount inNumTypes,
                             const EventTypeSpec* inList, void* inUserData, EventHandlerRef* outRef);
OSStatus RemoveEventHandler(EventHandlerRef inHandlerRef);
OSStatus RegisterEventHotKey(UInt32 inHotKeyCode, UInt32 inHotKeyModifiers, EventHotKeyID inHotKeyID,
                             EventTargetRef inTarget, OptionBits inOptions, EventHotKeyRef* outRef);
OSStatus UnregisterEventHotKey(EventHotKeyRef inHotKey);
OSStatus GetEventParameter(EventRef inEvent, EventParamName inName, EventParamType inDesiredType,
                           EventParamType* outActualType, ByteCount inBufferSize, ByteCount* outActualSize,
                           void* outData);
