// Any bytes as the file of the history. Whoever asks for the newer points alone gets just those of
// all points.
#include <cstdlib>
#include <string>
#include <vector>

#include "record_round_trip.h"
#include "records/history_snapshot.h"
#include "records/record_decoding.h"
#include "records/record_encoding.h"

namespace {

using namespace embrix;

void checkNewerPoints(std::string_view json) {
  auto points = historyOfJson(json);
  const double bound = points && !points->empty() ? (*points)[points->size() / 2].time : 0;
  const auto newer = historyOfJson(json, bound);
  if (points) std::erase_if(*points, [&](const auto& point) { return !(point.time > bound); });
  if (newer != points) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto decode = [](std::string_view json) { return historyOfJson(json); };
  checkRoundTrip(data, size, decode, [](const std::vector<HistoryPoint>& points) {
    std::string text;
    const HistorySnapshot snapshot(points);
    const HistorySnapshot::Text json = snapshot.text();
    for (const std::string_view piece : json.pieces) text += piece;
    return text;
  });
  checkNewerPoints({reinterpret_cast<const char*>(data), size});
  return 0;
}
