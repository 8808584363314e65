// SPDX-License-Identifier: GPL-3.0-or-later

// The code of the picture writer, which is a header alone: apart from ours, so that what checks our
// code does not check the library's.

#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>
