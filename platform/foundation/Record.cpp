#include <algorithm>
#include <new>

#include "platform/foundation/Description.h"
#include "platform/foundation/Value.h"

namespace chatsum {

/// Header of a record; its values stand behind it in the same allocation.
class RecordBody final : public RefCounted {
 public:
  static RecordBody* make(Ref<Shape> shape, std::size_t capacity) {
    void* memory = ::operator new(sizeof(RecordBody) + capacity * sizeof(Value));
    return new (memory) RecordBody(std::move(shape), static_cast<std::uint32_t>(capacity));
  }
  static void destroy(RecordBody* body) {
    for (std::uint32_t i = 0; i < body->count; ++i) body->values()[i].~Value();
    body->~RecordBody();
    ::operator delete(body);
  }

  Value* values() { return std::launder(reinterpret_cast<Value*>(this + 1)); }
  void append(Value value) { new (values() + count++) Value(std::move(value)); }

  std::uint32_t count = 0;
  std::uint32_t capacity;
  Ref<Shape> shape;

 private:
  RecordBody(Ref<Shape> keys, std::uint32_t room) : capacity(room), shape(std::move(keys)) {}
};

namespace {

const Value& none() {
  static const Value value;
  return value;
}

const Ref<Shape>& emptyShape() {
  static const Ref<Shape> shape = Shape::of({});
  return shape;
}

}  // namespace

Ref<Shape> Shape::of(std::initializer_list<std::string_view> keys) {
  return Ref<Shape>::adopt(new Shape(std::vector<String>(keys.begin(), keys.end())));
}

int Shape::indexOf(std::string_view key) const {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    if (keys_[i].view() == key) return static_cast<int>(i);
  }
  return -1;
}

Record::Record() = default;
Record::Record(std::initializer_list<std::pair<std::string_view, Value>> entries) {
  for (const auto& [key, value] : entries) set(key, value);
}
Record::Record(const Ref<Shape>& shape, Value* values)
    : body_(Ref<RecordBody>::adopt(RecordBody::make(shape, shape->keys().size()))) {
  for (std::size_t i = 0; i < shape->keys().size(); ++i) body_->append(std::move(values[i]));
}
Record::Record(const Record&) = default;
Record::Record(Record&&) noexcept = default;
Record& Record::operator=(Record other) noexcept {
  std::swap(body_, other.body_);
  return *this;
}
Record::~Record() = default;

std::size_t Record::size() const { return body_ ? body_->count : 0; }

const Value* Record::find(std::string_view key) const {
  if (!body_) return nullptr;
  const int index = body_->shape->indexOf(key);
  return index < 0 ? nullptr : body_->values() + index;
}

const Value& Record::operator[](std::string_view key) const {
  const Value* value = find(key);
  return value ? *value : none();
}

/// Makes the body this record's own, with room for `capacity` values, and its key list its own too when it will grow.
void Record::makeWritable(std::size_t capacity) {
  if (body_ && !body_->isShared() && body_->capacity >= capacity) return;
  auto copy = Ref<RecordBody>::adopt(RecordBody::make(shape(), std::max(capacity, size())));
  for (std::size_t i = 0; i < size(); ++i) copy->append(valueAt(i));
  body_ = std::move(copy);
}

void Record::set(std::string_view key, Value value) {
  const int index = body_ ? body_->shape->indexOf(key) : -1;
  if (index >= 0) {
    makeWritable(size());
    body_->values()[index] = std::move(value);
    return;
  }
  const std::size_t needed = size() + 1;
  makeWritable(body_ && body_->capacity >= needed ? needed : std::max<std::size_t>(4, size() * 2));
  if (body_->shape->isShared()) body_->shape = Ref<Shape>::adopt(new Shape(body_->shape->keys()));
  body_->shape->keys_.emplace_back(key);
  body_->append(std::move(value));
}

void Record::remove(std::string_view key) {
  if (!find(key)) return;
  Record remaining;
  for (std::size_t i = 0; i < size(); ++i) {
    if (keyAt(i) != key) remaining.set(keyAt(i), valueAt(i));
  }
  *this = std::move(remaining);
}

std::string_view Record::keyAt(std::size_t index) const { return body_->shape->keys()[index].view(); }
const Value& Record::valueAt(std::size_t index) const { return body_->values()[index]; }
const Ref<Shape>& Record::shape() const { return body_ ? body_->shape : emptyShape(); }
std::string Record::description() const { return description::of(*this); }
const void* Record::identity() const { return body_.get(); }

bool Record::operator==(const Record& other) const {
  if (body_ == other.body_) return true;
  if (size() != other.size()) return false;
  for (std::size_t i = 0; i < size(); ++i) {
    const Value* value = other.find(keyAt(i));
    if (!value || !(*value == valueAt(i))) return false;
  }
  return true;
}

const Value* RecordField::find(const Record& record) {
  if (!record.body_) return nullptr;
  const Shape* shape = record.body_->shape.get();
  for (const Known& known : known_) {
    if (known.shape.get() == shape) return known.index < 0 ? nullptr : record.body_->values() + known.index;
  }
  Known& place = known_[next_++ % kRemembered];
  place = {record.body_->shape, shape->indexOf(key_)};
  return place.index < 0 ? nullptr : record.body_->values() + place.index;
}

}  // namespace chatsum
