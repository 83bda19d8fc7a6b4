#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEBaseline.h"
#include "KVMSPCommon/MSPExportMapper/MSPEIdMapper.h"
#include "Platform/System/URL.h"
#include "Platform/XML/XMLOutput.h"
#include "Platform/XML/XMLTree.h"

class MSPECalendarMapper;
class MSPEProjectMapper;

/// Information from the caller of an export, by key (MSPEExporterInfo.h).
using MSPEInfo = std::map<std::string, std::string>;

/// The context of one export: the source documents, the output document being built, and the services that the mappers
/// share. Made for one bundle and used once. It also has the four numbering counters, which belong to the process and
/// continue from bundle to bundle.
class MSPEMapper {
 public:
  /// @param kvdxXmlDoc the plan; without one map() makes no document.
  /// @param baselineXMLDocArray the scenarios compared with it; a baseline's position is its number.
  /// @param mspdiTemplateXmlDoc never read.
  /// @param info must outlive the context.
  /// @throws InvariantFailure when there are more than a hundred baselines.
  MSPEMapper(std::shared_ptr<xml::Document> kvdxXmlDoc, std::shared_ptr<xml::Document> kvdxTOCXmlDoc,
             const std::vector<std::shared_ptr<xml::Document>>& baselineXMLDocArray,
             std::shared_ptr<xml::Document> mspdiTemplateXmlDoc, const MSPEInfo& info);
  ~MSPEMapper();

  MSPEMapper(const MSPEMapper&) = delete;
  MSPEMapper& operator=(const MSPEMapper&) = delete;

  /// The check of the constructor, for calling before the baselines are read: reading thousands would take minutes.
  /// @throws InvariantFailure when there are more than a hundred baselines.
  static void requireFewBaselines(std::size_t count);

  /// Builds the output document: the `Project` element, with the exporter's comment as its last child. Makes no
  /// document when the plan's root is not `scenario`.
  /// @throws platform::Exception what the mappers below raise.
  void map();

  /// The kind of output; 1, which means MSPDI (spelled so on purpose).
  [[nodiscard]] std::int32_t fiterType() const { return fiterType_; }
  [[nodiscard]] const std::shared_ptr<xml::Document>& kvdxXmlDoc() const { return kvdxXmlDoc_; }
  [[nodiscard]] const std::shared_ptr<xml::Document>& kvdxTOCXmlDoc() const { return kvdxTOCXmlDoc_; }
  /// Lets map() write the document while it grows, see OutputDocument::writeAhead(); mspdiXmlDoc() then has the rest.
  /// @param sink must outlive the context.
  void setSink(const xml::Sink& sink) { sink_ = &sink; }
  /// Called before the tasks are mapped. They are the largest part of the project and are mapped last, so nothing in
  /// front of them changes any more and it can be written ahead.
  void beginTasks(xml::Section& project, xml::Section& tasks) {
    if (sink_ != nullptr) mspdiXmlDoc_.writeAhead(project, tasks, *sink_);
  }
  /// The finished output document; null before map(), and when map() made none.
  [[nodiscard]] const xml::OutputDocument* mspdiXmlDoc() const { return finished_ ? &mspdiXmlDoc_ : nullptr; }
  [[nodiscard]] const std::vector<MSPEBaseline>& kvdxBaselines() const { return kvdxBaselines_; }
  /// Null except while map() runs.
  [[nodiscard]] MSPEProjectMapper* projectMapper() const { return projectMapper_.get(); }
  [[nodiscard]] MSPECalendarMapper& calendarMapper() const { return *calendarMapper_; }

  /// The output `Project` element, none before it exists; other mappers add to it while it is being built.
  [[nodiscard]] xml::Section* mspdiProject() const { return mspdiProject_; }
  void setMspdiProject(xml::Section* project) { mspdiProject_ = project; }
  /// None until the project mapper has made it from the scenario's top objects.
  [[nodiscard]] const std::optional<MSPEIdMapper>& idMapper() const { return idMapper_; }
  void setIdMapper(MSPEIdMapper idMapper) { idMapper_ = std::move(idMapper); }

  /// A new element of the output document, not yet part of it.
  [[nodiscard]] xml::Element newElement(std::string_view name) const { return mspdiXmlDoc_.newElement(name); }

  /// For code that makes many elements while older ones are still being built (see ElementMemory::Scope).
  [[nodiscard]] xml::ElementMemory::Scope elementScope() const { return mspdiXmlDoc_.scope(); }

  /// The next number of its kind; the first of the process is 0 for tasks and resources, 1 for the other two.
  static std::int64_t nextTaskID();
  static std::int64_t nextResourceID();
  static std::int64_t nextAssignmentUID();
  static std::int64_t nextCalendarUID();
  /// Resets the counters to their values in a new process. For tests.
  static void resetCountersForTesting();

 private:
  static void initialize();

  std::int32_t fiterType_ = 1;
  std::shared_ptr<xml::Document> kvdxXmlDoc_;
  std::shared_ptr<xml::Document> kvdxTOCXmlDoc_;
  std::shared_ptr<xml::Document> mspdiTemplateXmlDoc_;
  /// Exists from the start, since elements are in its memory, but is only given out when it is finished. Mutable,
  /// because making an element changes nothing that a reader of the context can see.
  mutable xml::OutputDocument mspdiXmlDoc_;
  bool finished_ = false;
  const xml::Sink* sink_ = nullptr;
  xml::Section* mspdiProject_ = nullptr;
  const MSPEInfo& info_;
  std::vector<MSPEBaseline> kvdxBaselines_;
  std::optional<platform::URL> workingFolderUrl_;  ///< for dumps; never set by this program
  std::optional<MSPEIdMapper> idMapper_;
  std::unique_ptr<MSPEProjectMapper> projectMapper_;
  std::unique_ptr<MSPECalendarMapper> calendarMapper_;
};

/// Base of the mappers that write one kind of object: holds the context, which must outlive it.
class MSPEObjectMapperBase {
 public:
  explicit MSPEObjectMapperBase(MSPEMapper& mapper) : mapper_(mapper) {}

 protected:
  ~MSPEObjectMapperBase() = default;
  [[nodiscard]] MSPEMapper& mapper() const { return mapper_; }

 private:
  MSPEMapper& mapper_;
};
