#include "tests/package/TreeRules.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>

namespace chatsum::tests {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostLines = 600;

/// Files whose path starts with `from` include nothing that starts with one of `never`.
struct Arrow {
  std::string_view from;
  std::vector<std::string_view> never;
};

const std::vector<Arrow>& arrows() {
  static const std::vector<Arrow> kArrows = {
      {"platform/foundation/",
       {"platform/sqlite/", "platform/interfaces/", "platform/uikit/", "platform/system/", "platform/fake/",
        "libchatsum/", "hosts/"}},
      {"platform/sqlite/",
       {"platform/interfaces/", "platform/uikit/", "platform/system/", "platform/fake/", "libchatsum/", "hosts/"}},
      {"platform/interfaces/", {"platform/uikit/", "platform/system/", "platform/fake/", "libchatsum/", "hosts/"}},
      {"platform/uikit/", {"platform/system/", "platform/fake/", "libchatsum/", "hosts/"}},
      {"platform/system/", {"platform/fake/", "libchatsum/", "hosts/"}},
      {"platform/fake/", {"libchatsum/", "hosts/"}},
      {"libchatsum/",
       {"platform/system/", "platform/fake/", "hosts/", "unicode/", "phonenumbers/", "cairo", "plist/", "hb", "Qt",
        "fmt/"}},
      {"libchatsum/ChatsumUtils/", {"libchatsum/CSReportsGenerator/"}},
      {"libchatsum/ChatsumUtils/", {"libchatsum/CSReportGenerationViewController/", "platform/uikit/"}},
      {"libchatsum/ChatsumSettings/", {"libchatsum/CSReportGenerationViewController/", "platform/uikit/"}},
      {"libchatsum/CSReportsGenerator/", {"libchatsum/CSReportGenerationViewController/", "platform/uikit/"}},
      {"hosts/device/", {"hosts/cli/", "hosts/desktop/"}},
      {"hosts/cli/", {"hosts/desktop/"}},
      {"hosts/desktop/", {"hosts/cli/"}},
      {"platform/", {"tests/", "bench/"}},
      {"libchatsum/", {"tests/", "bench/"}},
      {"hosts/", {"tests/", "bench/"}},
  };
  return kArrows;
}

/// What the library never calls: the platform's interfaces give it time, environment and output.
const std::vector<std::string_view>& callsTheLibraryNeverMakes() {
  static const std::vector<std::string_view> kCalls = {"time",   "getenv",       "gettimeofday", "clock_gettime",
                                                       "printf", "system_clock", "cout",         "cerr",
                                                       "setenv", "setlocale"};
  return kCalls;
}

/// Comments and texts speak for themselves: they cite no paper that is not in the tree.
struct Mention {
  std::string_view stem;  // looked for first, because a regular expression on every line is slow
  std::regex expression;
};

const std::vector<Mention>& mentions() {
  const auto flags = std::regex::ECMAScript | std::regex::icase;
  static const std::vector<Mention> kMentions = {
      {"pec", std::regex("\\bspec(s|ifications?)?\\b", flags)},
      {"ssue", std::regex("\\bissues? #?[0-9]", flags)},
      {"art ", std::regex("\\bPart [0-9]+\\.[0-9]")},
  };
  return kMentions;
}

bool startsWithAny(std::string_view text, const std::vector<std::string_view>& prefixes) {
  return std::any_of(prefixes.begin(), prefixes.end(),
                     [&](std::string_view prefix) { return text.starts_with(prefix); });
}

bool isWordCharacter(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

/// The line without comments and without what stands in quotes. `inComment` carries a block comment to the next line.
std::string codeOf(std::string_view line, bool& inComment) {
  std::string code;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (inComment) {
      if (line.substr(i, 2) == "*/") {
        inComment = false;
        ++i;
      }
    } else if (line.substr(i, 2) == "//") {
      break;
    } else if (line.substr(i, 2) == "/*") {
      inComment = true;
      ++i;
    } else if (line[i] == '"') {
      while (++i < line.size() && line[i] != '"') {
        if (line[i] == '\\') ++i;
      }
      code += "\"\"";
    } else {
      code += line[i];
    }
  }
  return code;
}

/// Whether `name` is called or named here as the free function of that name: not a member, not part of a longer word.
bool namesFreely(std::string_view code, std::string_view name) {
  for (auto at = code.find(name); at != std::string_view::npos; at = code.find(name, at + 1)) {
    const auto end = at + name.size();
    if (at > 0 && (isWordCharacter(code[at - 1]) || code[at - 1] == '.')) continue;
    if (end < code.size() && isWordCharacter(code[end])) continue;
    auto before = code.substr(0, at);
    if (before.ends_with("->")) continue;
    const bool ofStandard = before.ends_with("std::") || before.ends_with("chrono::");
    if (before.ends_with("::") && !ofStandard && before.size() > 2 && isWordCharacter(before[before.size() - 3]))
      continue;
    // A variable may have one of these names; only a call or a thing of the standard library is meant.
    const auto next = code.find_first_not_of(' ', end);
    const bool isCall = next != std::string_view::npos && code[next] == '(';
    const bool isDeclaration = !before.empty() && before.back() == ' ' && before.size() > 1 &&
                               isWordCharacter(before[before.size() - 2]) && !before.ends_with("return ");
    if (ofStandard || (isCall && !isDeclaration)) return true;
  }
  return false;
}

/// The folder whose arrows count: the first two steps of the path ("platform/system").
std::string folderOf(std::string_view path) {
  const auto first = path.find('/');
  const auto second = first == std::string_view::npos ? first : path.find('/', first + 1);
  return std::string(second == std::string_view::npos ? path.substr(0, first) : path.substr(0, second));
}

class Tree {
 public:
  explicit Tree(fs::path root) : root_(std::move(root)) {}

