#pragma once

#include <optional>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"

/// Writes a rich-text note as a `Notes` element of plain text.
class MSPENoteMapper final : public MSPEObjectMapperBase {
 public:
  using MSPEObjectMapperBase::MSPEObjectMapperBase;
  /// The literal texts (`lit`) of the runs of each paragraph, with a line feed after every paragraph, also the last.
  /// Line breaks stay line breaks.
  /// @param kvdxNote the source `note`. @return none when it has no `text`.
  [[nodiscard]] std::optional<xml::Element> newNotesFromKVDXNote(xml::Node kvdxNote) const;
  /// Appends the notes made of the object's `note`, if any.
  void appendNotes(xml::OutputNode to, xml::Node kvdxObject) const;
};
