#include "hosts/device/calls/CallHandles.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace chatsum::device {
namespace {

constexpr std::size_t kMostPeople = 100;  // of a call; three times what any service takes

}  // namespace

std::optional<std::string> CallHandles::read(CallTables& tables) {
  if (tables.has("ZHANDLE")) {
    static constexpr std::array<std::string_view, 3> kColumns = {"Z_PK", "ZVALUE", "ZNORMALIZEDVALUE"};
    auto failure = tables.forEachRow(tables.selection("ZHANDLE", kColumns), [&](const sqlite::Statement& row) {
      StoredText address = storedText(row, 1);
      if (address.text.empty() && !row.isNull(2)) address = storedText(row, 2);
      addresses_.insert_or_assign(row.integer(0), std::move(address));
    });
    if (failure) return failure;
  }
  for (const JoinTable& table : tables.joinTables()) {
    const std::string sql = "SELECT " + quotedName(table.callColumn) + ", " + quotedName(table.personColumn) +
                            " FROM main." + quotedName(table.name);
    auto failure = tables.forEachRow(sql, [&](const sqlite::Statement& row) {
      if (row.isNull(0) || row.isNull(1)) return;
      std::vector<std::int64_t>& people = ofCalls_[row.integer(0)];
      if (people.size() >= kMostPeople) return;
      if (std::find(people.begin(), people.end(), row.integer(1)) == people.end()) people.push_back(row.integer(1));
    });
    if (failure) return failure;
  }
  return std::nullopt;
}

const std::vector<std::int64_t>& CallHandles::ofCall(std::int64_t call) const {
  static const std::vector<std::int64_t> kNobody;
  const auto found = ofCalls_.find(call);
  return found == ofCalls_.end() ? kNobody : found->second;
}

const StoredText* CallHandles::address(std::int64_t handle) const {
  const auto found = addresses_.find(handle);
  return found == addresses_.end() ? nullptr : &found->second;
}

}  // namespace chatsum::device
