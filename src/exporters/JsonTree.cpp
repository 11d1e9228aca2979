#include "exporters/JsonTree.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_set>
#include <vector>

namespace poweranalysis {

namespace {

using Json = nlohmann::ordered_json;

std::string LineAndColumn(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, std::min(position, text.size()));
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const std::size_t lineEnd = before.rfind('\n');
  const std::size_t column =
      before.size() - (lineEnd == std::string_view::npos ? 0 : lineEnd + 1) + 1;
  return "line " + std::to_string(lines + 1) + ", column " + std::to_string(column);
}

// What the library finds wrong, in our wording.
std::string SyntaxReason(const std::string& what) {
  struct Row {
    const char* part;
    const char* reason;
  };
  constexpr Row kRows[] = {{"UTF-8", "the text is no UTF-8"},
                           {"number overflow", "the number is too large"}};
  for (const Row& row : kRows) {
    if (what.find(row.part) != std::string::npos) {
      return row.reason;
    }
  }
  return "the text is no JSON";
}

// Takes what the library's reader finds, in order, and builds the tree. The members of an object
// are appended, for to look each up in an ordered object would take time that grows with its
// square; a set of the names of each open object finds those that stand twice.
class Builder {
 public:
  Builder(std::string_view text, const JsonLimits& limits, Json& root)
      : text_(text), limits_(limits), root_(root) {}

  const std::string& error() const { return error_; }

  // --- The interface that the library's reader asks for, in its names.
  // NOLINTBEGIN(readability-identifier-naming)
  bool null() { return Add(Json()) != nullptr; }
  bool boolean(bool value) { return Add(Json(value)) != nullptr; }
  // Only what is written with a minus sign comes as a signed integer.
  bool number_integer(Json::number_integer_t value) {
    return Add(value == 0 ? Json(-0.0) : Json(value)) != nullptr;
  }
  bool number_unsigned(Json::number_unsigned_t value) { return Add(Json(value)) != nullptr; }
  bool number_float(Json::number_float_t value, const std::string& /*text*/) {
    return Add(Json(value)) != nullptr;
  }
  bool string(std::string& value) { return Add(Json(std::move(value))) != nullptr; }
  bool binary(Json::binary_t& /*value*/) { return Fail("the text is no JSON"); }
  bool start_object(std::size_t /*size*/) { return Open(Json::object()); }
  bool start_array(std::size_t /*size*/) { return Open(Json::array()); }
  bool end_object() { return Close(); }
  bool end_array() { return Close(); }

  bool key(std::string& name) {
    Level& level = open_.back();
    if (!level.names.insert(name).second) {
      return Fail("the member \"" + name + "\" stands twice");
    }
    if (level.names.size() > limits_.members) {
      return Fail("there are more than " + std::to_string(limits_.members) + " members");
    }
    level.name = std::move(name);
    return true;
  }

  bool parse_error(std::size_t position,
                   const std::string& /*token*/,
                   const nlohmann::detail::exception& exception) {
    // The position is after the last byte that was read, which may be the end itself.
    const bool atEnd = position > text_.size();
    error_ = LineAndColumn(text_, position == 0 ? 0 : position - 1) + ": " +
             (atEnd ? "the text breaks off" : SyntaxReason(exception.what()));
    return false;
  }
  // NOLINTEND(readability-identifier-naming)

 private:
  struct Level {
    Json* container;
    std::unordered_set<std::string> names;
    std::string name;  // of the member that is being read
  };

  // The value in its place, or null with the error set.
  Json* Add(Json value) {
    if (++count_ > limits_.values) {
      Fail("there are more than " + std::to_string(limits_.values) + " values");
      return nullptr;
    }
    if (open_.empty()) {
      root_ = std::move(value);
      return &root_;
    }
    Level& level = open_.back();
    if (level.container->is_array()) {
      auto& array = level.container->get_ref<Json::array_t&>();
      array.push_back(std::move(value));
      return &array.back();
    }
    auto& members = level.container->get_ref<Json::object_t&>();
    members.emplace_back(level.name, std::move(value));
    return &members.back().second;
  }

  bool Open(Json container) {
    Json* const added = Add(std::move(container));
    if (added == nullptr) {
      return false;
    }
    if (open_.size() == limits_.depth) {
      return Fail("more than " + std::to_string(limits_.depth) +
                  " arrays and objects stand in each other");
    }
    open_.push_back({added, {}, {}});
    return true;
  }

  bool Close() {
    open_.pop_back();
    return true;
  }

  bool Fail(const std::string& reason) {
    error_ = Place() + ": " + reason;
    return false;
  }

  // The way to the innermost open array or object.
  std::string Place() const {
    std::string place;
    for (std::size_t i = 0; i + 1 < open_.size(); ++i) {
      const Level& level = open_[i];
      if (level.container->is_array()) {
        place.append("[").append(std::to_string(level.container->size() - 1)).append("]");
      } else {
        place.append(place.empty() ? "" : ".").append(level.name);
      }
    }
    return place.empty() ? "the file" : place;
  }

  std::string_view text_;
  const JsonLimits& limits_;
  Json& root_;
  std::vector<Level> open_;
  std::size_t count_ = 0;
  std::string error_;
};

}  // namespace

std::string ReadJsonTree(std::string_view text, const JsonLimits& limits, Json& tree) {
  Builder builder(text, limits, tree);
  const bool read = Json::sax_parse(text.begin(), text.end(), &builder);
  return read ? std::string() : builder.error();
}

}  // namespace poweranalysis
