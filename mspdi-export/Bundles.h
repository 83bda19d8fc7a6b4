#pragma once

#include <optional>
#include <string>
#include <vector>

/// A bundle to export.
struct Bundle {
  std::string path;       ///< the argument itself, or the bundle's path below that folder
  bool isPacked = false;  ///< a zip archive that contains the bundle
};

/// An argument, or a path below one, for which there is no bundle.
struct NoBundle {
  std::string path;
  std::string reason;  ///< a sentence for people that names the path
};

/// The bundles that a command's arguments stand for.
struct FoundBundles {
  std::vector<Bundle> bundles;       ///< in the order of the arguments; those below a folder by name
  std::vector<NoBundle> problems;    ///< in the order of the arguments
  std::vector<NoBundle> passedOver;  ///< below a folder, what is named like a bundle and is none
};

/// A `.kvdx` folder is a bundle; any other folder stands for all bundles below it. A `.zip` file, and a file that is
/// named like a bundle, is taken for a packed one. Links below a folder are not followed.
[[nodiscard]] FoundBundles findBundles(const std::vector<std::string>& arguments);

/// The bundle's name without the extensions: "Plan" for "/plans/Plan.kvdx.zip".
[[nodiscard]] std::string baseNameOf(const Bundle& bundle);

/// A packed bundle, unpacked into a private folder.
class UnpackedBundle {
 public:
  /// Unpacks the bundle; problem() says whether that succeeded.
  /// @param folder path of an empty folder, which the caller removes; empty when it could not be made.
  UnpackedBundle(const Bundle& bundle, const std::string& folder);

  /// Path of the bundle's folder.
  [[nodiscard]] const std::string& path() const { return path_; }
  /// Why unpacking failed; none when it succeeded.
  [[nodiscard]] const std::optional<std::string>& problem() const { return problem_; }
  /// Whether a name in the archive is not in UTF-8, so that a document may have got another name.
  [[nodiscard]] bool guessesNames() const { return guessesNames_; }

 private:
  std::string path_;
  std::optional<std::string> problem_;
  bool guessesNames_ = false;
};
