#include "platform/system/pdf/PageTree.h"

#include <string>
#include <utility>

#include "platform/system/pdf/PdfSyntax.h"

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kKids = 64;

}  // namespace

int PageTree::addPage(PdfFile& file, std::string_view entries) {
  if (leaves_.empty() || leaves_.back().kids.size() == kKids) leaves_.push_back({file.newObject(), 0, {}});
  Node& leaf = leaves_.back();
  const int page = file.newObject();
  leaf.kids.push_back(page);
  ++leaf.pages;
  std::string dictionary = "<</Type/Page/Parent " + pdf::reference(leaf.object);
  dictionary += entries;
  file.writeObject(page, dictionary + ">>");
  return page;
}

int PageTree::finish(PdfFile& file, std::string_view inherited) {
  const auto write = [&file](const Node& node, const std::string& entries) {
    std::string dictionary = "<</Type/Pages/Count " + std::to_string(node.pages) + entries + "/Kids[";
    for (const int kid : node.kids) dictionary += pdf::reference(kid) + " ";
    dictionary.back() = ']';
    file.writeObject(node.object, dictionary + ">>");
  };
  std::vector<Node> level = std::move(leaves_);
  while (level.size() > 1) {
    std::vector<Node> above;
    for (const Node& node : level) {
      if (above.empty() || above.back().kids.size() == kKids) above.push_back({file.newObject(), 0, {}});
      above.back().kids.push_back(node.object);
      above.back().pages += node.pages;
      write(node, "/Parent " + pdf::reference(above.back().object));
    }
    level = std::move(above);
  }
  write(level.front(), std::string(inherited));
  return level.front().object;
}

}  // namespace chatsum::platform::system
