#include "base/text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>

#include <fmt/format.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normlzr.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace embrix {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;

bool isASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lowercasedASCII(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The library's macro assigns int to uint8_t inside itself.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

// The character at `next`, which moves on behind it; negative where the bytes are ill-formed.
UChar32 takeCharacter(std::string_view text, std::size_t& next) {
  UChar32 character = 0;
  U8_NEXT(text.data(), next, text.size(), character);
  return character;
}

#pragma GCC diagnostic pop

// Hands out each character with its bytes.
template <typename Use>
void forEachCharacter(std::string_view text, Use use) {
  std::size_t next = 0;
  while (next < text.size()) {
    const std::size_t start = next;
    const UChar32 character = takeCharacter(text, next);
    use(character, text.substr(start, next - start));
  }
}

void append(std::string& text, UChar32 character) {
  std::uint8_t bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, character);
  text.append(reinterpret_cast<const char*>(bytes), length);
}

// The length in bytes of the first `count` characters as a person counts them, and how many of
// those there were.
struct Measure {
  std::size_t bytes = 0;
  std::size_t characters = 0;
};

Measure measure(std::string_view text, std::size_t count) {
  if (isASCII(text)) {
    const std::size_t length = std::min(count, text.size());
    return {length, length};
  }
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UText, decltype(&utext_close)> source(
      utext_openUTF8(nullptr, text.data(), static_cast<std::int64_t>(text.size()), &status),
      &utext_close);
  const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> breaks(
      ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status), &ubrk_close);
  if (U_SUCCESS(status)) ubrk_setUText(breaks.get(), source.get(), &status);
  // Without the library's data a byte passes for a character.
  if (U_FAILURE(status)) return {std::min(count, text.size()), std::min(count, text.size())};
  Measure measured;
  while (measured.characters < count) {
    const std::int32_t next = ubrk_next(breaks.get());
    if (next == UBRK_DONE) break;
    measured.bytes = static_cast<std::size_t>(next);
    measured.characters += 1;
  }
  return measured;
}

bool actsOnTheTerminal(UChar32 character) {
  switch (u_charType(character)) {
    case U_CONTROL_CHAR:
    case U_FORMAT_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::string Text::repaired(std::string_view bytes) {
  if (isASCII(bytes)) return std::string(bytes);
  std::string text;
  text.reserve(bytes.size());
  forEachCharacter(bytes, [&](UChar32 character, std::string_view own) {
    if (character < 0) {
      append(text, kReplacement);
    } else {
      text += own;
    }
  });
  return text;
}

std::string Text::withoutFormatCharacters(std::string_view text) {
  if (isASCII(text)) return std::string(text);  // no format character is ASCII
  std::string kept;
  kept.reserve(text.size());
  forEachCharacter(text, [&](UChar32 character, std::string_view own) {
    if (character < 0) {
      append(kept, kReplacement);
    } else if (u_charType(character) != U_FORMAT_CHAR) {
      kept += own;
    }
  });
  return kept;
}

std::string Text::lowercased(std::string_view text) {
  if (isASCII(text)) {
    std::string lower(text);
    for (char& c : lower) c = lowercasedASCII(c);
    return lower;
  }
  const std::string valid = repaired(text);
  std::string lower;
  icu::StringByteSink<std::string> sink(&lower);
  UErrorCode status = U_ZERO_ERROR;
  icu::CaseMap::utf8ToLower("", 0, valid, sink, nullptr, status);
  return U_SUCCESS(status) ? lower : valid;
}

bool Text::equalsIgnoringCase(std::string_view a, std::string_view b) {
  if (isASCII(a) && isASCII(b)) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
      return lowercasedASCII(left) == lowercasedASCII(right);
    });
  }
  const auto left = icu::UnicodeString::fromUTF8(repaired(a));
  const auto right = icu::UnicodeString::fromUTF8(repaired(b));
  UErrorCode status = U_ZERO_ERROR;
  const int order = icu::Normalizer::compare(left, right, U_COMPARE_IGNORE_CASE, status);
  // Without the library's data only equal texts are equal.
  return U_SUCCESS(status) ? order == 0 : a == b;
}

std::string_view Text::trimmed(std::string_view text) {
  std::size_t first = text.size();
  std::size_t last = 0;  // one past the last byte that stays
  forEachCharacter(text, [&](UChar32 character, std::string_view own) {
    if (character >= 0 && u_isUWhiteSpace(character)) return;
    const auto start = static_cast<std::size_t>(own.data() - text.data());
    first = std::min(first, start);
    last = start + own.size();
  });
  return first < last ? text.substr(first, last - first) : std::string_view();
}

std::vector<std::string_view> Text::split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    if (end > start) pieces.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return pieces;
}

std::string_view Text::lastPiece(std::string_view text, char separator) {
  const std::size_t last = text.find_last_not_of(separator);
  if (last == std::string_view::npos) return {};
  const std::string_view upToLast = text.substr(0, last + 1);
  const std::size_t before = upToLast.find_last_of(separator);
  return before == std::string_view::npos ? upToLast : upToLast.substr(before + 1);
}

std::size_t Text::characterCount(std::string_view text) {
  return measure(text, text.size()).characters;
}

std::string_view Text::withoutFirstCharacters(std::string_view text, std::size_t count) {
  return text.substr(measure(text, count).bytes);
}

std::string Text::escapeForTerminal(std::string_view bytes) {
  std::string shown;
  shown.reserve(bytes.size());
  forEachCharacter(bytes, [&](UChar32 character, std::string_view own) {
    auto out = std::back_inserter(shown);
    if (character < 0) {
      for (const char byte : own)
        fmt::format_to(out, "\\x{:02x}", static_cast<unsigned char>(byte));
    } else if (!actsOnTheTerminal(character)) {
      shown += own;
    } else if (character < 0x80) {
      fmt::format_to(out, "\\x{:02x}", character);
    } else if (character < 0x10000) {
      fmt::format_to(out, "\\u{:04x}", character);
    } else {
      fmt::format_to(out, "\\U{:08x}", character);
    }
  });
  return shown;
}

}  // namespace embrix
