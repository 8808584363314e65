// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/library_list_file.h"
#include "support/faulty_disk.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class LibraryListFile : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_.write("lists/hangar.asm", "    SCALE_AGL x,0,0A0h,32768,0,0,0,0,0,0\r\n");
        folder_.write("lists/hangar_0.asm", "; code\r\n");
        folder_.write("lists/sub/tower.asm", "    SCALE_AGL x,0,12,65536,0,0,0,0,0,0\r\n");
        folder_.write("lists/plain.asm", "; nothing\r\n");
        folder_.write("lists/odd.asm", "    SCALE_AGL x,0,wide,65536,0,0\r\n");
    }

    std::string path() const { return folder_.file("lists/objects.toml"); }

    LibraryListReading read(const std::string& text) {
        folder_.write("lists/objects.toml", text);
        LibraryListReading reading = read_library_list(services_, path());
        for (std::string& error : reading.errors) {
            if (error.starts_with(path())) {
                error.replace(0, path().size(), "objects.toml");
            }
        }
        return reading;
    }

    LibraryList good(const std::string& text) {
        LibraryListReading reading = read(text);
        EXPECT_THAT(reading.errors, IsEmpty());
        return reading.list.value_or(LibraryList());
    }

    // The error about an object with a design, an identifier and this body; line 4 is its first.
    std::string error_in(const std::string& body) {
        const LibraryListReading reading =
            read("[[object]]\ndesign = \"hangar\"\nguid = \"1,2,3,4\"\n" + body + "\n");
        EXPECT_FALSE(reading.list);
        EXPECT_THAT(reading.errors, SizeIs(1));
        return reading.errors.empty() ? "" : reading.errors[0];
    }

    // What generate_guids makes of a list, with identifiers 1, 2, 3, ...
    std::string filled(const std::string& text, std::size_t expected) {
        folder_.write("lists/objects.toml", text);
        std::int32_t next = 0;
        const GuidFilling filling = generate_guids(services_, path(), [&] {
            return Guid128{0, 0, 0, ++next};
        });
        EXPECT_THAT(filling.errors, IsEmpty());
        EXPECT_EQ(filling.filled, expected);
        EXPECT_THAT(read_library_list(services_, path()).errors, IsEmpty());
        return folder_.read("lists/objects.toml");
    }

    test::TempFolder folder_;
    test::RecordingReporter reporter_;
    std::unique_ptr<Disk> disk_ = make_system_disk();
    Services services_{*disk_, reporter_};
};

TEST_F(LibraryListFile, TakesTheExampleOfTheGuide) {
    const LibraryList list = good("[[object]]\n"
                                  "design      = \"hangar\"\n"
                                  "guid        = \"0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001\"\n"
                                  "scale       = 1.0\n"
                                  "size        = 40\n"
                                  "name        = \"Hangar\"\n"
                                  "image_power = 90\n"
                                  "type        = 3\n");
    ASSERT_EQ(list.lines.size(), 1U);
    EXPECT_EQ(list.lines[0].base, "hangar");
    EXPECT_EQ(list.lines[0].location, folder_.file("lists/hangar"));
    const LibraryEntry& entry = list.entries[0];
    EXPECT_EQ(identifier_text(entry.guid, false), "0AAAAAAAA, 0AAAAAAAA, 0AAAAAAAA, 000000001");
    EXPECT_EQ(entry.stored_scale, 65536);
    EXPECT_EQ(entry.object_size, 40);
    EXPECT_EQ(entry.name, "Hangar");
    EXPECT_EQ(entry.image_power, 90);
    EXPECT_EQ(entry.object_type, 3);
}

TEST_F(LibraryListFile, ReadsWhatIsLeftOutFromTheDesign) {
    const LibraryList list = good("[[object]]\ndesign = \"hangar\"\nguid = \"1,2,3,4\"\n"
                                  "[[object]]\ndesign = \"sub\\\\tower\"\nguid = \"1,2,3,5\"\n"
                                  "scale = 0.5\n");
    EXPECT_EQ(list.entries[0].stored_scale, 32768);
    EXPECT_EQ(list.entries[0].object_size, 160);
    EXPECT_EQ(list.entries[0].name, "hangar");
    EXPECT_EQ(list.entries[0].image_power, 100);
    EXPECT_EQ(list.entries[0].object_type, 0);
    EXPECT_EQ(list.entries[1].stored_scale, 131072);
    EXPECT_EQ(list.entries[1].object_size, 12);
    EXPECT_EQ(list.entries[1].name, "tower");
    EXPECT_EQ(list.lines[1].base, "sub\\tower"); // as the list writes it
}

