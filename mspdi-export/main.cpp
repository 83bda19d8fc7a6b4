#include <string>

#include "Conform/Copy.h"
#include "Conform/Corrections.h"
#include "KVMSPCommon/MSPExportMapper/MSPEExporterInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h"
#include "Platform/System/AtomicFile.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Log.h"
#include "Platform/System/Process.h"

int main(int argc, char* argv[]) {
  platform::reportWriteErrors();
  if (argc != 3) return 2;
  platform::setLogSink([](std::string_view) {});
  const std::string bundle = platform::absolutePath(argv[1]);
  const std::string name = platform::deletePathExtension(platform::lastPathComponent(bundle));
  const MSPEXMLExporter exporter({{kInfoMSPDIProjectName, name}});
  MSPEXMLExporter::Mapped mapped = exporter.map(bundle);
  if (mapped.context->mspdiXmlDoc() == nullptr) return 1;
  std::string bytes;
  mapped.context->mspdiXmlDoc()->serialize([&bytes](std::string_view piece) { bytes += piece; });
  const conform::Plan plan(*mapped.contents.plan, *mapped.contents.tableOfContents);
  conform::Copy copy(std::move(bytes), &plan, {name, "", false});
  conform::correct(copy);
  platform::AtomicFile file(argv[2]);
  copy.serialize([&file](std::string_view piece) { file.append(piece); });
  return file.commit(argv[2]) == platform::AtomicFile::Outcome::kWritten ? 0 : 1;
}
