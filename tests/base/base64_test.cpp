#include "base/base64.h"

#include <gtest/gtest.h>

namespace embrix {
namespace {

TEST(Base64Test, TheExamplesOfTheStandardHoldBothWays) {
  struct Case {
    const char* bytes;
    const char* text;
  };
  const Case cases[] = {{"", ""},
                        {"f", "Zg=="},
                        {"fo", "Zm8="},
                        {"foo", "Zm9v"},
                        {"foob", "Zm9vYg=="},
                        {"fooba", "Zm9vYmE="},
                        {"foobar", "Zm9vYmFy"}};
  for (const Case& test : cases) {
    EXPECT_EQ(base64(test.bytes), test.text);
    EXPECT_EQ(bytesOfBase64(test.text), test.bytes);
  }
}

TEST(Base64Test, EveryByteComesBackAtEveryPlace) {
  for (int value = 0; value < 256; ++value) {
    for (std::size_t place = 0; place < 4; ++place) {
      std::string bytes(4, '\0');
      bytes[place] = static_cast<char>(value);
      EXPECT_EQ(bytesOfBase64(base64(bytes)), bytes);
    }
  }
}

TEST(Base64Test, WhatIsNotWrittenIsNotRead) {
  for (const char* text : {"Z", "Zg", "Zg=", "Zg==Zg==", "Z===", "====", "Zh==", "Zm9=", "Zm 9",
                           "Zm9v\n", "Zm-v", "=m9v", "Zg=v"}) {
    EXPECT_EQ(bytesOfBase64(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace embrix
