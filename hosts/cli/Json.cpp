#include "hosts/cli/Json.h"

#include <string>

#include "hosts/device/report/TimeRange.h"

namespace chatsum::cli {

Json jsonOf(const std::optional<Date>& date) { return date ? Json(device::isoTime(*date)) : Json(nullptr); }

Json jsonOf(const Value& value) {
  switch (value.kind()) {
    case Value::Kind::kNone:
      return nullptr;
    case Value::Kind::kBool:
      return value.boolValue();
    case Value::Kind::kInteger:
      return value.integerValue();
    case Value::Kind::kReal:
      return value.doubleValue();
    case Value::Kind::kDate:
      return jsonOf(std::optional(*value.asDate()));
    case Value::Kind::kString:
      return value.asString()->str();
    case Value::Kind::kArray: {
      Json array = Json::array();
      for (const Value& item : *value.asArray()) array.push_back(jsonOf(item));
      return array;
    }
    case Value::Kind::kRecord: {
      Json object = Json::object();
      const Record& record = *value.asRecord();
      for (std::size_t i = 0; i < record.size(); ++i) object[std::string(record.keyAt(i))] = jsonOf(record.valueAt(i));
      return object;
    }
    case Value::Kind::kObject:
      break;
  }
  return value.description();
}

bool JsonArrayWriter::append(const Json& element) {
  constexpr int kOneLine = -1;
  out_ << (isEmpty_ ? "[\n" : ",\n") << element.dump(kOneLine, ' ', false, Json::error_handler_t::replace);
  isEmpty_ = false;
  return static_cast<bool>(out_);
}

void JsonArrayWriter::finish() { out_ << (isEmpty_ ? "[]\n" : "\n]\n"); }

}  // namespace chatsum::cli
