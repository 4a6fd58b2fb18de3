// The values that requests, records and errors are made of: nothing, booleans, numbers, dates, strings, arrays,
// records (string-keyed dictionaries) and opaque objects. Values are copied freely; strings, arrays, records and
// objects are counted references, arrays and records copied on the first write after sharing. Distinct values may be
// used on distinct threads; one value must not be changed while another thread reads it.
#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/foundation/Date.h"
#include "platform/foundation/RefCounted.h"
#include "platform/foundation/String.h"

namespace chatsum {

class Value;
class ArrayBody;
class RecordBody;
class Shape;

/// An object of the host's that values carry without looking inside.
class Object : public RefCounted {
 public:
  virtual ~Object() = default;
  /// What "%@" prints for it (UTF-8).
  [[nodiscard]] virtual std::string description() const = 0;
  static void destroy(Object* object) { delete object; }
};

/// An ordered list of values. A default-made one is empty.
class Array {
 public:
  Array();
  Array(std::initializer_list<Value> items);
  explicit Array(std::vector<Value> items);
  Array(const Array&);
  Array(Array&&) noexcept;
  Array& operator=(Array) noexcept;
  ~Array();

  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] const Value& operator[](std::size_t index) const;
  [[nodiscard]] const Value* begin() const;
  [[nodiscard]] const Value* end() const;
  void append(Value item);
  /// The items for writing; a shared list is copied first. Valid until the array is copied or destroyed.
  [[nodiscard]] std::vector<Value>& mutableItems();
  [[nodiscard]] std::string description() const;
  [[nodiscard]] const void* identity() const;
  bool operator==(const Array& other) const;

 private:
  Ref<ArrayBody> body_;
};

/// A string-keyed dictionary in insertion order, small and flat: (key list, values). Records that are made from one
/// Shape share its key list. A default-made record is empty.
class Record {
 public:
  Record();
  Record(std::initializer_list<std::pair<std::string_view, Value>> entries);
  /// A record with the shape's keys; `values` are taken in the order of the keys, as many as there are keys.
  Record(const Ref<Shape>& shape, Value* values);
  Record(const Record&);
  Record(Record&&) noexcept;
  Record& operator=(Record) noexcept;
  ~Record();

  [[nodiscard]] std::size_t size() const;
  [[nodiscard]] bool empty() const { return size() == 0; }
  /// The value under the key, nullptr when there is none; valid until the record is changed or destroyed.
  [[nodiscard]] const Value* find(std::string_view key) const;
  /// As `find`, a none value when there is no such key.
  [[nodiscard]] const Value& operator[](std::string_view key) const;
  /// Replaces the value of a key, or appends key and value.
  void set(std::string_view key, Value value);
  void remove(std::string_view key);
  /// Key and value at a place in insertion order; index < size().
  [[nodiscard]] std::string_view keyAt(std::size_t index) const;
  [[nodiscard]] const Value& valueAt(std::size_t index) const;
  [[nodiscard]] const Ref<Shape>& shape() const;
  [[nodiscard]] std::string description() const;
  [[nodiscard]] const void* identity() const;
  bool operator==(const Record& other) const;

 private:
  friend class RecordField;
  void makeWritable(std::size_t capacity);
  Ref<RecordBody> body_;
};

/// One value of any kind, 16 bytes.
class Value {
 public:
  enum class Kind : std::uint8_t { kNone, kBool, kInteger, kReal, kDate, kString, kArray, kRecord, kObject };

