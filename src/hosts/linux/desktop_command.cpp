#include "hosts/linux/desktop_command.h"

#include <algorithm>
#include <array>
#include <vector>

namespace embrix {

namespace {

using Words = std::vector<std::string>;

// Their version, if any, is cut off before the look-up.
constexpr std::array<std::string_view, 46> kInterpreters = {
    "ash",      "bash",        "bun",        "busybox",
    "bwrap",    "csh",         "dash",       "deno",
    "dotnet",   "electron",    "env",        "exo-open",
    "fish",     "flatpak",     "gdbus",      "gio",
    "gjs",      "gjs-console", "gtk-launch", "guile",
    "java",     "javaw",       "kde-open",   "ksh",
    "lua",      "luajit",      "mono",       "node",
    "nodejs",   "perl",        "php",        "pypy",
    "python",   "pythonw",     "qml",        "rscript",
    "ruby",     "sh",          "snap",       "systemctl",
    "tclsh",    "wine",        "wish",       "x-terminal-emulator",
    "xdg-open", "zsh",
};
static_assert(std::is_sorted(kInterpreters.begin(), kInterpreters.end()));

constexpr std::array<std::string_view, 6> kShells = {"ash", "bash", "dash", "ksh", "sh", "zsh"};

// Run the command behind their own options as it stands.
constexpr std::array<std::string_view, 16> kPrefixes = {
    "dbus-launch", "dbus-run-session", "firejail", "gamemoderun", "gksu",    "ionice",
    "kdesu",       "mangohud",         "nice",     "nohup",       "optirun", "pkexec",
    "prime-run",   "setsid",           "sudo",     "systemd-cat",
};

template <std::size_t N>
bool isOneOf(const std::array<std::string_view, N>& list, std::string_view name) {
  return std::find(list.begin(), list.end(), name) != list.end();
}

std::string_view baseName(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

// "%U" and its kin stand for files and the like; "@@" and "@@u" are Flatpak's brackets around them.
bool isFieldCode(std::string_view word) {
  if (word == "@@" || word == "@@u") return true;
  return word.size() == 2 && word[0] == '%' && word[1] != '%';
}

bool isAssignment(std::string_view word) {
  const auto equals = word.find('=');
  return equals != std::string_view::npos && equals > 0 &&
         word.substr(0, equals).find_first_of("/-") == std::string_view::npos;
}

// Words between blanks; in quotes, and behind a backslash, a blank is a character like any other.
// Absent when a quote is left open.
std::optional<Words> wordsOf(std::string_view line) {
  Words words;
  std::string word;
  bool isInWord = false;
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char character = line[i];
    if (character == '\\' && quote != '\'' && i + 1 < line.size()) {
      word.push_back(line[++i]);
      isInWord = true;
    } else if (quote != 0) {
      if (character == quote) {
        quote = 0;
      } else {
        word.push_back(character);
      }
    } else if (character == '"' || character == '\'') {
      quote = character;
      isInWord = true;
    } else if (character == ' ' || character == '\t' || character == '\n') {
      if (isInWord) words.push_back(std::move(word));
      word.clear();
      isInWord = false;
    } else {
      word.push_back(character);
      isInWord = true;
    }
  }
  if (quote != 0) return std::nullopt;
  if (isInWord) words.push_back(std::move(word));
  return words;
}

void dropFirst(Words& words, std::size_t count) {
  words.erase(words.begin(),
              words.begin() + static_cast<std::ptrdiff_t>(std::min(count, words.size())));
}

// Options at the front, each with the bare number that may belong to it ("-n 10").
void dropOptions(Words& words) {
  std::size_t count = 0;
  while (count < words.size() && words[count].starts_with('-')) {
    ++count;
    const bool hasNumber = count < words.size() && !words[count].empty() &&
                           words[count].find_first_not_of("0123456789") == std::string::npos;
    if (hasNumber) ++count;
  }
  dropFirst(words, count);
}

void dropAssignments(Words& words) {
  std::size_t count = 0;
  while (count < words.size() && isAssignment(words[count])) ++count;
  dropFirst(words, count);
}

// The one plain command that a shell is given; none for anything that takes a shell to understand.
std::optional<Words> wordsOfScript(const Words& words) {
  if (words.size() < 3 || words[1] != "-c") return std::nullopt;
  const std::string_view script = words[2];
  if (script.find_first_of(";|&<>`$(){}\n*?#") != std::string_view::npos) return std::nullopt;
  auto inner = wordsOf(script);
  if (!inner) return std::nullopt;
  dropAssignments(*inner);
  if (!inner->empty() && inner->front() == "exec") dropFirst(*inner, 1);
  return inner;
}

std::optional<DesktopCommand> flatpakCommand(const Words& words) {
  if (words.size() < 2 || words[1] != "run") return std::nullopt;
  for (std::size_t i = 2; i < words.size(); ++i) {
    if (!words[i].starts_with('-')) return DesktopCommand{.flatpakID = words[i]};
  }
  return std::nullopt;
}

}  // namespace

bool isInterpreter(std::string_view program) {
  std::string name(baseName(program));
  std::transform(name.begin(), name.end(), name.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
  });
  if (isOneOf(kInterpreters, name)) return true;
  const auto last = name.find_last_not_of("0123456789.-");
  return last != std::string::npos &&
         isOneOf(kInterpreters, std::string_view(name).substr(0, last + 1));
}

std::optional<DesktopCommand> parseExec(std::string_view exec) {
  auto words = wordsOf(exec);
  // Wrappers in wrappers: nobody nests them deeper, but a file can say anything.
  for (int depth = 0; depth < 8 && words && !words->empty(); ++depth) {
    const std::string program = words->front();
    const std::string_view name = baseName(program);
    if (name == "env" || isOneOf(kPrefixes, name)) {
      dropFirst(*words, 1);
      dropOptions(*words);
      dropAssignments(*words);
    } else if (isOneOf(kShells, name)) {
      words = wordsOfScript(*words);
    } else if (name == "flatpak") {
      return flatpakCommand(*words);
    } else if (name.empty() || isInterpreter(name)) {
      return std::nullopt;
    } else {
      const auto count = std::count_if(words->begin() + 1, words->end(),
                                       [](const std::string& word) { return !isFieldCode(word); });
      return DesktopCommand{.program = program, .argumentCount = static_cast<int>(count)};
    }
  }
  return std::nullopt;
}

}  // namespace embrix
