#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface CALayer : NSObject
@property CGRect frame;
@property(nullable) CGColorRef backgroundColor;
@property(nullable) CGColorRef borderColor;
@property CGFloat borderWidth;
+ (instancetype)layer;
- (void)addSublayer:(CALayer*)layer;
@end

@interface CATransaction : NSObject
+ (void)begin;
+ (void)commit;
+ (void)setDisableActions:(BOOL)flag;
@end

#pragma clang assume_nonnull end
