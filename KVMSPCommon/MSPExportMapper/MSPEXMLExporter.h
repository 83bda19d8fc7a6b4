#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/System/URL.h"
#include "Platform/XML/XMLTree.h"

namespace platform {
class AtomicFile;
class NumberedPath;
}  // namespace platform

/// Turns one document bundle into one MSPDI file. Made for one bundle, used once.
class MSPEXMLExporter {
 public:
  /// What to do when the destination exists.
  enum class WhenTaken {
    kNumber,  ///< it stays, and the new file gets a number: "-1", "-2", ...
    kReplace  ///< the new file replaces it once complete; a folder that is not empty stays, as for kNumber
  };

  explicit MSPEXMLExporter(MSPEInfo info, WhenTaken whenTaken = WhenTaken::kNumber)
      : info_(std::move(info)), whenTaken_(whenTaken) {}

  /// Reads the bundle, maps it and writes the result. The file at the destination does not change until the new one is
  /// complete. Failures are logged.
  /// @param source a bundle's folder; its name must end in ".kvdx", in any case.
  /// @param toURL the file to write; its name must end in ".xml", in any case.
  /// @return whether a document was made and writing it was tried; true also when writing failed, which is logged.
  bool exportKVDXBundle(const std::optional<platform::URL>& source, const std::optional<platform::URL>& toURL);

  using DocumentPointer = std::shared_ptr<xml::Document>;

  /// What an export reads from a bundle.
  struct Contents {
    DocumentPointer tableOfContents;
    DocumentPointer plan;  ///< none when no scenario is the edited one
    std::vector<DocumentPointer> baselines;
  };
  /// A bundle exported in memory: the documents that were read, and the context with the result.
  struct Mapped {
    Contents contents;
    std::unique_ptr<MSPEMapper> context;
  };

  /// Reads what an export needs of the bundle.
  /// @param bundle path of the bundle's folder.
  /// @throws platform::Exception when something that an export needs is missing or unreadable.
  [[nodiscard]] static Contents readContents(const std::string& bundle);
  /// Maps the contents as exportKVDXBundle() does. The exporter must outlive the result. Its context has no document
  /// when there is nothing to export.
  /// @param sink receives the beginning of a large document while it is being built, and must outlive the result;
  /// serialize() passes the rest. An empty one receives nothing.
  /// @throws platform::Exception what the mappers raise.
  [[nodiscard]] Mapped map(Contents contents, const xml::Sink& sink) const;

 private:
  [[nodiscard]] bool exportBundle(const std::optional<platform::URL>& source,
                                  const std::optional<platform::URL>& destination) const;
  /// Whether an existing file at the path may be replaced.
  [[nodiscard]] bool mayReplace(const platform::NumberedPath& path) const;
  [[nodiscard]] bool isTaken(const platform::NumberedPath& path) const;
  /// Gives the complete file its name.
  void commit(platform::AtomicFile& file, platform::NumberedPath& path) const;

  MSPEInfo info_;
  WhenTaken whenTaken_;
};
