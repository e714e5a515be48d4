#include "framework/file_beside.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <random>

int ZebOpenFileBeside(const std::string& target, mode_t mode, std::string& temp) {
    const size_t slash = target.rfind('/');
    const std::string folder =
        slash == std::string::npos ? std::string() : target.substr(0, slash + 1);
    static const char kLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        temp = folder + ".vantor-";
        for (int i = 0; i < 6; ++i) temp += kLetters[random() % (sizeof kLetters - 1)];
        const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    errno = EEXIST;
    return -1;
}
