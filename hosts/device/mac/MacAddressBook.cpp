#include "hosts/device/mac/MacAddressBook.h"

#include <cstdint>
#include <map>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/mac/MacBook.h"
#include "hosts/device/sample/StoreFile.h"
#include "hosts/device/sample/StoreSchema.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr std::int64_t kPhoneProperty = 3;
constexpr std::int64_t kEmailProperty = 4;

struct Book {
  std::string name;
  std::size_t firstCard = 0;  // in the list of all
};

/// The cards of all books, and which of them are one person's.
struct Cards {
  std::vector<MacCard> all;
  std::vector<Book> books;
  std::vector<std::size_t> persons;  // for each card, the first one of the same person
};

std::size_t firstOf(std::vector<std::size_t>& persons, std::size_t card) {
  while (persons[card] != card) card = persons[card] = persons[persons[card]];
  return card;
}

void findPersons(Cards& cards) {
  cards.persons.resize(cards.all.size());
  std::iota(cards.persons.begin(), cards.persons.end(), std::size_t{0});
  std::map<std::string_view, std::size_t> links, identifiers;
  for (std::size_t card = 0; card < cards.all.size(); ++card) {
    const auto unite = [&](std::map<std::string_view, std::size_t>& known, const std::string& key) {
      if (key.empty()) return;
      const std::size_t other = firstOf(cards.persons, known.emplace(key, card).first->second);
      const std::size_t own = firstOf(cards.persons, card);
      cards.persons[std::max(own, other)] = std::min(own, other);
    };
    unite(links, cards.all[card].link);
    unite(identifiers, cards.all[card].identifier);
  }
  for (std::size_t card = 0; card < cards.all.size(); ++card) cards.persons[card] = firstOf(cards.persons, card);
}

/// How well a card names its person.
int nameRank(const MacCard& card) {
  const bool hasName = !card.first.empty() || !card.last.empty();
  if (card.givesName) return 3;
  if (hasName) return 2;
  return card.nickname.empty() && card.organization.empty() ? 0 : 1;
}

