/* What we use of Foundation. */
#pragma once
#include <objc/NSObject.h>
#include <objc/runtime.h>

#pragma clang assume_nonnull begin
@class NSData, NSDictionary<KeyType, ObjectType>;

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

@protocol NSCopying
@end

@interface NSString : NSObject <NSCopying>
+ (nullable instancetype)stringWithUTF8String:(const char*)bytes;
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
- (BOOL)isEqualToString:(NSString*)other;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSFastEnumeration>
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObject:(ObjectType)object forKey:(KeyType<NSCopying>)key;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
- (void)setObject:(nullable ObjectType)object forKeyedSubscript:(KeyType<NSCopying>)key;
@end

@interface NSError : NSObject
@end

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@property(readonly) const void* bytes __attribute__((objc_returns_inner_pointer));
@property(readonly) NSUInteger length;
@end

typedef NSUInteger NSJSONReadingOptions;
static const NSJSONReadingOptions NSJSONReadingFragmentsAllowed = 1UL << 2;
typedef NSUInteger NSJSONWritingOptions;
static const NSJSONWritingOptions NSJSONWritingSortedKeys = 1UL << 1;

@interface NSJSONSerialization : NSObject
+ (BOOL)isValidJSONObject:(id)object;
+ (nullable NSData*)dataWithJSONObject:(id)object
                               options:(NSJSONWritingOptions)options
                                 error:(NSError* _Nullable* _Nullable)error;
+ (nullable id)JSONObjectWithData:(NSData*)data
                          options:(NSJSONReadingOptions)options
                            error:(NSError* _Nullable* _Nullable)error;
@end

typedef NSUInteger NSPropertyListFormat;
static const NSPropertyListFormat NSPropertyListBinaryFormat_v1_0 = 200;

@interface NSPropertyListSerialization : NSObject
+ (BOOL)propertyList:(id)list isValidForFormat:(NSPropertyListFormat)format;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable instancetype)initWithSuiteName:(nullable NSString*)name;
- (nullable NSDictionary<NSString*, id>*)persistentDomainForName:(NSString*)name;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
- (void)removeObjectForKey:(NSString*)key;
- (BOOL)synchronize;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@end

typedef NSString* NSRunLoopMode;

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* mainRunLoop;
@property(nullable, readonly, copy) NSRunLoopMode currentMode;
@end

@interface NSOperationQueue : NSObject
@end

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject
@end

@interface NSNotificationCenter : NSObject
- (id<NSObject>)addObserverForName:(nullable NSNotificationName)name
                            object:(nullable id)object
                             queue:(nullable NSOperationQueue*)queue
                        usingBlock:(void (^)(NSNotification* notification))block;
- (void)removeObserver:(id)observer;
@end

typedef NSUInteger NSKeyValueObservingOptions;

@interface NSObject (NSKeyValueObserving)
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)path
            options:(NSKeyValueObservingOptions)options
            context:(nullable void*)context;
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)path;
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
