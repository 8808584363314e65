// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/errors.h"
#include "base/paths.h"
#include "bgl/decompress_bgl.h"
#include "bgl/search.h"
#include "bgl/unpack/bglunpack.h"
#include "bgl_files.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/recording_programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace morvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using How = ProgramEnd::How;

constexpr int not_started = -1; // what a stand-in returns that cannot be started
constexpr int timed_out = -2;

/// Two pretended programs, wine and bglunpack.exe: what the second does is up to each test.
class Decompress : public ::testing::Test {
  protected:
    Decompress() {
        home.write("bglunpack.exe", "");
        programs.on_path["wine"] = "/usr/bin/wine";
        inspector.unpacking.on_windows = false;
        programs.on_run = [this](const ProgramCall& call, const RunOptions&) {
            return end_of(run(call.arguments));
        };
    }
    static ProgramEnd end_of(int status) {
        if (status == not_started) {
            throw RuntimeError(ErrorNumber::FileNotFound, "bglunpack.exe");
        }
        return status == timed_out ? ProgramEnd{How::TimedOut, 137}
                                   : ProgramEnd{How::Exited, status};
    }
    bool decompress() {
        const std::string path = folder.write("packed.bgl", packed);
        return decompress_bgl(inspector.services, home.path(), inspector.unpacking, path)
            .has_value();
    }
    // An unpacking program that writes this library to where it is told.
    void unpack_to(const std::string& bytes) {
        run = [bytes](const std::vector<std::string>& command) {
            test::write_file(unix_name(command.at(command.size() - 2)), bytes);
            return 0;
        };
    }
    static std::string windows(std::string path) {
        std::replace(path.begin(), path.end(), '/', '\\');
        return "Z:" + path;
    }
    static std::string unix_name(std::string path) {
        std::replace(path.begin(), path.end(), '\\', '/');
        return path.starts_with("Z:") ? path.substr(2) : path;
    }

    test::TempFolder folder;
    test::TempFolder home;
    test::TempFolder tools;
    test::RecordingReporter reporter;
    std::unique_ptr<Disk> disk = make_system_disk();
    test::RecordingPrograms programs;
    const std::vector<std::vector<std::string>>& commands = programs.calls;
    Inspector inspector{{*disk, reporter}, home.path(), programs};
    std::function<int(const std::vector<std::string>&)> run = [](const auto&) { return 0; };
    const std::string packed =
        test::library_file({.header = {.FL_world_set = 1, .FL_spare2 = 7}, .objects = {{}}});
    const std::string library =
        test::library_file({.objects = {{.name = "Inside"}, {.name = "Also"}}});
};

TEST_F(Decompress, RunsTheProgramThroughWineWithWindowsNames) {
    unpack_to("bytes");
    EXPECT_TRUE(decompress());
    ASSERT_EQ(commands.size(), 1U);
    EXPECT_THAT(commands[0], ElementsAre("/usr/bin/wine", home.file("bglunpack.exe"),
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
    for (const Case& tried : std::vector<Case>{
             {{unpack_no_library, not_started}, "sup.dll was not found"},
             {{not_started, unpack_no_library}, "sup.dll was not found"},
             {{unpack_wrong_usage, 139}, "status " + std::to_string(unpack_wrong_usage) + "."},
             {{unpack_no_function, 139}, "lacks a function"},
             {{139, unpack_no_function}, "lacks a function"},
             {{139, 140}, "failed with status 140"},
             {{unpack_no_library, unpack_nothing}, "could not unpack"},
             {{unpack_no_library, unpack_cannot_write}, "cannot be written"},
             {{unpack_no_library, timed_out}, "did not end in time"},
             {{unpack_nothing}, "could not unpack"},
             {{unpack_cannot_write}, "cannot be written"},
             {{timed_out}, "did not end in time"}}) {
        reporter.messages.clear();
        programs.calls.clear();
        begin_command(inspector.unpacking);
        run = [&](const std::vector<std::string>&) {
            return tried.statuses.at(commands.size() - 1);
        };
        EXPECT_FALSE(decompress());
        EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr(tried.reason)));
        EXPECT_EQ(commands.size(), tried.statuses.size()) << tried.reason;
    }
}

TEST_F(Decompress, WithoutTheProgramAHintSaysWhereItWasLookedFor) {
    disk->remove(home.file("bglunpack.exe"));
    inspector.unpacking.folders = {tools.path()};
    EXPECT_FALSE(decompress());
    EXPECT_THAT(reporter.messages,
                ElementsAre("Note: Compressed files cannot be unpacked: bglunpack.exe was not "
                            "found in " +
                            home.path() + " or " + tools.path() + "."));
    EXPECT_THAT(commands, IsEmpty());
}

