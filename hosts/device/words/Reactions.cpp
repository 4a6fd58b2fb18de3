#include "hosts/device/words/Reactions.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <tuple>

#include "hosts/device/conversations/StoredDate.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/words/ShownWords.h"
#include "hosts/device/words/StoreLookUps.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr std::int64_t kSticker = 1000, kFirstReaction = 2000, kFirstRemoval = 3000;
constexpr std::int64_t kRemovalOffset = kFirstRemoval - kFirstReaction;
constexpr std::int64_t kEmoji = 2006;
constexpr std::size_t kMostNames = 20, kMostKinds = 30, kLongestEmoji = 16;

bool isRemoval(std::int64_t type) { return type >= kFirstRemoval; }

std::string_view verbOf(std::int64_t type) {
  switch (type) {
    case 2000:
      return toSay("loved");
    case 2001:
      return toSay("liked");
    case 2002:
      return toSay("disliked");
    case 2003:
      return toSay("laughed at");
    case 2004:
      return toSay("emphasised");
    case 2005:
      return toSay("questioned");
    default:
      return type < kFirstReaction || type == 2007 ? toSay("sticker") : toSay("reaction");
  }
}

std::string kindInWords(std::int64_t type, std::string_view emoji) {
  if (type != kEmoji) return said(verbOf(type));
  std::string shown = nameInWords(emoji.substr(0, 4 * kLongestEmoji));
  return shown.empty() ? say("emoji") : shown;
}

std::string listOfNames(const std::vector<std::string_view>& names) {
  const std::size_t others = names.size() - std::min(names.size(), kMostNames);
  // The last one stands behind an "and".
  const std::size_t listed = others > 0 ? kMostNames : names.size() - 1;
  std::string list;
  for (std::size_t i = 0; i < listed; ++i) list.append(i == 0 ? "" : ", ").append(names[i]);
  if (others > 0) return sayCounted(others, "{1} and {0} other", "{1} and {0} others", list);
  return list.empty() ? std::string(names.back()) : say("{0} and {1}", list, names.back());
}

}  // namespace

struct Reactions::Row {
  std::int64_t target = 0, part = 0, slot = 0, sender = 0, date = 0, row = 0, type = 0;
  std::string emoji = {};
  bool isFromMe = false;
  std::int64_t handle = 0;

  [[nodiscard]] auto place() const { return std::tuple(target, part, slot, sender); }
  [[nodiscard]] auto order() const { return std::tuple(target, part, slot, sender, date, row); }
};

ReactionTarget reactionTarget(std::string_view stored) {
  ReactionTarget target{stored, 0};
  if (stored.starts_with("p:")) {
    const std::size_t slash = stored.find('/');
    if (slash == std::string_view::npos) return target;
    std::from_chars(stored.data() + 2, stored.data() + slash, target.part);
    target.guid = stored.substr(slash + 1);
  } else if (stored.starts_with("bp:")) {
    target.guid = stored.substr(3);
  }
  return target;
}

std::optional<std::string> Reactions::read(const sqlite::Connection& store, const People& people,
                                           const std::function<bool(std::int64_t)>& isInReading) {
  StoreColumns columns(store.get());
  if (!columns.has("message", "associated_message_guid") || !columns.has("message", "associated_message_type") ||
      !columns.has("message", "guid")) {
    return std::nullopt;
  }
  const auto own = [&](const char* column) {
    return columns.has("message", column) ? ", " + std::string(column) : std::string(", NULL");
  };
  // "> ''" and not "IS NOT NULL": only so is the index used in every version of the store.
  const sqlite::Statement query(store.get(), "SELECT ROWID, associated_message_guid, associated_message_type" +
                                                 own("handle_id") + own("is_from_me") + own("date") +
                                                 own("associated_message_emoji") +
                                                 " FROM main.message WHERE associated_message_guid > ''");
  if (!query) return store.lastError();
  const MessageGuids guids(store);
  std::vector<Row> rows;
  int code = query.step();
  for (; code == SQLITE_ROW; code = query.step()) {
    Row row;
    row.row = query.integer(0);
    row.type = query.integer(2);
    if (!isReactionType(row.type) || !isInReading(row.row)) continue;
    const ReactionTarget target = reactionTarget(query.text(1));
    const auto found = guids.find(target.guid);
    if (!found || !isInReading(*found)) continue;
    row.target = *found;
    row.part = target.part;
    row.handle = query.integer(3);
    row.isFromMe = query.integer(4) != 0;
    row.sender = people.sender(row.isFromMe, row.handle).key;
    row.date = nanosecondsOf(query.integer(5));
    row.emoji = std::string(query.text(6).substr(0, 4 * kLongestEmoji));
    // Each sticker is put on for itself; of all else a person has one at a time.
    row.slot = row.type < kFirstReaction ? row.row : kFirstReaction;
    rows.push_back(std::move(row));
  }
  if (code != SQLITE_DONE) return store.lastError();
  settle(rows, people);
  return std::nullopt;
}

