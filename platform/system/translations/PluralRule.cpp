#include "platform/system/translations/PluralRule.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kMostCharacters = 512;  // the longest rules of languages have a quarter of that
constexpr int kMostDepth = 64;

struct Operator {
  std::string_view sign;
  int strength;
};
// Signs that begin like a shorter one stand before it.
constexpr std::array<Operator, 13> kOperators = {{{"||", 1},
                                                  {"&&", 2},
                                                  {"==", 3},
                                                  {"!=", 3},
                                                  {"<=", 4},
                                                  {">=", 4},
                                                  {"<", 4},
                                                  {">", 4},
                                                  {"+", 5},
                                                  {"-", 5},
                                                  {"*", 6},
                                                  {"/", 6},
                                                  {"%", 6}}};

/// Works an expression out while it reads it: rules are so short that nothing is gained by keeping them in another
/// form.
class Calculation {
 public:
  Calculation(std::string_view expression, std::uint64_t number) : rest_(expression), number_(number) {}

  /// None for what is no expression.
  std::optional<std::uint64_t> result() {
    const std::uint64_t value = choice();
    skipSpaces();
    return isWrong_ || !rest_.empty() ? std::nullopt : std::optional(value);
  }

 private:
  /// Counts how deep expressions stand inside each other.
  class Level {
   public:
    explicit Level(Calculation& calculation) : calculation_(calculation) {
      if (++calculation_.depth_ > kMostDepth) calculation_.fail();
    }
    ~Level() { --calculation_.depth_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

   private:
    Calculation& calculation_;
  };

  /// With nothing left to read, every part of the calculation ends.
  void fail() {
    isWrong_ = true;
    rest_ = {};
  }
  void skipSpaces() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size())); }
  bool take(std::string_view sign) {
    skipSpaces();
    if (!rest_.starts_with(sign)) return false;
    rest_.remove_prefix(sign.size());
    return true;
  }

  /// "a ? b : c".
  std::uint64_t choice() {
    const Level level(*this);
    const std::uint64_t condition = chain(1);
    if (!take("?")) return condition;
    const std::uint64_t yes = choice();
    if (!take(":")) fail();
    const std::uint64_t no = isWrong_ ? 0 : choice();
    return condition != 0 ? yes : no;
  }

  /// Operators that bind at least so strongly, from left to right.
  std::uint64_t chain(int weakest) {
    std::uint64_t left = operand();
    for (;;) {
      skipSpaces();
      const auto* found = std::find_if(kOperators.begin(), kOperators.end(),
                                       [&](const Operator& one) { return rest_.starts_with(one.sign); });
      if (found == kOperators.end() || found->strength < weakest) return left;
      rest_.remove_prefix(found->sign.size());
      left = combined(left, found->sign, chain(found->strength + 1));
    }
  }

  static std::uint64_t combined(std::uint64_t left, std::string_view sign, std::uint64_t right) {
    if (sign == "||") return left != 0 || right != 0 ? 1 : 0;
    if (sign == "&&") return left != 0 && right != 0 ? 1 : 0;
    if (sign == "==") return left == right ? 1 : 0;
    if (sign == "!=") return left != right ? 1 : 0;
    if (sign == "<=") return left <= right ? 1 : 0;
    if (sign == ">=") return left >= right ? 1 : 0;
    if (sign == "<") return left < right ? 1 : 0;
    if (sign == ">") return left > right ? 1 : 0;
    if (sign == "+") return left + right;
    if (sign == "-") return left - right;
    if (sign == "*") return left * right;
    if (right == 0) return 0;
    return sign == "/" ? left / right : left % right;
  }

  std::uint64_t operand() {
    const Level level(*this);
    if (take("!")) return operand() == 0 ? 1 : 0;
    if (take("n")) return number_;
    if (take("(")) {
      const std::uint64_t value = choice();
      if (!take(")")) fail();
      return value;
    }
    return literal();
  }

  std::uint64_t literal() {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
    const std::size_t digits = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    std::uint64_t value = 0;
    for (const char digit : rest_.substr(0, digits)) {
      value = std::min(value * 10 + static_cast<std::uint64_t>(digit - '0'), kMost);
    }
    rest_.remove_prefix(digits);
    if (digits == 0) fail();
    return value;
  }

  std::string_view rest_;
  std::uint64_t number_;
  int depth_ = 0;
  bool isWrong_ = false;
};

}  // namespace

PluralRule::PluralRule(std::string_view header) {
  constexpr std::string_view kField = "Plural-Forms:", kRule = "plural=";
  const auto field = header.find(kField);
  if (field == std::string_view::npos) return;
  std::string_view line = header.substr(field + kField.size());
  line = line.substr(0, line.find('\n'));
  const auto rule = line.find(kRule);
  if (rule == std::string_view::npos) return;
  line.remove_prefix(rule + kRule.size());
  line = line.substr(0, line.find(';'));
  if (line.size() <= kMostCharacters && Calculation(line, 0).result()) expression_ = line;
}

std::size_t PluralRule::formFor(std::uint64_t number) const {
  return Calculation(expression_, number).result().value_or(0);
}

}  // namespace chatsum::platform::system
