#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Fuzz/Check.h"
#include "KVMSPCommon/MSPExportMapper/MSPEExporterInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/Base/Budget.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLTree.h"

/// Separates the documents of an input: plan, table of contents, baselines. XML does not allow this character.
inline constexpr char kDocumentSeparator = '\x1E';

/// Reads a document as the exporter does.
inline std::shared_ptr<xml::Document> fuzzDocument(std::string_view bytes) {
  return xml::Document::read(std::string(bytes)).document;
}

/// The text with all empty elements written in the same way.
inline std::string withShortEmptyElements(std::string text) {
  for (std::size_t at = text.find("></"); at != std::string::npos; at = text.find("></", at)) {
    text.replace(at, text.find('>', at + 1) + 1 - at, " />");
  }
  return text;
}

/// Runs a whole export in memory, as in a new process. Checks that it fails only by a platform::Exception, and that the
/// output, up to 8 MB, is UTF-8, has no character that XML forbids, and is the same when it is read back.
/// @return the output; "" when there is none, or one that is too large to check.
inline std::string fuzzExport(std::string_view input) {
  const platform::Budget budget;
  std::vector<std::shared_ptr<xml::Document>> documents;
  for (std::size_t at = 0; at <= input.size();) {
    const std::size_t end = std::min(input.find(kDocumentSeparator, at), input.size());
    documents.push_back(fuzzDocument(input.substr(at, end - at)));
    if (!documents.back()) return "";  // here, the exporter would end with an error
    at = end + 1;
  }
  if (documents.size() < 2) documents.push_back(fuzzDocument("<table-of-contents/>"));

  MSPEMapper::resetCountersForTesting();
  const MSPEInfo info = {{kInfoMSPDIProjectName, "Plan"}};
  std::string output;
  try {
    MSPEMapper mapper(documents[0], documents[1], {documents.begin() + 2, documents.end()}, nullptr, info);
    mapper.map();
    if (mapper.mspdiXmlDoc() == nullptr) return "";
    mapper.mspdiXmlDoc()->serialize([&output](std::string_view piece) { output += piece; });
  } catch (const platform::Exception&) {
    return "";
  }

  constexpr std::size_t kMostChecked = 8'000'000;
  if (output.size() > kMostChecked) return "";  // with sanitizers, the checks would take longer than the export
  check(platform::isUTF8(output), "the output is UTF-8");
  for (const char c : output) check(static_cast<unsigned char>(c) >= ' ' || c == '\n' || c == '\t', "no controls");
  const auto document = xml::Document::parse(output);
  check(document != nullptr, "the output can be parsed");
  std::string again;
  document->serialize([&again](std::string_view piece) { again += piece; });
  check(withShortEmptyElements(again) == withShortEmptyElements(output), "the output reads back as it was written");
  return output;
}
