#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "Platform/System/Descriptor.h"
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

volatile std::sig_atomic_t leased = -1;

}  // namespace

TEST(FileReading, LinksThatStayInside) {
  const Place place;
  for (const char* name :
       {"folder/file", "link", "absolute/file", "folder/../link", "absolute/../link", "../inside/link"}) {
    std::string problem;
    EXPECT_EQ(platform::readFileInside(place.inside, name, &problem), "inside") << name << problem;
  }
}

TEST(FileReading, TheSameBytesAgain) {
  const Place place;
  const std::string file = place.inside + "/folder/file";
  platform::ReadAgain again;
  EXPECT_EQ(platform::readFileInside(place.inside, "folder/file", nullptr, &again), "inside");
  writeFile(file + ".new", "saved!");
  fs::rename(file + ".new", file);
  EXPECT_EQ(again(), "inside");
  EXPECT_EQ(again(), "inside");
  EXPECT_EQ(platform::readFileInside(place.inside, "folder/file", nullptr, &again), "saved!");
  fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_EQ(again(), std::nullopt);
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

TEST(FileReading, FilesThatAnotherProgramHasALeaseOn) {
  const Place place;
  const std::string path = place.inside + "/folder/file";
  const platform::Descriptor holder(open(path.c_str(), O_RDWR));
  leased = holder.get();
  const auto before = std::signal(SIGIO, [](int) { fcntl(leased, F_SETLEASE, F_UNLCK); });
  for (const bool isInside : {true, false}) {
    if (fcntl(holder.get(), F_SETLEASE, F_WRLCK) != 0) GTEST_SKIP() << "no leases on this file system";
    std::string problem;
    EXPECT_EQ(isInside ? platform::readFileInside(place.inside, "folder/file", &problem)
                       : platform::readFile(path, 1000, &problem),
              "inside")
        << problem;
  }
  static_cast<void>(std::signal(SIGIO, before));
}

TEST(Descriptor, PipesThatDoNotBlock) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
  const platform::Descriptor out(ends[0]), in(ends[1]);
  const std::string sent(1'000'000, 'a');
  std::string got;
  std::thread reading([&] {
    std::array<char, 4096> block{};
    while (got.size() < sent.size()) {
      const ssize_t size = read(out.get(), block.data(), block.size());
      if (size > 0) got.append(block.data(), static_cast<std::size_t>(size));
      if (size == 0) return;
    }
  });
  EXPECT_TRUE(platform::writeAll(in.get(), sent));
  reading.join();
  EXPECT_TRUE(got == sent);
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
  constexpr std::uint64_t kMore = std::uint64_t{1} << 30;
  for (const std::string text : {"", "a"}) {  // a hole, and one behind a text
    writeFile(file, text);
    fs::resize_file(file, kMore);
    EXPECT_EQ(platform::readFile(file, kMore, &problem), std::nullopt);
    EXPECT_EQ(problem, "It consists of holes");
  }
  // This file has more bytes than its size says, like one that grows while it is read.
  EXPECT_EQ(platform::readFile("/proc/self/status", 100, &problem), std::nullopt);
  EXPECT_EQ(problem, "Larger than 100 bytes");
  EXPECT_EQ(platform::readStream("/dev/zero", kLimit, &problem), std::nullopt);
  EXPECT_EQ(problem, "Larger than 200 KiB");
}
