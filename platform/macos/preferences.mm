#include "platform/macos/preferences.h"

#import <Foundation/Foundation.h>

#include "platform/macos/kits.h"

namespace zelvane::platform {
namespace {

/// The program's own settings, whether this process runs from its bundle or from elsewhere.
NSUserDefaults* settingsOf(NSString* program) {
  // By the system's rules nobody may ask for his own settings by name.
  NSBundle* bundle = [foundationClass("NSBundle") mainBundle];
  Class settings = foundationClass("NSUserDefaults");
  if ([bundle.bundleIdentifier isEqualToString:program]) return [settings standardUserDefaults];
  return [[settings alloc] initWithSuiteName:program];
}

/// Without what JSON cannot say.
NSDictionary<NSString*, id>* plainOnly(NSDictionary<NSString*, id>* all) {
  Class json = foundationClass("NSJSONSerialization");
  NSMutableDictionary<NSString*, id>* plain = [foundationClass("NSMutableDictionary") dictionary];
  for (NSString* key in all) {
    id value = all[key];
    NSDictionary<NSString*, id>* alone = [foundationClass("NSDictionary") dictionaryWithObject:value
                                                                                        forKey:key];
    if ([json isValidJSONObject:alone]) plain[key] = value;
  }
  return plain;
}

}  // namespace

std::string preferences(const std::string& program) {
  @autoreleasepool {
    NSString* name = kitText(program);
    if (!name) return {};
    NSDictionary<NSString*, id>* all = [settingsOf(name) persistentDomainForName:name];
    if (!all) return {};
    NSData* text =
        [foundationClass("NSJSONSerialization") dataWithJSONObject:plainOnly(all)
                                                           options:NSJSONWritingSortedKeys
                                                             error:nil];
    return text ? std::string(static_cast<const char*>(text.bytes), text.length) : std::string();
  }
}

void setPreference(const std::string& program, const std::string& key, const std::string& json) {
  @autoreleasepool {
    NSString* name = kitText(program);
    NSString* title = kitText(key);
    NSData* text = [foundationClass("NSData") dataWithBytes:json.data() length:json.size()];
    if (!name || !title || !text) return;
    id value =
        [foundationClass("NSJSONSerialization") JSONObjectWithData:text
                                                           options:NSJSONReadingFragmentsAllowed
                                                             error:nil];
    // Settings know no null, and the kit would end the process over one within the value.
    if (!value || ![foundationClass("NSPropertyListSerialization")
                          propertyList:value
                      isValidForFormat:NSPropertyListBinaryFormat_v1_0]) {
      return;
    }
    NSUserDefaults* settings = settingsOf(name);
    [settings setObject:value forKey:title];
    // A command ends right after: what is on its way must have arrived.
    [settings synchronize];
  }
}

void removePreference(const std::string& program, const std::string& key) {
  @autoreleasepool {
    NSString* name = kitText(program);
    NSString* title = kitText(key);
    if (!name || !title) return;
    NSUserDefaults* settings = settingsOf(name);
    [settings removeObjectForKey:title];
    [settings synchronize];
  }
}

}  // namespace zelvane::platform
