// Collects libxml2's structured errors as lines "line N: message". The
// callback never lets an exception out into libxml2: it keeps the first one
// and rethrow() raises it once the libxml2 call has returned.
#pragma once

#include <libxml/xmlerror.h>

#include <exception>
#include <string>
#include <vector>

namespace kt500::xml {

class ErrorList {
public:
    // Matches xmlStructuredErrorFunc; userData is the ErrorList.
    static void collect(void* userData, xmlErrorPtr error) noexcept;

    [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return m_lines; }
    [[nodiscard]] std::vector<std::string> takeLines() { return std::move(m_lines); }
    // True once an error (not only a warning) or a failure to read a schema came in.
    [[nodiscard]] bool failed() const noexcept { return m_failed; }
    void rethrow();

    // "line N: message" with the message's trailing newline removed, behind the
    // file's URL when the error names one (a schema file).
    static std::string format(const xmlError& error);

private:
    void add(const xmlError& error);

    std::vector<std::string> m_lines;
    std::size_t m_dropped = 0;
    bool m_failed = false;
    std::exception_ptr m_pending;
};

// Sends libxml2's thread-wide structured errors, those of the parsers libxml2
// creates by itself (for a schema's imports), into a list while it lives.
class ThreadErrorCapture {
public:
    explicit ThreadErrorCapture(ErrorList& list) noexcept;
    ~ThreadErrorCapture();
    ThreadErrorCapture(const ThreadErrorCapture&) = delete;
    ThreadErrorCapture& operator=(const ThreadErrorCapture&) = delete;

private:
    xmlStructuredErrorFunc m_previous;
    void* m_previousData;
};

// The handler that drops an error: libxml2 never prints on its own.
void ignoreStructuredError(void* userData, xmlErrorPtr error) noexcept;

}  // namespace kt500::xml
