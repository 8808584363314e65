// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scene/read_library.h"
#include "scene/scene.h"
#include "scene/shape.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace morvane {
class Disk;
class ReadableFile;
} // namespace morvane

namespace morvane::scene {

/// Objects of library files by file and identifier. The list of a file's objects is read once and
/// kept, the objects themselves are read each time.
class ObjectFiles {
  public:
    explicit ObjectFiles(Disk& disk) : disk_(disk) {}

    /// Reads an object. One that is not found, or whose file cannot be read, draws nothing; its
    /// `trouble` says why.
    Shape read(const std::string& path, const Guid128& guid);
    /// Adds to the catalogue the objects that the scene or the ghost calls and that one of the
    /// files has. Of several files the first counts; those that cannot be read have no objects.
    void add_called(Catalogue& catalogue, const std::vector<Mark>& marks,
                    const std::vector<std::string>& paths);
    /// Lists files anew when they are needed next: they may have changed. What was unpacked stays.
    void forget() { places_.clear(); }
    /// What a compressed file holds, for as long as it is compressed. The files kept before are
    /// dropped when all together would be more than `most_unpacked` bytes.
    void keep_unpacked(const std::string& path, std::shared_ptr<const std::string> bytes);

    static constexpr std::size_t most_unpacked = std::size_t{128} << 20;

  private:
    using Places = std::map<Guid128, ObjectPlace>;
    const Places& places_of(const std::string& path);
    std::unique_ptr<ReadableFile> open(const std::string& path);

    Disk& disk_;
    std::map<std::string, Places> places_;
    std::map<std::string, std::shared_ptr<const std::string>> unpacked_;
    std::size_t unpacked_bytes_ = 0;
};

} // namespace morvane::scene
