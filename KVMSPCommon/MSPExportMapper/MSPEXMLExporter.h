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
  /// What becomes of a destination that is taken.
  enum class WhenTaken {
    kNumber,  ///< it stays, and the new file's name is numbered: "-1", "-2", ...
    kReplace  ///< the new file takes its place once it is whole; a folder with something in it stays, as for kNumber
  };

  explicit MSPEXMLExporter(MSPEInfo info, WhenTaken whenTaken = WhenTaken::kNumber)
      : info_(std::move(info)), whenTaken_(whenTaken) {}

  /// Reads the bundle, maps it and writes the result. Until that is whole, nothing is at its path but what was there
  /// before. Failures are logged.
  /// @param source a bundle's folder; its name must end in ".kvdx", in any case.
  /// @param toURL the file to write; its name must end in ".xml", in any case.
  /// @return whether a document was made and a write was tried. A write that fails is logged, too, but counts.
  bool exportKVDXBundle(const std::optional<platform::URL>& source, const std::optional<platform::URL>& toURL);

  using DocumentPointer = std::shared_ptr<xml::Document>;

  /// What an export reads from a bundle.
  struct Contents {
    DocumentPointer tableOfContents;
    DocumentPointer plan;  ///< none when no scenario is the edited one
    std::vector<DocumentPointer> baselines;
  };
  /// A bundle, exported in memory: what was read, and the context that holds the document.
  struct Mapped {
    Contents contents;
    std::unique_ptr<MSPEMapper> context;
  };

  /// Reads what an export needs of the bundle.
  /// @param bundle path of the bundle's folder.
  /// @throws platform::Exception when something that an export cannot do without is missing or unreadable.
  [[nodiscard]] static Contents readContents(const std::string& bundle);
  /// Maps the contents as exportKVDXBundle() does. The exporter must outlive the result. Its context has no document
  /// when there is nothing to export.
  /// @param sink gets the beginning of a large document while it is made, and must outlive the result; serialize()
  /// passes on the rest. An empty one gets nothing.
  /// @throws platform::Exception what the mappers raise.
  [[nodiscard]] Mapped map(Contents contents, const xml::Sink& sink) const;

 private:
  [[nodiscard]] bool exportBundle(const std::optional<platform::URL>& source,
                                  const std::optional<platform::URL>& destination) const;
  /// Whether what is at the path may be replaced, if it can be.
  [[nodiscard]] bool mayReplace(const platform::NumberedPath& path) const;
  [[nodiscard]] bool isTaken(const platform::NumberedPath& path) const;
  /// Gives the whole file its name.
  void commit(platform::AtomicFile& file, platform::NumberedPath& path) const;

  MSPEInfo info_;
  WhenTaken whenTaken_;
};
