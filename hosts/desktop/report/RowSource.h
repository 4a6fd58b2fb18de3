// The rows of a large text file: their places are looked up by a thread of its own while the first ones are already
// shown, and only the rows that are asked for are read. Belongs to the thread that made it.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QString>
#include <cstdint>
#include <list>
#include <thread>
#include <utility>
#include <vector>

#include "hosts/desktop/report/RowSplitter.h"

namespace chatsum::desktop {

class RowSource final : public QObject {
  Q_OBJECT

 public:
  RowSource(const QString& path, RowKind kind);
  /// Waits for the thread, which stops soon.
  ~RowSource() override;

  /// Begins; the sentence says why the file cannot be read, empty when it can.
  [[nodiscard]] QString start();

  /// Rows whose places are known.
  [[nodiscard]] int rows() const { return rows_; }
  /// The most cells in a known row.
  [[nodiscard]] int cells() const { return cells_; }
  [[nodiscard]] bool isComplete() const { return isComplete_; }
  /// The row without its line end, UTF-8 as a rule; empty for one that is not there (any more).
  [[nodiscard]] QByteArray row(int index);

 Q_SIGNALS:
  /// More rows are known, or there are no more.
  void grew();

 private:
  /// A stretch of rows that are read together.
  struct Block {
    std::uint64_t offset;
    std::uint32_t firstRow;
  };
  /// What the thread has found since it told last.
  struct Finding {
    std::vector<Block> blocks;
    std::uint64_t end = 0;  // behind the last row found
    std::uint32_t rows = 0;
    std::size_t cells = 0;
    bool isComplete = false;
  };
  using Rows = std::vector<QByteArray>;

  void look(const std::stop_token& stop);
  void take(const Finding& finding);
  [[nodiscard]] Rows read(std::size_t block);

  QString path_;
  RowKind kind_;
  QFile file_;
  std::vector<Block> blocks_;
  std::uint64_t end_ = 0;
  int rows_ = 0;
  int cells_ = 0;
  bool isComplete_ = false;
  std::list<std::pair<std::size_t, Rows>> lately_;  // blocks read, the last one first
  std::jthread thread_;                             // last: it uses what stands above
};

}  // namespace chatsum::desktop
