#include <filesystem>

#include "Platform/System/FileSystem.h"
#include "Platform/System/URL.h"
#include "Platform/Text/Texts.h"
#include "Tests/Tables.h"

namespace {

constexpr Operation kStandardized = apply<&platform::standardizePath>;
constexpr Operation kExtension = apply<&platform::pathExtension>;
std::string parts(std::string_view path) {
  return platform::deleteLastPathComponent(path) + "|" +
         platform::deletePathExtension(platform::lastPathComponent(path));
}
std::string folderURL(std::string_view path) { return platform::URL::fileURLWithPath(path, true).absoluteString(); }
std::string pathOf(std::string_view text) {
  const platform::URL url(text);
  return url.isFileURL() ? url.path() : "not here" + url.path();
}
/// The number that the scan found and how many bytes it took.
template <auto kScan>
std::string scan(std::string_view text) {
  const auto scanned = kScan(text);
  return scanned ? fmt::format("{} {}", scanned->value, scanned->length) : "none";
}
constexpr Operation integer = scan<&platform::scanInteger>;
constexpr Operation decimal = scan<&platform::scanDouble>;
constexpr Operation number = apply<&platform::doubleValue>;
std::string cut(std::string_view text) {
  const double value = platform::doubleValue(text);
  return fmt::format("{} {}", platform::truncated<std::int32_t>(value), platform::truncated<std::int64_t>(value));
}
std::string pieces(std::string_view text) { return fmt::format("{}", fmt::join(platform::splitAtNewlines(text), "|")); }

}  // namespace

TEST(FileSystemTest, PathsAndLocations) {
  const ScopedVariable home("HOME", "/home/ann");
  expectOutcomes({
      {__LINE__, kStandardized, "~/a/./b//c/", "/home/ann/a/b/c"},
      {__LINE__, kStandardized, "~root", "/root"},
      {__LINE__, kStandardized, "../../a/../.b", "../../.b"},
      {__LINE__, kExtension, "/a/Plan.kvdx//", "kvdx"},
      {__LINE__, kExtension, "/a/.kvdx", ""},
      {__LINE__, kExtension, "/a.kvdx/b", ""},
      {__LINE__, parts, "/a/b/Plan.kvdx/", "/a/b|Plan"},
      {__LINE__, folderURL, "/a/../b c/50%.kvdx/", "file:///b%20c/50%25.kvdx/"},
      {__LINE__, folderURL, "/\xC3\xA9#?", "file:///%C3%A9%23%3F/"},
      {__LINE__, pathOf, "file:///b%20c/50%25%C3%a9.kvdx/", "/b c/50%\xC3\xA9.kvdx"},
      {__LINE__, pathOf, "file:///50%/%zz%2", "/50%/%zz%2"},
      {__LINE__, pathOf, "file://LocalHost/a%20b", "/a b"},
      {__LINE__, pathOf, "file://localhost.example/a", "not here"},
      {__LINE__, pathOf, "http://localhost/a", "not here"},
  });
}

TEST(TextsTest, NumbersAndPieces) {
  const std::string nines(400, '9');
  expectOutcomes({
      {__LINE__, integer, " \n-12abc", "-12 5"},
      {__LINE__, integer, "-9223372036854775809", "-9223372036854775808 20"},
      {__LINE__, integer, "99999999999999999999x", "9223372036854775807 20"},
      {__LINE__, decimal, "nan", "none"},
      {__LINE__, number, "-1e999", "-inf"},
      {__LINE__, number, nines + "e-1", "inf"},
      {__LINE__, cut, "-1e30", "-2147483648 -9223372036854775808"},
      {__LINE__, apply<&platform::trimmed>, "\xC2\xA0\t a b \xE2\x80\xA9\r\n", "a b"},
      {__LINE__, pieces, "a\nb\vc\fd\r\nx\xC2\x85y\xE2\x80\xA8z\xE2\x80\xA9", "a|b|c|d||x|y|z|"},
      {__LINE__, apply<&platform::printable>, "a\n\xE2\x81\xA6\xC3\xA9", "a\\n\\u2066\xC3\xA9"},
      {__LINE__, apply<&platform::isUTF8>, "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "true"},
      {__LINE__, apply<&platform::isUTF8>, "\xED\xA0\x80", "false"},
      {__LINE__, apply<&platform::isUTF8>, "1234567\xC3\xA9\xC3", "false"},
  });
}

TEST(FileSystemTest, FilesOfSeveralNames) {
  const ScratchFolder scratch;
  for (const char* name : {"a", "b"}) writeFile(scratch / name, "same");
  std::filesystem::create_hard_link(scratch / "a", scratch / "hard");
  std::filesystem::create_symlink("a", scratch / "soft");
  for (const char* name : {"hard", "soft"})
    EXPECT_EQ(platform::identityOf(scratch / name), platform::identityOf(scratch / "a"));
  EXPECT_NE(platform::identityOf(scratch / "b"), platform::identityOf(scratch / "a"));
  EXPECT_EQ(platform::identityOf(scratch / "absent"), scratch / "absent");
}
