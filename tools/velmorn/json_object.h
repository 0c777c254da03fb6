// Strict reading of JSON objects.
#ifndef VELMORN64_TOOLS_JSON_OBJECT_H
#define VELMORN64_TOOLS_JSON_OBJECT_H

#include <cstddef>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace velmorn::tool {

// Parses a JSON text. Throws ToolError with the line for a syntax error, and for a key that an
// object has twice.
nlohmann::json parseJson(const std::string& text);

// One object whose keys are all known. The getters throw ToolError that names the place and the key
// for a value of another kind; those without a default also for a key that is not there.
class JsonObject {
 public:
  // `place` opens every message and may be empty; `value` has to outlive the object.
  JsonObject(const nlohmann::json& value, std::string place, const std::vector<std::string>& keys);

  bool has(const std::string& key) const;
  const nlohmann::json& at(const std::string& key) const;
  std::string text(const std::string& key) const; // not empty, without control characters
  double number(const std::string& key) const;
  std::vector<double> numbers(const std::string& key, std::size_t count) const; // a list
  int wholeNumber(const std::string& key, int defaultValue) const;
  bool flag(const std::string& key, bool defaultValue) const;

  // A text or a list of texts, at least one.
  std::vector<std::string> texts(const std::string& key) const;

  [[noreturn]] void fail(const std::string& problem) const;

 private:
  std::string textFrom(const nlohmann::json& value, const std::string& key) const;

  const nlohmann::json& value_;
  std::string place_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_JSON_OBJECT_H
