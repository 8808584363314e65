// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace morvane {

class Disk;
class ReadableFile;
class WritableFile;

/// The whole number that `bytes` holds at `offset`, lowest byte first, on any machine. All its
/// bytes must be there.
template <typename Number>
Number little_endian(std::string_view bytes, std::size_t offset) {
    using Unsigned = std::make_unsigned_t<Number>;
    Unsigned value = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;) {
        const auto byte = static_cast<unsigned char>(bytes[offset + i]);
        value = static_cast<Unsigned>(static_cast<Unsigned>(value << 8) | byte);
    }
    return static_cast<Number>(value);
}

/// Appends a whole number, lowest byte first.
template <typename Number>
void append_little_endian(std::string& bytes, Number number) {
    auto value = static_cast<std::make_unsigned_t<Number>>(number);
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        bytes += static_cast<char>(value & 0xFF);
        value = static_cast<std::make_unsigned_t<Number>>(value >> 8);
    }
}

inline constexpr std::size_t header_size = 128;
inline constexpr std::size_t extension_size = 40;

/// The record at the start of every BGL file. Offsets ("_ptr", "_data" and others) count from the
/// start of the file, 0 meaning that the file has no such data; bounds are in the file's raw units
/// (see lat_degrees and lon_degrees).
struct BglHeader {
    std::int16_t FL_world_set = 0; // the kind of file
    std::int32_t FL_north_bounds = 0;
    std::int32_t FL_south_bounds = 0;
    std::int32_t FL_east_bounds = 0;
    std::int32_t FL_west_bounds = 0;
    std::int32_t FL_vor_ptr = 0;
    std::int16_t FL_vor_lo = 0;
    std::int16_t FL_vor_hi = 0;
    std::array<std::int32_t, 6> FL_free{};
    std::int32_t FL_msa_data = 0;
    std::int32_t FL_terrain_data = 0;
    std::int32_t FL_object_ptr = 0;
    std::int32_t FL_library_ptr = 0;
    std::int32_t FL_facilities_ptr = 0;
    std::int32_t FL_free_70 = 0;
    std::int32_t FL_free_74 = 0;
    std::int32_t FL_adf_data = 0;
    std::int32_t FL_dynamic_data = 0;
    std::array<std::int32_t, 2> FL_library_min{};
    std::array<std::int32_t, 2> FL_library_max{};
    std::int32_t FL_misc_data = 0;
    std::int32_t FL_title = 0;
    std::int32_t FL_magvar = 0;
    std::int32_t FL_exceptions = 0;
    std::int32_t FL_magic = 0;  // not 0: the extension follows
    std::int32_t FL_spare2 = 0; // not 0: the file is compressed
    std::int16_t FL_spare3 = 0;

    bool operator==(const BglHeader&) const = default;
};

/// The record after the header of files of the new format. All zero where there is none.
struct HeaderExtension {
    std::int32_t guid_1 = 0;
    std::int32_t guid_2 = 0;
    std::int32_t guid_3 = 0;
    std::int32_t guid_4 = 0;
    std::int32_t unnamed = 0;
    std::int32_t build_num = 0;
    std::int32_t ptr_count = 0;
    std::int32_t facility2_name_lst = 0;
    std::int32_t facility2_band_list = 0;
    std::int32_t facility2_data = 0; // offset of airport facility data

    bool operator==(const HeaderExtension&) const = default;
};

