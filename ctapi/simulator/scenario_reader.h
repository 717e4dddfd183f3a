#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "protocol/status_word.h"
#include "simulator/bytes.h"

namespace ctapi {

class ScenarioObject;

// Where a scenario's files are.
struct ScenarioFolder {
  std::filesystem::path Path;
};

// One value of a scenario, with the way to it from the root ("ports[2].terminal"). Every reading
// operation throws ScenarioError, with that way, for a value of another type or out of range.
class ScenarioValue {
 public:
  ScenarioValue(const nlohmann::json& value, std::string way, const ScenarioFolder& folder);

  [[nodiscard]] std::string Text() const;
  [[nodiscard]] bool Flag() const;
  [[nodiscard]] std::int64_t Number(std::int64_t least, std::int64_t most) const;
  // The bytes of a text of hexadecimal digits.
  [[nodiscard]] Bytes Hex() const;
  // Two bytes of hexadecimal digits, as in "9000".
  [[nodiscard]] ctapi::StatusWord StatusWord() const;
  // The contents of the file that the text names.
  [[nodiscard]] Bytes File() const;
  // The path that the text names, seen from the scenario's folder.
  [[nodiscard]] std::filesystem::path Path() const;
  [[nodiscard]] ScenarioObject Object() const;
  [[nodiscard]] std::vector<ScenarioValue> List() const;

  // The value that belongs to the text in a table of names.
  template <typename T, std::size_t Size>
  [[nodiscard]] T OneOf(std::string_view what,
                        const std::pair<std::string_view, T> (&names)[Size]) const {
    const std::string text = Text();
    for (const auto& [name, value] : names) {
      if (name == text) return value;
    }
    Refuse("unknown " + std::string(what) + " '" + text + "'");
  }

  [[nodiscard]] bool IsText() const { return value_->is_string(); }
  [[nodiscard]] const std::string& Way() const { return way_; }
  [[nodiscard]] const ScenarioFolder& Folder() const { return *folder_; }

  [[noreturn]] void Refuse(const std::string& reason) const;

 private:
  friend class ScenarioObject;

  const nlohmann::json* value_;
  std::string way_;
  const ScenarioFolder* folder_;
};

// An object of a scenario. Each key that is understood is asked for by name; Finish refuses the
// ones that nobody asked for.
class ScenarioObject {
 public:
  explicit ScenarioObject(ScenarioValue value);

  [[nodiscard]] std::optional<ScenarioValue> Find(std::string_view key);
  [[nodiscard]] ScenarioValue Get(std::string_view key);
  void Finish() const;

  template <typename T, typename Read>
  void Take(std::string_view key, T& target, Read read) {
    if (const auto value = Find(key)) target = read(*value);
  }

  [[noreturn]] void Refuse(const std::string& reason) const { value_.Refuse(reason); }

 private:
  ScenarioValue value_;
  std::set<std::string, std::less<>> understood_;
};

// The JSON text of a file. Throws ScenarioError, whose text does not name the file.
[[nodiscard]] nlohmann::json ParseJsonFile(const std::filesystem::path& file);

// The contents of a file; nothing when it cannot be read.
[[nodiscard]] std::optional<Bytes> ReadFile(const std::filesystem::path& file);

}  // namespace ctapi
