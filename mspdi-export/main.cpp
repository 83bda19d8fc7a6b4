#include "Platform/System/Process.h"
#include "mspdi-export/ExportCommand.h"

int main(int argc, char* argv[]) {
  platform::keepFreedMemory();
  platform::reportWriteErrors();
  return ExportCommand(argc, argv).run();
}
