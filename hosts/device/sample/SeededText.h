// Messages that read like small talk from afar: mostly Latin letters, some other scripts and emoji, about 60 bytes on
// the average, with the vocabulary of real ones (a few hundred common words, tens of thousands of rare ones).
// The same for the same random numbers. No state: any thread.
#pragma once

#include <string>

#include "hosts/device/sample/SeededRandom.h"

namespace chatsum::device {

/// Replaces `text` by a new message (UTF-8, never empty).
void makeMessageText(SeededRandom& random, std::string& text);

/// A name for a contact, "Nora" and "Vellamo".
struct SeededName {
  std::string first;
  std::string last;
};
SeededName makeName(SeededRandom& random);

}  // namespace chatsum::device
