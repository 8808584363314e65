#include "bgl/decompress_bgl.h"
#include "bgl/search.h"
#include "bgl/unpack/name_buffer.h"
#include "bgl/unpack/statuses.h"
#include "bgl_files.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Decompress : public ::testing::Test {
  protected:
    Decompress() {
        home.write("bglunpack.exe", "");
        tools.write("wine", "");
        inspector.unpacking.search_path = "/nowhere::" + tools.path();
        inspector.unpacking.on_windows = false;
        inspector.unpacking.run = [this](const std::vector<std::string>& command) {
            commands.push_back(command);
            return run(command);
        };
    }
    bool decompress() {
        return decompress_bgl(inspector.services, home.path(), inspector.unpacking,
                              folder.file("packed.bgl"));
    }
    // An unpacking program that writes this library.
    void unpack_to(const std::string& bytes) {
        run = [this, bytes](const std::vector<std::string>&) {
            home.write("tmp.bgl", bytes);
            return 0;
        };
    }
    std::string windows(std::string path) {
        std::replace(path.begin(), path.end(), '/', '\\');
        return "Z:" + path;
    }

    test::TempFolder folder;
    test::TempFolder home;
    test::TempFolder tools;
    test::RecordingReporter reporter;
    std::unique_ptr<Disk> disk = make_system_disk();
    Inspector inspector{{*disk, reporter}, home.path()};
    std::vector<std::vector<std::string>> commands;
    std::function<int(const std::vector<std::string>&)> run = [](const auto&) { return 0; };
    const std::string packed =
        test::library_file({.header = {.FL_world_set = 1, .FL_spare2 = 7}, .objects = {{}}});
};

TEST_F(Decompress, LooksForWineInTheRootFolderToo) {
    class DiskWithWine final : public test::FaultyDisk {
      public:
        bool is_file(const std::string& path) override {
            return path == "/wine" || FaultyDisk::is_file(path);
        }
    } other;
    unpack_to("bytes");
    inspector.unpacking.search_path = "/nowhere:/";
    EXPECT_TRUE(decompress_bgl({other, reporter}, home.path(), inspector.unpacking,
                               folder.file("packed.bgl")));
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_EQ(commands[0][0], "/wine");
}

TEST_F(Decompress, RunsTheProgramThroughWineWithWindowsNames) {
    unpack_to("bytes");
    EXPECT_TRUE(decompress());
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_THAT(commands[0], ElementsAre(tools.file("wine"), home.file("bglunpack.exe"),
                                         windows(folder.file("packed.bgl")),
                                         windows(home.file("tmp.bgl")), windows(home.path())));
    EXPECT_THAT(reporter.messages, IsEmpty());
}

TEST_F(Decompress, RunsTheProgramItselfOnWindows) {
    inspector.unpacking.on_windows = true;
    unpack_to("bytes");
    EXPECT_TRUE(decompress());
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_THAT(commands[0], ElementsAre(home.file("bglunpack.exe"), folder.file("packed.bgl"),
                                         home.file("tmp.bgl"), home.path()));
}

TEST_F(Decompress, FindsTheProgramInTheOtherFolders) {
    disk->remove(home.file("bglunpack.exe"));
    inspector.unpacking.folders = {"/nowhere", tools.path()};
    tools.write("bglunpack64.exe", "");
    unpack_to("bytes");
    EXPECT_TRUE(decompress());
    EXPECT_EQ(commands.at(0).at(1), tools.file("bglunpack64.exe"));
}

TEST_F(Decompress, TheOtherWidthIsTriedWhenOneDoesNotRun) {
    home.write("bglunpack64.exe", "");
    run = [this](const std::vector<std::string>& command) {
        if (command[1] == home.file("bglunpack64.exe")) {
            home.write("tmp.bgl", "bytes");
        }
        return 0; // wine says so even of a program that it cannot start
    };
    EXPECT_TRUE(decompress());
    EXPECT_EQ(commands.size(), 2U);
}

TEST_F(Decompress, OfTwoFailuresTheOneThatSaysWhyIsTold) {
    struct Case {
        std::vector<int> statuses; // of the first program and, where it is tried, the other
        std::string reason;
    };
    home.write("bglunpack64.exe", "");
    const Unpacking fresh = inspector.unpacking;
    for (const Case& tried : std::vector<Case>{
             {{unpack_no_library, program_not_started}, "sup.dll was not found"},
             {{program_not_started, unpack_no_library}, "sup.dll was not found"},
             {{unpack_wrong_usage, 139}, "status " + std::to_string(unpack_wrong_usage) + "."},
             {{unpack_no_function, 139}, "lacks a function"},
             {{139, unpack_no_function}, "lacks a function"},
             {{139, 140}, "failed with status 140"},
             {{unpack_no_library, unpack_nothing}, "could not unpack"},
             {{unpack_no_library, unpack_cannot_write}, "cannot be written"},
             {{unpack_no_library, program_timed_out}, "did not end in time"},
             {{unpack_nothing}, "could not unpack"},
             {{unpack_cannot_write}, "cannot be written"},
             {{program_timed_out}, "did not end in time"}}) {
        reporter.messages.clear();
        commands.clear();
        inspector.unpacking = fresh; // which has given no hint yet
        run = [&](const std::vector<std::string>&) {
            return tried.statuses.at(commands.size() - 1);
        };
        EXPECT_FALSE(decompress());
        EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr(tried.reason)));
        EXPECT_EQ(commands.size(), tried.statuses.size()) << tried.reason;
    }
}

