#include "simulator/scenario_reader.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "simulator/scenario.h"

namespace ctapi {

ScenarioValue::ScenarioValue(const nlohmann::json& value, std::string way,
                             const ScenarioFolder& folder)
    : value_(&value), way_(std::move(way)), folder_(&folder) {}

std::string ScenarioValue::Text() const {
  if (!value_->is_string()) Refuse("expected a text");
  return value_->get<std::string>();
}

bool ScenarioValue::Flag() const {
  if (!value_->is_boolean()) Refuse("expected true or false");
  return value_->get<bool>();
}

std::int64_t ScenarioValue::Number(std::int64_t least, std::int64_t most) const {
  const bool whole = value_->is_number_integer();
  const bool tooLarge = value_->is_number_unsigned() &&
                        value_->get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX);
  const std::int64_t number = whole && !tooLarge ? value_->get<std::int64_t>() : least;
  if (!whole || tooLarge || number < least || number > most) {
    Refuse("expected a whole number from " + std::to_string(least) + " to " + std::to_string(most));
  }
  return number;
}

Bytes ScenarioValue::Hex() const {
  auto bytes = BytesFromHex(Text());
  if (!bytes) Refuse("expected hexadecimal digits, two a byte");
  return *std::move(bytes);
}

ctapi::StatusWord ScenarioValue::StatusWord() const {
  const auto bytes = BytesFromHex(Text());
  if (!bytes || bytes->size() != sw::Length)
    Refuse("expected a status word of four hexadecimal digits");
  return StatusWordOf(*bytes);
}

Bytes ScenarioValue::File() const {
  const std::filesystem::path file = Path();
  auto contents = ReadFile(file);
  if (!contents) Refuse("cannot read the file '" + file.string() + "'");
  return *std::move(contents);
}

std::filesystem::path ScenarioValue::Path() const {
  return folder_->Path / Text();
}

ScenarioObject ScenarioValue::Object() const {
  return ScenarioObject(*this);
}

std::vector<ScenarioValue> ScenarioValue::List() const {
  if (!value_->is_array()) Refuse("expected a list");
  std::vector<ScenarioValue> values;
  for (std::size_t i = 0; i < value_->size(); ++i) {
    values.emplace_back((*value_)[i], way_ + '[' + std::to_string(i) + ']', *folder_);
  }
  return values;
}

void ScenarioValue::Refuse(const std::string& reason) const {
  throw ScenarioError(way_.empty() ? reason : way_ + ": " + reason);
}

ScenarioObject::ScenarioObject(ScenarioValue value) : value_(std::move(value)) {
  if (!value_.value_->is_object()) value_.Refuse("expected an object");
}

std::optional<ScenarioValue> ScenarioObject::Find(std::string_view key) {
  understood_.emplace(key);
  const auto found = value_.value_->find(key);
  if (found == value_.value_->end()) return std::nullopt;
  const std::string way =
      value_.way_.empty() ? std::string(key) : value_.way_ + '.' + std::string(key);
  return ScenarioValue(*found, way, *value_.folder_);
}

ScenarioValue ScenarioObject::Get(std::string_view key) {
  const auto value = Find(key);
  if (!value) value_.Refuse("the key '" + std::string(key) + "' is missing");
  return *value;
}

void ScenarioObject::Finish() const {
  for (const auto& [key, value] : value_.value_->items()) {
    if (!understood_.contains(key)) value_.Refuse("unknown key '" + key + "'");
  }
}

nlohmann::json ParseJsonFile(const std::filesystem::path& file) {
  const auto contents = ReadFile(file);
  if (!contents) throw ScenarioError("cannot read the file");
  try {
    return nlohmann::json::parse(contents->begin(), contents->end());
  } catch (const nlohmann::json::exception& error) {
    // The library's own sentence names line and column; its first word is an internal identifier.
    const std::string sentence = error.what();
    const auto end = sentence.find("] ");
    throw ScenarioError(end == std::string::npos ? sentence : sentence.substr(end + 2));
  }
}

std::optional<Bytes> ReadFile(const std::filesystem::path& file) {
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  Bytes contents{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (stream.bad()) return std::nullopt;
  return contents;
}

}  // namespace ctapi
