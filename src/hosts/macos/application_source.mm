#include "hosts/macos/application_source.h"

#import <AppKit/AppKit.h>

#include "hosts/macos/foundation_text.h"

namespace embrix {

std::optional<ApplicationBundle> MacApplicationSource::bundle(const std::string& bundlePath) {
  @autoreleasepool {
    NSString* const path = foundationText(bundlePath);
    NSBundle* const bundle = path == nil ? nil : [NSBundle bundleWithPath:path];
    if (bundle == nil) return std::nullopt;
    return ApplicationBundle{
        .displayName = plainText([bundle objectForInfoDictionaryKey:@"CFBundleDisplayName"]),
        .name = plainText([bundle objectForInfoDictionaryKey:@"CFBundleName"]),
        .identifier = plainText(bundle.bundleIdentifier)};
  }
}

std::optional<std::string> MacApplicationSource::pathForIdentifier(const std::string& identifier) {
  @autoreleasepool {
    NSString* const wanted = foundationText(identifier);
    if (wanted == nil) return std::nullopt;
    return plainText(
        [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:wanted].path);
  }
}

}  // namespace embrix
