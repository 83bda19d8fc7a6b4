#include "MSPDIExport/MSPDIExport.h"
#include "Platform/Process.h"

int main(int argc, char *argv[]) {
  platform::reportWriteErrors();
  return MSPDIExport({argv, argv + argc}).run();
}