TEST_F(Decompress, WithoutWineAHintSaysSo) {
    programs.on_path.clear();
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
        {not_started, "could not be started"},
        {timed_out, "did not end in time"},
        {139, "failed with status 139"},
    };
    for (const auto& [status, reason] : reasons) {
        reporter.messages.clear();
        begin_command(inspector.unpacking);
        home.write("tmp.bgl", "stale");
        run = [status = status](const auto&) { return status; };
        EXPECT_FALSE(decompress());
        EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr(reason))) << status;
        EXPECT_FALSE(home.has("tmp.bgl"));
    }
}

TEST_F(Decompress, AnalyseListsTheUnpackedFile) {
    unpack_to(library);
    const std::string path = folder.write("packed.bgl", packed);
    const Analysis analysis = analyse_file(inspector, path, false, true);
    EXPECT_TRUE(analysis.done);
    EXPECT_EQ(analysis.header.FL_spare2, 7);
    EXPECT_EQ(analysis.objects.size(), 2U);
    EXPECT_THAT(inspector.box.text(), HasSubstr(" COMPRESSED file (FL_Spare2=7)\r\n"));
    EXPECT_THAT(inspector.box.text(), HasSubstr("Library Objects : 2\r\n"));
    EXPECT_EQ(folder.read("packed.bgl"), packed);
}

// On purpose: an older tmp.bgl is no answer to the question what is in this file.
TEST_F(Decompress, ThePreviousUnpackedFileIsNeverListed) {
    const std::string path = folder.write("packed.bgl", packed);
    const std::string stale = test::library_file({.objects = {{.name = "Stale"}}});
    for (const int status :
         std::vector<int>{unpack_no_library, unpack_nothing, 139, not_started, timed_out, 0}) {
        home.write("tmp.bgl", stale);
        run = [status](const auto&) { return status; };
        EXPECT_THAT(analyse_file(inspector, path, false, true).objects, IsEmpty()) << status;
        EXPECT_THAT(inspector.box.text(), HasSubstr("Library Objects : 0\r\n"));
    }
    disk->remove(home.file("bglunpack.exe"));
    home.write("tmp.bgl", stale);
    EXPECT_THAT(analyse_file(inspector, path, false, true).objects, IsEmpty());
    EXPECT_EQ(home.read("tmp.bgl"), stale) << "nothing was unpacked, so nothing is replaced";
}

TEST_F(Decompress, ALongerPreviousFileLeavesNoTail) {
    home.write("tmp.bgl", library + "tail of an earlier file");
    // Writes from the first byte on without shortening the file, as the real one does.
    run = [this](const std::vector<std::string>& command) {
        const auto writing = disk->open_for_update(unix_name(command.at(command.size() - 2)));
        writing->write(library);
        writing->close();
        return 0;
    };
    analyse_file(inspector, folder.write("packed.bgl", packed), false, true);
    EXPECT_EQ(home.read("tmp.bgl"), library);
}

TEST_F(Decompress, ACompressedFileNamedTmpBglIsReadAndNotTouched) {
    unpack_to(library);
    const std::string path = home.write("tmp.bgl", packed);
    EXPECT_THAT(analyse_file(inspector, path, false, true).objects, SizeIs(2));
    EXPECT_EQ(home.read("tmp.bgl"), packed);
    EXPECT_EQ(home.read("tmp2.bgl"), library);
    EXPECT_EQ(search_folder(inspector, home.path(), true).statistics.compressed_files, 1);
    EXPECT_EQ(home.read("tmp.bgl"), packed);
}

TEST_F(Decompress, ACompressedFileNamedTmpBglStaysWithoutAnUnpacker) {
    disk->remove(home.file("bglunpack.exe"));
    const std::string path = home.write("tmp.bgl", packed);
    EXPECT_TRUE(analyse_file(inspector, path, false, true).done);
    EXPECT_EQ(home.read("tmp.bgl"), packed);
    EXPECT_TRUE(search_folder(inspector, home.path(), true).done);
    EXPECT_EQ(home.read("tmp.bgl"), packed);
}

TEST_F(Decompress, ACompressedFileNamedTmpBglStaysWhenAnotherOneIsUnpacked) {
    unpack_to(library);
    home.write("tmp.bgl", packed);
    const SearchResult result =
        search_folder(inspector, folder_part(folder.write("packed.bgl", packed)), true);
    EXPECT_EQ(result.statistics.library_objects, 2);
    EXPECT_EQ(home.read("tmp.bgl"), packed);
}

TEST_F(Decompress, AFileUnderASecondNameIsNotWrittenThroughTheFirst) {
    unpack_to(library);
    const std::string path = folder.write("packed.bgl", packed);
    for (const bool hard : {true, false}) {
        hard ? std::filesystem::create_hard_link(path, home.file("tmp.bgl"))
             : std::filesystem::create_symlink(path, home.file("tmp.bgl"));
        EXPECT_THAT(analyse_file(inspector, path, false, true).objects, SizeIs(2));
        EXPECT_EQ(folder.read("packed.bgl"), packed);
        EXPECT_EQ(home.read("tmp.bgl"), packed);
        disk->remove(home.file("tmp.bgl"));
    }
}

