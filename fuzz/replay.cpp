// Runs every file of folders through a target, without a fuzzing engine:
//
//   replay_TARGET FOLDER...
//
// A property that does not hold ends the program, as a sanitizer does; the last file that was
// named is the one.
#include <dirent.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "property.h"

namespace {

/// The files of a folder, but for hidden ones and folders, in order.
std::vector<std::string> files_in(const char *folder) {
    std::vector<std::string> files;
    DIR *open = opendir(folder);
    if (open == nullptr) {
        return files;
    }
    for (const dirent *entry = readdir(open); entry != nullptr; entry = readdir(open)) {
        if (entry->d_name[0] != '.' && entry->d_type != DT_DIR) {
            files.push_back(std::string(folder) + "/" + entry->d_name);
        }
    }
    closedir(open);
    std::sort(files.begin(), files.end());
    return files;
}

/// False when the file cannot be read.
bool run(const std::string &file) {
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    std::FILE *stream = std::fopen(file.c_str(), "rb");
    if (stream == nullptr) {
        return false;
    }
    std::vector<uint8_t> content(size_t{1} << 20);
    content.resize(std::fread(content.data(), 1, content.size(), stream));
    const bool whole = std::feof(stream) != 0;
    std::fclose(stream);
    // Exactly as large as the input, as an engine would hand it over.
    const std::unique_ptr<uint8_t[]> bytes(new uint8_t[content.size()]);
    std::copy(content.begin(), content.end(), bytes.get());
    LLVMFuzzerTestOneInput(bytes.get(), content.size());
    return whole;
}

} // namespace

int main(int argc, char **argv) {
    size_t inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const std::vector<std::string> files = files_in(argv[i]);
        if (files.empty()) {
            std::fprintf(stderr, "replay: no files in %s\n", argv[i]);
            return 1;
        }
        for (const std::string &file : files) {
            if (!run(file)) {
                std::fprintf(stderr, "replay: cannot read all of %s\n", file.c_str());
                return 1;
            }
            ++inputs;
        }
    }
    std::printf("%zu inputs hold\n", inputs);
    return 0;
}
