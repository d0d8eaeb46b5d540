#include "hosts/macos/io_registry.h"

#include "hosts/macos/cf_holder.h"
#include "hosts/macos/cf_property.h"

namespace embrix {

namespace {

CfHolder<CFStringRef> keyOf(const char* name) {
  return CfHolder(CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingUTF8));
}

CfHolder<CFTypeRef> property(io_registry_entry_t entry, const char* name) {
  const auto key = keyOf(name);
  if (!key) return {};
  return CfHolder(IORegistryEntryCreateCFProperty(entry, key.get(), kCFAllocatorDefault, 0));
}

std::vector<IoHolder> allOf(const IoHolder& iterator) {
  std::vector<IoHolder> objects;
  if (!iterator) return objects;
  while (IoHolder next{IOIteratorNext(iterator.get())}) objects.push_back(std::move(next));
  return objects;
}

}  // namespace

// The matching dictionaries below are taken over by the functions that they are handed to.

IoHolder firstService(const char* className) {
  return IoHolder(IOServiceGetMatchingService(kIOMainPortDefault, IOServiceMatching(className)));
}

std::vector<IoHolder> allServices(const char* className) {
  IoHolder iterator;
  if (IOServiceGetMatchingServices(kIOMainPortDefault, IOServiceMatching(className),
                                   iterator.out()) != KERN_SUCCESS) {
    return {};
  }
  return allOf(iterator);
}

std::vector<IoHolder> childrenOf(io_registry_entry_t entry) {
  IoHolder iterator;
  if (IORegistryEntryGetChildIterator(entry, kIOServicePlane, iterator.out()) != KERN_SUCCESS) {
    return {};
  }
  return allOf(iterator);
}

std::optional<PropertyMap> propertiesOf(io_registry_entry_t entry) {
  CfHolder<CFMutableDictionaryRef> properties;
  if (IORegistryEntryCreateCFProperties(entry, properties.out(), kCFAllocatorDefault, 0) !=
          KERN_SUCCESS ||
      !properties) {
    return std::nullopt;
  }
  return propertyMapOf(properties.get());
}

Property propertyOf(io_registry_entry_t entry, const char* name) {
  return propertyOf(property(entry, name).get());
}

std::optional<std::string> dataTextAt(const char* registryPath, const char* name) {
  const IoHolder entry(IORegistryEntryFromPath(kIOMainPortDefault, registryPath));
  if (!entry) return std::nullopt;
  const auto value = property(entry.get(), name);
  const CFDataRef data = asData(value.get());
  if (data == nullptr) return std::nullopt;
  std::string text(reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
                   static_cast<std::size_t>(CFDataGetLength(data)));
  text.resize(std::min(text.find('\0'), text.size()));
  return text.empty() ? std::nullopt : std::optional(text);
}

}  // namespace embrix
