// Times whole runs of `chatsum` against other programs on the same seeded devices: in turn, medians of several rounds
// on warm files. Run it from a release build on a quiet machine.
//
//   chatsum_bench [lines|pdf|pictures|all] [--rounds N] [SIZE…]
//
// Without a table's name it prints the lines. Sizes are messages (lines: 10000, 100000 and 1000000 without any), rows
// (pdf: 10000 and 100000) or photographs (pictures: 200).

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/Tables.h"

namespace {

struct Wish {
  std::string table = "lines";
  int rounds = 5;
  std::vector<long> sizes;
};

bool readWish(int argc, char** argv, Wish& wish) {
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--rounds" && i + 1 < argc) {
      wish.rounds = std::max(1, std::atoi(argv[++i]));
    } else if (word == "lines" || word == "pdf" || word == "pictures" || word == "all") {
      wish.table = word;
    } else if (const long size = std::atol(word.c_str()); size > 0) {
      wish.sizes.push_back(size);
    } else {
      return false;
    }
  }
  return wish.table != "all" || wish.sizes.empty();  // sizes mean something else in each table
}

std::vector<long> sizesOr(const Wish& wish, std::vector<long> usual) {
  return wish.sizes.empty() ? std::move(usual) : wish.sizes;
}

}  // namespace

int main(int argc, char** argv) {
  namespace bench = chatsum::bench;
  Wish wish;
  if (!readWish(argc, argv, wish)) {
    fmt::print(stderr, "usage: chatsum_bench [lines|pdf|pictures|all] [--rounds N] [SIZE...]\n");
    return 2;
  }
  std::string work = (std::filesystem::temp_directory_path() / "chatsum-bench-XXXXXX").string();
  if (!mkdtemp(work.data())) return 1;
  const bool all = wish.table == "all";
  bool allWorked = true;
  if (all || wish.table == "lines") {
    allWorked &= bench::linesTables(work, sizesOr(wish, {10'000, 100'000, 1'000'000}), wish.rounds);
  }
  if (all || wish.table == "pdf") allWorked &= bench::pdfTables(work, sizesOr(wish, {10'000, 100'000}), wish.rounds);
  if (all || wish.table == "pictures") allWorked &= bench::pictureTables(work, sizesOr(wish, {200}), wish.rounds);
  std::filesystem::remove_all(work);
  return allWorked ? 0 : 1;
}
