// SPDX-License-Identifier: GPL-3.0-or-later
#include "bgl/inspector.h"
#include "bgl/unpack/bglunpack.h"
#include "bgl_files.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace morvane {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string standin = STANDIN_FOLDER;

/// Runs the 64-bit program under wine, which has a world of its own in the build folder.
class Unpack : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!fs::exists(unpacker) || !fs::exists(standin + "/sup.dll")) {
            GTEST_SKIP() << "bglunpack64.exe is not built: g++-mingw-w64-x86-64-posix is missing";
        }
        if (wine.empty()) {
            GTEST_SKIP() << "wine is missing (packages wine and wine64)";
        }
        ::setenv("WINEPREFIX", (standin + "/wineprefix").c_str(), 1);
        ::setenv("WINEDLLOVERRIDES", "mscoree=;mshtml=", 1); // nothing to ask the user about
        ::setenv("STANDIN_LOG", windows(home.file("log.txt")).c_str(), 1);
        ::unsetenv("MORVANE_SUP_DLL");
    }

    static std::string windows(std::string path) {
        std::replace(path.begin(), path.end(), '/', '\\');
        return "Z:" + path;
    }
    // Writes a file that the stand-in takes for a compressed one.
    std::string write_packed(const std::string& name, int what, const std::string& contents) {
        std::string bytes =
            test::encode(BglHeader{.FL_world_set = 1, .FL_library_ptr = 128, .FL_spare2 = what});
        for (const char byte : contents) {
            bytes += static_cast<char>(byte ^ 0x5A);
        }
        return folder.write(name, bytes);
    }
    int unpack(const std::string& input, const std::string& output) {
        return run({wine, unpacker, windows(input), windows(output), windows(home.path())});
    }
    int run(std::vector<std::string> command) {
        return programs->run({std::move(command)}, {}).status;
    }
    void use_library(const std::string& name) {
        fs::copy_file(standin + "/" + name, home.file("sup.dll"));
    }

    test::TempFolder folder;
    test::TempFolder home;
    test::RecordingReporter reporter;
    std::unique_ptr<Disk> disk = make_system_disk();
    const std::string unpacker = std::string(UNPACK_FOLDER) + "/bglunpack64.exe";
    std::unique_ptr<Programs> programs = make_system_programs();
    const std::string wine = programs->find_on_path("wine");
};

TEST_F(Unpack, ACompressedLibraryIsListed) {
    use_library("sup.dll");
    const std::string library = test::library_file(
        {.objects = {{.guid = {1, 2, 3, 4}, .name = "Tower"}, {.name = "Shed"}}});
    const std::string path = write_packed("packed \xC3\xA4.bgl", 1, library);
    Inspector inspector({*disk, reporter}, home.path(), *programs, {UNPACK_FOLDER});
    const Analysis analysis = analyse_file(inspector, path, false, true);
    EXPECT_TRUE(analysis.done);
    EXPECT_THAT(reporter.messages, IsEmpty());
    EXPECT_THAT(inspector.box.text(),
                HasSubstr("Library Objects : 2\r\n"
                          " 000000001h,000000002h,000000003h,000000004h, 1.0 0 100 Tower\r\n"));
    EXPECT_EQ(home.read("tmp.bgl"), library);
    EXPECT_THAT(home.read("log.txt"),
                HasSubstr("\ncomplete " + std::to_string(library.size()) + " same data\n"));
}

TEST_F(Unpack, TheCommandLineListsACompressedLibrary) {
    use_library("sup.dll");
    const std::string path =
        write_packed("packed.bgl", 1, test::library_file({.objects = {{.name = "Tower"}}}));
    const std::string command = std::string(MORVANE_CLI) + " --program-folder " + home.path() +
                                " bgl analyse " + path + " >" + home.file("report.txt");
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_THAT(home.read("report.txt"),
                HasSubstr("Library Objects : 1\n"
                          " 000000000h,000000000h,000000000h,000000000h, 1.0 0 100 Tower\n"));
}

// The program writes from the first byte on and does not shorten the file: who calls it removes an
// older file first.
TEST_F(Unpack, TheProgramAloneLeavesTheTailOfALongerFile) {
    use_library("sup.dll");
    home.write("out.bgl", "an earlier file");
    EXPECT_EQ(unpack(write_packed("a.bgl", 1, "NEW"), home.file("out.bgl")), unpack_done);
    EXPECT_EQ(home.read("out.bgl"), "NEWearlier file");
}

TEST_F(Unpack, NothingOfALongerEarlierFileIsLeft) {
    use_library("sup.dll");
    const std::string library = test::library_file({.objects = {{.name = "Tower"}}});
    home.write("tmp.bgl", library + "the tail of an earlier file");
    Inspector inspector({*disk, reporter}, home.path(), *programs, {UNPACK_FOLDER});
    analyse_file(inspector, write_packed("packed.bgl", 1, library), false, true);
    EXPECT_EQ(home.read("tmp.bgl"), library);
}

TEST_F(Unpack, EveryWayToFailHasItsStatus) {
    const std::string good = write_packed("a.bgl", 1, "bytes");
    const std::string output = home.file("out.bgl");
    EXPECT_EQ(run({wine, unpacker, "only one"}), unpack_wrong_usage);
    EXPECT_EQ(unpack(good, output), unpack_no_library);
    use_library("sup_lacking.dll");
    EXPECT_EQ(unpack(good, output), unpack_no_function);
    disk->remove(home.file("sup.dll"));
    use_library("sup.dll");
    EXPECT_EQ(unpack(write_packed("nothing.bgl", 2, "bytes"), output), unpack_nothing);
    EXPECT_EQ(unpack(write_packed("failed.bgl", 4, "bytes"), output), unpack_nothing);
    EXPECT_EQ(unpack(good, home.file("no folder/out.bgl")), unpack_cannot_write);
    EXPECT_FALSE(home.has("out.bgl"));
}

TEST_F(Unpack, AFaultInTheLibraryStaysThere) {
    use_library("sup.dll");
    Inspector inspector({*disk, reporter}, home.path(), *programs, {UNPACK_FOLDER});
    const Analysis analysis =
        analyse_file(inspector, write_packed("crash.bgl", 3, "bytes"), false, true);
    EXPECT_TRUE(analysis.done);
    EXPECT_THAT(inspector.box.text(), HasSubstr("Library Objects : 0\r\n"));
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr("crash.bgl was not unpacked: ")));
}

TEST_F(Unpack, TheEnvironmentNamesTheLibrary) {
    ::setenv("MORVANE_SUP_DLL", (standin + "/sup.dll").c_str(), 1);
    const std::string output = home.file("out.bgl");
    EXPECT_EQ(unpack(write_packed("a.bgl", 1, "bytes"), output), unpack_done);
    EXPECT_EQ(home.read("out.bgl"), "bytes");
}

TEST_F(Unpack, ALongNameIsCutTo250Characters) {
    use_library("sup.dll");
    const std::string path = folder.file(std::string(120, 'a') + "/" + std::string(150, 'b'));
    EXPECT_EQ(unpack(path, home.file("out.bgl")), unpack_nothing);
    EXPECT_EQ(home.read("log.txt"), "get " + windows(path).substr(0, 250) + "\n");
}

} // namespace
} // namespace morvane
