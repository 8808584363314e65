#include "bgl/object_lines.h"

#include "base/numbers.h"
#include "base/text.h"

namespace morvane {

namespace {

// Without a scale the text has a blank behind it, on which readers of the reports rely.
std::string scale_text(const LibraryObject& object) {
    return object.stored_scale != 0 ? format_decimal(65536.0 / object.stored_scale, 1, 3) : "0.0 ";
}

} // namespace

std::string guid_text(const Guid128& guid) {
    return guid_word(guid[0]) + "h," + guid_word(guid[1]) + "h," + guid_word(guid[2]) + "h," +
           guid_word(guid[3]) + "h";
}

std::string object_name(const LibraryObject& object) {
    return std::string(trim(object.name));
}

std::string analysis_line(const LibraryObject& object) {
    return " " + guid_text(object.guid) + ", " + scale_text(object) + " " +
           std::to_string(object.type) + " " + std::to_string(object.image_power) + " " +
           object_name(object);
}

std::string search_line(const LibraryObject& object) {
    return guid_text(object.guid) + "," + scale_text(object) + "," + std::to_string(object.type) +
           "," + object_name(object);
}

} // namespace morvane