TEST_F(LibraryListFile, TakesADesignOfAnotherFolder) {
    folder_.write("elsewhere/shed.asm", "    SCALE_AGL x,0,12,65536,0,0,0,0,0,0\r\n");
    folder_.write("elsewhere/shed_0.asm", "; code\r\n");
    const std::string design = folder_.file("elsewhere/shed");
    const LibraryList list = good("[[object]]\ndesign = '" + design + "'\nguid = \"1,2,3,4\"\n");
    ASSERT_EQ(list.lines.size(), 1U);
    EXPECT_EQ(list.lines[0].base, design);
    EXPECT_EQ(list.lines[0].location, design);
}

TEST_F(LibraryListFile, NeedsNothingOfTheDesignWhenAllIsGiven) {
    const LibraryList list =
        good("[[object]]\ndesign = \"plain\"\nguid = \"1,2,3,4\"\nscale = 2\nsize = 7.5\n");
    EXPECT_EQ(list.entries[0].stored_scale, 32768);
    EXPECT_EQ(list.entries[0].object_size, 8);
}

TEST_F(LibraryListFile, RefusesADuplicateIdentifier) {
    const LibraryListReading reading =
        read("[[object]]\ndesign = \"hangar\"\nguid = \"0f,2,3,4\"\n"
             "[[object]]\ndesign = \"hangar\"\nguid = \"F,2,3,4h\"\n");
    EXPECT_THAT(reading.errors,
                ElementsAre("objects.toml:6:8: Duplicated ID found : 00000000Fh, 000000002h, "
                            "000000003h, 000000004h, the \"guid\" of line 3\n"
                            "guid = \"F,2,3,4h\"\n"
                            "       ^"));
}

TEST_F(LibraryListFile, RefusesIdentifiersOfThreeOrFiveParts) {
    for (const std::string guid : {"1,2,3", "1,2,3,4,5"}) {
        EXPECT_THAT(read("[[object]]\ndesign = \"hangar\"\nguid = \"" + guid + "\"\n").errors,
                    ElementsAre(HasSubstr("objects.toml:3:8: \"guid\" must be four "
                                          "hexadecimal words parted by commas")));
    }
}

TEST_F(LibraryListFile, RefusesAMissingIdentifier) {
    EXPECT_THAT(read("\n[[object]]\ndesign = \"hangar\"\n").errors,
                ElementsAre("objects.toml:2:1: \"guid\" is missing (library create "
                            "--generate-guids fills it in)\n[[object]]\n^"));
}

TEST_F(LibraryListFile, RefusesUnknownKeys) {
    EXPECT_EQ(error_in("  imagepower = 100"),
              "objects.toml:4:3: unknown key \"imagepower\" (did you mean \"image_power\"?)\n"
              "  imagepower = 100\n"
              "  ^");
    EXPECT_THAT(read("[[objects]]\ndesign = \"hangar\"\n").errors,
                ElementsAre(HasSubstr(
                    "objects.toml:1:3: unknown key \"objects\" outside of [[object]] (did "
                    "you mean \"object\"?)")));
}

TEST_F(LibraryListFile, RefusesAMissingDesign) {
    EXPECT_THAT(read("[[object]]\nguid = \"1,2,3,4\"\n").errors,
                ElementsAre(HasSubstr("objects.toml:1:1: \"design\" is missing")));
    EXPECT_THAT(read("[[object]]\ndesign = \"shed\"\nguid = \"1,2,3,4\"\n").errors,
                ElementsAre("objects.toml:2:10: \"design\" names no design: there is no file " +
                            folder_.file("lists/shed.asm") +
                            "\n"
                            "design = \"shed\"\n"
                            "         ^"));
    EXPECT_THAT(read("[[object]]\ndesign = \"hangar.asm\"\nguid = \"1,2,3,4\"\n").errors,
                ElementsAre(HasSubstr("(the path is written without its ending)")));
    EXPECT_THAT(read("[[object]]\ndesign = 5\nguid = \"1,2,3,4\"\n").errors,
                ElementsAre(HasSubstr("objects.toml:2:10: \"design\" must be text")));
    EXPECT_THAT(read("[[object]]\ndesign = \"\"\nguid = \"1,2,3,4\"\n").errors,
                ElementsAre(HasSubstr("names no design")));
}

