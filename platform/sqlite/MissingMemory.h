// Missing memory says nothing about a store, so it is thrown like that of the program itself and never taken for an
// error of the file.
#pragma once

#include <sqlite3.h>

#include <new>

namespace chatsum::sqlite {

/// The code, unless it is that of missing memory: then throws std::bad_alloc.
inline int unlessMemoryIsMissing(int code) {
  if ((code & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
  return code;
}

}  // namespace chatsum::sqlite
