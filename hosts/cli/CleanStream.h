// A stream onto a terminal: what is written goes on to another stream without anything that a terminal would obey.
// Texts may come in pieces that are cut anywhere. One thread.
#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace chatsum::cli {

class CleanStream {
 public:
  explicit CleanStream(std::ostream& target) : buffer_(target), stream_(&buffer_) {}

  [[nodiscard]] std::ostream& stream() { return stream_; }
  /// Whether the last character was the end of a line, or there was none.
  [[nodiscard]] bool isAtLineStart() const { return buffer_.isAtLineStart; }

 private:
  class Buffer final : public std::streambuf {
   public:
    explicit Buffer(std::ostream& target) : target_(target) {}
    bool isAtLineStart = true;

   protected:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int_type overflow(int_type character) override;
    int sync() override;

   private:
    std::ostream& target_;
    std::string begun_;  // a character whose end has not come yet
  };

  Buffer buffer_;
  std::ostream stream_;
};

}  // namespace chatsum::cli