class Writer {
 public:
  Writer(const std::string& path, const Cards& cards)
      : cards_(cards), file_(path, Placement::mainFile, addressBookTables()) {
    file_.execute("INSERT INTO _SqliteDatabaseProperties (key, value) VALUES ('_ClientVersion', '84')");
    prepare(people_,
            "INSERT INTO ABPerson (ROWID, Prefix, First, Middle, Last, Suffix, Nickname, PreviousFamilyName, "
            "Organization, Department, JobTitle, guid, Kind, StoreID, PersonLink, IsPreferredName) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    prepare(links_, "INSERT INTO ABPersonLink (ROWID, PreferredNamePersonID) VALUES (?, ?)");
    prepare(values_,
            "INSERT INTO ABMultiValue (UID, record_id, property, identifier, label, value) VALUES (?, ?, ?, ?, ?, ?)");
    prepare(labels_, "INSERT INTO ABMultiValueLabel (value) VALUES (?)");
    prepare(stores_, "INSERT INTO ABStore (ROWID, Name, MeIdentifier) VALUES (?, ?, ?)");
  }

  std::optional<std::string> write() {
    std::map<std::size_t, std::size_t> naming;  // by person, of those with several cards, the card that names it
    for (std::size_t card = 0; card < cards_.all.size(); ++card) {
      const std::size_t person = cards_.persons[card];
      if (person == card) continue;
      const auto known = naming.emplace(person, person).first;
      if (nameRank(cards_.all[card]) > nameRank(cards_.all[known->second])) known->second = card;
    }
    std::map<std::size_t, std::int64_t> linkRows;
    for (const auto& [person, card] : naming) {
      const auto row = static_cast<std::int64_t>(linkRows.size()) + 1;
      linkRows.emplace(person, row);
      links_.bind(1, row);
      links_.bind(2, rowOf(card));
      run(links_);
    }
    for (std::size_t book = 0; book < cards_.books.size(); ++book) {
      const bool isLast = book + 1 == cards_.books.size();
      const std::size_t end = isLast ? cards_.all.size() : cards_.books[book + 1].firstCard;
      std::int64_t own = -1;
      for (std::size_t card = cards_.books[book].firstCard; card < end; ++card) {
        const auto link = linkRows.find(cards_.persons[card]);
        const bool isLinked = link != linkRows.end();
        addCard(card, book, isLinked ? link->second : -1, !isLinked || naming.at(cards_.persons[card]) == card);
        if (own == -1 && cards_.all[card].isOwn) own = rowOf(card);
      }
      stores_.bind(1, static_cast<std::int64_t>(book));
      stores_.bind(2, cards_.books[book].name);
      stores_.bind(3, own);
      run(stores_);
    }
    for (sqlite::Statement* statement : {&people_, &links_, &values_, &labels_, &stores_}) {
      *statement = sqlite::Statement();
    }
    return file_.finish(addressBookIndexes());
  }

 private:
  static std::int64_t rowOf(std::size_t card) { return static_cast<std::int64_t>(card) + 1; }

  void prepare(sqlite::Statement& statement, std::string_view sql) {
    if (file_.failed()) return;
    statement = sqlite::Statement(file_.connection(), sql);
    if (!statement) file_.noteFailure();
  }

  void run(const sqlite::Statement& statement) {
    if (file_.failed()) return;
    if (statement.step() != SQLITE_DONE) file_.noteFailure();
    statement.reset();
  }

  static void bindText(const sqlite::Statement& statement, int parameter, const std::string& text) {
    if (text.empty()) {
      statement.bindNull(parameter);
    } else {
      statement.bind(parameter, std::string_view(text));
    }
  }

  void addCard(std::size_t place, std::size_t book, std::int64_t link, bool givesName) {
    const MacCard& card = cards_.all[place];
    people_.bind(1, rowOf(place));
    int parameter = 1;
    for (const std::string* text :
         {&card.prefix, &card.first, &card.middle, &card.last, &card.suffix, &card.nickname, &card.maidenName,
          &card.organization, &card.department, &card.jobTitle, &card.identifier}) {
      bindText(people_, ++parameter, *text);
    }
    people_.bind(++parameter, std::int64_t{card.isOrganization});
    people_.bind(++parameter, static_cast<std::int64_t>(book));
    people_.bind(++parameter, link);
    people_.bind(++parameter, std::int64_t{givesName});
    run(people_);
    addValues(rowOf(place), kPhoneProperty, card.phones);
    addValues(rowOf(place), kEmailProperty, card.emails);
  }

  void addValues(std::int64_t person, std::int64_t property, const std::vector<MacValue>& values) {
    std::int64_t identifier = 0;
    for (const MacValue& value : values) {
      const std::int64_t label = labelRow(value.label);
      values_.bind(1, ++valueCount_);
      values_.bind(2, person);
      values_.bind(3, property);
      values_.bind(4, identifier++);
      if (label > 0) {
        values_.bind(5, label);
      } else {
        values_.bindNull(5);
      }
      values_.bind(6, std::string_view(value.text));
      run(values_);
    }
  }

  std::int64_t labelRow(const std::string& label) {
    if (label.empty()) return 0;
    const auto [known, isNew] = labelRows_.try_emplace(label, 0);
    if (isNew) {
      labels_.bind(1, std::string_view(label));
      run(labels_);
      known->second = static_cast<std::int64_t>(labelRows_.size());
    }
    return known->second;
  }

  const Cards& cards_;
  StoreFile file_;
  sqlite::Statement people_, links_, values_, labels_, stores_;
  std::map<std::string, std::int64_t> labelRows_;
  std::int64_t valueCount_ = 0;
};

/// The folder that the book stands in, which is named by its account.
std::string nameOfBook(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos || slash == 0) return "";
  const std::size_t before = path.rfind('/', slash - 1);
  return path.substr(before + 1, slash - before - 1);
}

}  // namespace

StoreResult<ConvertedBook> convertMacBooks(const std::vector<std::string>& books,
                                           const std::shared_ptr<ReadDigests>& digests) {
  Cards cards;
  std::vector<std::string> warnings;
  for (const std::string& path : books) {
    auto read = readMacBook(path, digests);
    if (!read) {
      warnings.push_back(say("An address book is left out: {0}", read.problem().sentence));
      continue;
    }
    cards.books.push_back({nameOfBook(path), cards.all.size()});
    std::move(read.value().begin(), read.value().end(), std::back_inserter(cards.all));
  }
  if (cards.books.empty()) {
    return StoreProblem{warnings.empty() ? say("There is no address book.") : std::move(warnings.front())};
  }
  findPersons(cards);
  auto folder = SnapshotFolder::create();
  if (!folder) return folder.problem();
  const std::string path = folder.value().path() + "/AddressBook.sqlitedb";
  Writer writer(path, cards);
  if (auto failure = writer.write()) return StoreProblem{std::move(*failure)};
  StoreLocation location = locationOf(path);
  location.shownPath = books.front();
  return ConvertedBook{std::move(folder.value()), std::move(location), std::move(warnings)};
}

}  // namespace chatsum::device
