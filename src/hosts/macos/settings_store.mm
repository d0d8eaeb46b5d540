#include "hosts/macos/settings_store.h"

#import <Foundation/Foundation.h>

#include <utility>
#include <variant>
#include <vector>

#include "hosts/macos/foundation_text.h"

#if !__has_feature(objc_arc)
#error "This file leaves the release of objects to the compiler."
#endif

namespace embrix {

namespace {

NSUserDefaults* defaultsOf(const CfHolder<CFTypeRef>& held) {
  return (__bridge NSUserDefaults*)held.get();
}

std::optional<SettingValue> settingOf(NSNumber* number) {
  if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID()) {
    return number.boolValue == YES;
  }
  return number.doubleValue;
}

// Absent when something in it is no text.
std::optional<SettingValue> settingOf(NSArray* array) {
  std::vector<std::string> texts;
  for (id element in array) {
    auto text = plainText(element);
    if (!text) return std::nullopt;
    texts.push_back(std::move(*text));
  }
  return texts;
}

// Nil when a text is not UTF-8.
struct ToFoundation {
  id operator()(bool value) const { return [NSNumber numberWithBool:value]; }
  id operator()(double value) const { return [NSNumber numberWithDouble:value]; }
  id operator()(const std::string& value) const { return foundationText(value); }
  id operator()(const std::vector<std::string>& values) const {
    NSMutableArray* const array = [NSMutableArray arrayWithCapacity:values.size()];
    for (const std::string& value : values) {
      NSString* const text = foundationText(value);
      if (text == nil) return nil;
      [array addObject:text];
    }
    return array;
  }
  id operator()(const SettingData& value) const {
    return [NSData dataWithBytes:value.bytes.data() length:value.bytes.size()];
  }
};

// Nil for a program without an identifier.
NSString* domainOf(const std::string& suite) {
  return suite.empty() ? NSBundle.mainBundle.bundleIdentifier : foundationText(suite);
}

// Nil when there is none.
NSDictionary<NSString*, id>* settingsOf(const std::string& suite) {
  NSString* const domain = domainOf(suite);
  return domain == nil ? nil : [NSUserDefaults.standardUserDefaults persistentDomainForName:domain];
}

}  // namespace

MacSettingsStore::MacSettingsStore(CFTypeRef defaults, std::string domain)
    : defaults_(defaults), domain_(std::move(domain)) {}

std::optional<SettingValue> MacSettingsStore::stored(std::string_view key) const {
  @autoreleasepool {
    NSString* const name = foundationText(key);
    const id object = name == nil ? nil : [defaultsOf(defaults_) objectForKey:name];
    if ([object isKindOfClass:NSNumber.class]) return settingOf(static_cast<NSNumber*>(object));
    if ([object isKindOfClass:NSArray.class]) return settingOf(static_cast<NSArray*>(object));
    if ([object isKindOfClass:NSData.class]) {
      NSData* const data = static_cast<NSData*>(object);
      return SettingData{std::string(static_cast<const char*>(data.bytes), data.length)};
    }
    auto text = plainText(object);
    return text ? std::optional<SettingValue>(std::move(*text)) : std::nullopt;
  }
}

void MacSettingsStore::set(std::string_view key, SettingValue value) {
  @autoreleasepool {
    NSString* const name = foundationText(key);
    const id object = std::visit(ToFoundation(), value);
    if (name != nil && object != nil) [defaultsOf(defaults_) setObject:object forKey:name];
  }
}

void MacSettingsStore::remove(std::string_view key) {
  @autoreleasepool {
    NSString* const name = foundationText(key);
    if (name != nil) [defaultsOf(defaults_) removeObjectForKey:name];
  }
}

void MacSettingsStore::removeAll() {
  @autoreleasepool {
    if (!domain_.empty()) {
      [defaultsOf(defaults_) removePersistentDomainForName:foundationText(domain_)];
    }
  }
}

std::unique_ptr<SettingsStore> MacSettingsStores::open(const std::string& suite) {
  @autoreleasepool {
    NSUserDefaults* defaults = nil;
    std::string domain = suite;
    if (suite.empty()) {
      defaults = NSUserDefaults.standardUserDefaults;
      domain = plainText(NSBundle.mainBundle.bundleIdentifier).value_or("");
    } else if (NSString* const name = foundationText(suite)) {
      defaults = [[NSUserDefaults alloc] initWithSuiteName:name];
    }
    if (defaults == nil) return nullptr;
    return std::make_unique<MacSettingsStore>((__bridge_retained CFTypeRef)defaults,
                                              std::move(domain));
  }
}

bool MacSettingsStores::hasSettings(const std::string& suite) {
  @autoreleasepool {
    return settingsOf(suite).count > 0;
  }
}

void MacSettingsStores::copySettings(const std::string& from, const std::string& to) {
  @autoreleasepool {
    NSDictionary<NSString*, id>* const settings = settingsOf(from);
    NSString* const domain = domainOf(to);
    if (settings == nil || domain == nil) return;
    [NSUserDefaults.standardUserDefaults setPersistentDomain:settings forName:domain];
  }
}

}  // namespace embrix
