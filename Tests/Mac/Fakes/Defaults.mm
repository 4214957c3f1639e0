// The user's defaults, which keep truth values, numbers and texts apart.
#import <Foundation/Foundation.h>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/World.h"

namespace {

id objectOf(const fake::Default& value) {
  if (const auto* truth = std::get_if<bool>(&value)) return [NSNumber numberOfTruth:*truth];
  if (const auto* number = std::get_if<std::int64_t>(&value)) return [NSNumber numberWithLongLong:*number];
  if (const auto* number = std::get_if<double>(&value)) return [NSNumber numberWithDouble:*number];
  if (const auto* text = std::get_if<std::string>(&value)) return [NSString stringOf:*text];
  return [NSData dataWithBytes:"?" length:1];
}

void store(NSString* key, const fake::Default& value) {
  auto& world = fake::world();
  world.defaults.insert_or_assign(key.text, value);
  world.defaultWrites.emplace_back(key.text, value);
}

}  // namespace

@implementation NSUserDefaults
+ (NSUserDefaults*)standardUserDefaults {
  EXPECT_MAIN_THREAD();
  return fake::sharedObject(self);
}
- (id)objectForKey:(NSString*)key {
  EXPECT_MAIN_THREAD();
  const auto& defaults = fake::world().defaults;
  const auto found = defaults.find(key.text);
  return found == defaults.end() ? nil : objectOf(found->second);
}
- (void)setObject:(id)value forKey:(NSString*)key {
  EXPECT_MAIN_THREAD();
  if ([value isKindOfClass:[NSString class]]) return store(key, static_cast<NSString*>(value).text);
  if (![value isKindOfClass:[NSNumber class]]) fake::misuse("a default that is neither a number nor a text");
  store(key, static_cast<NSNumber*>(value).doubleValue);
}
- (void)setInteger:(NSInteger)value forKey:(NSString*)key {
  EXPECT_MAIN_THREAD();
  store(key, static_cast<std::int64_t>(value));
}
- (void)setBool:(BOOL)value forKey:(NSString*)key {
  EXPECT_MAIN_THREAD();
  store(key, static_cast<bool>(value));
}
@end
