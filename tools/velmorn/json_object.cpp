// Strict reading of JSON objects.
#include "velmorn/json_object.h"

#include <algorithm>
#include <limits>
#include <set>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;

// The parser keeps the last of two equal keys without a word; this notices them.
class RepeatedKeys {
 public:
  bool operator()(int /*depth*/, json::parse_event_t event, const json& parsed) {
    if (event == json::parse_event_t::object_start) seen_.emplace_back();
    if (event == json::parse_event_t::object_end) seen_.pop_back();
    if (event == json::parse_event_t::key) {
      const auto key = parsed.get<std::string>();
      if (!seen_.back().insert(key).second)
        throw ToolError("key " + inQuotes(key) + " given twice");
    }
    return true;
  }

 private:
  std::vector<std::set<std::string>> seen_; // keys of the objects that are open
};

std::string listOf(const std::vector<std::string>& keys) {
  std::string list;
  for (const std::string& key : keys) list += (list.empty() ? "" : ", ") + key;
  return list;
}

// "parse error at line 3, column 5: ..." without the parser's own code in front.
std::string withoutErrorCode(const std::string& message) {
  const std::size_t end = message.find("] ");
  return end == std::string::npos ? message : message.substr(end + 2);
}

} // namespace

json parseJson(const std::string& text) {
  try {
    return json::parse(text, RepeatedKeys());
  } catch (const json::exception& error) {
    throw ToolError("not valid JSON: " + withoutErrorCode(error.what()));
  }
}

JsonObject::JsonObject(const json& value, std::string place, const std::vector<std::string>& keys)
    : value_(value), place_(std::move(place)) {
  if (!value_.is_object()) fail("an object { } is wanted");
  for (const auto& item : value_.items()) {
    if (std::find(keys.begin(), keys.end(), item.key()) == keys.end()) {
      fail("unknown key " + inQuotes(item.key()) + " (known: " + listOf(keys) + ")");
    }
  }
}

bool JsonObject::has(const std::string& key) const { return value_.contains(key); }

const json& JsonObject::at(const std::string& key) const {
  const auto found = value_.find(key);
  if (found == value_.end()) fail("key " + inQuotes(key) + " is missing");
  return *found;
}

std::string JsonObject::text(const std::string& key) const { return textFrom(at(key), key); }

double JsonObject::number(const std::string& key) const {
  if (!at(key).is_number()) fail(inQuotes(key) + " has to be a number");
  return at(key).get<double>();
}

std::vector<double> JsonObject::numbers(const std::string& key, std::size_t count) const {
  const json& value = at(key);
  const bool isList =
      value.is_array() && value.size() == count &&
      std::all_of(value.begin(), value.end(), [](const json& entry) { return entry.is_number(); });
  if (!isList) fail(inQuotes(key) + " has to be a list of " + counted(count, "number"));
  return value.get<std::vector<double>>();
}

int JsonObject::wholeNumber(const std::string& key, int defaultValue) const {
  if (!has(key)) return defaultValue;
  const json& value = at(key);
  constexpr int kMost = std::numeric_limits<int>::max();
  if (!value.is_number_integer() || value.get<double>() > kMost || value.get<double>() < -kMost) {
    fail(inQuotes(key) + " has to be a whole number");
  }
  return value.get<int>();
}

bool JsonObject::flag(const std::string& key, bool defaultValue) const {
  if (!has(key)) return defaultValue;
  if (!at(key).is_boolean()) fail(inQuotes(key) + " has to be true or false");
  return at(key).get<bool>();
}

std::vector<std::string> JsonObject::texts(const std::string& key) const {
  const json& value = at(key);
  if (value.is_string()) return {textFrom(value, key)};
  if (!value.is_array()) fail(inQuotes(key) + " has to be a text or a list of texts");
  std::vector<std::string> found;
  for (const json& entry : value) found.push_back(textFrom(entry, key));
  if (found.empty()) fail(inQuotes(key) + " is an empty list");
  return found;
}

void JsonObject::fail(const std::string& problem) const {
  throw ToolError(place_.empty() ? problem : place_ + ": " + problem);
}

std::string JsonObject::textFrom(const json& value, const std::string& key) const {
  if (!value.is_string()) fail(inQuotes(key) + " has to be a text");
  auto found = value.get<std::string>();
  if (found.empty()) fail(inQuotes(key) + " is empty");
  if (oneLine(found) != found) fail(inQuotes(key) + " holds a control character");
  return found;
}

} // namespace velmorn::tool
