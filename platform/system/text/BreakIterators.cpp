#include "platform/system/text/BreakIterators.h"

#include <new>

namespace chatsum::platform::system {

bool BreakIterators::begin(IteratorRef& iterator, UBreakIteratorType type, std::u16string_view text) {
  UErrorCode error = U_ZERO_ERROR;
  // The root locale's rules: where lines end must not depend on whose machine it is.
  if (!iterator) iterator.reset(ubrk_open(type, "", nullptr, 0, &error));
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(error) || !iterator) return false;
  ubrk_setText(iterator.get(), text.data(), static_cast<int>(text.size()), &error);
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  return U_SUCCESS(error);
}

}  // namespace chatsum::platform::system
