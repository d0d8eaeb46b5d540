// Texts on their way between Foundation and the program. For Objective-C++ files alone.
#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

namespace embrix {

// Nil when the bytes are not UTF-8.
inline NSString* foundationText(std::string_view bytes) {
  return [[NSString alloc] initWithBytes:bytes.data()
                                  length:bytes.size()
                                encoding:NSUTF8StringEncoding];
}

// Absent for nil and for every object that is no text, or no text that UTF-8 can hold.
inline std::optional<std::string> plainText(id object) {
  if (![object isKindOfClass:NSString.class]) return std::nullopt;
  NSData* const bytes = [object dataUsingEncoding:NSUTF8StringEncoding];
  if (bytes == nil) return std::nullopt;
  return std::string(static_cast<const char*>(bytes.bytes), bytes.length);
}

}  // namespace embrix
