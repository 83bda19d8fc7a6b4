#include "KVMSPCommon/MSPExportMapper/MSPENoteMapper.h"

#include <string>

#include "KVMSPCommon/MSPCExtensions.h"

std::optional<xml::Element> MSPENoteMapper::newNotesFromKVDXNote(xml::Node kvdxNote) const {
  const xml::Node text = singleObjectForXQuery(kvdxNote, "text");
  if (!text) return std::nullopt;
  std::string plain;
  for (const xml::Node paragraph : objectsForXQuery(text, "p")) {
    for (const xml::Node run : objectsForXQuery(paragraph, "run")) {
      plain += stringValueForXQuery(run, "lit").value_or("");
    }
    plain += '\n';
  }
  return elementWithName("Notes", mapper(), plain);
}

void MSPENoteMapper::appendNotes(xml::OutputNode to, xml::Node kvdxObject) const {
  const xml::Node note = singleObjectForXQuery(kvdxObject, "note");
  if (!note) return;
  if (auto notes = newNotesFromKVDXNote(note)) to.append(std::move(*notes));
}
