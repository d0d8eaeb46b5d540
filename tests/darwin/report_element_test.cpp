#include "darwin/report_element.h"

#include <gtest/gtest.h>

#include "kernel_bytes.h"

namespace embrix {
namespace {

ByteVector elementAt(std::uint64_t timestamp) {
  ByteVector element(64, 0xee);
  put(element, 24, timestamp);
  return element;
}

TEST(ReportElementTest, TheTimestampHasItsPlace) {
  EXPECT_EQ(reportTimestamp(elementAt(0x0102030405060708)), 0x0102030405060708u);
}

TEST(ReportElementTest, AnElementThatWasNeverWrittenHasNone) {
  EXPECT_EQ(reportTimestamp(elementAt(0)), std::nullopt);
}

TEST(ReportElementTest, APartOfAnElementHasNone) {
  const ByteVector element = elementAt(5);
  for (std::size_t size = 0; size < element.size(); ++size) {
    EXPECT_EQ(reportTimestamp(Bytes(element).first(size)), std::nullopt) << size;
  }
}

TEST(ReportElementTest, OfSeveralElementsTheFirstCounts) {
  ByteVector elements = elementAt(5);
  const ByteVector second = elementAt(6);
  elements.insert(elements.end(), second.begin(), second.end());
  EXPECT_EQ(reportTimestamp(elements), 5u);
}

}  // namespace
}  // namespace embrix