  std::vector<std::string> brokenRules() {
    for (const auto& path : files()) read(path);
    reportCycles();
    return std::move(findings_);
  }

 private:
  std::vector<std::string> files() const {
    static const std::set<std::string> kEndings = {"",    ".h",    ".cpp", ".cmake", ".txt",
                                                   ".md", ".json", ".in",  ".sh",    ".qml"};
    std::vector<std::string> found;
    const auto add = [&](const fs::path& path) {
      if (kEndings.contains(path.extension().string()))
        found.push_back(path.lexically_relative(root_).generic_string());
    };
    for (const auto& entry : fs::directory_iterator(root_)) {
      const auto name = entry.path().filename().string();
      if (entry.is_regular_file() && !name.starts_with('.')) add(entry.path());
      if (!entry.is_directory() || name.starts_with('.') || name.starts_with("build") || name == "demo-output")
        continue;
      for (const auto& below : fs::recursive_directory_iterator(entry.path())) {
        if (below.is_regular_file()) add(below.path());
      }
    }
    std::sort(found.begin(), found.end());
    return found;
  }

  void read(const std::string& path) {
    // Expected outputs and sample data are not ours to word.
    if (path.starts_with("tests/golden/") || path.starts_with("tests/data/") || path.starts_with("assets/")) return;
    std::ifstream stream(root_ / path);
    const bool isSource = path.ends_with(".h") || path.ends_with(".cpp");
    std::string line;
    std::size_t number = 0;
    bool inComment = false;
    while (std::getline(stream, line)) {
      ++number;
      const auto place = path + ":" + std::to_string(number) + ": ";
      checkMentions(place, line);
      if (!isSource) continue;
      checkInclude(path, place, line);
      const auto code = codeOf(line, inComment);
      if (path.starts_with("libchatsum/")) checkCalls(place, code);
    }
    if (isSource && number > kMostLines) {
      findings_.push_back(path + ":" + std::to_string(number) + ": the file is longer than " +
                          std::to_string(kMostLines) + " lines");
    }
  }

  void checkMentions(const std::string& place, const std::string& line) {
    for (const auto& mention : mentions()) {
      std::smatch match;
      if (line.find(mention.stem) == std::string::npos || !std::regex_search(line, match, mention.expression)) continue;
      findings_.push_back(place + "mentions '" + match.str() + "'");
    }
    static const std::regex kDocument("\\b[A-Za-z0-9_-]+\\.md\\b");
    std::smatch match;
    if (line.find(".md") == std::string::npos || !std::regex_search(line, match, kDocument)) return;
    if (fs::exists(root_ / match.str()) || fs::exists(root_ / "docs" / match.str())) return;
    findings_.push_back(place + "mentions '" + match.str() + "', which is not in the tree");
  }

  void checkInclude(const std::string& path, const std::string& place, const std::string& line) {
    if (!line.starts_with("#include ")) return;
    const auto open = line.find_first_of("<\"");
    const auto close = open == std::string::npos ? open : line.find_first_of(">\"", open + 1);
    if (close == std::string::npos) return;
    const auto included = line.substr(open + 1, close - open - 1);

    for (const auto& arrow : arrows()) {
      if (path.starts_with(arrow.from) && startsWithAny(included, arrow.never)) {
        findings_.push_back(place + std::string(arrow.from) + " never includes " + included);
      }
    }
    // Qt's headers are classes without a folder, for instance QString.
    if (path.starts_with("libchatsum/") && included.size() > 1 && included[0] == 'Q' &&
        std::isupper(static_cast<unsigned char>(included[1])) != 0) {
      findings_.push_back(place + "libchatsum/ never includes " + included);
    }
    if (included.ends_with(".moc")) return;  // made beside the object file
    if (line[open] == '"') {
      if (!fs::exists(root_ / included)) findings_.push_back(place + included + " does not stand below the root");
      const auto from = folderOf(path);
      const auto to = folderOf(included);
      if (from != to) uses_[from].emplace(to, place);
    }
  }

  void checkCalls(const std::string& place, const std::string& code) {
    for (const auto name : callsTheLibraryNeverMakes()) {
      if (namesFreely(code, name)) findings_.push_back(place + "libchatsum/ never calls " + std::string(name));
    }
  }

  /// Every pair of folders where one leads back to the other, named once, with the include that starts the way.
  void reportCycles() {
    for (const auto& [folder, targets] : uses_) {
      for (const auto& [target, place] : targets) {
        if (folder < target && reaches(target, folder)) {
          findings_.push_back(place + folder + " includes " + target + ", which leads back to " + folder);
        }
      }
    }
  }

  bool reaches(const std::string& from, const std::string& to) const {
    std::set<std::string> seen{from};
    std::vector<std::string> open{from};
    while (!open.empty()) {
      const auto folder = open.back();
      open.pop_back();
      if (folder == to) return true;
      const auto targets = uses_.find(folder);
      if (targets == uses_.end()) continue;
      for (const auto& [target, place] : targets->second) {
        if (seen.insert(target).second) open.push_back(target);
      }
    }
    return false;
  }

  fs::path root_;
  std::vector<std::string> findings_;
  std::map<std::string, std::map<std::string, std::string>> uses_;  // folder → folder it includes → where first
};

}  // namespace

std::vector<std::string> brokenTreeRules(const fs::path& root) { return Tree(root).brokenRules(); }

}  // namespace chatsum::tests
