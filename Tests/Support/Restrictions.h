#pragma once
// What keeps a person from reading and writing files, imposed on the test for as long as the object lives.

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

namespace karto::testing {

// Permissions mean nothing to root, which tests in a container often are.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (user_ == 0) {
            become(65'534);
        }
    }

    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    OrdinaryUser(OrdinaryUser&&) = delete;
    OrdinaryUser& operator=(OrdinaryUser&&) = delete;

    ~OrdinaryUser() { become(user_); }

private:
    static void become(uid_t user) {
        if (::seteuid(user) != 0) {
            ::abort();
        }
    }

    uid_t user_ = ::geteuid();
};

// No file grows beyond a size, as on a disk that is full.
class FullDisk {
public:
    explicit FullDisk(rlim_t roomInFile)
        : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{.rlim_cur = roomInFile, .rlim_max = before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    FullDisk(FullDisk&&) = delete;
    FullDisk& operator=(FullDisk&&) = delete;

    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    void (*handler_)(int);
    rlimit before_{};
};

} // namespace karto::testing