/// Calls `visit(offset, name, field)` for every field of a header, in the order of the file.
/// Reading, dumping and exporting all use this one table.
template <typename Header, typename Visit>
void for_each_field(Header& header, const Visit& visit) requires requires {
    header.FL_world_set;
}
{
    visit(0, "FL_world_set", header.FL_world_set);
    visit(2, "FL_north_bounds", header.FL_north_bounds);
    visit(6, "FL_south_bounds", header.FL_south_bounds);
    visit(10, "FL_east_bounds", header.FL_east_bounds);
    visit(14, "FL_west_bounds", header.FL_west_bounds);
    visit(18, "FL_vor_ptr", header.FL_vor_ptr);
    visit(22, "FL_vor_lo", header.FL_vor_lo);
    visit(24, "FL_vor_hi", header.FL_vor_hi);
    visit(26, "FL_free[0]", header.FL_free[0]);
    visit(30, "FL_free[1]", header.FL_free[1]);
    visit(34, "FL_free[2]", header.FL_free[2]);
    visit(38, "FL_free[3]", header.FL_free[3]);
    visit(42, "FL_free[4]", header.FL_free[4]);
    visit(46, "FL_free[5]", header.FL_free[5]);
    visit(50, "FL_msa_data", header.FL_msa_data);
    visit(54, "FL_terrain_data", header.FL_terrain_data);
    visit(58, "FL_object_ptr", header.FL_object_ptr);
    visit(62, "FL_library_ptr", header.FL_library_ptr);
    visit(66, "FL_facilities_ptr", header.FL_facilities_ptr);
    visit(70, "FL_free_70", header.FL_free_70);
    visit(74, "FL_free_74", header.FL_free_74);
    visit(78, "FL_adf_data", header.FL_adf_data);
    visit(82, "FL_dynamic_data", header.FL_dynamic_data);
    visit(86, "FL_library_min[0]", header.FL_library_min[0]);
    visit(90, "FL_library_min[1]", header.FL_library_min[1]);
    visit(94, "FL_library_max[0]", header.FL_library_max[0]);
    visit(98, "FL_library_max[1]", header.FL_library_max[1]);
    visit(102, "FL_misc_data", header.FL_misc_data);
    visit(106, "FL_title", header.FL_title);
    visit(110, "FL_magvar", header.FL_magvar);
    visit(114, "FL_exceptions", header.FL_exceptions);
    visit(118, "FL_magic", header.FL_magic);
    visit(122, "FL_spare2", header.FL_spare2);
    visit(126, "FL_spare3", header.FL_spare3);
}

/// The same for an extension; offsets count from the start of the file. The unnamed field has an
/// empty name.
template <typename Extension, typename Visit>
void for_each_field(Extension& extension, const Visit& visit) requires requires {
    extension.guid_1;
}
{
    visit(128, "guid_1", extension.guid_1);
    visit(132, "guid_2", extension.guid_2);
    visit(136, "guid_3", extension.guid_3);
    visit(140, "guid_4", extension.guid_4);
    visit(144, "", extension.unnamed);
    visit(148, "build_num", extension.build_num);
    visit(152, "ptr_count", extension.ptr_count);
    visit(156, "facility2_name_lst", extension.facility2_name_lst);
    visit(160, "facility2_band_list", extension.facility2_band_list);
    visit(164, "facility2_data", extension.facility2_data);
}

/// Reads a header from the first `header_size` bytes of a file, which must all be there.
BglHeader decode_header(std::string_view bytes);

/// Reads an extension from the `extension_size` bytes after the header.
HeaderExtension decode_extension(std::string_view bytes);

/// Whether `FL_world_set` is 1, 3 or 4. A 2 makes a file invalid although the report has a line
/// for that kind; this is intended.
bool is_valid_bgl(const BglHeader& header);

/// The list "error.txt" in the program folder, to which the paths of invalid files are appended.
class InvalidFileList {
  public:
    InvalidFileList(Disk& disk, const std::string& program_folder);
    InvalidFileList(const InvalidFileList&) = delete;
    InvalidFileList& operator=(const InvalidFileList&) = delete;
    ~InvalidFileList();

    /// Appends the full path as one line. Throws RuntimeError.
    void add(const std::string& path);

  private:
    Disk& disk_;
    std::string path_;
    std::unique_ptr<WritableFile> file_; // stays open, since a search can add thousands of lines
};

enum class BglState {
    NotABgl, // missing, or its name does not end in ".bgl"
    Invalid, // its header is not that of a BGL file
    Valid,
};

/// What opening a file as a BGL file found.
struct OpenedBgl {
    BglState state = BglState::NotABgl;
    std::unique_ptr<ReadableFile> file{}; // open when valid
    BglHeader header{};
    HeaderExtension extension{};
};

/// Opens a BGL file and reads its header, and the extension when the header is valid and
/// `FL_magic` is not 0. What a short file does not hold reads as zeros. An invalid file is closed
/// again and added to the list. Throws RuntimeError when a file that is there cannot be read.
OpenedBgl open_bgl(Disk& disk, const std::string& path, InvalidFileList& invalid_files);

} // namespace morvane
