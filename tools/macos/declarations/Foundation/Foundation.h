/* What we use of Foundation, with the version it came with where that is later than 10.13. */
#pragma once
#include <objc/runtime.h>

#pragma clang assume_nonnull begin
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef struct _NSZone NSZone;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)aSelector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init;
+ (Class)class;
@end

@interface NSString : NSObject
+ (nullable instancetype)stringWithUTF8String:(const char*)bytes;
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
@end

@interface NSAppleEventDescriptor : NSObject
@property(nullable, readonly, copy) NSString* stringValue;
@end

@interface NSAppleScript : NSObject
- (nullable instancetype)initWithSource:(NSString*)source;
- (NSAppleEventDescriptor*)executeAndReturnError:
    (NSDictionary<NSString*, id>* _Nullable* _Nullable)errorInfo;
@end
#pragma clang assume_nonnull end
