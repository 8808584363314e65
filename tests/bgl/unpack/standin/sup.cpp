// SPDX-License-Identifier: GPL-3.0-or-later

// A stand-in for the simulator's closed library, for the tests of bglunpack. What it takes for a
// compressed file is 128 bytes of header and then the uncompressed file, each byte's bits 01011010
// turned over. The header's FL_spare2 says what is to happen: 1 unpacking, 2 failure with size 0,
// 3 a fault inside the library, 4 a failure that only the result tells.

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string& contents() {
    static std::string bytes;
    return bytes;
}

std::string read_file(const char* name) {
    std::string bytes;
    if (std::FILE* file = std::fopen(name, "rb")) {
        for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
            bytes += static_cast<char>(c);
        }
        std::fclose(file);
    }
    return bytes;
}

// Tells the test what the library was asked: "NAME" and, when released, the size again.
void log_call(const std::string& text) {
    if (const char* name = std::getenv("STANDIN_LOG")) {
        if (std::FILE* file = std::fopen(name, "ab")) {
            std::fwrite(text.data(), 1, text.size(), file);
            std::fclose(file);
        }
    }
}

} // namespace

extern "C" __declspec(dllexport) int __stdcall FSGetUncompressedBGLData(const char* name,
                                                                        unsigned long* size,
                                                                        void** data) {
    log_call(std::string("get ") + name + "\n");
    *size = 0;
    const std::string file = read_file(name);
    const char what = file.size() > 128 ? file[122] : '\2';
    if (what == 3) {
        std::abort();
    }
    if (what == 2) {
        return 1;
    }
    contents() = file.substr(128);
    for (char& byte : contents()) {
        byte = static_cast<char>(byte ^ 0x5A);
    }
    *size = static_cast<unsigned long>(contents().size());
    *data = contents().data();
    return what == 1 ? 0 : 1;
}

#ifndef STANDIN_LACKING
extern "C" __declspec(dllexport) int __stdcall FSCompleteBGLOperation(unsigned long size,
                                                                      void* data) {
    log_call("complete " + std::to_string(size) +
             (data == contents().data() ? " same data\n" : " other data\n"));
    contents().clear();
    return 0;
}
#endif
