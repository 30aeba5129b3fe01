#include "platform/simulated/Change.h"

#include "base/FindIn.h"

namespace simulated {
namespace {

const Value& FieldOf(const Fields* fields, std::string_view name) {
  static const Value none;
  if (fields == nullptr) return none;
  const auto* found = base::FindIn(*fields, [&](const auto& field) { return field.first == name; });
  return found == nullptr ? none : found->second;
}

}  // namespace

const Value& Value::operator[](std::string_view name) const {
  return FieldOf(std::get_if<Fields>(this), name);
}

const std::string& Value::Text() const {
  static const std::string none;
  const auto* text = std::get_if<std::string>(this);
  return text != nullptr ? *text : none;
}

const Value& Change::operator[](std::string_view name) const { return FieldOf(&fields, name); }

Value ToValue(const platform::Variant& variant) {
  if (const auto* flag = std::get_if<platform::RawBool>(&variant)) {
    return *flag == platform::kVariantTrue;
  }
  if (const auto* number = std::get_if<std::int32_t>(&variant)) return *number;
  if (const auto* text = std::get_if<std::string>(&variant)) return *text;
  if (const auto* list = std::get_if<platform::TextArray>(&variant)) return list->items;
  return nullptr;
}

}  // namespace simulated
