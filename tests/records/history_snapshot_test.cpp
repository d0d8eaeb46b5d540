#include "records/history_snapshot.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "records/history.h"
#include "records/record_decoding.h"
#include "sample_records.h"

namespace embrix {
namespace {

std::string joined(const HistorySnapshot& snapshot) {
  std::string text;
  const HistorySnapshot::Text pieces = snapshot.text();
  for (const std::string_view piece : pieces.pieces) text += piece;
  return text;
}

HistoryPoint pointAt(double time) {
  HistoryPoint point = fullPoint();
  point.time = time;
  return point;
}

TEST(HistorySnapshotTest, ItsTextIsTheHistoryAtEveryMoment) {
  for (const std::size_t capacity : {1u, 5u, 31u, 32u, 33u, 64u, 100u}) {
    History history(capacity);
    EXPECT_EQ(joined(history.snapshot()), "[]");
    for (int i = 0; i < 230; ++i) {
      history.append(pointAt(i));
      if (i % 7 != 0 && i % 32 != 0 && i % 32 != 31) continue;
      const auto points = historyOfJson(joined(history.snapshot()));
      ASSERT_TRUE(points) << capacity << " " << i;
      ASSERT_TRUE(std::equal(points->begin(), points->end(), history.points().begin(),
                             history.points().end()))
          << capacity << " " << i;
    }
  }
}

TEST(HistorySnapshotTest, ACopyStaysAsItWasWhenItWasTaken) {
  History history(100);
  for (int i = 0; i < 90; ++i) history.append(pointAt(i));
  const HistorySnapshot copy = history.snapshot();
  for (int i = 90; i < 290; ++i) history.append(pointAt(i));
  const auto points = historyOfJson(joined(copy));
  ASSERT_TRUE(points);
  EXPECT_EQ(points->size(), 90u);
  EXPECT_EQ(points->front().time, 0);
  EXPECT_EQ(points->back().time, 89);
}

TEST(HistorySnapshotTest, PointsCanBeSavedWithoutAHistory) {
  const std::vector<HistoryPoint> points = {fullPoint(), barePoint()};
  EXPECT_EQ(historyOfJson(joined(HistorySnapshot(points))), points);
  EXPECT_EQ(HistorySnapshot(points).size(), 2u);
}

TEST(HistorySnapshotTest, CopiesAreTurnedIntoTextOnSeveralThreads) {
  History history(200);
  for (int i = 0; i < 150; ++i) history.append(pointAt(i));
  std::vector<std::string> texts(4);
  std::vector<std::thread> threads;
  for (std::string& text : texts) {
    threads.emplace_back([&text, snapshot = history.snapshot()] { text = joined(snapshot); });
  }
  for (int i = 150; i < 400; ++i) history.append(pointAt(i));
  for (std::thread& thread : threads) thread.join();
  for (const std::string& text : texts) EXPECT_EQ(text, texts.front());
  EXPECT_EQ(historyOfJson(texts.front())->size(), 150u);
}

}  // namespace
}  // namespace embrix