TEST_F(Decompress, WithBothNamesTakenAHintSaysSo) {
    home.write("tmp.bgl", packed);
    home.write("tmp2.bgl", packed);
    EXPECT_FALSE(decompress());
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr("are compressed files themselves")));
    EXPECT_THAT(commands, IsEmpty());
    EXPECT_EQ(home.read("tmp.bgl"), packed);
    EXPECT_EQ(home.read("tmp2.bgl"), packed);
}

TEST_F(Decompress, AnUnpackedFileThatIsStillCompressedIsNotKept) {
    unpack_to(packed);
    EXPECT_FALSE(decompress());
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr("still compressed")));
    EXPECT_FALSE(home.has("tmp.bgl"));
}

// Only a file's own header makes it invalid.
TEST_F(Decompress, AFileThatCannotBeReplacedMakesNoLibraryInvalid) {
    class Protected final : public test::FaultyDisk {
      public:
        void remove(const std::string& path) override {
            throw RuntimeError(ErrorNumber::PermissionDenied, path);
        }
    } other;
    home.write("tmp.bgl", "of an earlier search");
    Inspector here{{other, reporter}, home.path(), programs};
    here.unpacking.on_windows = false;
    folder.write("a.bgl", packed);
    folder.write("b.bgl", packed);
    const SearchResult result = search_folder(here, folder.path(), true);
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.statistics.invalid_files, 0);
    EXPECT_EQ(result.statistics.compressed_files, 2);
    EXPECT_FALSE(home.has("error.txt"));
    EXPECT_THAT(reporter.messages,
                ElementsAre(HasSubstr("a.bgl was not unpacked: " + home.file("tmp.bgl") +
                                      " cannot be replaced (Permission denied)"),
                            HasSubstr("b.bgl was not unpacked")));
}

TEST_F(Decompress, AnUnpackedFileThatCannotBeReadMakesNoLibraryInvalid) {
    class Blind final : public test::FaultyDisk {
      public:
        std::unique_ptr<ReadableFile> open_for_reading(const std::string& path) override {
            if (path.ends_with("tmp.bgl")) {
                throw RuntimeError(ErrorNumber::PermissionDenied, path);
            }
            return FaultyDisk::open_for_reading(path);
        }
    } other;
    unpack_to(library);
    Inspector here{{other, reporter}, home.path(), programs};
    here.unpacking.on_windows = false;
    folder.write("a.bgl", packed);
    const SearchResult result = search_folder(here, folder.path(), true);
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.statistics.invalid_files, 0);
    EXPECT_EQ(result.statistics.compressed_files, 1);
    EXPECT_FALSE(home.has("error.txt"));
    EXPECT_THAT(reporter.messages, SizeIs(1));
}

TEST_F(Decompress, ASearchAsksBeforeEachUnpacking) {
    for (const char* name : {"a.bgl", "b.bgl", "c.bgl"}) {
        folder.write(name, packed);
    }
    run = [this](const std::vector<std::string>&) {
        home.write("tmp.bgl", library);
        reporter.keep_going = false; // the user presses Stop meanwhile
        return 0;
    };
    const SearchResult result = search_folder(inspector, folder.path(), true);
    EXPECT_FALSE(result.done);
    EXPECT_THAT(commands, SizeIs(1));
    EXPECT_EQ(result.statistics.library_files, 1);
    EXPECT_THAT(reporter.messages, ElementsAre(HasSubstr("The search was stopped")));
}

TEST_F(Decompress, AnUnpackingThatIsStoppedStopsTheSearch) {
    folder.write("a.bgl", packed);
    folder.write("b.bgl", packed);
    programs.on_run = [](const ProgramCall&, const RunOptions& options) {
        EXPECT_TRUE(options.keep_going && options.keep_going());
        return ProgramEnd{How::Stopped, 137};
    };
    const SearchResult result = search_folder(inspector, folder.path(), true);
    EXPECT_FALSE(result.done);
    EXPECT_THAT(commands, SizeIs(1));
}

TEST_F(Decompress, AfterOneTimeOutASearchUnpacksNothingMore) {
    for (const char* name : {"a.bgl", "b.bgl", "c.bgl"}) {
        folder.write(name, packed);
    }
    run = [](const auto&) { return timed_out; };
    const SearchResult result = search_folder(inspector, folder.path(), true);
    EXPECT_TRUE(result.done);
    EXPECT_THAT(commands, SizeIs(1));
    EXPECT_EQ(result.statistics.compressed_files, 3);
    EXPECT_THAT(reporter.messages,
                ElementsAre("Note: " + folder.file("a.bgl") +
                            " was not unpacked: the unpacking program did not end in time. No "
                            "more files are unpacked now."));
    EXPECT_THAT(programs.limits, ElementsAre(std::chrono::minutes(2)));
    // The next command tries again.
    search_folder(inspector, folder.path(), true);
    EXPECT_THAT(commands, SizeIs(2));
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

} // namespace
} // namespace morvane
