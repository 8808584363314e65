// SPDX-License-Identifier: GPL-3.0-or-later

// Every call to the disk fails once, in every situation that there is: all files must be as they
// were, or all new.

#include "base/errors.h"
#include "support/faulty_disk.h"
#include "support/links.h"
#include "support/temp_folder.h"
#include "support/thrown.h"
#include "system/replace_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace morvane {
namespace {

using test::FaultyDisk;
using test::TempFolder;
using testing::HasSubstr;

/// What lies in a folder: a link as its target, a file as its permissions and content.
std::map<std::string, std::string> content_of(const TempFolder& folder) {
    std::map<std::string, std::string> result;
    for (const std::string& name : folder.names()) {
        const fs::path path = folder.file(name);
        if (fs::is_symlink(path)) {
            result[name] = "-> " + fs::read_symlink(path).string();
        } else {
            const auto mode = static_cast<unsigned>(fs::status(path).permissions());
            result[name] = std::to_string(mode) + " " + folder.read(name);
        }
    }
    return result;
}

void make_file(const TempFolder& folder, const std::string& name) {
    folder.write(name, "old content of " + name + std::string(1000, '.'));
    fs::permissions(folder.file(name), fs::perms::owner_read | fs::perms::owner_write);
}

struct Situation {
    std::string name;
    void (*prepare)(const TempFolder&);
    std::vector<std::string> replaced;
};

void PrintTo(const Situation& situation, std::ostream* out) {
    *out << situation.name;
}

void one_file(const TempFolder& folder) {
    make_file(folder, "a");
}

void two_files(const TempFolder& folder) {
    make_file(folder, "a");
    make_file(folder, "b");
}

void nothing(const TempFolder& /*folder*/) {}

void hard_links(const TempFolder& folder) {
    two_files(folder);
    fs::create_hard_link(folder.file("a"), folder.file("a again"));
    fs::create_hard_link(folder.file("b"), folder.file("b again"));
}

void soft_links(const TempFolder& folder) {
    make_file(folder, "real a");
    fs::create_symlink("real a", folder.file("a"));
    fs::create_symlink("real b", folder.file("b")); // dangles
}

void strays(const TempFolder& folder) {
    two_files(folder);
    folder.write("a.morvane-tmp", "stray");
    folder.write("b.morvane-old", "stray");
}

class ReplaceFaults : public testing::TestWithParam<Situation> {
  protected:
    /// Whether the files were replaced.
    bool run(FaultyDisk& disk, const TempFolder& folder) {
        std::vector<FileReplacement> files;
        for (const std::string& name : GetParam().replaced) {
            files.push_back({folder.file(name), [name](TextWriter& out) {
                                 out.line("new " + name);
                                 out.write(std::string(1'100'000, 'n'));
                             }});
        }
        try {
            replace_files(disk, files);
            return true;
        } catch (const RuntimeError&) {
            return false;
        }
    }

    std::map<std::string, std::string> content_when_all_is_well() {
        TempFolder folder;
        GetParam().prepare(folder);
        FaultyDisk disk;
        EXPECT_TRUE(run(disk, folder));
        calls = disk.calls();
        return content_of(folder);
    }

    static void drop_strays(std::map<std::string, std::string>& content) {
        std::erase_if(content, [](const auto& file) {
            return file.first.find(".morvane-") != std::string::npos;
        });
    }

    std::size_t calls = 0;
};

TEST_P(ReplaceFaults, AllOldOrAllNew) {
    if (GetParam().name == "SymbolicLinks" && !test::has_symbolic_links) {
        GTEST_SKIP() << "no symbolic links here";
    }
    const auto expected = content_when_all_is_well();
    ASSERT_GT(calls, 5U);
    std::size_t failures = 0;
    for (const auto fault : {FaultyDisk::Fault::Throw, FaultyDisk::Fault::ShortWrite}) {
        for (std::size_t n = 1; n <= calls; ++n) {
            TempFolder folder;
            GetParam().prepare(folder);
            const auto before = content_of(folder);
            FaultyDisk disk;
            disk.fail_at(n, ErrorNumber::DiskFull, fault);
            const bool replaced = run(disk, folder);
            auto after = content_of(folder);
            failures += replaced ? 0U : 1U;
            const std::string what = disk.journal()[n - 1];
            auto allowed = replaced ? expected : before;
            if (what.find("remove ") == 0 || GetParam().name == "Strays") {
                drop_strays(after); // one that could not be removed; those that were there before
                drop_strays(allowed);
            }
            ASSERT_EQ(after, allowed) << "call " << n << ": " << what;
        }
    }
    EXPECT_GT(failures, 5U);
}

INSTANTIATE_TEST_SUITE_P(Situations, ReplaceFaults,
                         testing::Values(Situation{"OneFile", one_file, {"a"}},
                                         Situation{"NewFile", nothing, {"a"}},
                                         Situation{"TwoFiles", two_files, {"a", "b"}},
                                         Situation{"OldAndNew", one_file, {"a", "b"}},
                                         Situation{"NewAndOld", one_file, {"b", "a"}},
                                         Situation{"TwoNewFiles", nothing, {"a", "b"}},
                                         Situation{"HardLinks", hard_links, {"a", "b"}},
                                         Situation{"OneHardLink", hard_links, {"a"}},
                                         Situation{"SymbolicLinks", soft_links, {"a", "b"}},
                                         Situation{"Strays", strays, {"a", "b"}}),
                         [](const testing::TestParamInfo<Situation>& each) {
                             return each.param.name;
                         });

// When even the putting back fails, the old content still lies beside, and the error says where.
TEST(ReplaceFilesOnADyingDisk, TheOldContentIsKeptAndNamed) {
    std::size_t kept = 0;
    for (std::size_t n = 1; n < 60; ++n) {
        TempFolder folder;
        two_files(folder);
        fs::create_hard_link(folder.file("a"), folder.file("a again"));
        const auto before = content_of(folder);
        FaultyDisk disk;
        disk.fail_from(n);
        const auto write = [](TextWriter& out) { out.write("new"); };
        try {
            replace_files(disk, {{folder.file("a"), write}, {folder.file("b"), write}});
        } catch (const RuntimeError& error) {
            const auto after = content_of(folder);
            ASSERT_EQ(after.at("b"), before.at("b")) << n;
            if (after.at("a") != before.at("a")) {
                ++kept;
                ASSERT_EQ(after.at("a.morvane-old"), before.at("a")) << n;
                EXPECT_THAT(error.about(),
                            HasSubstr("its old content is in " + folder.file("a.morvane-old")));
            }
        }
    }
    EXPECT_GT(kept, 0U);
}

} // namespace
} // namespace morvane
