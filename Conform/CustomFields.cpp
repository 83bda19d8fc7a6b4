#include "Conform/CustomFields.h"

#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/Facts.h"
#include "Conform/Failure.h"
#include "Platform/Base/IdHash.h"
#include "Platform/Text/Texts.h"

namespace conform {
namespace {

/// The custom fields of tasks, or those of resources.
class Fields {
 public:
  Fields(Copy& copy, const char* kind, const std::vector<Item>& holders, const TextFieldNumbers& numbers)
      : copy_(copy), kind_(kind), holders_(holders), numbers_(numbers) {}

  void addDefinition(pugi::xml_node definition) { definitions_.push_back(definition); }
  [[nodiscard]] const std::vector<pugi::xml_node>& definitions() const { return definitions_; }

  void correct() {
    readDefinitions();
    for (std::size_t holder = 0; holder < holders_.size(); ++holder) readValues(holder);
    checkThatAllWereUsed();
    if (isRight()) return;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (i == 0 || values_[i].holder != values_[i - 1].holder) noteNamesFrom(i);
      point(values_[i]);
    }
    for (Field& field : fields_) useIfDefined(field);
    writeDefinitions();
    report();
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static constexpr std::string_view kPlaceName = "Text";

  /// A field of the corrected file.
  struct Field {
    std::string name;
    pugi::xml_node definition;    ///< the first definition with the name; empty for a name made up here
    std::size_t place = 0;        ///< 1 is Text1; above 30 the field is left out; 0 until the field is used
    std::size_t namedBy = kNone;  ///< the last object that has the name
    std::size_t usedBy = kNone;   ///< the last object with a value of it
    std::size_t lastNumber = 1;   ///< the last number tried for "Name (2)" in that object
  };
  /// What one field number stands for in the file.
  struct Number {
    std::vector<Field*> fields;  ///< one for each definition, in their order
    std::size_t next = 0;        ///< the definition of the next object
    std::size_t holder = kNone;  ///< the last object with a value
  };
  struct Value {
    pugi::xml_node element;
    std::size_t holder;
    Field* field;
  };

  Field& fieldOf(const std::string& name) {
    const auto [position, isNew] = fieldsByName_.try_emplace(name, nullptr);
    if (isNew) {
      position->second = &fields_.emplace_back();
      position->second->name = name;
    }
    return *position->second;
  }

  void readDefinitions() {
    for (const pugi::xml_node definition : definitions_) {
      Field& field = fieldOf(std::string(textOf(definition, "Alias")));
      hasDoubledName_ = hasDoubledName_ || field.definition;
      if (!field.definition) field.definition = definition;
      const std::string number(textOf(definition, "FieldID"));
      byNumber_[number].fields.push_back(&field);
      hasWrongNumber_ = hasWrongNumber_ || !isNumberOf(number, textOf(definition, "FieldName"));
    }
  }

  /// Whether a field of this name may have the number. Always true for fields other than texts, about which nothing is
  /// known here.
  [[nodiscard]] bool isNumberOf(std::string_view number, std::string_view fieldName) const {
    if (!fieldName.starts_with(kPlaceName)) return true;
    const auto place = wholeNumber(fieldName.substr(kPlaceName.size()));
    if (!place || *place < 1 || *place > static_cast<std::int64_t>(kTextFields)) return false;
    return wholeNumber(number) == numbers_[static_cast<std::size_t>(*place) - 1];
  }

  void readValues(std::size_t holder) {
    for (const pugi::xml_node value : holders_[holder].element.children("ExtendedAttribute")) {
      const std::string_view text = textOf(value, "FieldID");
      const auto found = byNumber_.find(std::string(text));
      if (found == byNumber_.end()) {
        undefined_.emplace(text);
      } else {
        values_.push_back({value, holder, fieldOfValue(found->second, found->first, holder)});
      }
    }
  }

  Field* fieldOfValue(Number& number, const std::string& text, std::size_t holder) {
    hasDoubledValue_ = hasDoubledValue_ || number.holder == holder;
    if (number.fields.size() == 1) {
      number.holder = holder;
      return number.fields.front();
    }
    if (number.holder != holder) {
      number.holder = holder;
      if (++number.next > number.fields.size()) failToFit(text, "more");
    }
    return number.fields[number.next - 1];
  }

  void checkThatAllWereUsed() const {
    for (const auto& [text, number] : byNumber_) {
      if (number.fields.size() > 1 && number.next != number.fields.size()) failToFit(text, std::to_string(number.next));
    }
  }

  [[noreturn]] void failToFit(const std::string& text, const std::string& holders) const {
    fail(
        fmt::format("custom field {} is defined {} times but {} tasks and resources have it: no telling which is which",
                    text, byNumber_.at(text).fields.size(), holders));
  }

  /// Whether nothing needs to change, as in a file that was already corrected.
  [[nodiscard]] bool isRight() const {
    return !hasWrongNumber_ && !hasDoubledName_ && !hasDoubledValue_ && byNumber_.size() == definitions_.size();
  }

  /// Notes the names that one object has, so that no name made up for it is one of these.
  void noteNamesFrom(std::size_t first) {
    for (std::size_t i = first; i < values_.size() && values_[i].holder == values_[first].holder; ++i) {
      values_[i].field->namedBy = values_[first].holder;
    }
  }