TEST_F(LibraryListFile, RefusesDesignsThatDoNotSayTheirMeasures) {
    EXPECT_THAT(read("[[object]]\ndesign = \"plain\"\nguid = \"1,2,3,4\"\n").errors,
                ElementsAre(HasSubstr(
                    "objects.toml:2:10: \"design\" names a design that says no scale and "
                    "size: The file " +
                    folder_.file("lists/plain") + ".asm has not SCALE command. Give both here")));
    EXPECT_THAT(read("[[object]]\ndesign = \"odd\"\nguid = \"1,2,3,4\"\n").errors,
                ElementsAre(HasSubstr("whose size is no number: \"wide\"")));
}

TEST_F(LibraryListFile, RefusesNumbersThatCannotBe) {
    EXPECT_THAT(error_in("scale = 0"), HasSubstr("objects.toml:4:9: \"scale\" must not be 0"));
    EXPECT_THAT(error_in("scale = 0.0"), HasSubstr("\"scale\" must not be 0"));
    EXPECT_THAT(error_in("scale = 0.00001"), HasSubstr("\"scale\" is too small a scale"));
    EXPECT_THAT(error_in("scale = nan"), HasSubstr("\"scale\" must be a number"));
    EXPECT_THAT(error_in("scale = \"1\""), HasSubstr("must be a number, without quotes"));
    EXPECT_THAT(error_in("size = 3000000000"), HasSubstr("\"size\" is too large a size"));
    EXPECT_THAT(error_in("image_power = 101"),
                HasSubstr("\"image_power\" must be a whole number from 0 to 100"));
    EXPECT_THAT(error_in("type = 2147483648"), HasSubstr("\"type\" must be a whole number"));
    EXPECT_THAT(error_in("name = \"12\\\" gun\""), HasSubstr("\"name\" must not hold a double"));
    EXPECT_THAT(error_in("name = \"a\\nb\""), HasSubstr("on one line"));
}

TEST_F(LibraryListFile, TellsThatANameIsCut) {
    const LibraryList list = good("[[object]]\ndesign = \"hangar\"\nguid = \"1,2,3,4\"\nname = \"" +
                                  std::string(48, 'x') + "\"\n");
    EXPECT_EQ(list.entries[0].name, std::string(47, 'x'));
    EXPECT_THAT(reporter_.messages, ElementsAre("Note: the name '" + std::string(48, 'x') +
                                                "' is cut to 47 characters."));
}

TEST_F(LibraryListFile, TakesAHundredObjectsAndNoMore) {
    std::string text;
    for (int i = 0; i < 100; ++i) {
        text += "[[object]]\ndesign = \"hangar\"\nguid = \"1,2,3," + std::to_string(i) + "\"\n";
    }
    EXPECT_EQ(good(text).lines.size(), 100U);
    EXPECT_THAT(read(text + "[[object]]\ndesign = \"hangar\"\nguid = \"2,2,3,4\"\n").errors,
                ElementsAre(HasSubstr("objects.toml:301:1: a library takes 100 objects")));
}

TEST_F(LibraryListFile, GeneratesMissingIdentifiersAndKeepsEverythingElse) {
    EXPECT_EQ(filled("# our objects\r\n"
                     "[[object]] # the first\r\n"
                     "\tdesign      = \"hangar\" # kept\r\n"
                     "\tname = 'H'\r\n"
                     "\r\n"
                     "[[object]]\r\n"
                     "guid = \"0,0,0,1\" # taken already\r\n"
                     "design=\"hangar\"\r\n"
                     "[[object]]\r\n"
                     "design=\"hangar\"\r\n",
                     2),
              "# our objects\r\n"
              "[[object]] # the first\r\n"
              "\tdesign      = \"hangar\" # kept\r\n"
              "\tguid        = \"000000000, 000000000, 000000000, 000000002\"\r\n"
              "\tname = 'H'\r\n"
              "\r\n"
              "[[object]]\r\n"
              "guid = \"0,0,0,1\" # taken already\r\n"
              "design=\"hangar\"\r\n"
              "[[object]]\r\n"
              "design=\"hangar\"\r\n"
              "guid  = \"000000000, 000000000, 000000000, 000000003\"\r\n");
}

TEST_F(LibraryListFile, GeneratesIdentifiersBehindTheLastLineWithoutAnEnd) {
    EXPECT_EQ(filled("\xEF\xBB\xBF[[object]]\nname = \"\xC3\xA9\"\ndesign = \"hangar\"", 1),
              "\xEF\xBB\xBF[[object]]\nname = \"\xC3\xA9\"\ndesign = \"hangar\"\n"
              "guid   = \"000000000, 000000000, 000000000, 000000001\"");
}

