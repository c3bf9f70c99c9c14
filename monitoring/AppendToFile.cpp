#include "monitoring/AppendToFile.h"

#if defined(_WIN32)
#include <cstdio>
#else
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kt500::monitoring {

Appended AppendToFile(const std::filesystem::path& file, std::string_view bytes) {
#if defined(_WIN32)
    std::FILE* out = _wfopen(file.c_str(), L"ab");
    if (out == nullptr) {
        return Appended::NotOpened;
    }
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    return std::fclose(out) == 0 && written ? Appended::Done : Appended::NotWritten;
#else
    // The bare calls: a stream would add a buffer, a size query and a seek
    // to every line, at a hundred lines a second.
    const int out = ::open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (out < 0) {
        return Appended::NotOpened;
    }
    bool written = true;
    while (!bytes.empty()) {
        const ssize_t count = ::write(out, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            written = false;
            break;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return ::close(out) == 0 && written ? Appended::Done : Appended::NotWritten;
#endif
}

}  // namespace kt500::monitoring
