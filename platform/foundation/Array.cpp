#include "platform/foundation/Description.h"
#include "platform/foundation/Value.h"

namespace chatsum {

Array::Array() = default;
Array::Array(std::initializer_list<Value> items) : Array(std::vector<Value>(items)) {}
Array::Array(std::vector<Value> items) { mutableItems() = std::move(items); }
Array::Array(const Array&) = default;
Array::Array(Array&&) noexcept = default;
Array& Array::operator=(Array other) noexcept {
  std::swap(body_, other.body_);
  return *this;
}
Array::~Array() = default;

void Array::append(Value item) { mutableItems().push_back(std::move(item)); }

std::vector<Value>& Array::mutableItems() {
  if (!body_ || body_->isShared()) {
    auto copy = Ref<ArrayBody>::adopt(new ArrayBody);
    if (body_) copy->items = body_->items;
    body_ = std::move(copy);
  }
  return body_->items;
}

std::string Array::description() const { return description::of(*this); }
const void* Array::identity() const { return body_.get(); }

bool Array::operator==(const Array& other) const {
  if (body_ == other.body_) return true;
  if (size() != other.size()) return false;
  for (std::size_t i = 0; i < size(); ++i) {
    if (!((*this)[i] == other[i])) return false;
  }
  return true;
}

}  // namespace chatsum
