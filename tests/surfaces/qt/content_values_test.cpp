#include "surfaces/qt/content_values.h"

#include <gtest/gtest.h>

#include "surfaces/facts_content.h"
#include "surfaces/menu_item.h"

namespace embrix {
namespace {

TEST(ContentValuesTest, ARecordIsAMapOfItsFields) {
  const QVariantMap map =
      toVariant(FactsContent{.battery = FactsContent::Battery{.fraction = 0.5, .text = "50%"},
                             .temperature = {},
                             .fans = "No fans"})
          .toMap();
  EXPECT_EQ(map["fans"].toString(), "No fans");
  EXPECT_EQ(map["battery"].toMap()["fraction"].toDouble(), 0.5);
  EXPECT_TRUE(map["temperature"].isNull());
  EXPECT_TRUE(map.contains("temperature"));
}

TEST(ContentValuesTest, AListIsAList) {
  const MenuItem menu{.label = "More",
                      .items = {{.action = "a", .label = "A"}, MenuItem::divider()}};
  const QVariantList items = toVariant(menu).toMap()["items"].toList();
  ASSERT_EQ(items.size(), 2);
  EXPECT_EQ(items[0].toMap()["label"].toString(), "A");
  EXPECT_EQ(items[1].toMap()["action"].toString(), "");
}

TEST(ContentValuesTest, AHueIsItsName) {
  EXPECT_EQ(toVariant(EX::Hue::coralSoft).toString(), "coralSoft");
}

TEST(ContentValuesTest, IllFormedTextIsRepaired) {
  EXPECT_EQ(toQString("a\xff\xfe z"), QString::fromUtf8("a\xef\xbf\xbd\xef\xbf\xbd z"));
  EXPECT_EQ(toQString({}), QString());
}

}  // namespace
}  // namespace embrix
