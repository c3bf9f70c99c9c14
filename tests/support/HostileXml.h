// The attacks that outside XML may carry, each built inside the envelope of
// the place it is fed to (that place's own root element), so that the attack
// is the only thing wrong with the document. Every place where XML enters
// the product must refuse every one of them, with the reason the parser
// gives, without reading a file or reaching the network.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kt500::test {

// The root element of a place's documents around the attack's content.
struct Envelope {
    std::string open;
    std::string close;
};

// What the attacks point at: a file that must stay unread, a URL that must
// stay uncalled.
struct AttackTargets {
    std::string secretFile;
    std::string url;
};

struct HostileAttack {
    std::string name;
    // A piece of the reason the parser gives.
    std::string reason;
    std::function<std::string(const Envelope&, const AttackTargets&)> build;
};

// The document with a DOCTYPE carrying declarations before its root.
inline std::string WithDoctype(const Envelope& envelope, const std::string& declarations,
                               const std::string& content = "") {
    std::string root = envelope.open;
    const std::size_t nameEnd = root.find_first_of(" >", 1);
    const std::string name = root.substr(1, nameEnd - 1);
    return "<?xml version='1.0'?>\n<!DOCTYPE " + name + declarations + ">\n" + envelope.open +
           content + envelope.close;
}

// ASCII text as UTF-16 or UTF-32 with its byte order mark.
inline std::string Widened(const std::string& text, bool bigEndian, int width) {
    std::string out = width == 2 ? (bigEndian ? std::string("\xFE\xFF") : std::string("\xFF\xFE"))
                                 : (bigEndian ? std::string("\x00\x00\xFE\xFF", 4)
                                              : std::string("\xFF\xFE\x00\x00", 4));
    for (const char c : text) {
        std::string unit(static_cast<std::size_t>(width), '\0');
        unit[bigEndian ? unit.size() - 1 : 0] = c;
        out += unit;
    }
    return out;
}

inline std::vector<HostileAttack> HostileAttacks() {
    using E = const Envelope&;
    using T = const AttackTargets&;
    return {
        {"external entity, file", "DOCTYPE is not allowed",
         [](E e, T t) {
             return WithDoctype(e, " [<!ENTITY s SYSTEM 'file://" + t.secretFile + "'>]", "&s;");
         }},
        {"external entity, network", "DOCTYPE is not allowed",
         [](E e, T t) { return WithDoctype(e, " [<!ENTITY s SYSTEM '" + t.url + "'>]", "&s;"); }},
        {"external parameter entity", "DOCTYPE is not allowed",
         [](E e, T t) {
             return WithDoctype(e, " [<!ENTITY % p SYSTEM '" + t.url + "'> %p;]");
         }},
        {"external DTD", "DOCTYPE is not allowed",
         [](E e, T t) { return WithDoctype(e, " SYSTEM '" + t.secretFile + "'"); }},
        {"billion laughs", "DOCTYPE is not allowed",
         [](E e, T) {
             std::string declarations = " [<!ENTITY l0 'lol'>";
             for (int level = 1; level <= 9; ++level) {
                 declarations += "<!ENTITY l" + std::to_string(level) + " '";
                 for (int i = 0; i < 10; ++i) {
                     declarations += "&l" + std::to_string(level - 1) + ";";
                 }
                 declarations += "'>";
             }
             return WithDoctype(e, declarations + "]", "&l9;");
         }},
        {"quadratic blowup", "DOCTYPE is not allowed",
         [](E e, T) {
             std::string content;
             for (int i = 0; i < 20000; ++i) {
                 content += "&big;";
             }
             return WithDoctype(e, " [<!ENTITY big '" + std::string(50000, 'x') + "'>]",
                                content);
         }},
        {"bare DOCTYPE", "DOCTYPE is not allowed", [](E e, T) { return WithDoctype(e, ""); }},
        {"XInclude", "XInclude is not allowed",
         [](E e, T t) {
             return e.open + "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' href='" +
                    t.secretFile + "' parse='text'/>" + e.close;
         }},
        {"10,000 levels", "elements nest deeper than 200 levels",
         [](E e, T) {
             std::string content;
             for (int i = 0; i < 10000; ++i) {
                 content += "<n>";
             }
             for (int i = 0; i < 10000; ++i) {
                 content += "</n>";
             }
             return e.open + content + e.close;
         }},
        {"100 MB attribute", " bytes",
         [](E e, T) {
             return e.open + "<n a='" + std::string(std::size_t{100} << 20U, 'a') + "'/>" +
                    e.close;
         }},
        {"invalid UTF-8", "is not UTF-8",
         [](E e, T) { return e.open + "<n>caf\xE9 \xC0\xAF</n>" + e.close; }},
        {"UTF-16LE byte order mark", "byte order mark of UTF-16LE",
         [](E e, T) { return Widened("<?xml version='1.0'?>" + e.open + e.close, false, 2); }},
        {"UTF-16BE byte order mark", "byte order mark of UTF-16BE",
         [](E e, T) { return Widened("<?xml version='1.0'?>" + e.open + e.close, true, 2); }},
        {"UTF-32BE byte order mark", "byte order mark of UTF-32BE",
         [](E e, T) { return Widened("<?xml version='1.0'?>" + e.open + e.close, true, 4); }},
    };
}

// A TCP port on the loopback that tells whether anybody connected.
class LoopbackListener {
public:
    LoopbackListener() : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        m_ready = ::bind(m_socket, reinterpret_cast<sockaddr*>(&address), length) == 0 &&
                  ::listen(m_socket, 4) == 0 &&
                  ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length) == 0;
        url = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/entities.dtd";
    }
    ~LoopbackListener() { ::close(m_socket); }
    LoopbackListener(const LoopbackListener&) = delete;
    LoopbackListener& operator=(const LoopbackListener&) = delete;

    [[nodiscard]] bool ready() const noexcept { return m_ready; }
    [[nodiscard]] bool wasContacted() const {
        pollfd waiting{m_socket, POLLIN, 0};
        return ::poll(&waiting, 1, 0) > 0;
    }

    std::string url;

private:
    int m_socket;
    bool m_ready = false;
};

}  // namespace kt500::test
