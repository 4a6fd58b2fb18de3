// The tree of a document's pages (ISO 32000-1, 7.7.3): balanced, so that a reader finds any page in few steps. One
// thread at a time.
#pragma once

#include <string_view>
#include <vector>

#include "platform/system/pdf/PdfFile.h"

namespace chatsum::platform::system {

class PageTree {
 public:
  /// `entries` are those of a page's dictionary beside its type and parent. Answers the page's object.
  int addPage(PdfFile& file, std::string_view entries);
  /// Writes the nodes, the root with the entries that pages inherit. Answers the root's object.
  int finish(PdfFile& file, std::string_view inherited);

 private:
  struct Node {
    int object;
    int pages;
    std::vector<int> kids;
  };
  std::vector<Node> leaves_;  ///< nodes that hold pages
};

}  // namespace chatsum::platform::system
