// The part of an SQLite journal that names another file. No state, any thread.
#pragma once

#include <string>

namespace chatsum::device {

/// A change over several databases leaves journals that end in the name of a file of them all. SQLite would roll such
/// a journal back only while that file is there, at a path of the device it was written on, and then delete it. This
/// makes the journal at `path`, a private copy, one of its own database alone, so that the interrupted change is always
/// rolled back and no other file matters. Answers 0, also when there is no such journal or no such name, or an errno.
[[nodiscard]] int dropSuperJournal(const std::string& path);

}  // namespace chatsum::device
