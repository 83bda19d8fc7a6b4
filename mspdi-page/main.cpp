#include "Platform/System/Process.h"
#include "mspdi-page/PageCommand.h"

int main(int argc, char* argv[]) {
  platform::reportWriteErrors();
  return runPageCommand(argc, argv);
}
