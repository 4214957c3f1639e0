#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "Platform/Linux/Posix/PosixFiles.h"
#include "Tests/Support/TemporaryDirectory.h"

namespace fs = std::filesystem;
using support::readFile;
using support::writeFile;

namespace {

class FilesTest : public ::testing::Test {
 protected:
  support::TemporaryDirectory directory;
  std::string path = directory.path() / "file.log";
  platform::linux::posix::PosixFiles files;
};

}  // namespace

TEST_F(FilesTest, WritingReplacesTheWholeContent) {
  EXPECT_FALSE(files.fileExists(path));
  EXPECT_TRUE(files.write(path, "a longer first content\n"));
  EXPECT_TRUE(files.fileExists(path));
  EXPECT_TRUE(files.write(path, std::string_view("\0short", 6)));
  EXPECT_EQ(readFile(path), std::string("\0short", 6));
}

TEST_F(FilesTest, ANewFileIsPrivateToTheUser) {
  ASSERT_TRUE(files.write(path, "text"));
  struct stat status{};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST_F(FilesTest, AnOpenedFileIsNeitherTruncatedNorCreated) {
  EXPECT_FALSE(files.openForWriting(path));
  EXPECT_FALSE(files.fileExists(path));
  writeFile(path, "first\n");
  {
    auto handle = files.openForWriting(path);
    ASSERT_TRUE(handle);
    EXPECT_TRUE((*handle)->seekToEndOfFile());
    EXPECT_TRUE((*handle)->write("second\n"));
    EXPECT_TRUE((*handle)->close());
    EXPECT_FALSE((*handle)->write("after closing"));
  }
  EXPECT_EQ(readFile(path), "first\nsecond\n");
}

TEST_F(FilesTest, WithoutSeekingTheBeginningIsOverwritten) {
  writeFile(path, "abcdef");
  ASSERT_TRUE((*files.openForWriting(path))->write("XY"));
  EXPECT_EQ(readFile(path), "XYcdef");
}

TEST_F(FilesTest, AMissingDirectoryIsAFailureWithTheSystemsReason) {
  const auto result = files.write(directory.path() / "missing/file.log", "text");
  ASSERT_FALSE(result);
  EXPECT_NE(result.error().localizedDescription.find("No such file or directory."), std::string::npos)
      << result.error().localizedDescription;
  EXPECT_FALSE(fs::exists(directory.path() / "missing"));
}

TEST_F(FilesTest, APipeOrADirectoryIsRefusedAtOnce) {
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_TRUE(files.fileExists(path));
  EXPECT_FALSE(files.openForWriting(path));
  EXPECT_FALSE(files.write(path, "text"));
  EXPECT_TRUE(fs::is_fifo(path));
  EXPECT_FALSE(files.write(directory.path(), "text"));
}
