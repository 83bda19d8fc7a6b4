#include <fcntl.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "Platform/System/FileReading.h"
#include "Tests/Support.h"

namespace fs = std::filesystem;

namespace {

/// A folder "inside" with a file and links, and a file beside the folder that must not be read.
struct Place {
  ScratchFolder scratch;
  std::string inside = scratch / "inside";

  Place() {
    writeFile(inside + "/folder/file", "inside");
    writeFile(scratch / "secret", "outside");
    fs::create_symlink("folder/file", inside + "/link");
    fs::create_symlink(inside + "/folder", inside + "/absolute");
    fs::create_symlink("../../secret", inside + "/folder/out");
  }
};

}  // namespace

TEST(FileReading, LinksThatStayInside) {
  const Place place;
  for (const char* name :
       {"folder/file", "link", "absolute/file", "folder/../link", "absolute/../link", "../inside/link"}) {
    std::string problem;
    EXPECT_EQ(platform::readFileInside(place.inside, name, &problem), "inside") << name << problem;
  }
}

TEST(FileReading, FilesThatAreSwappedMeanwhile) {
  const Place place;
  std::atomic<bool> isOver = false;
  std::thread swapping([&] {
    const std::string file = place.inside + "/folder/file", out = place.inside + "/folder/out";
    while (!isOver) renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, out.c_str(), RENAME_EXCHANGE);
  });
  int timesRead = 0;
  // The second name has an absolute link, which the kernel's own check refuses. So its path is compared instead.
  for (const char* name : {"folder/file", "absolute/file"}) {
    for (int i = 0; i < 5000; ++i) {
      const auto read = platform::readFileInside(place.inside, name);
      EXPECT_EQ(read.value_or("inside"), "inside");
      if (read) ++timesRead;
    }
  }
  isOver = true;
  swapping.join();
  EXPECT_GT(timesRead, 0);
}

TEST(FileReading, FilesLargerThanTheLimit) {
  const ScratchFolder scratch;
  constexpr std::uint64_t kLimit = 200 * 1024;
  const std::string file = scratch / "file";
  std::string problem;
  writeFile(file, std::string(kLimit, 'a'));
  EXPECT_EQ(platform::readFile(file, kLimit), std::string(kLimit, 'a'));
  EXPECT_EQ(platform::readStream(file, kLimit), std::string(kLimit, 'a'));
  fs::resize_file(file, 0);
  fs::resize_file(file, kLimit);  // the file takes no space on the disk
  EXPECT_EQ(platform::readFile(file, kLimit), std::string(kLimit, '\0'));
  fs::resize_file(file, kLimit + 1);
  EXPECT_EQ(platform::readFile(file, kLimit, &problem), std::nullopt);
  EXPECT_EQ(problem, "Larger than 200 KiB");
  // This file has more bytes than its size says, like one that grows while it is read.
  EXPECT_EQ(platform::readFile("/proc/self/status", 100, &problem), std::nullopt);
  EXPECT_EQ(problem, "Larger than 100 bytes");
  EXPECT_EQ(platform::readStream("/dev/zero", kLimit, &problem), std::nullopt);
  EXPECT_EQ(problem, "Larger than 200 KiB");
}
