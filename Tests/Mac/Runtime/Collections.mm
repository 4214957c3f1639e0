#include <utility>
#include <vector>

#import "Tests/Mac/Runtime/Foundation.h"
#import "Tests/Mac/Runtime/Recorder.h"
#import "Tests/Mac/Runtime/Runtime.h"

@implementation NSArray {
 @protected
  std::vector<id> _items;
  unsigned long _changes;
}

+ (instancetype)array {
  return [[self alloc] init];
}
+ (instancetype)arrayWithObjects:(const id[])objects count:(NSUInteger)count {
  NSArray* made = [[self alloc] init];
  for (NSUInteger i = 0; i < count; ++i) {
    if (objects[i] == nil) fake::misuse("an array with nothing in one of its places");
    made->_items.push_back(objects[i]);
  }
  return made;
}
+ (NSArray*)arrayOf:(const std::vector<id>&)items {
  NSArray* made = [[NSArray alloc] init];
  made->_items = items;
  return made;
}

- (id)firstObject {
  return _items.empty() ? nil : _items.front();
}
- (const std::vector<id>&)items {
  return _items;
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)length {
  state->itemsPtr = buffer;
  state->mutationsPtr = &_changes;
  NSUInteger given = 0;
  while (given < length && state->state < _items.size()) buffer[given++] = _items[state->state++];
  return given;
}

@end

@implementation NSMutableArray
- (void)addObject:(id)object {
  if (object == nil) fake::misuse("addObject: of nothing");
  _items.push_back(object);
  ++_changes;
}
@end

@implementation NSDictionary {
  std::vector<std::pair<id, id>> _entries;
}

+ (instancetype)dictionaryWithObjects:(const id[])objects forKeys:(const id<NSCopying>[])keys count:(NSUInteger)count {
  NSDictionary* made = [[self alloc] init];
  for (NSUInteger i = 0; i < count; ++i) {
    if (objects[i] == nil || keys[i] == nil) fake::misuse("a dictionary with nothing in one of its places");
    made->_entries.emplace_back(keys[i], objects[i]);
  }
  return made;
}

- (id)objectForKey:(id)wanted {
  for (const auto& [key, value] : _entries) {
    if ([key isEqual:wanted]) return value;
  }
  return nil;
}
- (NSUInteger)size {
  return _entries.size();
}

@end
