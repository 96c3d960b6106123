#include "io/rights.h"

#include <filesystem>
#include <system_error>

#include "io/input.h"
#include "io/output.h"

#if defined(__linux__) && __has_include(<linux/landlock.h>)
#define KVT_HAS_LANDLOCK
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#endif

namespace kvt_tool {

namespace {

void make_folder(const std::string &folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw OutputError{shown_name(folder), error.message()};
    }
}

} // namespace

#ifdef KVT_HAS_LANDLOCK

namespace {

// Headers may be older than the kernel.
constexpr uint64_t right_to_refer = 1 << 13;    // move a file to another folder; version 2
constexpr uint64_t right_to_truncate = 1 << 14; // version 3
constexpr uint64_t rights_of_network = 3;       // bind and connect by TCP; version 4
constexpr uint64_t rights_of_version_1 = right_to_refer - 1;

constexpr uint64_t to_read_file = LANDLOCK_ACCESS_FS_READ_FILE;
constexpr uint64_t to_list = LANDLOCK_ACCESS_FS_READ_DIR;
constexpr uint64_t to_write_file = LANDLOCK_ACCESS_FS_WRITE_FILE | right_to_truncate;
constexpr uint64_t to_make_files = to_list | to_read_file | to_write_file |
                                   LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_REMOVE_FILE;

/// Like landlock_ruleset_attr, with what came after version 1.
struct Ruleset {
    uint64_t files;
    uint64_t network;
};

long version_of_landlock() {
    return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
}

Ruleset ruleset_of(long version) {
    return {rights_of_version_1 | (version >= 2 ? right_to_refer : 0) |
                (version >= 3 ? right_to_truncate : 0),
            version >= 4 ? rights_of_network : 0};
}

/// The rules that leave some rights to the process.
class Rules {
public:
    explicit Rules(const Ruleset &known)
        : known_(known.files),
          rules_(static_cast<int>(syscall(SYS_landlock_create_ruleset, &known,
                                          known.network != 0 ? sizeof known : sizeof known.files,
                                          0))) {}

    ~Rules() {
        if (rules_ >= 0) {
            close(rules_);
        }
    }

    Rules(const Rules &) = delete;
    Rules &operator=(const Rules &) = delete;

    /// Leaves rights to a file, or others to a folder and all that is in it. What is not there
    /// needs none.
    void allow(const std::string &path, uint64_t rights_of_file, uint64_t rights_of_folder) const {
        const int file = open(path.c_str(), O_PATH | O_CLOEXEC);
        struct stat status;
        if (file < 0) {
            return;
        }
        if (fstat(file, &status) == 0) {
            const bool is_folder = S_ISDIR(status.st_mode);
            landlock_path_beneath_attr rule = {};
            rule.allowed_access = (is_folder ? rights_of_folder : rights_of_file) & known_;
            rule.parent_fd = file;
            // Refused for what has no name, such as a pipe that is open: that needs no rule.
            syscall(SYS_landlock_add_rule, rules_, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
        }
        close(file);
    }

    /// Where the kernel refuses, the process keeps what it has.
    void restrict_process() const {
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0) {
            syscall(SYS_landlock_restrict_self, rules_, 0);
        }
    }

private:
    uint64_t known_;
    int rules_;
};

/// Allows to put a new file in the place of an output, or to write to a device.
void allow_output(const Rules &rules, const std::string &output) {
    std::error_code none;
    const std::filesystem::path resolved = std::filesystem::canonical(output, none);
    // A link is followed where a file is replaced, and replaced itself where there is none.
    const std::filesystem::path folder =
        (none ? std::filesystem::path(output) : resolved).parent_path();
    if (none || std::filesystem::is_regular_file(resolved, none)) {
        rules.allow(folder.empty() ? "." : folder, 0, to_make_files);
    } else {
        rules.allow(output, to_write_file, 0);
    }
}

/// What the process needs when it is one that watches itself: reports of leaks, counts of lines.
void allow_instruments(const Rules &rules) {
#ifdef KVT_SANITIZED
    rules.allow("/", 0, to_list | to_read_file | LANDLOCK_ACCESS_FS_EXECUTE);
#endif
#ifdef KVT_COVERAGE
    const char *counts = std::getenv("LLVM_PROFILE_FILE");
    const std::filesystem::path folder =
        std::filesystem::path(counts != nullptr ? counts : "").parent_path();
    rules.allow(folder.empty() ? "." : folder, 0, to_make_files);
#endif
    static_cast<void>(rules);
}

} // namespace

bool can_lower_rights() {
    return version_of_landlock() >= 1;
}

void keep_only(const Rights &rights) {
    if (!rights.folder.empty()) {
        make_folder(rights.folder);
    }
    const long version = version_of_landlock();
    if (version < 1) {
        return;
    }
    const Rules rules(ruleset_of(version));
    for (const std::string &input : rights.inputs) {
        rules.allow(input, to_read_file,
                    to_list); // a folder is opened, and found to be none to read
    }
    for (const std::string &output : rights.outputs) {
        allow_output(rules, output);
    }
    if (!rights.folder.empty()) {
        rules.allow(rights.folder, 0, to_make_files);
    }
    if (rights.reads_everything) {
        rules.allow("/", 0, to_list | to_read_file);
    }
    allow_instruments(rules);
    rules.restrict_process();
}

#else

bool can_lower_rights() {
    return false;
}

void keep_only(const Rights &rights) {
    if (!rights.folder.empty()) {
        make_folder(rights.folder);
    }
}

#endif

} // namespace kvt_tool
