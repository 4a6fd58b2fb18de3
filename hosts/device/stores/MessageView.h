// Serves a Messages store of any generation in the shape that the message statements expect: texts that stand only in
// an archived body, dates in nanoseconds, and every column and table the statements name.
// Belongs to one connection and its thread; the counters may be read from any thread.
#pragma once

#include <sqlite3.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

#include "hosts/device/body/TypedStream.h"

namespace chatsum::device {

/// What became of the messages without a text of their own, counted as they are read (each reading counts again).
struct BodyCounters {
  std::atomic<std::uint64_t> decoded = 0;
  std::atomic<std::uint64_t> recovered = 0;    ///< saved from a damaged body
  std::atomic<std::uint64_t> undecodable = 0;  ///< a body is there but no text was found in it
  std::atomic<std::uint64_t> absent = 0;       ///< neither text nor body
  std::atomic<std::uint64_t> replacedSequences = 0;

  /// Counts one body that was looked at.
  void add(const BodyText& body);
};

/// Puts "␀" for each NUL: readers stop at one, and what follows must not be lost with it.
void replaceNuls(std::string& text);

class MessageView {
 public:
  struct Options {
    /// The store's own table as it is: no texts from bodies, dates as they stand.
    bool plain = false;
    /// A condition in SQL on the columns of `message`. Where it holds, where there is neither text nor readable body,
    /// and where what was typed cannot stand as it is, the text is what the function `chatsum_words(ROWID)` answers;
    /// register it before. Empty: nowhere.
    std::string words = {};
    /// An expression in SQL on the columns of `message` that stands for `cache_has_attachments`. Empty: the column.
    std::string flag = {};
  };

  /// Prepares a connection that a snapshot opened and whose store is a Messages store. Nothing in the store changes:
  /// the view `message` hides the table of that name on this connection only, and stays until it is closed.
  /// - `text` falls back to the body's text where it is missing or empty, NULL when there is none either; bodies are
  ///   looked at only then. NUL characters are shown as "␀", since readers would stop there.
  /// - `date` is in nanoseconds since 2001, also where the store has seconds (iOS 10 and earlier, and old rows of
  ///   later ones); 0 and NULL stay.
  /// - `filename` of attachments has no "~" at its beginning where there are others in it: "User/…" for "~/…", as
  ///   readers write it, but who would replace every "~".
  /// - columns that the store lacks are NULL, or 0 for flags and handles; missing attachment tables are empty.
  /// Answers false when SQLite refuses; its error message stands on the connection. `counters` may be null.
  [[nodiscard]] static bool install(sqlite3* connection, const Options& options,
                                    const std::shared_ptr<BodyCounters>& counters);
};

}  // namespace chatsum::device
