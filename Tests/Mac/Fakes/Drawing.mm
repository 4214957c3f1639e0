#import "Tests/Mac/Fakes/Drawing.h"

#include <utility>

#import "Tests/Mac/Fakes/Bridge.h"

namespace {

struct Canvas {
  std::string fill = "nothing";
  std::string stroke = "nothing";
  std::vector<std::string> steps;
};
Canvas* focused = nullptr;

Canvas& canvas(const char* call) {
  fake::expectMainThread(call);
  if (focused == nullptr) fake::misuse(std::string{call} + " outside of drawRect:");
  return *focused;
}
#define CANVAS() canvas(__PRETTY_FUNCTION__)

std::string attributeWords(NSDictionary* attributes) {
  NSFont* font = [attributes objectForKey:NSFontAttributeName];
  NSColor* color = [attributes objectForKey:NSForegroundColorAttributeName];
  if (font == nil || color == nil || attributes.size != 2) fake::misuse("text without a font or a colour");
  return font.words + ", " + color.words;
}

}  // namespace

std::vector<std::string> fake::drawnBy(const std::function<void()>& draw) {
  Canvas own;
  Canvas* const outer = std::exchange(focused, &own);
  draw();
  focused = outer;
  return own.steps;
}

void fake::setFill(const std::string& color) { CANVAS().fill = color; }
void fake::setStroke(const std::string& color) { CANVAS().stroke = color; }

@implementation NSBezierPath {
  std::string _words;
  CGFloat _lineWidth;
  NSWindingRule _windingRule;
}

+ (NSBezierPath*)pathOf:(const std::string&)words {
  NSBezierPath* made = [[NSBezierPath alloc] init];
  made->_words = words;
  made->_lineWidth = 1;
  made->_windingRule = static_cast<NSWindingRule>(0);
  return made;
}
+ (NSBezierPath*)bezierPathWithRect:(NSRect)rect {
  return [self pathOf:'[' + fake::wordsOf(rect) + ']'];
}
+ (NSBezierPath*)bezierPathWithRoundedRect:(NSRect)rect xRadius:(CGFloat)x yRadius:(CGFloat)y {
  return [self pathOf:'(' + fake::wordsOf(rect) + ") radius " + fake::wordOf(x) + ' ' + fake::wordOf(y)];
}
- (void)appendBezierPath:(NSBezierPath*)path {
  _words += ' ' + path->_words;
}
- (void)fill {
  const bool isEvenOdd = _windingRule == NSWindingRuleEvenOdd;
  CANVAS().steps.push_back("fill " + _words + (isEvenOdd ? " even-odd" : "") + " with " + CANVAS().fill);
}
- (void)stroke {
  CANVAS().steps.push_back("stroke " + _words + " width " + fake::wordOf(_lineWidth) + " with " + CANVAS().stroke);
}

@end

@implementation NSString (NSStringDrawing)
// Every character of the fakes' fonts is 8 points wide.
- (NSSize)sizeWithAttributes:(NSDictionary<NSAttributedStringKey, id>*)attributes {
  EXPECT_MAIN_THREAD();
  (void)attributeWords(attributes);
  std::size_t characters = 0;
  for (const char byte : self.text) characters += (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U ? 1 : 0;
  return {.width = 8.0 * static_cast<double>(characters), .height = 16};
}
- (void)drawAtPoint:(NSPoint)point withAttributes:(NSDictionary<NSAttributedStringKey, id>*)attributes {
  CANVAS().steps.push_back("text \"" + self.text + "\" at " + fake::wordOf(point.x) + ' ' + fake::wordOf(point.y) +
                           " in " + attributeWords(attributes));
}
@end
