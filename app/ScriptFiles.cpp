#include "app/ScriptFiles.h"

#include <cstdio>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace kt500::app {

namespace {

// FNV-1a, 64 bits: stable across runs and machines.
class Fingerprint {
public:
    void add(std::string_view text) {
        for (const char c : text) {
            m_hash ^= static_cast<std::uint8_t>(c);
            m_hash *= 0x100000001b3ULL;
        }
        // A field separator, so that "ab"+"c" differs from "a"+"bc".
        m_hash ^= 0xffU;
        m_hash *= 0x100000001b3ULL;
    }
    [[nodiscard]] std::string hex() const {
        std::ostringstream out;
        out << std::hex << std::setw(16) << std::setfill('0') << m_hash;
        return out.str();
    }

private:
    std::uint64_t m_hash = 0xcbf29ce484222325ULL;
};

int hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

}  // namespace

std::string DecodeByteEscapes(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x' &&
            hexDigit(text[i + 2]) >= 0 && hexDigit(text[i + 3]) >= 0) {
            bytes.push_back(static_cast<char>(hexDigit(text[i + 2]) * 16 + hexDigit(text[i + 3])));
            i += 3;
        } else {
            bytes.push_back(text[i]);
        }
    }
    return bytes;
}

void WriteScriptFile(const std::string& strPath, std::string_view text, std::int64_t count) {
    const std::string bytes = DecodeByteEscapes(text);
    std::ofstream file(strPath, std::ios::binary | std::ios::trunc);
    for (std::int64_t i = 0; file && i < count; ++i) {
        file << bytes;
    }
    file.flush();
    if (!file) {
        throw std::runtime_error("write: cannot write " + strPath);
    }
}

void PrintDigest(host::RavikKT500& control, std::ostream& out) {
    Fingerprint pages;
    // A property that a kind of control does not have counts as a mark of its own.
    const auto add = [&pages](const auto& read) {
        try {
            pages.add(read());
        } catch (const std::exception&) {
            pages.add("\x01");
        }
    };
    form::Form& form = control.form();
    // The file page holds the name just typed, and the communication signs
    // blink with the timer: neither is a page of the device.
    const form::Control* filePage = form.find("fraCommon", 2);
    for (const form::Control* field : form.controls()) {
        if ((filePage != nullptr &&
             (field == filePage || form::Form::isInside(*field, *filePage))) ||
            field->name() == "lblCommunication") {
            continue;
        }
        pages.add(field->name());
        pages.add(std::to_string(field->index()));
        add([&] { return field->text(); });
        add([&] { return field->caption(); });
        add([&] { return std::to_string(field->listIndex()); });
        add([&] { return std::to_string(field->value()); });
        add([&] { return std::to_string(field->foreColor()); });
        add([&] { return field->picture(); });
        add([&] { return std::string(field->visible() ? "1" : "0"); });
    }
    Fingerprint document;
    const xml::Node live = control.parameterNode();
    document.add(live ? live.toXml() : std::string());
    out << "digest pages=" << pages.hex() << " document=" << document.hex() << '\n';
}

}  // namespace kt500::app