  void point(const Value& value) {
    Field& field = value.field->usedBy == value.holder ? anotherField(*value.field, value.holder) : *value.field;
    field.usedBy = value.holder;
    field.lastNumber = 1;
    use(field);
    if (field.place > kTextFields) {
      value.element.parent().remove_child(value.element);
      ++leftOutValues_;
    } else {
      setText(value.element.child("FieldID"), std::to_string(numbers_[field.place - 1]));
    }
  }

  /// The field for another value of a name that the object already has. Long names are shortened, since each of these
  /// fields has a copy.
  Field& anotherField(Field& first, std::size_t holder) {
    const std::string name = platform::shortened(first.name);
    for (;;) {
      Field& field = fieldOf(fmt::format("{} ({})", name, ++first.lastNumber));
      if (field.namedBy == holder || field.usedBy == holder) continue;
      copy_.report.warn(
          fmt::format("field \"{}\" of {}s holds further values of the key \"{}\"", field.name, kind_, name));
      return field;
    }
  }

  /// Gives the field the next place when it is first used. Skips the numbers of values without a definition, which keep
  /// them.
  void use(Field& field) {
    if (field.place != 0) return;
    while (places_ < kTextFields && undefined_.contains(std::to_string(numbers_[places_]))) ++places_;
    field.place = ++places_;
    if (field.place > kTextFields) ++leftOutFields_;
  }

  void useIfDefined(Field& field) {
    if (field.definition) use(field);
  }

  void writeDefinitions() {
    std::vector<Field*> kept;
    for (Field& field : fields_) {
      if (field.place != 0 && field.place <= kTextFields) kept.push_back(&field);
    }
    std::sort(kept.begin(), kept.end(), [](const Field* a, const Field* b) { return a->place < b->place; });
    std::vector<pugi::xml_node> written;
    for (Field* field : kept) written.push_back(definitionOf(*field));
    const std::unordered_set<pugi::xml_node_struct*> isWritten = identitiesOf(written);
    for (pugi::xml_node definition : definitions_) {
      if (!isWritten.contains(definition.internal_object())) definition.parent().remove_child(definition);
    }
    definitions_ = std::move(written);
  }

  static std::unordered_set<pugi::xml_node_struct*> identitiesOf(const std::vector<pugi::xml_node>& nodes) {
    std::unordered_set<pugi::xml_node_struct*> identities;
    for (const pugi::xml_node node : nodes) identities.insert(node.internal_object());
    return identities;
  }

  pugi::xml_node definitionOf(Field& field) {
    pugi::xml_node definition = field.definition;
    if (!definition) {
      definition = definitions_.front().parent().append_child("ExtendedAttribute");
      setText(definition, {}, "Alias", field.name);
      setText(definition, {}, "Guid", "00000000-0000-0000-0000-000000000000");
    }
    setText(definition, definition.child("FieldID"), "FieldID", std::to_string(numbers_[field.place - 1]));
    setText(definition, definition.child("FieldName"), "FieldName", fmt::format("{}{}", kPlaceName, field.place));
    return definition;
  }

  void report() {
    copy_.report.count(fmt::format("values of custom fields of {}s", kind_), values_.size());
    if (leftOutFields_ == 0) return;
    copy_.report.warn(
        fmt::format("{} fields past Text30 left out: {} fields with {} values", kind_, leftOutFields_, leftOutValues_));
  }

  Copy& copy_;
  const char* kind_;
  const std::vector<Item>& holders_;
  const TextFieldNumbers& numbers_;
  std::vector<pugi::xml_node> definitions_;  ///< in the order of the file
  std::deque<Field> fields_;                 ///< in the order in which their names first occur
  std::unordered_map<std::string, Field*, platform::IdHash> fieldsByName_;
  std::unordered_map<std::string, Number, platform::IdHash> byNumber_;
  std::unordered_set<std::string, platform::IdHash> undefined_;  ///< numbers of values without a definition
  std::vector<Value> values_;                                    ///< object by object
  bool hasDoubledName_ = false;
  bool hasWrongNumber_ = false;
  bool hasDoubledValue_ = false;
  std::size_t places_ = 0;
  std::size_t leftOutFields_ = 0;
  std::size_t leftOutValues_ = 0;
};

bool isOfResources(pugi::xml_node definition) {
  const auto number = wholeNumber(textOf(definition, "FieldID"));
  return number && *number >= kFirstResourceField;
}

}  // namespace

void correctCustomFields(Copy& copy) {
  const pugi::xml_node container = copy.project.child("ExtendedAttributes");
  Fields ofTasks(copy, "task", copy.tasks, taskTextFields());
  Fields ofResources(copy, "resource", copy.resources, resourceTextFields());
  for (const pugi::xml_node definition : container.children("ExtendedAttribute")) {
    (isOfResources(definition) ? ofResources : ofTasks).addDefinition(definition);
  }
  std::vector<pugi::xml_node> inOrder;
  for (Fields* fields : {&ofResources, &ofTasks}) {
    if (fields->definitions().empty()) continue;
    fields->correct();
    inOrder.insert(inOrder.end(), fields->definitions().begin(), fields->definitions().end());
  }
  putInOrder(container, inOrder);
}

}  // namespace conform
