// Any bytes as the file of the archive.
#include <string>

#include "record_round_trip.h"
#include "records/record_decoding.h"
#include "records/record_encoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  checkRoundTrip(data, size, archiveOfJson, [](const Archive& archive) {
    std::string text;
    for (const std::string_view piece : archive.text()) text += piece;
    return text;
  });
  return 0;
}
