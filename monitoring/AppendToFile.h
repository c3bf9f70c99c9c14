// One write appended to a file that is opened for it and closed after it:
// what the monitoring log does for every line, so that the file can be read
// while it grows and a crash loses at most the line being written.
#pragma once

#include <filesystem>
#include <string_view>

namespace kt500::monitoring {

enum class Appended { Done, NotOpened, NotWritten };

// Appends the bytes to the file, creating it if it does not exist.
[[nodiscard]] Appended AppendToFile(const std::filesystem::path& file, std::string_view bytes);

}  // namespace kt500::monitoring
