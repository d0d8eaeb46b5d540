// Keys of real controllers, as a reader of fans sees them. Beside the captures stand keys of the
// same types, for a run that is not given them.
#include <charconv>
#include <cmath>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "fakes/captures.h"
#include "fakes/scripted_host.h"
#include "sampling/fan_reader.h"

namespace embrix {
namespace {

struct PrintedKey {
  std::string key;
  ScriptedSmcKey value;
  std::optional<double> printed;  // by the program that made the listing, cut to a whole number
};

// "  F0Ac  [flt ]  4128 (bytes 00 40 81 45)"; the number can be missing.
std::vector<PrintedKey> keysOf(const std::string& listing) {
  static const std::regex form(R"(^\s*(\S{4})\s+\[(.{4})\]\s+(-?\d+)?\s*\(bytes ([0-9a-f ]+)\).*)");
  std::vector<PrintedKey> keys;
  std::istringstream lines(listing);
  for (std::string line; std::getline(lines, line);) {
    std::smatch parts;
    if (!std::regex_match(line, parts, form)) continue;
    PrintedKey key{.key = parts[1], .value = {.type = parts[2], .bytes = {}}, .printed = {}};
    if (parts[3].matched) key.printed = std::stod(parts[3]);
    std::istringstream bytes(parts[4]);
    for (std::string byte; bytes >> byte;) {
      key.value.bytes.push_back(static_cast<std::uint8_t>(std::stoi(byte, nullptr, 16)));
    }
    keys.push_back(std::move(key));
  }
  return keys;
}

const std::vector<Capture> kHandMade = {
    {"temperatures and fans",
     "  TB0T  [flt ]  19 (bytes c8 cc 98 41)\n  TG0B  [ioft]  (bytes 33 33 13 00 00 00 00 00)\n"
     "  Tp1i  [flt ]  -4 (bytes 00 00 80 c0)\n  TVDi  [si32]  33554432 (bytes 02 00 00 00)\n"
     "  F0Ac  [flt ]  (bytes d0 f4 9c 44)\n  FNum  [ui8 ]  2 (bytes 02)\n"
     "  F0Mx  [fpe2]  6156 (bytes 60 30)\n  F0Mt  [ui16]  258 (bytes 01 02)\n"
     "  TC0P  [    ]  no data\n"}};

// A number for each type that is known, the one that the listing has; none for any other.
TEST(SMCCapturesTest, KeysHaveTheNumbersThatWerePrinted) {
  std::size_t numbers = 0;
  for (const auto& [name, listing] : capturesIn("04_sensors_smc", kHandMade)) {
    for (const PrintedKey& key : keysOf(listing)) {
      ScriptedHost world;
      Host host = world.host();
      world.smcKeys[key.key] = key.value;
      FanReader reader(*host.smc);
      const auto number = reader.value(key.key);
      const bool isKnown = key.value.type == "flt " || key.value.type == "ui8 " ||
                           key.value.type == "ui16" || key.value.type == "fpe2";
      ASSERT_EQ(number.has_value(), isKnown) << name << " " << key.key;
      if (!number || !key.printed) continue;
      // Some listings print a value of another moment than the bytes.
      EXPECT_NEAR(*number, *key.printed, 1 + std::abs(*key.printed) / 200)
          << name << " " << key.key;
      numbers += 1;
    }
  }
  EXPECT_GT(numbers, 0u);
}

}  // namespace
}  // namespace embrix
