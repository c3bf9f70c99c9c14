// The script commands that make files for a run and fingerprint what the
// user sees: "write PATH TEXT [COUNT]" writes TEXT (COUNT times) to a file,
// and "digest" prints one number for the pages and one for the parameter
// document, so that a script proves a refused action changed neither.
#pragma once

#include "host/RavikKT500.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace kt500::app {

// TEXT with "\xHH" turned into that byte (other text as it stands).
[[nodiscard]] std::string DecodeByteEscapes(std::string_view text);
// Writes the decoded text count times to path; throws std::runtime_error
// when the file cannot be written.
void WriteScriptFile(const std::string& strPath, std::string_view text, std::int64_t count);
// "digest pages=HEX document=HEX": the pages are every control's values and
// look, in form order, but for the file page and the blinking communication
// signs; the document is the parameter node as the BL holds it.
void PrintDigest(host::RavikKT500& control, std::ostream& out);

}  // namespace kt500::app
