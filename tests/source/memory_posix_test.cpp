// SPDX-License-Identifier: GPL-3.0-or-later
#include "source/line_store.h"
#include "source/source_set.h"
#include "support/recording_reporter.h"
#include "support/temp_folder.h"
#include "system/disk.h"
#include "system/services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/resource.h>

namespace morvane {
namespace {

using test::RecordingReporter;
using test::TempFolder;
using testing::ElementsAre;
using Box = RecordingReporter::Box;

class TextFilesMemory : public testing::Test {
  protected:
    TempFolder folder;
    std::unique_ptr<Disk> disk = make_system_disk();
    RecordingReporter reporter;
    Services services{*disk, reporter};
    LineStore store;
};

#if !defined(__SANITIZE_ADDRESS__) // which ends the program where others throw
TEST_F(TextFilesMemory, FileTooLargeForTheMemoryIsTold) {
    const std::string path = folder.write("big", "");
    std::error_code error;
    std::filesystem::resize_file(path, std::uintmax_t{1} << 42, error); // takes no room on the disk
    if (!error) {
        const rlimit little{std::uint64_t{1} << 40, RLIM_INFINITY};
        setrlimit(RLIMIT_AS, &little);
        EXPECT_EQ(load_file2array(services, path, store), 0U);
        EXPECT_THAT(reporter.boxes,
                    ElementsAre(Box{"Error in load_file2array: 7 :Out of memory", Icon::None}));
    }
}
#endif

} // namespace
} // namespace morvane
