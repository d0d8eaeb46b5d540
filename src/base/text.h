// What the program does with words that others made: names, paths and titles in UTF-8.
//
// Texts come from file names, other programs and the network of processes, so every function takes
// any bytes. Pure ASCII, which is nearly everything, never reaches the Unicode library. Nothing
// depends on the locale. Callable on any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

struct Text {
  // The bytes as valid UTF-8: each ill-formed sequence, as long as it could still have become a
  // character, is replaced by one U+FFFD.
  static std::string repaired(std::string_view bytes);

  // Without the characters of the general category "format" (Cf): direction marks, joiners, soft
  // hyphens, which are invisible and make equal names differ. Repairs what is ill-formed.
  static std::string withoutFormatCharacters(std::string_view text);

  // Lower case by the rules of Unicode for no language in particular. Repairs what is ill-formed.
  static std::string lowercased(std::string_view text);

  // Whether both read the same when upper and lower case count alike, by the rules of Unicode for
  // no language in particular; letters with accents may be written in one piece or in two. Repairs
  // what is ill-formed.
  static bool equalsIgnoringCase(std::string_view a, std::string_view b);

  // Without the white space at both ends. A view into `text`.
  static std::string_view trimmed(std::string_view text);

  // The pieces between separators, empty ones left out. Views into `text`.
  static std::vector<std::string_view> split(std::string_view text, char separator);

  // The last of those pieces, empty when there is none. A view into `text`.
  static std::string_view lastPiece(std::string_view text, char separator);

  // How many characters a person would count: a letter with its accents is one.
  static std::size_t characterCount(std::string_view text);

  // What is left after so many of those characters; empty when there are no more. A view into
  // `text`.
  static std::string_view withoutFirstCharacters(std::string_view text, std::size_t count);

  // For printing a foreign name to a terminal, on one line and without any power over it. Printable
  // UTF-8 stays. Control characters become \x1b below U+0080 and \u0085 above; format characters,
  // which can reverse a line, and line separators become \u202e or \U000e0001; ill-formed bytes
  // become \xff.
  static std::string escapeForTerminal(std::string_view bytes);
};

}  // namespace embrix
