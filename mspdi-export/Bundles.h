#pragma once

#include <optional>
#include <string>
#include <vector>

/// A bundle that a command is to export.
struct Bundle {
  std::string path;       ///< as it was given, or found below what was given
  bool isPacked = false;  ///< a zip archive that holds the bundle
};

/// An argument that leads to no bundle.
struct NoBundle {
  std::string argument;
  std::string reason;  ///< a sentence for people that names the argument
};

/// What the arguments of a command lead to.
struct FoundBundles {
  std::vector<Bundle> bundles;     ///< in the order of the arguments; those below a folder by name
  std::vector<NoBundle> problems;  ///< in the order of the arguments
};

/// A `.kvdx` folder is a bundle; any other folder stands for all bundles below it. A `.zip` file and a file that is
/// named like a bundle hold a packed one. Links below a folder are not followed.
[[nodiscard]] FoundBundles findBundles(const std::vector<std::string>& arguments);

/// The file's name without what says that it is a bundle: "Plan" of "/plans/Plan.kvdx.zip".
[[nodiscard]] std::string baseNameOf(const Bundle& bundle);

/// A packed bundle, unpacked into a private folder.
class UnpackedBundle {
 public:
  /// Unpacks; problem() says whether that went well.
  /// @param folder an empty folder, whose owner removes it; its path is empty when it could not be made.
  UnpackedBundle(const Bundle& bundle, const std::string& folder);

  /// Path of the bundle's folder.
  [[nodiscard]] const std::string& path() const { return path_; }
  /// Why there is no bundle; none when there is one.
  [[nodiscard]] const std::optional<std::string>& problem() const { return problem_; }

 private:
  std::string path_;
  std::optional<std::string> problem_;
};
