#include "hosts/desktop/report/RowSource.h"

#include <QMetaObject>
#include <algorithm>
#include <limits>
#include <new>
#include <system_error>

namespace chatsum::desktop {
namespace {

constexpr std::uint32_t kRowsOfBlock = 64;
constexpr std::uint64_t kBytesOfBlock = 64 * 1024;
constexpr std::size_t kBlocksKept = 16;
constexpr qint64 kReadAtOnce = 256 * 1024;
/// Told so often: the first screens at once, the rest without keeping the window busy.
constexpr std::uint64_t kBytesToFirstNews = 64 * 1024, kBytesBetweenNews = 8 * 1024 * 1024;
constexpr std::uint32_t kMostRows = std::numeric_limits<int>::max();

QByteArray withoutLineEnd(const QByteArray& row) {
  qsizetype size = row.size();
  if (size > 0 && row[size - 1] == '\n') --size;
  if (size < row.size() && size > 0 && row[size - 1] == '\r') --size;
  return row.left(size);
}

}  // namespace

RowSource::RowSource(const QString& path, RowKind kind) : path_(path), kind_(kind), file_(path) {}

RowSource::~RowSource() = default;

QString RowSource::start() {
  if (!file_.open(QIODevice::ReadOnly)) {
    return tr("The report “%1” cannot be read: %2.").arg(path_, file_.errorString());
  }
  try {
    thread_ = std::jthread([this](const std::stop_token& stop) {
      try {
        look(stop);
      } catch (const std::bad_alloc&) {
        // The rows that were told of stay.
      }
    });
  } catch (const std::system_error&) {
    look({});  // no thread to be had: it takes its time here
  }
  return {};
}

/// On the thread. A file of its own: reading at two places with one would need a lock.
void RowSource::look(const std::stop_token& stop) {
  QFile file(path_);
  Finding found;
  RowSplitter splitter(kind_);
  std::uint64_t offset = 0, toldAt = 0;
  std::uint64_t blockOffset = 0;
  std::uint32_t rowsInBlock = 0;
  std::size_t cells = 1;
  const auto tell = [&](bool isComplete) {
    found.isComplete = isComplete;
    found.cells = cells;
    toldAt = offset;
    QMetaObject::invokeMethod(
        this, [this, news = found] { take(news); }, Qt::QueuedConnection);
    found.blocks.clear();
  };
  const auto endRow = [&](std::uint64_t end) {
    ++found.rows;
    ++rowsInBlock;
    found.end = end;
    if (rowsInBlock < kRowsOfBlock && end - blockOffset < kBytesOfBlock) return;
    found.blocks.push_back({end, found.rows});
    blockOffset = end;
    rowsInBlock = 0;
  };
  found.blocks.push_back({0, 0});
  if (!file.open(QIODevice::ReadOnly)) return tell(true);
  while (!stop.stop_requested() && found.rows < kMostRows) {
    const QByteArray bytes = file.read(kReadAtOnce);
    if (bytes.isEmpty()) break;
    for (const char byte : bytes) {
      ++offset;
      const std::size_t cellsBefore = splitter.cells();
      if (!splitter.endsBehind(byte)) continue;
      cells = std::max(cells, cellsBefore);
      endRow(offset);
      if (found.rows == kMostRows) break;
    }
    if (offset - toldAt >= (toldAt == 0 ? kBytesToFirstNews : kBytesBetweenNews)) tell(false);
  }
  if (stop.stop_requested()) return;
  if (splitter.isInside() && found.rows < kMostRows) {
    cells = std::max(cells, splitter.cells());
    endRow(offset);
  }
  tell(true);
}

void RowSource::take(const Finding& finding) {
  blocks_.insert(blocks_.end(), finding.blocks.begin(), finding.blocks.end());
  end_ = finding.end;
  rows_ = static_cast<int>(finding.rows);
  cells_ = static_cast<int>(std::min<std::size_t>(finding.cells, std::numeric_limits<int>::max()));
  isComplete_ = finding.isComplete;
  // The last block may have been read before all its rows were known.
  lately_.clear();
  Q_EMIT grew();
}

QByteArray RowSource::row(int index) {
  if (index < 0 || index >= rows_) return {};
  const auto wanted = static_cast<std::uint32_t>(index);
  const auto next = std::upper_bound(blocks_.begin(), blocks_.end(), wanted,
                                     [](std::uint32_t row, const Block& block) { return row < block.firstRow; });
  const auto block = static_cast<std::size_t>(next - blocks_.begin()) - 1;
  auto known = std::find_if(lately_.begin(), lately_.end(), [&](const auto& entry) { return entry.first == block; });
  if (known == lately_.end()) {
    lately_.emplace_front(block, read(block));
    if (lately_.size() > kBlocksKept) lately_.pop_back();
  } else {
    lately_.splice(lately_.begin(), lately_, known);
  }
  const Rows& rows = lately_.front().second;
  const std::size_t place = wanted - blocks_[block].firstRow;
  return place < rows.size() ? rows[place] : QByteArray();  // the file may have become shorter
}

RowSource::Rows RowSource::read(std::size_t block) {
  const std::uint64_t begin = blocks_[block].offset;
  const std::uint64_t end = block + 1 < blocks_.size() ? blocks_[block + 1].offset : end_;
  Rows rows;
  if (!file_.seek(static_cast<qint64>(begin))) return rows;
  const QByteArray bytes = file_.read(static_cast<qint64>(end - begin));
  RowSplitter splitter(kind_);
  qsizetype start = 0;
  for (qsizetype at = 0; at < bytes.size(); ++at) {
    if (!splitter.endsBehind(bytes[at])) continue;
    rows.push_back(withoutLineEnd(bytes.mid(start, at + 1 - start)));
    start = at + 1;
  }
  if (start < bytes.size()) rows.push_back(withoutLineEnd(bytes.mid(start)));
  constexpr QByteArrayView kByteOrderMark("\xEF\xBB\xBF");
  if (begin == 0 && !rows.empty() && rows.front().startsWith(kByteOrderMark)) {
    rows.front().remove(0, kByteOrderMark.size());
  }
  return rows;
}

}  // namespace chatsum::desktop
