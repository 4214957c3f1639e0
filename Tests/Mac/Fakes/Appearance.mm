// Colours and fonts, each with the words that a test compares.
#include <cstdio>
#include <map>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Drawing.h"

NSFontWeight const NSFontWeightRegular = 0;
NSFontWeight const NSFontWeightMedium = 0.23;
NSFontWeight const NSFontWeightSemibold = 0.3;
NSAttributedStringKey const NSFontAttributeName = @"NSFont";
NSAttributedStringKey const NSForegroundColorAttributeName = @"NSColor";

namespace fake {

std::string wordOf(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

std::string wordsOf(CGRect rect) {
  return wordOf(rect.origin.x) + ' ' + wordOf(rect.origin.y) + ' ' + wordOf(rect.size.width) + ' ' +
         wordOf(rect.size.height);
}

}  // namespace fake

using fake::wordOf;

// What Core Graphics knows of a colour.
@interface FakeLayerColor : NSObject {
 @public
  std::string words;
}
@end
@implementation FakeLayerColor
@end

std::string wordsOf(CGColorRef color) {
  return color == nullptr ? "" : ((__bridge FakeLayerColor*)static_cast<void*>(color))->words;
}

@implementation NSColor {
  std::string _name;
  std::string _alpha;
  FakeLayerColor* _layerColor;
}

+ (NSColor*)colorNamed:(const std::string&)name {
  NSColor* made = [[NSColor alloc] init];
  made->_name = name;
  return made;
}
+ (NSColor*)blackColor {
  return [self colorNamed:"black"];
}
+ (NSColor*)whiteColor {
  return [self colorNamed:"white"];
}
+ (NSColor*)clearColor {
  return [self colorNamed:"clear"];
}
+ (NSColor*)labelColor {
  return [self colorNamed:"label"];
}
+ (NSColor*)secondaryLabelColor {
  return [self colorNamed:"secondary label"];
}
+ (NSColor*)windowBackgroundColor {
  return [self colorNamed:"window background"];
}
+ (NSColor*)colorWithCalibratedRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha {
  return [self colorNamed:"rgb " + wordOf(red) + ' ' + wordOf(green) + ' ' + wordOf(blue) +
                          (alpha == 1 ? "" : " alpha " + wordOf(alpha))];
}
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha {
  NSColor* made = [NSColor colorNamed:_name];
  made->_alpha = " alpha " + wordOf(alpha);
  return made;
}

- (std::string)words {
  return _name + _alpha;
}
- (void)setFill {
  fake::setFill(self.words);
}
- (void)setStroke {
  fake::setStroke(self.words);
}
- (CGColorRef)CGColor {
  if (_layerColor == nil) {
    _layerColor = [[FakeLayerColor alloc] init];
    _layerColor->words = self.words;
  }
  __autoreleasing FakeLayerColor* color = _layerColor;
  return static_cast<CGColorRef>((__bridge void*)color);
}

@end

@implementation NSFont {
  std::string _words;
}

+ (NSFont*)fontOf:(const std::string&)words {
  NSFont* made = [[NSFont alloc] init];
  made->_words = words;
  return made;
}
+ (std::string)weightWord:(NSFontWeight)weight {
  if (weight == NSFontWeightMedium) return " medium";
  if (weight == NSFontWeightSemibold) return " semibold";
  if (weight != NSFontWeightRegular) fake::misuse("an unknown weight of a font");
  return " regular";
}
+ (NSFont*)systemFontOfSize:(CGFloat)size {
  return [self fontOf:"system " + wordOf(size)];
}
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
  return [self fontOf:"system " + wordOf(size) + [self weightWord:weight]];
}
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
  return [self fontOf:"digits " + wordOf(size) + [self weightWord:weight]];
}
- (std::string)words {
  return _words;
}

@end

@implementation NSAttributedString {
  std::string _text;
  NSDictionary* _attributes;
}
- (instancetype)initWithString:(NSString*)text attributes:(NSDictionary<NSAttributedStringKey, id>*)attributes {
  EXPECT_MAIN_THREAD();
  self = [super init];
  if (self) {
    _text = text.text;
    _attributes = attributes;
  }
  return self;
}
- (std::string)text {
  return _text;
}
- (std::string)fontWords {
  return static_cast<NSFont*>([_attributes objectForKey:NSFontAttributeName]).words;
}
- (std::string)colorWords {
  return static_cast<NSColor*>([_attributes objectForKey:NSForegroundColorAttributeName]).words;
}
@end