  Value() : kind_(Kind::kNone), integer_(0) {}
  // Templates, so that a string literal never decays into a boolean.
  template <std::same_as<bool> Bool>
  Value(Bool value) : kind_(Kind::kBool), bool_(value) {}
  template <std::integral Integer>
    requires(!std::same_as<Integer, bool>)
  Value(Integer value) : kind_(Kind::kInteger), integer_(static_cast<std::int64_t>(value)) {}
  Value(double value) : kind_(Kind::kReal), real_(value) {}
  Value(Date value) : kind_(Kind::kDate), date_(value) {}
  Value(String value) : kind_(Kind::kString), string_(std::move(value)) {}
  Value(std::string_view value) : Value(String(value)) {}
  Value(const std::string& value) : Value(String(value)) {}
  Value(const char* value) : Value(String(value)) {}
  Value(Array value) : kind_(Kind::kArray), array_(std::move(value)) {}
  Value(Record value) : kind_(Kind::kRecord), record_(std::move(value)) {}
  Value(Ref<Object> value) : kind_(Kind::kObject), object_(std::move(value)) {}
  Value(const Value& other) : kind_(Kind::kNone), integer_(0) { copyFrom(other); }
  // Every held thing is one word that may be moved as bits, so moving a value is two stores.
  Value(Value&& other) noexcept
      : kind_(std::exchange(other.kind_, Kind::kNone)), integer_(std::exchange(other.integer_, 0)) {}
  Value& operator=(const Value& other) {
    if (this != &other) *this = Value(other);
    return *this;
  }
  Value& operator=(Value&& other) noexcept {
    if (this != &other) {
      // Taken out first: what is destroyed may hold `other`, an array its own item for instance.
      const Kind kind = std::exchange(other.kind_, Kind::kNone);
      const std::int64_t bits = std::exchange(other.integer_, 0);
      if (isCounted()) destroy();
      kind_ = kind;
      integer_ = bits;
    }
    return *this;
  }
  ~Value() {
    if (isCounted()) destroy();
  }

  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] bool isNone() const { return kind_ == Kind::kNone; }
  [[nodiscard]] bool isString() const { return kind_ == Kind::kString; }

  // The held thing when the value is of that kind, else nullptr; valid as long as the value is unchanged.
  [[nodiscard]] const Date* asDate() const { return kind_ == Kind::kDate ? &date_ : nullptr; }
  [[nodiscard]] const String* asString() const { return kind_ == Kind::kString ? &string_ : nullptr; }
  [[nodiscard]] const Array* asArray() const { return kind_ == Kind::kArray ? &array_ : nullptr; }
  [[nodiscard]] const Record* asRecord() const { return kind_ == Kind::kRecord ? &record_ : nullptr; }
  [[nodiscard]] Object* asObject() const { return kind_ == Kind::kObject ? object_.get() : nullptr; }

  // Conversions that every kind answers, as the platform's numbers and strings do.

  /// A number cut to an integer (saturating), a string's leading decimal digits after blanks and a sign, 1 or 0 for a
  /// boolean, 0 for anything else.
  [[nodiscard]] std::int64_t integerValue() const;
  /// A number as it is, a string's leading decimal number, 0 for anything else.
  [[nodiscard]] double doubleValue() const;
  /// A number that is not 0; a string that begins, after blanks, a sign and zeros, with Y, y, T, t or a digit 1-9.
  [[nodiscard]] bool boolValue() const;
  /// What "%@" prints (UTF-8): "(null)" for nothing, arrays and dictionaries in the property-list style.
  [[nodiscard]] std::string description() const;
  /// The value as a comparison by identity sees it: for kinds held in place an unsigned number in the order of the
  /// values (dates and numbers among their own kind), for counted kinds the address.
  [[nodiscard]] std::uint64_t reference() const;

  /// Equal kinds and contents; integers and reals compare as numbers.
  bool operator==(const Value& other) const;

 private:
  [[nodiscard]] bool isCounted() const { return kind_ >= Kind::kString; }
  void copyFrom(const Value& other);
  void destroy();

  Kind kind_;
  union {
    bool bool_;
    std::int64_t integer_;
    double real_;
    Date date_;
    String string_;
    Array array_;
    Record record_;
    Ref<Object> object_;
  };
};
static_assert(sizeof(Value) == 16);

/// The list of keys of one or many records, in order, no key twice. Immutable while shared.
class Shape final : public RefCounted {
 public:
  explicit Shape(std::vector<String> keys) : keys_(std::move(keys)) {}
  static Ref<Shape> of(std::initializer_list<std::string_view> keys);
  static void destroy(Shape* shape) { delete shape; }

  [[nodiscard]] const std::vector<String>& keys() const { return keys_; }
  /// The place of a key, -1 when it is not there.
  [[nodiscard]] int indexOf(std::string_view key) const;

 private:
  friend class Record;
  std::vector<String> keys_;
};

/// Looks one key up in many records. The shapes seen last are remembered, so a record of one of them costs a few
/// comparisons of addresses. One thread at a time; a copy may be used on another.
class RecordField {
 public:
  explicit RecordField(std::string_view key) : key_(key) {}
  [[nodiscard]] std::string_view key() const { return key_; }
  /// As Record::find.
  [[nodiscard]] const Value* find(const Record& record);

 private:
  struct Known {
    Ref<Shape> shape;
    int index = -1;
  };
  /// Messages have few shapes: sent and received, with a contact's label and without, with an attachment and without.
  static constexpr std::size_t kRemembered = 8;

  std::string key_;
  std::array<Known, kRemembered> known_;
  std::size_t next_ = 0;  // the place to forget
};

class ArrayBody final : public RefCounted {
 public:
  static void destroy(ArrayBody* body) { delete body; }
  std::vector<Value> items;
};

inline std::size_t Array::size() const { return body_ ? body_->items.size() : 0; }
inline const Value& Array::operator[](std::size_t index) const { return body_->items[index]; }
inline const Value* Array::begin() const { return body_ ? body_->items.data() : nullptr; }
inline const Value* Array::end() const { return body_ ? body_->items.data() + body_->items.size() : nullptr; }

}  // namespace chatsum
