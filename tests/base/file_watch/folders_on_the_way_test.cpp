// SPDX-License-Identifier: Apache-2.0
#include "file_watch/folders_on_the_way.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace buttondriver {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAreArray;

class FoldersOnTheWayTest : public testing::Test {
protected:
  FoldersOnTheWayTest() {
    std::string name = (fs::canonical(fs::temp_directory_path()) / "folders-XXXXXX").string();
    root = ::mkdtemp(name.data());
    for (fs::path up = root; up != up.root_path(); up = up.parent_path())
      above.insert(above.begin(), up.string());
    above.insert(above.begin(), "/");
  }
  ~FoldersOnTheWayTest() override { fs::remove_all(root); }

  std::vector<std::string> paths(const std::string &file) const {
    std::vector<std::string> result;
    for (const FolderOnTheWay &folder : folders_on_the_way((root / file).string())) {
      struct stat status {};
      EXPECT_EQ(::stat(folder.path.c_str(), &status), 0);
      EXPECT_EQ(folder.inode, status.st_ino);
      EXPECT_EQ(folder.device, status.st_dev);
      result.push_back(folder.path);
    }
    return result;
  }

  /// The folders down to the test's own, and `names` in it.
  std::vector<std::string> expected(const std::vector<std::string> &names) const {
    std::vector<std::string> result = above;
    for (const std::string &name : names)
      result.push_back((root / name).string());
    return result;
  }

  fs::path root;
  std::vector<std::string> above;
};

TEST_F(FoldersOnTheWayTest, are_those_from_the_root_down_to_the_file_s_own) {
  fs::create_directories(root / "a/b");
  EXPECT_THAT(paths("a/b/file"), ElementsAreArray(expected({"a", "a/b"})));
  EXPECT_THAT(paths("./a//b/../b/./file"), ElementsAreArray(expected({"a", "a/b"})));
}

TEST_F(FoldersOnTheWayTest, end_where_the_path_ends) {
  fs::create_directories(root / "a");
  std::ofstream(root / "a/plain") << "text";
  EXPECT_THAT(paths("a/missing/b/file"), ElementsAreArray(expected({"a"})));
  EXPECT_THAT(paths("a/plain/b/file"), ElementsAreArray(expected({"a"})));
  EXPECT_THAT(paths("a"), ElementsAreArray(expected({})));
}

TEST_F(FoldersOnTheWayTest, lead_over_symbolic_links_and_their_targets) {
  fs::create_directories(root / "far/real/er");
  fs::create_symlink("far/real", root / "relative");
  fs::create_symlink(root / "far/real", root / "absolute");
  fs::create_symlink("../../absolute/er", root / "far/real/twice");
  fs::create_symlink("nowhere/at/all", root / "broken");
  const std::vector<std::string> way = expected({"far", "far/real", "far/real/er"});
  for (const char *file : {"relative/er/file", "absolute/er/file", "relative/twice/file"})
    EXPECT_THAT(paths(file), ElementsAreArray(way)) << file;
  EXPECT_THAT(paths("broken/file"), ElementsAreArray(expected({})));
  EXPECT_THAT(paths("broken"), ElementsAreArray(expected({})));
}

TEST_F(FoldersOnTheWayTest, of_a_link_in_place_of_the_file_are_those_of_its_target_too) {
  fs::create_directories(root / "a");
  fs::create_directories(root / "b");
  fs::create_symlink("../b/target", root / "a/file");
  EXPECT_THAT(paths("a/file"), ElementsAreArray(expected({"a", "b"})));
}

TEST_F(FoldersOnTheWayTest, end_at_links_that_lead_round_in_circles) {
  fs::create_symlink("second", root / "first");
  fs::create_symlink("first", root / "second");
  EXPECT_THAT(paths("first/file"), ElementsAreArray(expected({})));
}

TEST_F(FoldersOnTheWayTest, above_the_root_is_the_root) {
  const auto folders = folders_on_the_way("/../../file");
  ASSERT_EQ(folders.size(), 1U);
  EXPECT_EQ(folders[0].path, "/");
}

} // namespace
} // namespace buttondriver
