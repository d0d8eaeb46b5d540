// Any bytes as the file of the history.
#include <string>

#include "record_round_trip.h"
#include "records/history_snapshot.h"
#include "records/record_decoding.h"
#include "records/record_encoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace embrix;
  checkRoundTrip(data, size, historyOfJson, [](const std::vector<HistoryPoint>& points) {
    std::string text;
    const HistorySnapshot snapshot(points);
    const HistorySnapshot::Text json = snapshot.text();
    for (const std::string_view piece : json.pieces) text += piece;
    return text;
  });
  return 0;
}