TEST_F(LibraryListFile, GeneratesIdentifiersInObjectsOnOneLine) {
    EXPECT_EQ(filled("object = [ # \xC3\xA9\n  { name = \"\xC3\xA9\", design = \"hangar\" },"
                     "{design=\"hangar\"} ]\n",
                     2),
              "object = [ # \xC3\xA9\n"
              "  { guid = \"000000000, 000000000, 000000000, 000000001\", name = \"\xC3\xA9\", "
              "design = \"hangar\" },"
              "{ guid = \"000000000, 000000000, 000000000, 000000002\",design=\"hangar\"} ]\n");
    EXPECT_EQ(filled("\xEF\xBB\xBFobject = [{design=\"hangar\"}]", 1),
              "\xEF\xBB\xBFobject = [{ guid = \"000000000, 000000000, 000000000, 000000001\","
              "design=\"hangar\"}]");
}

TEST_F(LibraryListFile, GeneratesBehindADesignThatTakesTwoLines) {
    EXPECT_EQ(filled("[[object]]\ndesign = \"\"\"han\\\n   gar\"\"\" # here\nsize = 4\n", 1),
              "[[object]]\ndesign = \"\"\"han\\\n   gar\"\"\" # here\n"
              "guid   = \"000000000, 000000000, 000000000, 000000001\"\nsize = 4\n");
}

TEST_F(LibraryListFile, LeavesACompleteListAlone) {
    const std::string text = "[[object]]\ndesign = \"hangar\"\nguid = \"1,2,3,4\"\n";
    EXPECT_EQ(filled(text, 0), text);
}

TEST_F(LibraryListFile, GeneratesNothingForAWrongList) {
    const std::string text = "[[object]]\ndesign = \"hangar\"\nscale = 0\n";
    folder_.write("lists/objects.toml", text);
    const GuidFilling filling = generate_guids(services_, path(), random_guid);
    EXPECT_EQ(filling.filled, 0U);
    EXPECT_THAT(filling.errors, ElementsAre(HasSubstr("\"scale\" must not be 0")));
    EXPECT_EQ(folder_.read("lists/objects.toml"), text);
}

TEST_F(LibraryListFile, AFailingDiskLeavesTheOldList) {
    const std::string text = "[[object]]\ndesign = \"hangar\"\n";
    test::FaultyDisk faulty;
    const Services failing{faulty, reporter_};
    std::size_t failures = 0;
    for (std::size_t n = 1; n < 12; ++n) {
        folder_.write("lists/objects.toml", text);
        faulty.fail_at(n, ErrorNumber::DiskFull);
        try {
            const GuidFilling filling = generate_guids(failing, path(), random_guid);
            failures += filling.errors.empty() ? 0 : 1;
            if (filling.filled == 0) {
                EXPECT_EQ(folder_.read("lists/objects.toml"), text);
            }
        } catch (const RuntimeError& error) {
            ++failures;
            EXPECT_EQ(error.number(), 61);
            EXPECT_EQ(folder_.read("lists/objects.toml"), text);
        }
    }
    EXPECT_GT(failures, 3U);
}

TEST(RandomGuid, IsAnotherEachTime) {
    EXPECT_NE(random_guid(), random_guid());
}

TEST_F(LibraryListFile, AnEmptyListIsWrittenAsOne) {
    EXPECT_TRUE(good("object = []\n").lines.empty());
    EXPECT_THAT(read("").errors, ElementsAre(HasSubstr("there is no [[object]]")));
    EXPECT_THAT(read("object = []\nother = 1\n").errors,
                testing::Contains(HasSubstr("unknown key \"other\"")));
}

TEST_F(LibraryListFile, TheDesignIsWrittenAsTheWindowWritesIt) {
    folder_.write("lists/h\xC3\xBCtte.asm", "    SCALE_AGL x,0,12,65536,0,0,0,0,0,0\r\n");
    const LibraryList list = good("[[object]]\ndesign = \"h\xC3\xBCtte\"\nguid = \"1,2,3,4\"\n");
    EXPECT_EQ(list.lines.at(0).base, "h\xC3\xBCtte");
    EXPECT_EQ(list.entries.at(0).name, "h\xFCtte"); // the name's bytes in the library
}

} // namespace
} // namespace morvane
