// SPDX-License-Identifier: Apache-2.0
#include "robot/recording/home_folder.h"

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <fstream>

#include "ky/error.h"
#include "robot/in_process_robot.h"
#include "robot/test_folder.h"
#include "support/own_network.h"

namespace fs = std::filesystem;

namespace {

const std::string kFolder = "/home/tam/recordings/cameras/";

class HomeFolder : public testing::Test {
 protected:
  std::string make(const std::string& where, const std::string& name) const {
    return home.create(where, name, ".avi").path;
  }
  std::string refusal(const std::string& where, const std::string& name = "clip") const {
    const std::string text = errorText([&] { make(where, name); });
    EXPECT_TRUE(fs::is_empty(outside.path()));
    return text;
  }

  TestFolder folder;
  TestFolder outside;
  robot::HomeFolder home{folder.path()};
};

TEST_F(HomeFolder, MakesTheFileAndTheFoldersAboveIt) {
  EXPECT_EQ(make(kFolder, "clip"), "/home/tam/recordings/cameras/clip.avi");
  EXPECT_TRUE(fs::is_regular_file(folder / "recordings/cameras/clip.avi"));
}

TEST_F(HomeFolder, OverwritesNothing) {
  for (const char* expected : {"clip.avi", "clip_2.avi", "clip_3.avi"}) {
    const robot::NewFile file = home.create(kFolder, "clip", ".avi");
    EXPECT_EQ(file.path, kFolder + expected);
    EXPECT_EQ(write(file.file.get(), expected, 8), 8);
  }
  EXPECT_EQ(fs::file_size(folder / "recordings/cameras/clip.avi"), 8u);
  fs::create_symlink(outside / "target", folder / "recordings/cameras/link.avi");
  EXPECT_EQ(make(kFolder, "link"), kFolder + "link_2.avi");
  EXPECT_TRUE(fs::is_empty(outside.path()));
}

TEST_F(HomeFolder, TakesTheSameFolderHoweverItIsWritten) {
  EXPECT_EQ(make("/home/tam", "a"), "/home/tam/a.avi");
  EXPECT_EQ(make("/home/tam/", "b"), "/home/tam/b.avi");
  EXPECT_EQ(make("/home/tam/x", "c"), "/home/tam/x/c.avi");
  EXPECT_EQ(make("/home/tam//x/./", "d"), "/home/tam/x/d.avi");
}

TEST_F(HomeFolder, TakesUnusualNames) {
  for (const std::string name : {"with blank", "'quoted\"", "100%", "%d",
                                 "v\xC3\xAD"
                                 "deo",
                                 ".hidden", "..", "a:b", "-v"})
    EXPECT_EQ(make("/home/tam/" + name + "x", name), "/home/tam/" + name + "x/" + name + ".avi");
  const std::string longest(200, 'x');
  EXPECT_EQ(make(kFolder, longest), kFolder + longest + ".avi");
  EXPECT_EQ(make(kFolder, longest), kFolder + longest + "_2.avi");
}

TEST_F(HomeFolder, RefusesFoldersOutsideOfTheHome) {
  const std::string other = outside.path().string();
  for (const std::string& path : {other, std::string("/"), std::string(), std::string("recordings"),
                                  std::string("/home/tam") + "ara/", std::string("/home/")})
    EXPECT_EQ(refusal(path),
              "\"" + path + "\" is not in the robot's home; it must begin with \"/home/tam/\"");
  for (const std::string path : {"/home/tam/..", "/home/tam/../x", "/home/tam/a/../../../etc/"})
    EXPECT_EQ(refusal(path), "\"" + path + "\" contains \"..\"; name the folder itself");
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(HomeFolder, FollowsLinksOnlyWithinTheHome) {
  fs::create_directories(folder / "real");
  fs::create_symlink("real", folder / "inside");
  EXPECT_EQ(make("/home/tam/inside/", "clip"), "/home/tam/inside/clip.avi");
  EXPECT_TRUE(fs::exists(folder / "real/clip.avi"));

  fs::create_symlink(outside.path(), folder / "out");
  fs::create_symlink("../" + outside.path().filename().string(), folder / "up");
  fs::create_symlink("loop", folder / "loop");
  for (const std::string link : {"out", "up", "loop"}) {
    EXPECT_EQ(refusal("/home/tam/" + link),
              "\"/home/tam/" + link + "/\" can't be made: it leads out of the robot's home");
    EXPECT_NE(refusal("/home/tam/" + link + "/deeper"), "no error");
  }
}

TEST_F(HomeFolder, RefusesUnfitNames) {
  EXPECT_EQ(refusal(kFolder, ""), "a file needs a name");
  EXPECT_EQ(refusal(kFolder, "a/b"),
            "\"a/b\" is no file name: it has a slash; the folder is told apart");
  EXPECT_NE(refusal(kFolder, "/etc/passwd"), "no error");
  EXPECT_EQ(refusal(kFolder, std::string(201, 'x')), "a file's name may have 200 bytes, not 201");
  for (const std::string& name :
       {std::string("a\nb"), std::string("a\0b", 3), std::string("\x7F")}) {
    EXPECT_EQ(refusal(kFolder, name),
              "a file's name can't hold line breaks and other control characters");
    EXPECT_EQ(refusal(kFolder + name),
              "a folder's name can't hold line breaks and other control characters");
  }
  EXPECT_NE(refusal(kFolder + std::string(256, 'x')).find("may have 255 bytes"), std::string::npos);
  std::string deep = "/home/tam/";
  for (int i = 0; i < 1100; ++i) deep += "a/";
  EXPECT_EQ(refusal(deep), "the folder's name is too long: it may have 2048 bytes");
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(HomeFolder, SaysThatAFileIsInTheWay) {
  std::ofstream(folder / "recordings") << "";
  EXPECT_EQ(refusal(kFolder), "\"/home/tam/recordings/\" can't be made: a file is in the way");
}

TEST_F(HomeFolder, SaysThatTheHomeIsGone) {
  fs::remove(folder.path());
  EXPECT_EQ(refusal(kFolder), "\"/home/tam/\" can't be made: No such file or directory");
}

TEST_F(HomeFolder, SaysThatItMayNotBeWrittenTo) {
  NEED_OWN_NETWORK();
  if (mount("none", folder.path().c_str(), "tmpfs", MS_RDONLY, nullptr) != 0)
    GTEST_SKIP() << "no mounts of our own";
  EXPECT_EQ(refusal(kFolder), "\"/home/tam/recordings/\" can't be made: Read-only file system");
  EXPECT_EQ(refusal("/home/tam/"), "\"/home/tam/clip.avi\" can't be made: Read-only file system");
  umount(folder.path().c_str());
}

}  // namespace
