#include "bgl/header.h"

#include "bgl/little_endian.h"

namespace morvane {

namespace {

// Fills every field of a record from `bytes`, whose first byte lies at `start` in the file.
template <typename Record>
Record decode(std::string_view bytes, std::size_t start) {
    Record record;
    for_each_field(record, [&](std::size_t offset, const char* /*name*/, auto& field) {
        field = little_endian<std::remove_reference_t<decltype(field)>>(bytes, offset - start);
    });
    return record;
}

} // namespace

BglHeader decode_header(std::string_view bytes) {
    return decode<BglHeader>(bytes, 0);
}

HeaderExtension decode_extension(std::string_view bytes) {
    return decode<HeaderExtension>(bytes, header_size);
}

bool is_valid_bgl(const BglHeader& header) {
    return header.FL_world_set == 1 || header.FL_world_set == 3 || header.FL_world_set == 4;
}

} // namespace morvane
