// SPDX-License-Identifier: GPL-3.0-or-later

// A disk that is full and a folder that may not be written to: the command says so, the files are
// as they were, and nothing is left lying about.

#include "cli/program_run.h"
#include "support/source_folder.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <unistd.h>

namespace morvane::test {
namespace {

namespace fs = std::filesystem;

class DiskTrouble : public testing::Test {
  protected:
    DiskTrouble() {
        copy_into(source_folder() + "/examples/airport", work_.path());
        before_ = files_below(work_.path());
    }

    void expect_refusal(const ProgramRun& run, const std::string& box) const {
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors.substr(0, run.errors.find('\n')), box);
        EXPECT_TRUE(files_below(work_.path()) == before_) << "files changed or were left behind";
    }

    TempFolder work_;
    std::map<std::string, std::string> before_;
};

TEST_F(DiskTrouble, FileThatCannotGrowIsReportedAsFullDisk) {
    // 16 blocks are 8 or 16 KiB, by the shell; the rewritten model takes 40.
    const ProgramRun run = run_commands(
        work_.path(), "trap '' XFSZ\nulimit -f 16\nmorvane-cli process airport airport.toml");
    expect_refusal(run, "[message] ERROR : 61: Disk full");
}

TEST_F(DiskTrouble, FullFileSystemIsReported) {
    const std::string inside = "mount -t tmpfs -o size=64k none small || exit 77\n"
                               "cp airport* small && cd small\n"
                               "morvane-cli process airport airport.toml >output\n"
                               "echo $? && rm output && ls -A && cmp airport_0.asm "
                               "../airport_0.asm\n";
    fs::create_directory(work_.file("small"));
    work_.write("inside", inside);
    const ProgramRun run = run_commands(work_.path(), "unshare -rm sh inside");
    if (run.output.empty()) {
        GTEST_SKIP() << "no file system may be mounted here: " << run.errors;
    }
    EXPECT_EQ(run.output, "1\nairport.asm\nairport.toml\nairport_0.asm\n");
    EXPECT_EQ(run.status, 0) << "the model file changed";
    EXPECT_EQ(run.errors.substr(0, run.errors.find('\n')), "[message] ERROR : 61: Disk full");
}

TEST_F(DiskTrouble, ReadOnlyFolderIsReported) {
    // Nothing is forbidden to root, so root runs the program as nobody.
    const std::string nobody =
        geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    if (run_commands(work_.path(), nobody + "morvane-cli --version").status != 0) {
        GTEST_SKIP() << "the program cannot be run as another user here";
    }
    fs::permissions(work_.path(), fs::perms(0555));
    const ProgramRun run =
        run_commands(work_.path(), nobody + "morvane-cli process airport airport.toml");
    fs::permissions(work_.path(), fs::perms(0755));
    expect_refusal(run, "[message] ERROR : 70: Permission denied");
}

TEST_F(DiskTrouble, OutputThatCannotBePrintedIsReported) {
    const ProgramRun run = run_commands(work_.path(), "morvane-cli inspect airport >/dev/full");
    expect_refusal(run, "[message] The output could not be written.");
}

} // namespace
} // namespace morvane::test
