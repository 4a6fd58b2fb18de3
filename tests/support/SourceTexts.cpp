#include "tests/support/SourceTexts.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string_view>

#include "platform/foundation/Utf8.h"

namespace chatsum::test {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool isWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

/// Goes through code once, keeping the brackets that are open.
class Scanner {
 public:
  Scanner(std::string_view code, std::string place) : code_(code), place_(std::move(place)) {}

  std::vector<SourceText> texts() {
    while (at_ < code_.size()) step();
    finishText();
    return std::move(texts_);
  }

 private:
  struct Bracket {
    std::string name;
    std::size_t argument = 0;
  };

  void step() {
    const char c = code_[at_];
    const std::string_view rest = code_.substr(at_);
    if (c == '\n') {
      ++line_;
      ++at_;
    } else if (std::isspace(static_cast<unsigned char>(c)) != 0) {
      ++at_;
    } else if (rest.starts_with("//") || rest.starts_with('#')) {
      at_ = std::min(code_.find('\n', at_), code_.size());
    } else if (rest.starts_with("/*")) {
      const std::size_t end = std::min(code_.find("*/", at_), code_.size() - 2) + 2;
      line_ += static_cast<std::size_t>(std::count(code_.begin() + static_cast<std::ptrdiff_t>(at_),
                                                   code_.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
      at_ = end;
    } else if (rest.starts_with("R\"(")) {
      throw std::runtime_error(place_ + ": raw literals are not read");
    } else if (c == '"') {
      readLiteral();
    } else {
      finishText();
      readCode(c);
    }
  }

  void readCode(char c) {
    if (isWord(c)) {
      const std::size_t begin = at_;
      // Digits are parted by quotes.
      while (at_ < code_.size() && (isWord(code_[at_]) || (code_[at_] == '\'' && std::isdigit(c) != 0))) ++at_;
      word_ = code_.substr(begin, at_ - begin);
      return;
    }
    ++at_;
    if (c == '\'') {
      while (at_ < code_.size() && code_[at_] != '\'') at_ += code_[at_] == '\\' ? 2 : 1;
      ++at_;
    } else if (c == '(' || c == '{') {
      brackets_.push_back({word_, 0});
      word_.clear();
    } else if (c == ')' || c == '}') {
      if (!brackets_.empty()) brackets_.pop_back();
      word_.clear();
    } else if (c == ',' && !brackets_.empty()) {
      ++brackets_.back().argument;
      word_.clear();
    } else if (c != '=' && c != '<' && c != '>') {  // "kNames = {" and "make<Kind>(" keep a name
      word_.clear();
    }
  }

  void readLiteral() {
    if (!isInText_) {
      text_ = {"", place_ + ":" + std::to_string(line_), {}, brackets_.empty() ? 0 : brackets_.back().argument};
      for (const Bracket& bracket : brackets_) text_.calls.push_back(bracket.name);
      isInText_ = true;
    }
    for (++at_; at_ < code_.size() && code_[at_] != '"';) {
      if (code_[at_] == '\\') {
        readEscape();
      } else {
        text_.text += code_[at_++];
      }
    }
    ++at_;
  }

  void readEscape() {
    const char kind = code_[at_ + 1];
    at_ += 2;
    const auto number = [this](std::size_t most) {
      std::uint32_t value = 0;
      for (std::size_t i = 0; i < most && std::isxdigit(static_cast<unsigned char>(code_[at_])) != 0; ++i, ++at_) {
        value = value * 16 + static_cast<std::uint32_t>(std::stoi(std::string(1, code_[at_]), nullptr, 16));
      }
      return value;
    };
    constexpr std::size_t kByte = 2, kShort = 4, kLong = 8;
    if (kind == 'x') {
      text_.text += static_cast<char>(number(kByte));
    } else if (kind == 'u' || kind == 'U') {
      utf8::append(text_.text, number(kind == 'u' ? kShort : kLong));
    } else {
      constexpr std::string_view kNames = "nrt0", kMeanings("\n\r\t\0", 4);
      const auto place = kNames.find(kind);
      text_.text += place == std::string_view::npos ? kind : kMeanings[place];
    }
  }

  void finishText() {
    if (isInText_) texts_.push_back(std::move(text_));
    isInText_ = false;
  }

  std::string_view code_;
  std::string place_;
  std::size_t at_ = 0, line_ = 1;
  std::string word_;
  std::vector<Bracket> brackets_;
  SourceText text_;
  bool isInText_ = false;
  std::vector<SourceText> texts_;
};

/// The value of a quoted piece on a line of a catalogue.
std::string unquoted(std::string_view line) {
  const std::size_t begin = line.find('"') + 1, end = line.rfind('"');
  std::string text;
  for (std::size_t i = begin; i < end; ++i) {
    if (line[i] != '\\') {
      text += line[i];
    } else {
      ++i;
      text += line[i] == 'n' ? '\n' : line[i] == 't' ? '\t' : line[i];
    }
  }
  return text;
}

}  // namespace

bool SourceText::isWithin(const std::vector<std::string>& names) const {
  return std::any_of(calls.begin(), calls.end(), [&](const std::string& call) {
    return std::find(names.begin(), names.end(), call) != names.end();
  });
}

std::vector<SourceText> textsOfCode(const std::string& code, const std::string& place) {
  return Scanner(code, place).texts();
}

std::vector<SourceText> textsOfSources(const fs::path& root, const std::string& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
    if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<SourceText> texts;
  for (const fs::path& file : files) {
    for (SourceText& text : textsOfCode(contentsOf(file), file.lexically_relative(root).generic_string())) {
      texts.push_back(std::move(text));
    }
  }
  return texts;
}

std::ostream& operator<<(std::ostream& stream, const CatalogueText& text) {
  stream << '"' << text.singular << '"';
  return text.plural.empty() ? stream : stream << " / \"" << text.plural << '"';
}

std::vector<CatalogueEntry> entriesOfCatalogue(const fs::path& catalogue) {
  std::vector<CatalogueEntry> entries;
  std::ifstream file(catalogue);
  CatalogueEntry entry;
  std::string* current = nullptr;
  const auto finish = [&] {
    if (!entry.text.singular.empty()) entries.push_back(std::move(entry));
    entry = {};
    current = nullptr;
  };
  for (std::string line; std::getline(file, line);) {
    if (line.empty()) {
      finish();
      continue;
    }
    if (line.starts_with("#~")) continue;
    if (line.starts_with("#,")) entry.isFuzzy = line.find("fuzzy") != std::string::npos;
    if (line.starts_with('#')) continue;
    if (line.starts_with("msgid_plural")) {
      current = &entry.text.plural;
    } else if (line.starts_with("msgid")) {
      current = &entry.text.singular;
    } else if (line.starts_with("msgstr")) {
      current = &entry.translations.emplace_back();
    }
    if (current) current->append(unquoted(line));
  }
  finish();
  return entries;
}

}  // namespace chatsum::test
