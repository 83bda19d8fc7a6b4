// Exports one bundle: embedding BUNDLE.kvdx OUTPUT.xml
// Numbering belongs to the process, so a process exports one bundle. What happens is logged on standard error.
#include <KVMSPCommon/MSPExportMapper/MSPEExporterInfo.h>
#include <KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h>

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  MSPEXMLExporter exporter(MSPEInfo{{kInfoMSPDIProjectName, "Embedded plan"}});
  const auto bundle = platform::URL::fileURLWithPath(argv[1], true);
  const auto output = platform::URL::fileURLWithPath(argv[2], false);
  return exporter.exportKVDXBundle(bundle, output) ? 0 : 1;
}
