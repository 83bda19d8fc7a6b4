#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace conform {

/// What the corrections did: one sentence for each thing that was lost or that the reader will find changed, which the
/// commands print, and counts of all changes, which only tests read.
class Report {
 public:
  /// Adds to the count of what was changed, for example "links without a lag".
  void count(const std::string& what, std::size_t number = 1);
  /// Adds one sentence for people, without a full stop: "resource 5: \"A,B\" is now \"A;B\"". A repeated sentence is
  /// kept only once.
  void warn(std::string sentence);

  [[nodiscard]] const std::map<std::string, std::size_t>& counts() const { return counts_; }
  /// The sentences in the order in which they were added.
  [[nodiscard]] const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  std::map<std::string, std::size_t> counts_;
  std::vector<std::string> warnings_;
  std::set<std::string> said_;
};

}  // namespace conform