void Reactions::settle(std::vector<Row>& rows, const People& people) {
  // A reaction to a reaction would vanish with it.
  std::unordered_map<std::int64_t, bool> reactions;
  for (const Row& row : rows) reactions.emplace(row.row, true);
  std::erase_if(rows, [&](const Row& row) { return reactions.contains(row.target); });

  std::sort(rows.begin(), rows.end(), [](const Row& left, const Row& right) { return left.order() < right.order(); });
  std::vector<const Row*> last;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bool isLast = i + 1 == rows.size() || rows[i + 1].place() != rows[i].place();
    const bool isShown = isLast && !isRemoval(rows[i].type);
    fates_[rows[i].row] = isShown ? Fate::kShown : Fate::kTakenBack;
    if (isShown) last.push_back(&rows[i]);
  }
  std::stable_sort(last.begin(), last.end(), [](const Row* left, const Row* right) {
    return std::tuple(left->target, left->date, left->row) < std::tuple(right->target, right->date, right->row);
  });
  for (const Row* row : last) {
    const auto [range, isNew] = targets_.try_emplace(row->target, shown_.size(), shown_.size());
    shown_.push_back({row->type, row->part, row->emoji, people.sender(row->isFromMe, row->handle).name});
    range->second.second = shown_.size();
  }
}

std::span<const Reaction> Reactions::on(std::int64_t message) const {
  const auto range = targets_.find(message);
  if (range == targets_.end()) return {};
  return std::span(shown_).subspan(range->second.first, range->second.second - range->second.first);
}

std::string reactionsInWords(std::span<const Reaction> reactions,
                             const std::function<std::string(std::int64_t)>& pieceName) {
  struct Group {
    std::string kind;
    std::vector<std::string_view> names;
  };
  std::vector<Group> groups;
  std::unordered_map<std::string, std::size_t> places;
  for (const Reaction& reaction : reactions) {
    std::string kind = pieceName(reaction.part);
    if (!kind.empty()) kind += " ";
    kind += kindInWords(reaction.type, reaction.emoji);
    const auto [place, isNew] = places.try_emplace(kind, groups.size());
    if (isNew) groups.push_back({kind, {}});
    groups[place->second].names.push_back(reaction.who);
  }
  std::string words;
  for (std::size_t i = 0; i < groups.size() && i < kMostKinds; ++i) {
    words.append(i == 0 ? "[" : "; ").append(say("{0} by {1}", groups[i].kind, listOfNames(groups[i].names)));
  }
  if (groups.size() > kMostKinds) words += "; " + say("and more");
  return words.empty() ? words : words + "]";
}

std::string loneReactionInWords(std::int64_t type, std::string_view emoji) {
  const bool isTakenBack = isRemoval(type);
  const std::int64_t kind = isTakenBack ? type - kRemovalOffset : type;
  const bool isVerb = kind >= kFirstReaction && kind < kEmoji;
  std::string what = kindInWords(kind, emoji);
  if (isTakenBack) {
    return isVerb ? say("[took back: {0} a message that is not there]", what)
                  : say("[took back: {0} on a message that is not there]", what);
  }
  return isVerb ? say("[{0} a message that is not there]", what) : say("[{0} on a message that is not there]", what);
}

}  // namespace chatsum::device