TEST_F(Decompress, WithoutTheProgramAHintSaysSo) {
    disk->remove(home.file("bglunpack.exe"));
    EXPECT_FALSE(decompress());
    EXPECT_THAT(reporter.messages,
                ElementsAre("Note: Compressed files cannot be unpacked: bglunpack.exe was not "
                            "found in the program folder " +
                            home.path() + "."));
    EXPECT_THAT(commands, IsEmpty());
}

TEST_F(Decompress, WithoutWineAHintSaysSo) {
    inspector.unpacking.search_path = "/nowhere";
    EXPECT_FALSE(decompress());
    EXPECT_THAT(reporter.messages,
                ElementsAre("Note: Compressed files cannot be unpacked: wine is not installed."));
}

TEST_F(Decompress, EveryWayToFailHasItsReason) {
    const std::vector<std::pair<int, const char*>> reasons{
        {unpack_no_library, "sup.dll was not found"},
        {unpack_no_function, "lacks a function"},
        {unpack_nothing, "could not unpack"},
        {unpack_cannot_write, "cannot be written"},
        {program_not_started, "could not be started"},
        {program_timed_out, "did not end in time"},
        {139, "failed with status 139"},
    };
    for (const auto& [status, reason] : reasons) {
        reporter.messages.clear();
        home.write("tmp.bgl", "stale");
        run = [status = status](const auto&) { return status; };
        EXPECT_FALSE(decompress());
        EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr(reason))) << status;
        EXPECT_FALSE(home.has("tmp.bgl"));
    }
}

TEST_F(Decompress, AnalyseListsTheUnpackedFile) {
    unpack_to(test::library_file({.objects = {{.name = "Inside"}, {.name = "Also"}}}));
    const std::string path = folder.write("packed.bgl", packed);
    const Analysis analysis = analyse_file(inspector, path, false, true);
    EXPECT_TRUE(analysis.done);
    EXPECT_EQ(analysis.header.FL_spare2, 7);
    EXPECT_EQ(analysis.objects.size(), 2U);
    EXPECT_THAT(inspector.box.text(), HasSubstr(" COMPRESSED file (FL_Spare2=7)\r\n"));
    EXPECT_THAT(inspector.box.text(), HasSubstr("Library Objects : 2\r\n"));
    EXPECT_EQ(folder.read("packed.bgl"), packed);
}

TEST_F(Decompress, AnalyseListsNothingWhenThereIsNoWayToUnpack) {
    disk->remove(home.file("bglunpack.exe"));
    home.write("tmp.bgl", test::library_file({.objects = {{.name = "Stale"}}}));
    analyse_file(inspector, folder.write("packed.bgl", packed), false, true);
    EXPECT_THAT(inspector.box.text(), HasSubstr("Library Objects : 0\r\n"));
    EXPECT_EQ(reporter.messages.size(), 1U);
}

TEST_F(Decompress, EachCompressedFileOfASearchIsUnpackedAnew) {
    folder.write("a.bgl", packed);
    folder.write("b.bgl", packed);
    const std::string longer = test::library_file({.objects = {{.name = "OfA"}, {}, {}}});
    const std::string shorter = test::library_file({.objects = {{.name = "OfB"}}});
    run = [&](const std::vector<std::string>&) {
        home.write("tmp.bgl", commands.size() == 1 ? longer : shorter);
        return 0;
    };
    const SearchResult result = search_folder(inspector, folder.path(), true);
    EXPECT_EQ(result.statistics.compressed_files, 2);
    EXPECT_EQ(result.statistics.library_files, 2);
    EXPECT_EQ(result.statistics.library_objects, 4);
    EXPECT_EQ(home.read("tmp.bgl"), shorter);
    EXPECT_THAT(inspector.box.text(), HasSubstr(folder.file("a.bgl") + " :3\r\n"));
    EXPECT_THAT(inspector.box.text(), HasSubstr("1.0,0,OfB\r\n"));
}

TEST_F(Decompress, AnUnpackedFileThatIsInvalidCountsAsInvalid) {
    folder.write("a.bgl", packed);
    unpack_to("\x02");
    const SearchResult result = search_folder(inspector, folder.path(), true);
    EXPECT_EQ(result.statistics.compressed_files, 1);
    EXPECT_EQ(result.statistics.invalid_files, 1);
}

TEST(NameBuffer, CutsLongNames) {
    const auto buffer = name_buffer(std::string(249, 'a') + "bc");
    EXPECT_EQ(std::string(buffer.data()), std::string(249, 'a') + "b");
    EXPECT_STREQ(name_buffer("C:\\x.bgl").data(), "C:\\x.bgl");
}

TEST(RunUnpackProcess, GivesTheExitStatus) {
    EXPECT_EQ(run_program({"/bin/sh", "-c", "exit 41"}), 41);
    EXPECT_EQ(run_program({"/bin/sh", "-c", "kill -9 $$"}), 137);
    EXPECT_EQ(run_program({"/nowhere/bglunpack.exe"}), program_not_started);
}

} // namespace
} // namespace morvane
