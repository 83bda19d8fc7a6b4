#pragma once

#include <string_view>
#include <vector>

#include "Platform/XMLTree.h"

namespace xml {

/// One path query, taken apart. The forms:
///   type                                              a child
///   project/title                                     a path of children
///   resource[@id='r1']                                a child with an attribute of that value
///   flattened-schedule-day[@date]                     a child with that attribute
///   //project/currency-format                         anywhere in the document
///   //assignment[@idref='r1' and ../@id='t1']         anywhere, with a test on the parent's attribute
/// Values are taken as they stand between the outermost quotes, so that a quote may be part of one.
class Query {
 public:
  explicit Query(std::string_view text);

  /// Calls visit(node) for each match below the context, in document order.
  template <typename Visit>
  void forEach(Node context, Visit visit) const;

  /// Every match below the context, in document order.
  [[nodiscard]] std::vector<Node> all(Node context) const;
  /// The last match below the context and whether there were several.
  [[nodiscard]] Match last(Node context) const;

 private:
  /// Whether the query asks for children by their name alone.
  [[nodiscard]] bool isPlainName() const { return !anywhere_ && parentPath_.empty() && attribute_.empty(); }
  [[nodiscard]] bool holdsFor(Node node) const;
  [[nodiscard]] bool endsPath(Node node) const;
  /// Whether the query asks for children by an attribute's value, which an index answers.
  [[nodiscard]] bool isLookup() const {
    return !anywhere_ && parentPath_.empty() && hasValue_ && parentAttribute_.empty();
  }

  bool anywhere_ = false;        ///< begins with "//"
  std::string_view parentPath_;  ///< the steps before the last one, "a/b"
  std::string_view name_;        ///< the last step
  std::string_view attribute_;   ///< of the predicate; empty without one
  std::string_view value_;
  bool hasValue_ = false;
  std::string_view parentAttribute_;  ///< of the predicate's second test, on the parent
  std::string_view parentValue_;
};

}  // namespace xml
