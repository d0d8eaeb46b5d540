// Any bytes as a property list: as they are, as the contents of an XML list, as the values of a
// binary one whose table is in order, and as changes to lists that are sound.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <plist/plist.h>

#include "darwin/property_list.h"
#include "darwin/property_list_limits.h"

namespace {

int depthOf(const embrix::Property& property) {
  int deepest = 0;
  if (const auto* list = std::get_if<embrix::PropertyList>(&property.value)) {
    for (const auto& element : *list) deepest = std::max(deepest, depthOf(element));
  }
  if (const auto* map = std::get_if<embrix::PropertyMap>(&property.value)) {
    for (const auto& entry : *map) deepest = std::max(deepest, depthOf(entry.second));
  }
  return deepest + 1;
}

void check(const std::string& bytes) {
  const auto list = embrix::decodePropertyList(bytes);
  if (list && depthOf(*list) > embrix::kPropertyListDepthLimit + 2) std::abort();
}

// Values that begin at every third byte, two bytes for each place in the table and one for each
// reference.
std::string binaryOf(const std::string& values) {
  std::string list = "bplist00" + values.substr(0, 3 * 255);
  const std::size_t table = list.size();
  std::size_t count = 0;
  for (std::size_t at = 8; at < table; at += 3) {
    list += static_cast<char>(at >> 8);
    list += static_cast<char>(at);
    ++count;
  }
  std::string trailer(32, '\0');
  trailer[6] = 2;
  trailer[7] = 1;
  trailer[15] = static_cast<char>(count);
  trailer[30] = static_cast<char>(table >> 8);
  trailer[31] = static_cast<char>(table);
  return list + trailer;
}

const std::string kSoundXml =
    "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>name</key><string>a&amp;b</string>"
    "<key>wide</key><string>“é”</string><key>list</key><array><integer>-7</integer><real>0.5</real>"
    "<date>2026-03-02T23:00:00Z</date><data>AAEC</data><true/></array><key>in</key>"
    "<dict><key>much</key><integer>18446744073709551543</integer></dict></dict></plist>";

std::string binaryForm(const std::string& xml) {
  plist_t tree = nullptr;
  plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &tree);
  char* bytes = nullptr;
  std::uint32_t size = 0;
  plist_to_bin(tree, &bytes, &size);
  std::string binary(bytes, size);
  std::free(bytes);
  plist_free(tree);
  return binary;
}

// Each two bytes of `changes` are a place and what to write there.
std::string changed(std::string list, const std::string& changes) {
  for (std::size_t i = 0; i + 1 < changes.size(); i += 2) {
    list[static_cast<std::uint8_t>(changes[i]) % list.size()] = changes[i + 1];
  }
  return list;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  check(bytes);
  check("<plist version=\"1.0\">" + bytes + "</plist>");
  check(binaryOf(bytes));
  static const std::string soundBinary = binaryForm(kSoundXml);
  check(changed(soundBinary, bytes));
  check(changed(kSoundXml, bytes));
  return 0;
}
