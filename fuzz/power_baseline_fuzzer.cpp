// Any bytes as the file of the baseline.
#include <string>

#include "record_round_trip.h"
#include "records/record_decoding.h"
#include "records/record_encoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  checkRoundTrip(data, size, baselineOfJson,
                 [](const PowerBaseline& baseline) { return jsonOf(baseline); });
  return 0;
}
