#include "MSPDIExport/MSPDIExport.h"
#include "Platform/System/Process.h"

int main(int argc, char *argv[]) {
  platform::keepFreedMemory();
  platform::reportWriteErrors();
  return MSPDIExport({argv, argv + argc}).run();
}
