// The single values inside a recording's lines: numbers, texts of any bytes, property lists.
#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "base/json.h"
#include "frame/thermal_state.h"
#include "host/folder_source.h"
#include "host/process_source.h"
#include "host/property.h"
#include "host/smc_source.h"

namespace embrix {

// Thrown while a line is decoded, and caught before it leaves recording_format.cpp.
struct RecordingDamage {
  std::string where;  // such as "processes[0].added[3].pid"; empty for the line as a whole
  std::string what;   // goes on with "is": "is missing"
};

[[noreturn]] inline void refuse(std::string what) {
  throw RecordingDamage{"", std::move(what)};
}

// Runs `decode`; damage found in it is then known to be inside of `part`.
template <typename Decode>
void inside(std::string_view part, Decode decode) {
  try {
    decode();
  } catch (RecordingDamage& damage) {
    const bool isIndexed = damage.where.empty() || damage.where.front() == '[';
    damage.where = fmt::format("{}{}{}", part, isIndexed ? "" : ".", damage.where);
    throw;
  }
}

// A double that is not finite is one of the texts "nan", "inf" and "-inf".
OrderedJson encodeValue(double number);
void decodeValue(const Json& json, double& number);

void decodeValue(const Json& json, bool& truth);

// Bytes that are no UTF-8 become an object with the key "base64".
OrderedJson encodeValue(const std::string& text);
void decodeValue(const Json& json, std::string& text);

OrderedJson encodeValue(ThermalState state);
void decodeValue(const Json& json, ThermalState& state);

// "folder", "file", "link" or "other".
OrderedJson encodeValue(FileKind kind);
void decodeValue(const Json& json, FileKind& kind);

// A list of six numbers in the order of the fields; without energy, of five.
OrderedJson encodeValue(const RawUsage& usage);
void decodeValue(const Json& json, RawUsage& usage);

// Base64 without the zeros at the end.
OrderedJson encodeValue(const SmcPacketBytes& packet);
void decodeValue(const Json& json, SmcPacketBytes& packet);

// Maps in lists and in maps stand inside an object with the key "map", dates with "date". What lies
// deeper than 32 lists and maps is left out when written and refused when read.
OrderedJson encodeValue(const PropertyMap& map);
void decodeValue(const Json& json, PropertyMap& map);

template <std::integral Number>
void decodeInteger(const Json& json, Number& number,
                   Number least = std::numeric_limits<Number>::min(),
                   Number most = std::numeric_limits<Number>::max()) {
  const auto read = jsonInteger<Number>(json);
  if (!read || *read < least || *read > most) {
    refuse(fmt::format("is no whole number from {} to {}", least, most));
  }
  number = *read;
}

}  // namespace embrix
