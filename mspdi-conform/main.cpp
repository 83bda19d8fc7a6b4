#include "Platform/System/Process.h"
#include "mspdi-conform/ConformCommand.h"

int main(int argc, char* argv[]) {
  platform::keepFreedMemory();
  platform::reportWriteErrors();
  return ConformCommand({argv + 1, argv + argc}).run();
}
